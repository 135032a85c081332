// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "config/ConfigManager.h"
#include "finder/MenuState.h"
#include "finder/TemplateReference.h"
#include "platform/FIFinderSync.h"

namespace sprig {

/// The actions of menu entries, performed by the menus' target.
inline constexpr platform::Selector templateActionSelector{"templateAction:"};
inline constexpr platform::Selector openSettingsActionSelector{"openSettingsAction:"};

/// Builds the menus: the enabled templates in the configuration's order, the first ones directly, the rest
/// under "More Templates", and an entry for the settings. Each menu is built anew from the configuration in
/// force.
///
/// Threads:   main thread.
/// Ownership: lives for one call; refers to the state it fills and the target it gives the entries.
class ContextMenu {
 public:
  ContextMenu(MenuState& state, const std::vector<std::string>& categoryOrder, platform::MenuTarget& target)
      : menuState(state), sectionOrder(categoryOrder), menuTarget(target) {}

  /// The menu of a kind, recording its target folder and the templates it offers. Null, with both left as
  /// they are, for kinds that don't exist, when menus are switched off, or without a target folder.
  std::unique_ptr<platform::Menu> menu(platform::FIMenuKind menuKind);

 private:
  std::unique_ptr<platform::Menu> templateMenu(const ConfigSnapshot& config);
  void populateSubmenu(platform::Menu& menu, const std::vector<TemplateReference>& templates,
                       const AppSettingsItem& settings);
  platform::MenuItem moreTemplatesItem(const std::vector<TemplateReference>& overflow, bool showCategories);
  platform::MenuItem createMenuItem(const TemplateReference& item);
  platform::MenuItem settingsItem();

  MenuState& menuState;
  const std::vector<std::string>& sectionOrder;
  platform::MenuTarget& menuTarget;
};

}  // namespace sprig
