// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FIFinderSync.h"
#include "ports/desktop/DesktopFinderSyncController.h"
#include "ports/desktop/MenuContext.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

/// The extension's menus as rows, and the actions that they have offered.
///
/// Threads: main thread. Ownership: the extension and the controller outlive this.
class OfferedMenus {
 public:
  OfferedMenus(platform::FIFinderSync& finderSync, DesktopFinderSyncController& finderSyncController)
      : extension(finderSync), controller(finderSyncController) {}

  /// The rows of the menu for a context, as the bus carries them; no rows for no menu. Failure: throws
  /// `std::runtime_error` when the bus can't carry it.
  wire::VariantPointer rows(const MenuContext& context);

  /// To be called when the menus may differ from those before.
  void configurationChanged() { hasLoggedLeftOut = false; }

  /// Whether a menu can offer such an action. What it stands for may have gone since.
  static bool isAction(std::string_view action);

  /// Performs the action of the entry with this title (empty when it is not known) on what was clicked.
  /// Builds no menu: the entry stands for what it was offered for. Blocks while the user is asked.
  void perform(const std::string& action, const std::string& title, const MenuContext& context);

 private:
  /// What is left of a template's entry when its menu has gone: by this the template is found.
  struct Entry {
    std::string title;
    /// The same in the user's language.
    std::string shownTitle;
    std::optional<std::string> identifier;
  };

  wire::VariantPointer rowsOf(const platform::Menu& menu);
  /// The entry that was picked, as its menu had it.
  platform::MenuItem picked(const std::string& action, const std::string& title) const;

  platform::FIFinderSync& extension;
  DesktopFinderSyncController& controller;
  std::map<std::string, Entry, std::less<>> offered;
  /// The menu before, and its rows: most menus are the same as the one before.
  std::unique_ptr<platform::Menu> lastMenu;
  wire::VariantPointer lastRows;
  bool hasLoggedLeftOut = false;
};

}  // namespace sprig::desktop
