// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

namespace sprig::platform {

struct MenuItem;

/// The name of an action that an item or control asks its target to perform; empty is no action.
struct Selector {
  std::string_view name;
  explicit operator bool() const { return !name.empty(); }
  friend bool operator==(const Selector&, const Selector&) = default;
};

/// Performs the actions of menu items. Items refer to it without owning it: it outlives the menus it made.
///
/// Threads: main thread.
class MenuTarget {
 public:
  virtual ~MenuTarget() = default;
  /// Performs `action` for the item the user picked; an action it does not know is ignored.
  virtual void performAction(Selector action, const MenuItem& sender) = 0;
};

/// Performs the actions of buttons and text fields; not owned by them either.
///
/// Threads: main thread.
class ControlTarget {
 public:
  virtual ~ControlTarget() = default;
  /// Performs `action`; one it does not know is ignored.
  virtual void performAction(Selector action) = 0;
};

}  // namespace sprig::platform
