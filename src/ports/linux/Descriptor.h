// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <unistd.h>

#include <utility>

namespace sprig::ports {

/// An open descriptor, closed with this value; -1 is none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : number(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number, other.number);
    return *this;
  }
  ~Descriptor() {
    if (isOpen()) ::close(number);
  }

  bool isOpen() const { return number >= 0; }
  int get() const { return number; }

 private:
  int number = -1;
};

}  // namespace sprig::ports
