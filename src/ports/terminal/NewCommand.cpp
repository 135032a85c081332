// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/NewCommand.h"

#include "config/ConfigManager.h"
#include "engine/TemplateEngine.h"
#include "finder/ContextMenu.h"
#include "finder/TemplateAction.h"
#include "finder/TemplateCategories.h"
#include "ports/terminal/BrokenConfig.h"
#include "ports/terminal/DataOutput.h"
#include "ports/terminal/FolderArgument.h"
#include "ports/terminal/NearestNames.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

/// Entries of a menu that nobody sees.
class NoTarget final : public platform::MenuTarget {
 public:
  void performAction(platform::Selector /*action*/, const platform::MenuItem& /*sender*/) override {}
};

/// What the folder's menu leaves for a pick: of templates with one id or name, that means the same one.
MenuState stateOfMenu() {
  MenuState state;
  NoTarget target;
  const std::vector<std::string> order(standardCategoryOrder.begin(), standardCategoryOrder.end());
  static_cast<void>(ContextMenu(state, order, target).menu(platform::FIMenuKind::contextualMenuForContainer));
  return state;
}

}  // namespace

ExitStatus NewCommand::run() {
  const auto folder = existingFolder(request.folder, terminal.screen());
  if (!folder) return folder.error();
  terminal.controller().setTargetFolder(*folder);
  const auto state = stateOfMenu();
  warnOfBrokenConfig(terminal.screen());
  const auto item = picked(state);
  if (!item) {
    printUnknownTemplate();
    return ExitStatus::wrongUse;
  }
  if (request.mode == CreationMode::dryRun) {
    return plan(*findTemplate(*item, state, ConfigManager::shared().getConfig()), *folder);
  }
  terminal.application().setQuestions(Questions::confirm);
  static_cast<void>(performTemplateAction(*item, state, request.name));
  return terminal.outcomeOfPick();
}

ExitStatus NewCommand::plan(const TemplateItem& item, const platform::FileURL& folder) const {
  const auto folderName = folder.lastPathComponent();
  const auto name = TemplateEngine::render(item, request.name, folderName, folderName).filename;
  const auto file = folder.appendingPathComponent(TemplateEngine::resolveCollision(folder, name));
  if (file) return printData(file->path() + "\n", terminal.screen());
  terminal.screen().printError(translated("a file can’t be called “%1%”", {name}));
  return ExitStatus::failed;
}

/// An entry as if it had been picked; nothing when no template is called so. Spaces around a name don't
/// matter.
std::optional<platform::MenuItem> NewCommand::picked(const MenuState& state) const {
  const auto config = ConfigManager::shared().getConfig();
  auto item = platform::MenuItem::titled(request.templateName);
  item.identifier = request.templateName;
  if (findTemplate(item, state, config)) return item;
  const auto wanted = text::trimHorizontalWhitespace(request.templateName);
  for (const auto& candidate : config->templates) {
    if (!text::isEqual(text::trimHorizontalWhitespace(candidate.name), wanted)) continue;
    item.identifier = candidate.id;
    return item;
  }
  return std::nullopt;
}

void NewCommand::printUnknownTemplate() const {
  std::vector<std::string> names;
  for (const auto& item : ConfigManager::shared().getConfig()->templates) names.push_back(item.name);
  std::string near;
  for (const auto& name : nearestNames(request.templateName, names)) {
    const auto quoted = translated("“%1%”", {name});
    near = near.empty() ? quoted : translated("%1% or %2%", {near, quoted});
  }
  terminal.screen().printError(
      near.empty()
          ? translated("no template is called “%1%”. “sprig list” shows them all.", {request.templateName})
          : translated("no template is called “%1%”. Did you mean %2%? “sprig list” shows them all.",
                       {request.templateName, near}));
}

}  // namespace sprig::terminal
