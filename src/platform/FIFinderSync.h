// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Action.h"
#include "platform/FileURL.h"
#include "platform/Image.h"
#include "platform/Menu.h"

namespace sprig::platform {

/// What a menu is for. Callers may pass values beyond the named ones.
enum class FIMenuKind : unsigned long {
  contextualMenuForItems = 0,
  contextualMenuForContainer = 1,
  contextualMenuForSidebar = 2,
  toolbarItemMenu = 3,
};

/// The object that a file manager talks to.
///
/// Threads:   main thread.
/// Ownership: the port's, which outlives every menu that refers to it.
/// Failure:   none is reported: what goes wrong is logged, or shown to the user.
class FIFinderSync : public MenuTarget {
 public:
  virtual void beginObservingDirectory(const FileURL& location) = 0;
  virtual void endObservingDirectory(const FileURL& location) = 0;

  virtual std::string toolbarItemName() const = 0;
  virtual std::string toolbarItemToolTip() const = 0;
  virtual Image toolbarItemImage() const = 0;

  /// The menu to show; null for none. Its items refer to this object as their target.
  virtual std::unique_ptr<Menu> menu(FIMenuKind menuKind) = 0;
};

}  // namespace sprig::platform
