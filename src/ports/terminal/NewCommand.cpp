#include "ports/terminal/NewCommand.h"

#include "config/ConfigManager.h"
#include "finder/TemplateAction.h"
#include "ports/terminal/NearestNames.h"
#include "ports/terminal/UserPath.h"

namespace sprig::terminal {

ExitStatus NewCommand::run() {
  auto item = platform::MenuItem::titled(request.templateName);
  item.identifier = request.templateName;
  const MenuState noMenuYet;
  if (!findTemplate(item, noMenuYet, ConfigManager::shared().getConfig())) {
    complainAboutTemplate();
    return ExitStatus::wrongUse;
  }
  if (!concernFolder()) return ExitStatus::failed;
  terminal.application().setQuestions(Questions::confirm);
  static_cast<void>(performTemplateAction(item, noMenuYet, request.name));
  return terminal.outcomeOfPick();
}

/// The folder need not exist: a failure to create a file in it explains itself.
bool NewCommand::concernFolder() {
  const auto folder = request.folder ? absoluteLocation(*request.folder) : currentFolder();
  if (!folder) {
    terminal.screen().complain("the current folder is gone");
    return false;
  }
  terminal.controller().concernFolder(*folder);
  return true;
}

void NewCommand::complainAboutTemplate() const {
  std::vector<std::string> names;
  for (const auto& item : ConfigManager::shared().getConfig()->templates) names.push_back(item.name);
  auto message = "no template is called “" + request.templateName + "”.";
  std::string separator = " Did you mean ";
  for (const auto& name : nearestNames(request.templateName, names)) {
    message.append(separator).append("“").append(name).append("”");
    separator = " or ";
  }
  if (separator == " or ") message += "?";
  terminal.screen().complain(message + " \"sprig list\" shows them all.");
}

}  // namespace sprig::terminal
