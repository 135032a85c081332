// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/DetectCommand.h"

#include <algorithm>

#include "engine/ProjectDetector.h"
#include "ports/terminal/DataOutput.h"
#include "ports/terminal/FolderArgument.h"

namespace sprig::terminal {

ExitStatus DetectCommand::run() {
  const auto folder = existingFolder(request.folder, terminal.screen());
  if (!folder) return folder.error();
  auto types = ProjectDetector::shared().detectProjectTypes(*folder);
  std::sort(types.begin(), types.end());
  std::string output;
  for (const auto& type : types) output += type + "\n";
  return printData(output, terminal.screen());
}

}  // namespace sprig::terminal
