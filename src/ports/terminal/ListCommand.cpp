// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/ListCommand.h"

#include <unistd.h>

#include "app/FinderSync.h"
#include "ports/terminal/BrokenConfig.h"
#include "ports/terminal/DataOutput.h"
#include "ports/terminal/FolderArgument.h"
#include "ports/terminal/MenuListing.h"
#include "ports/terminal/NumberedMenu.h"
#include "translation/translated.h"

namespace sprig::terminal {

ExitStatus ListCommand::run() {
  const auto folder = existingFolder(request.folder, terminal.screen());
  if (!folder) return folder.error();
  terminal.controller().setTargetFolder(*folder);
  FinderSync finderSync;
  warnOfBrokenConfig(terminal.screen());
  const auto menu = finderSync.menu(platform::FIMenuKind::contextualMenuForContainer);
  terminal.runPending();
  if (!menu) {
    terminal.screen().printError(translated("the menu is switched off in the settings (“showInFinder”)"));
    return printData(listing(*folder, {}), terminal.screen());
  }
  return printData(listing(*folder, entriesOf(*menu)), terminal.screen());
}

std::string ListCommand::listing(const platform::FileURL& folder, const platform::Menu& entries) const {
  switch (request.format) {
    case ListFormat::people:
      return listingForPeople(entries, Screen(STDOUT_FILENO));
    case ListFormat::json:
      return listingAsJson(folder, entries);
    case ListFormat::titles:
      return templateTitles(entries);
  }
  return "";
}

}  // namespace sprig::terminal
