// SPDX-License-Identifier: GPL-3.0-or-later

#include "finder/ContextMenu.h"

#include "diag/logSprig.h"
#include "finder/TargetFolder.h"
#include "finder/TemplateCategories.h"
#include "finder/visibleCount.h"
#include "platform/Platform.h"
#include "translation/translated.h"

namespace sprig {

using platform::FileURL;
using platform::FIMenuKind;
using platform::Image;
using platform::Menu;
using platform::MenuItem;

namespace {

constexpr double imageSize = 13;

std::optional<Image> menuImage(const std::string& symbolName, const std::string& description) {
  const auto& images = platform::current().images;
  const auto symbol = images.systemSymbol(symbolName, description);
  if (!symbol) return std::nullopt;
  auto image = images.configured(*symbol, {imageSize, platform::FontWeight::regular});
  if (image) image->rendering = platform::ImageRendering::asTemplate;
  return image;
}

/// Of a template whose icon does not exist, a plain document's.
std::optional<Image> templateImage(const TemplateItem& item) {
  const bool exists = platform::current().images.systemSymbol(item.icon, item.name).has_value();
  return menuImage(exists ? item.icon : "doc.text", item.name);
}

bool isForItems(FIMenuKind menuKind) {
  return menuKind == FIMenuKind::contextualMenuForItems || menuKind == FIMenuKind::contextualMenuForSidebar;
}

std::optional<FileURL> targetFolder(FIMenuKind menuKind) {
  if (isForItems(menuKind)) {
    if (auto folder = firstSelectedFolder()) return folder;
  }
  if (auto folder = platform::current().finderSyncController.targetedURL()) return folder;
  return desktopFolder();
}

std::vector<TemplateReference> enabledTemplates(const ConfigSnapshot& config) {
  std::vector<TemplateReference> enabled;
  for (const auto& item : config->templates) {
    if (item.enabled) enabled.push_back(referTo(config, item));
  }
  return enabled;
}

MenuItem withSubmenu(const std::string& title, std::unique_ptr<Menu> submenu, std::optional<Image> image) {
  auto item = MenuItem::titled(title);
  item.submenu = std::move(submenu);
  item.image = std::move(image);
  return item;
}

std::unique_ptr<Menu> makeMenu(const std::string& title) {
  auto menu = std::make_unique<Menu>();
  menu->title = title;
  return menu;
}

}  // namespace

std::unique_ptr<Menu> ContextMenu::menu(FIMenuKind menuKind) {
  const auto value = std::to_string(static_cast<unsigned long>(menuKind));
  logSprig("menu(for: " + value + ") requested");
  if (menuKind > FIMenuKind::toolbarItemMenu) {
    logSprig("menuKind " + value + " ignored");
    return nullptr;
  }
  const auto config = ConfigManager::shared().getConfig();
  if (!config->settings.showInFinder.value_or(true)) {
    logSprig("showInFinder is false");
    return nullptr;
  }
  auto folder = targetFolder(menuKind);
  if (!folder) {
    logSprig("targetFolderURL is nil, cannot build menu");
    return nullptr;
  }
  logSprig("building menu for folder: " + folder->path());
  menuState.lastTargetFolderURL = std::move(folder);

  auto templates = templateMenu(config);
  menuState.templateCache.releaseOld(config);
  if (menuKind == FIMenuKind::toolbarItemMenu) return templates;
  auto root = makeMenu("Sprig");
  root->items.push_back(withSubmenu("Sprig", std::move(templates), menuImage("doc.badge.plus", "Sprig")));
  return root;
}

std::unique_ptr<Menu> ContextMenu::templateMenu(const ConfigSnapshot& config) {
  auto menu = makeMenu("Sprig");
  const auto templates = enabledTemplates(config);
  if (templates.empty()) {
    menu->items.push_back(MenuItem::titled(translated("No Templates Configured")));
    menu->items.back().isEnabled = false;
  } else {
    populateSubmenu(*menu, templates, config->settings);
  }
  menu->items.push_back(MenuItem::separator());
  menu->items.push_back(settingsItem());
  return menu;
}

void ContextMenu::populateSubmenu(Menu& menu, const std::vector<TemplateReference>& templates,
                                  const AppSettingsItem& settings) {
  const auto overflowBegin =
      templates.begin() + static_cast<std::ptrdiff_t>(visibleCount(settings, templates.size()));
  for (auto item = templates.begin(); item != overflowBegin; ++item) {
    menu.items.push_back(createMenuItem(*item));
  }
  if (overflowBegin == templates.end()) return;
  menu.items.push_back(MenuItem::separator());
  menu.items.push_back(
      moreTemplatesItem({overflowBegin, templates.end()}, settings.showCategories.value_or(true)));
}

MenuItem ContextMenu::moreTemplatesItem(const std::vector<TemplateReference>& overflow, bool showCategories) {
  const auto* title = translated("More Templates");
  auto more = makeMenu(title);
  if (showCategories) {
    for (const auto& section : groupIntoSections(overflow, sectionOrder)) {
      auto submenu = makeMenu(sectionTitle(section.name));
      for (const auto& item : section.templates) submenu->items.push_back(createMenuItem(item));
      more->items.push_back(withSubmenu(sectionTitle(section.name), std::move(submenu), std::nullopt));
    }
  } else {
    for (const auto& item : overflow) more->items.push_back(createMenuItem(item));
  }
  return withSubmenu(title, std::move(more), menuImage("ellipsis.circle", title));
}

MenuItem ContextMenu::createMenuItem(const TemplateReference& item) {
  auto entry = MenuItem::titled(item->name);
  entry.action = templateActionSelector;
  entry.target = &menuTarget;
  entry.identifier = item->id;
  menuState.templateCache.insert(item->id, item);
  menuState.templateCache.insert(item->name, item);
  entry.image = templateImage(*item);
  return entry;
}

MenuItem ContextMenu::settingsItem() {
  auto entry = MenuItem::titled(translated("Sprig Settings…"));
  entry.action = openSettingsActionSelector;
  entry.target = &menuTarget;
  entry.image = menuImage("gearshape", translated("Settings"));
  return entry;
}

}  // namespace sprig
