// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/FolderArgument.h"

#include "ports/terminal/UserPath.h"
#include "translation/translated.h"

namespace sprig::terminal {

using platform::FileURL;

namespace {

Located located(const std::optional<FileURL>& location, const Screen& errors) {
  if (location) return *location;
  errors.printError(translated("the current folder is gone"));
  return tl::unexpected(ExitStatus::failed);
}

}  // namespace

Located existingFolder(const std::optional<std::string>& argument, const Screen& errors) {
  if (!argument) return located(currentFolder(), errors);
  if (kindOf(*argument) == PathKind::item) {
    errors.printError(translated("“%1%” is not a folder", {*argument}));
    return tl::unexpected(ExitStatus::wrongUse);
  }
  return existingItem(*argument, errors);
}

Located existingItem(const std::string& argument, const Screen& errors) {
  if (kindOf(argument) == PathKind::missing) {
    errors.printError(
        translated("there is no file or folder “%1%” (“sprig --help” shows the usage)", {argument}));
    return tl::unexpected(ExitStatus::wrongUse);
  }
  return located(absoluteLocation(argument), errors);
}

}  // namespace sprig::terminal
