// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/FIFinderSync.h"
#include "ports/terminal/LineReader.h"
#include "ports/terminal/NumberedMenu.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// Shows the extension's menu and has the user pick an entry. Each time the menu is shown the extension is
/// asked for it anew, so that a configuration edited meanwhile shows.
class MenuBrowser {
 public:
  enum class End { picked, cancelled, noMenu };

  /// `heading` says what the menu is for. The references outlive this.
  MenuBrowser(platform::FIFinderSync& finderSync, platform::FIMenuKind menuKind, std::string heading,
              LineReader& reader, const Screen& screen);

  /// Begins at the top menu; returns when there is a pick, or will be none.
  End pick();

  /// What was picked last. It lives until the next `pick`.
  const platform::MenuItem& picked() const { return *pickedItem; }

 private:
  enum class Next { showMenu, leave, take };

  const platform::Menu& shownMenu();
  void show(const NumberedMenu& rows) const;
  std::string line(const NumberedMenu::Row& row) const;
  Next ask(const NumberedMenu& rows);
  Next take(const platform::MenuItem& item);
  void showCandidates(const std::vector<NumberedMenu::Row>& candidates, std::string_view input) const;

  platform::FIFinderSync& extension;
  const platform::FIMenuKind kind;
  const std::string title;
  LineReader& lines;
  const Screen& output;
  std::unique_ptr<platform::Menu> menu;
  /// The titles of the submenus the user is in, the outermost first.
  std::vector<std::string> path;
  const platform::MenuItem* pickedItem = nullptr;
};

}  // namespace sprig::terminal
