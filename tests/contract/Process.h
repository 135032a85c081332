// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "platform/FileURL.h"

namespace sprig::test {

/// How many descriptors the process has open.
std::size_t openDescriptors();

/// The mode of what stands at a location, a link for one.
mode_t modeOf(const platform::FileURL& location);

/// What `question` answers in a process without special rights: a child that drops them, or here and now when
/// the tests run as an ordinary user. Requires: no other threads.
bool asOrdinaryUser(const std::function<bool()>& question);

/// Whether a shell carries out `command` without a failure.
bool runsInShell(const std::string& command);

/// An environment variable, for a scope; an absent value removes it. Requires: no other threads.
class ScopedVariable {
 public:
  ScopedVariable(std::string variableName, const std::optional<std::string>& value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  std::string name;
  std::optional<std::string> previous;
};

}  // namespace sprig::test
