// SPDX-License-Identifier: GPL-3.0-or-later

#include "finder/TemplateAction.h"

#include "create/FileCreator.h"
#include "create/PromptDialog.h"
#include "diag/logSprig.h"
#include "engine/TemplateEngine.h"
#include "finder/TargetFolder.h"
#include "platform/Platform.h"
#include "text/Text.h"

namespace sprig {

using platform::FileURL;
using platform::MenuItem;

namespace {

using TextField = std::string TemplateItem::*;

TemplateReference firstInConfig(const ConfigSnapshot& config, TextField field, std::string_view value) {
  for (const auto& item : config->templates) {
    if (text::isEqual(item.*field, value)) return referTo(config, item);
  }
  return nullptr;
}

std::optional<FileURL> targetFolder(const MenuState& state) {
  if (auto folder = platform::current().finderSyncController.targetedURL()) return folder;
  if (auto folder = firstSelectedFolder()) return folder;
  if (state.lastTargetFolderURL) return state.lastTargetFolderURL;
  return desktopFolder();
}

bool isPromptDue(const TemplateItem& item, const AppSettingsItem& settings) {
  return item.requiresInput || !settings.defaultBehavior ||
         text::isEqual(*settings.defaultBehavior, "prompt");
}

std::optional<FileURL> createAndLog(const TemplateItem& item, const FileURL& folder,
                                    const std::optional<std::string>& customName) {
  auto created = FileCreator::createFile(item, folder, customName);
  logSprig(created ? "templateAction SUCCESS: Created file '" + created->path() + "'"
                   : "templateAction FAILURE: FileCreator returned nil");
  return created;
}

}  // namespace

TemplateReference findTemplate(const MenuItem& sender, const MenuState& state, const ConfigSnapshot& config) {
  if (sender.identifier) {
    if (auto item = state.templateCache.find(*sender.identifier)) return item;
    if (auto item = firstInConfig(config, &TemplateItem::id, *sender.identifier)) return item;
  }
  const auto title = text::trimHorizontalWhitespace(sender.title);
  if (auto item = state.templateCache.find(title)) return item;
  return firstInConfig(config, &TemplateItem::name, title);
}

std::optional<FileURL> performTemplateAction(const MenuItem& sender, const MenuState& state,
                                             const std::optional<std::string>& typedName) {
  logSprig("templateAction invoked for '" + sender.title + "', identifier: '" +
           sender.identifier.value_or("none") + "'");
  const auto config = ConfigManager::shared().getConfig();
  const auto item = findTemplate(sender, state, config);
  if (!item) {
    logSprig("templateAction error: Could not find template for '" + sender.title + "'");
    return std::nullopt;
  }
  const auto folder = targetFolder(state);
  if (!folder) {
    logSprig("templateAction error: Could not resolve target folder");
    return std::nullopt;
  }
  logSprig("templateAction executing for template '" + item->name + "' in folder '" + folder->path() + "'");
  const auto folderName = folder->lastPathComponent();
  const auto suggestedName = TemplateEngine::renderSuggestedFilename(*item, folderName, folderName);
  auto customName = typedName;
  if (!customName && isPromptDue(*item, config->settings)) {
    customName = PromptDialog::showNamePrompt(*item, suggestedName, folderName);
    if (!customName) {
      logSprig("templateAction: User cancelled prompt");
      return std::nullopt;
    }
  }
  return createAndLog(*item, *folder, customName);
}

}  // namespace sprig
