// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Creations.h"
#include "platform/FileURL.h"
#include "ports/linux/Creation.h"

namespace sprig::ports {

/// The last creations of the user's programs, kept in a private file of the user's state folder: one line
/// each, the oldest first.
///
/// Threads:   any, and any number of programs: whoever writes has a lock on the folder's lock file.
/// Ownership: nothing is held open between calls.
/// Failure:   what can't be read counts as empty, a line that makes no sense is left out, and what can't be
///            written, or not within half a second because others write, is not kept.
class CreationJournal final : public platform::Creations {
 public:
  static constexpr std::size_t maxCreations = 20;

  /// `folder` is made when it is first needed.
  explicit CreationJournal(platform::FileURL folder) : location(std::move(folder)) {}

  void created(const platform::FileURL& file) override;

  /// The newest first.
  std::vector<Creation> creations() const;

  /// Takes one out, as it has been taken back or never can be.
  void forget(const Creation& creation);

 private:
  std::vector<Creation> read() const;
  void write(const std::vector<Creation>& list) const;
  template <typename Change>
  void change(Change apply) const;

  const platform::FileURL location;
};

}  // namespace sprig::ports
