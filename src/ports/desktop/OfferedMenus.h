#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/FIFinderSync.h"
#include "ports/desktop/DesktopFinderSyncController.h"
#include "ports/desktop/MenuContext.h"
#include "wire/Rows.h"

namespace sprig::desktop {

/// The extension's menus as rows, and the actions that they have offered.
///
/// Threads: main thread. Ownership: the extension and the controller outlive this.
class OfferedMenus {
 public:
  OfferedMenus(platform::FIFinderSync& finderSync, DesktopFinderSyncController& finderSyncController)
      : extension(finderSync), controller(finderSyncController) {}

  /// The menu for a context, built anew; no rows for no menu.
  std::vector<wire::Row> rows(const MenuContext& context);

  /// Whether any menu has offered the action, or the one for this context would.
  bool offers(const std::string& action, const MenuContext& context);

  /// Performs an action that was offered, with the menu for its context built again, so that it falls on what
  /// was clicked. Blocks while the user is asked.
  void perform(const std::string& action, const MenuContext& context);

 private:
  /// What is left of an entry when its menu has gone: enough for its target to find what it stood for.
  struct Entry {
    std::string title;
    std::optional<std::string> identifier;
    platform::Selector action;
    platform::MenuTarget* target;
  };

  std::unique_ptr<platform::Menu> build(const MenuContext& context);

  platform::FIFinderSync& extension;
  DesktopFinderSyncController& controller;
  std::map<std::string, Entry, std::less<>> offered;
};

}  // namespace sprig::desktop
