// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/BrowseCommand.h"

#include "app/FinderSync.h"
#include "finder/ContextMenu.h"
#include "finder/TargetFolder.h"
#include "ports/terminal/BrokenConfig.h"
#include "ports/terminal/FolderArgument.h"
#include "ports/terminal/MenuBrowser.h"
#include "ports/terminal/UserPath.h"
#include "translation/translated.h"

namespace sprig::terminal {

using platform::FileURL;

namespace {

/// A path as people write it, with "~" for their home folder.
std::string abbreviated(const FileURL& location) {
  const auto& path = location.path();
  const auto home = platform::current().files.homeDirectory().path();
  if (home == "/" || !path.starts_with(home)) return path;
  if (path.size() > home.size() && path[home.size()] != '/') return path;
  return "~" + path.substr(home.size());
}

}  // namespace

ExitStatus BrowseCommand::run() {
  if (const auto refusal = setTargets()) return *refusal;
  return pickAndCreate();
}

std::optional<ExitStatus> BrowseCommand::setTargets() {
  const auto& targets = request.targets;
  const bool isAboutFolder =
      targets.empty() || (targets.size() == 1 && kindOf(targets.front()) == PathKind::folder);
  if (!isAboutFolder) return setItems();
  const auto folder =
      existingFolder(targets.empty() ? std::nullopt : std::optional(targets.front()), terminal.screen());
  if (!folder) return folder.error();
  terminal.controller().setTargetFolder(*folder);
  return std::nullopt;
}

std::optional<ExitStatus> BrowseCommand::setItems() {
  std::vector<FileURL> items;
  for (const auto& target : request.targets) {
    const auto item = existingItem(target, terminal.screen());
    if (!item) return item.error();
    items.push_back(*item);
  }
  kind = platform::FIMenuKind::contextualMenuForItems;
  terminal.controller().setSelectedItems(std::move(items));
  return std::nullopt;
}

std::string BrowseCommand::heading() const {
  const auto folder = terminal.controller().targetedURL();
  const auto shown = folder ? folder : firstSelectedFolder();
  return shown ? translated("New file in %1%", {abbreviated(*shown)}) : translated("New file");
}

ExitStatus BrowseCommand::pickAndCreate() {
  FinderSync finderSync;
  warnOfBrokenConfig(terminal.screen());
  MenuBrowser browser(finderSync, kind, heading(), terminal.lines(), terminal.screen());
  for (;;) {
    switch (browser.pick()) {
      case MenuBrowser::End::cancelled:
        return ExitStatus::cancelled;
      case MenuBrowser::End::noMenu:
        terminal.screen().printError(translated("the menu is switched off in the settings (“showInFinder”)"));
        return ExitStatus::failed;
      case MenuBrowser::End::picked:
        break;
    }
    const auto& item = browser.picked();
    if (item.target != nullptr) item.target->performAction(item.action, item);
    if (item.action != openSettingsActionSelector) return terminal.outcomeOfPick();
    terminal.runPending();
  }
}

}  // namespace sprig::terminal
