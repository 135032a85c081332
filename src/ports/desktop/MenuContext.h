#pragma once

#include <glib.h>

#include <stdexcept>
#include <vector>

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
  std::vector<platform::FileURL> targets;

  /// As a call gives it: a number and a list of URIs. Targets beyond the first hundred are left out: only the
  /// first one decides anything. Throws `CallError` when one is not a local file's URI.
  static MenuContext from(GVariant* kind, GVariant* targets);
};

/// The location of a local file's URI. Throws `CallError` when it is none.
platform::FileURL locationOf(const char* uri);

}  // namespace sprig::desktop
