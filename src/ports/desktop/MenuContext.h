// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib.h>

#include <optional>
#include <stdexcept>

#include "platform/FIFinderSync.h"
#include "platform/FileURL.h"

namespace sprig::desktop {

/// A call makes no sense; the text says why.
class CallError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a menu, or a pick in it, is about.
struct MenuContext {
  platform::FIMenuKind kind = platform::FIMenuKind::contextualMenuForItems;
  /// The folder, or the first of the items. Absent: nothing in particular.
  std::optional<platform::FileURL> target;

  /// As a call gives it: a number and a list of URIs, of which the first one decides; the others may be of
  /// any kind. Throws `CallError` when that is not a local file's URI.
  static MenuContext from(GVariant* kind, GVariant* targets);
};

/// The location of a local file's URI. Throws `CallError` when it is none.
platform::FileURL locationOf(const char* uri);

}  // namespace sprig::desktop
