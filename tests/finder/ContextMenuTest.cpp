// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "app/FinderSync.h"
#include "config/ConfigEncoder.h"
#include "config/ConfigManager.h"
#include "finder/ContextMenu.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using platform::FileURL;
using platform::FIMenuKind;
using platform::Menu;
using platform::MenuItem;
using Lines = std::vector<std::string>;

constexpr auto forItems = FIMenuKind::contextualMenuForItems;
constexpr auto forContainer = FIMenuKind::contextualMenuForContainer;
constexpr auto forSidebar = FIMenuKind::contextualMenuForSidebar;
constexpr auto forToolbar = FIMenuKind::toolbarItemMenu;

/// A menu as text: titles one a line, two spaces deeper for each submenu.
std::string outline(const Menu& menu, const std::string& indent = "") {
  std::string text;
  for (const auto& item : menu.items) {
    text += indent + (item.kind == MenuItem::Kind::separator ? "---" : item.title) +
            (item.isEnabled ? "" : " (disabled)") + "\n";
    if (item.submenu) {
      EXPECT_EQ(item.submenu->title, item.title);
      text += outline(*item.submenu, indent + "  ");
    }
  }
  return text;
}

struct Menus : testing::Test {
  test::TestPlatform platform;
  FileURL folder = platform.makeFolder("Projects");
  FinderSync finder;

  Menus() { platform.controller.targeted = folder; }

  /// Puts templates T1, T2, ... of these categories in force.
  void configure(const std::vector<std::string>& categories, const AppSettingsItem& settings = {}) {
    AppConfigItem config;
    config.settings = settings;
    for (std::size_t number = 1; number <= categories.size(); ++number) {
      auto& item = config.templates.emplace_back();
      item.id = "t" + std::to_string(number);
      item.name = "T" + std::to_string(number);
      item.icon = "icon" + std::to_string(number);
      item.category = categories[number - 1];
      item.enabled = item.category != "disabled";
    }
    platform.writeConfig(encodeConfig(config));
    ConfigManager::shared().reload();
    platform.takeLog();
  }

  std::string menuText(FIMenuKind kind = forToolbar) {
    const auto menu = finder.menu(kind);
    return menu ? outline(*menu) : "none";
  }

  std::string log() {
    std::string text;
    for (const auto& line : platform.takeLog()) text += line + "\n";
    return text;
  }
};

TEST_F(Menus, HaveSectionsForWhatDoesNotFit) {
  std::vector<std::string> categories(10, "notes");
  configure(categories);
  const std::string ten = "T1\nT2\nT3\nT4\nT5\nT6\nT7\nT8\nT9\nT10\n";
  EXPECT_EQ(menuText(), ten + "---\nSprig Settings…\n");
  categories.insert(categories.end(), {"recipes", "finance"});
  configure(categories);
  EXPECT_EQ(menuText(), ten +
                            "---\nMore Templates\n"
                            "  Finance & Operations\n    T12\n  Recipes\n    T11\n---\nSprig Settings…\n");
  configure(categories, {.showCategories = false});
  EXPECT_EQ(menuText(), ten + "---\nMore Templates\n  T11\n  T12\n---\nSprig Settings…\n");
}

TEST_F(Menus, ShowAsManyTemplatesAsTheSettingsSay) {
  const std::vector<std::string> categories{"notes", "notes", "notes"};
  configure(categories, {.maxVisibleTemplates = 0});
  EXPECT_EQ(menuText(),
            "---\nMore Templates\n  Notes & Documents\n    T1\n    T2\n    T3\n---\nSprig Settings…\n");
  for (const std::int64_t many : {std::int64_t{3}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::max(),
                                  std::numeric_limits<std::int64_t>::min()}) {
    configure(categories, {.maxVisibleTemplates = many});
    EXPECT_EQ(menuText(), "T1\nT2\nT3\n---\nSprig Settings…\n") << many;
  }
  configure(std::vector<std::string>(11, "notes"), {.showCategories = false, .maxVisibleTemplates = -1});
  EXPECT_TRUE(menuText().ends_with("T10\n---\nMore Templates\n  T11\n---\nSprig Settings…\n"));
}

TEST_F(Menus, OfferEnabledTemplatesInTheOrderOfTheDocumentOnly) {
  configure({"notes", "disabled", "python"}, {.showFavoritesFirst = true, .projectDetection = true});
  EXPECT_EQ(menuText(), "T1\nT3\n---\nSprig Settings…\n");
  configure({"disabled"});
  EXPECT_EQ(menuText(), "No Templates Configured (disabled)\n---\nSprig Settings…\n");
}

TEST_F(Menus, AreWrappedExceptInTheToolbar) {
  configure({"notes"});
  for (const auto kind : {forItems, forContainer, forSidebar}) {
    EXPECT_EQ(menuText(kind), "Sprig\n  T1\n  ---\n  Sprig Settings…\n");
    EXPECT_EQ(finder.menu(kind)->title, "Sprig");
  }
  EXPECT_EQ(finder.menu(forToolbar)->title, "Sprig");
  EXPECT_EQ(menuText(forToolbar), "T1\n---\nSprig Settings…\n");
}

/// An entry as text: what it does for which template, and its image.
std::string details(const MenuItem& item) {
  std::string text(item.action.name);
  if (item.identifier) text += " " + *item.identifier;
  if (!item.image) return text;
  EXPECT_EQ(item.image->configuration, (platform::SymbolConfiguration{13, platform::FontWeight::regular}));
  EXPECT_EQ(item.image->rendering, platform::ImageRendering::asTemplate);
  return text + "; " + item.image->symbolName + " (" + item.image->accessibilityDescription + ")";
}

TEST_F(Menus, GiveEntriesTheirActionsAndImages) {
  configure({"notes", "python", "go"}, {.maxVisibleTemplates = 1});
  platform.images.missing = {"icon2", "icon3", "gearshape"};
  const auto root = finder.menu(forContainer);
  const auto& items = root->items[0].submenu->items;
  EXPECT_EQ(details(root->items[0]), "; doc.badge.plus (Sprig)");
  EXPECT_EQ(details(items[0]), "templateAction: t1; icon1 (T1)");
  const auto& more = items[2];
  EXPECT_EQ(details(more), "; ellipsis.circle (More Templates)");
  const auto& section = more.submenu->items[0];
  EXPECT_EQ(details(section), "");
  EXPECT_EQ(details(section.submenu->items[0]), "templateAction: t2; doc.text (T2)");
  EXPECT_EQ(details(items[4]), "openSettingsAction:");
  platform.images.missing.clear();
  EXPECT_EQ(details(finder.menu(forToolbar)->items.back()), "openSettingsAction:; gearshape (Settings)");
  EXPECT_TRUE(items[0].target == &finder && items[4].target == &finder && items[0].keyEquivalent.empty());
}

TEST_F(Menus, AreNotOfferedWhenSwitchedOffOrOfUnknownKind) {
  configure({"notes"}, {.showInFinder = false});
  for (const auto kind : {forItems, forContainer, forSidebar, forToolbar}) EXPECT_EQ(menuText(kind), "none");
  EXPECT_EQ(log().substr(0, 50), "menu(for: 0) requested\nshowInFinder is false\nmenu(");
  configure({"notes"}, {.showInFinder = true});
  EXPECT_EQ(menuText(FIMenuKind{7}), "none");
  EXPECT_EQ(log(), "menu(for: 7) requested\nmenuKind 7 ignored\n");
  platform.controller.targeted.reset();
  platform.users.home.reset();
  EXPECT_EQ(menuText(), "none");
  EXPECT_EQ(platform.systemLog.takeLines(),
            (Lines{"[SprigFinder] menu(for: 3) requested",
                   "[SprigFinder] targetFolderURL is nil, cannot build menu"}));
}

TEST_F(Menus, AreMadeForAFolder) {
  configure({"notes"});
  const auto file = platform.makeFile("Projects/a/b.txt");
  const auto inside = file.deletingLastPathComponent();
  const auto desktop = platform.users.home->appendingPath("Desktop");
  using Selection = std::optional<std::vector<FileURL>>;
  struct Row {
    FIMenuKind kind;
    Selection selected;
    std::optional<FileURL> targeted;
    FileURL folder;
  };
  for (const auto& row : {
           Row{forItems, Selection{{file, folder}}, folder, inside},
           Row{forItems, Selection{{inside}}, {}, inside},
           Row{forSidebar, Selection{{inside.appendingPath("gone")}}, {}, inside},
           Row{forItems, Selection{std::vector<FileURL>{}}, folder, folder},
           Row{forSidebar, {}, {}, desktop},
           Row{forContainer, Selection{{inside}}, folder, folder},
           Row{forContainer, Selection{{inside}}, {}, desktop},
           Row{forToolbar, Selection{{inside}}, folder, folder},
       }) {
    platform.controller.selected = row.selected;
    platform.controller.targeted = row.targeted;
    EXPECT_NE(menuText(row.kind), "none");
    const auto kind = std::to_string(static_cast<unsigned long>(row.kind));
    EXPECT_EQ(log(),
              "menu(for: " + kind + ") requested\nbuilding menu for folder: " + row.folder.path() + "\n");
  }
}

}  // namespace
}  // namespace sprig
