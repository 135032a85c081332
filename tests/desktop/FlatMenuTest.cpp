// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/FlatMenu.h"

#include <gtest/gtest.h>

#include "finder/ContextMenu.h"
#include "ports/linux/SymbolIcons.h"

namespace sprig::desktop {
namespace {

using platform::Menu;
using platform::MenuItem;

MenuItem templateItem(const std::string& identifier, const std::string& title = "A") {
  auto item = MenuItem::titled(title);
  item.action = templateActionSelector;
  item.identifier = identifier;
  return item;
}

MenuItem submenu(const std::string& title, std::vector<MenuItem> items) {
  auto item = MenuItem::titled(title);
  item.submenu = std::make_unique<Menu>();
  item.submenu->title = title;
  item.submenu->items = std::move(items);
  return item;
}

/// Templates 0, 1, ... and what follows them.
template <typename... Items>
std::vector<MenuItem> templates(int count, Items... others) {
  std::vector<MenuItem> result;
  for (int number = 0; number < count; ++number) result.push_back(templateItem(std::to_string(number)));
  (result.push_back(std::move(others)), ...);
  return result;
}

template <typename... Items>
std::vector<MenuItem> list(Items... items) {
  return templates(0, std::move(items)...);
}

std::vector<std::string> actionsOf(const FlatMenu& menu) {
  std::vector<std::string> actions;
  for (const auto& row : menu.rows) actions.push_back(row.action);
  return actions;
}

TEST(FlatMenu, TellsActionsApart) {
  auto disabled = templateItem("off");
  disabled.isEnabled = false;
  auto settings = MenuItem::titled("Settings");
  settings.action = openSettingsActionSelector;
  const Menu menu{"", list(templateItem("a"), templateItem("a#2"), templateItem("a"), templateItem(""),
                           templateItem("\xFF"), templateItem(std::string("x\0y", 3)), std::move(disabled),
                           std::move(settings))};
  const auto rows = flattened(menu);
  EXPECT_EQ(actionsOf(rows),
            (std::vector<std::string>{"template:a", "template:a#2", "template:a#3",
                                      "template:", "template:\uFFFD", "template:x\uFFFDy", "", "settings"}));
  EXPECT_EQ(rows.entries.at("template:a#3"), &menu.items[2]);
  EXPECT_TRUE(wire::rowsToVariant(rows.rows));
}

MenuItem section(const std::string& name) {
  return submenu(name, list(templateItem(name + "1"), templateItem(name + "2")));
}

TEST(FlatMenu, LeavesOutTheLastTemplatesWhenTheBusHasNoRoom) {
  const Menu menu{"", list(submenu("Sprig", templates(1993, submenu("More", list(section("a"), section("b"))),
                                                      MenuItem::separator(), MenuItem::titled("Settings"))))};
  const auto rows = flattened(menu);
  EXPECT_EQ(rows.leftOut, 2U);  // all of "b", whose section goes with them
  ASSERT_EQ(rows.rows.size(), wire::maxRows);
  EXPECT_EQ(rows.rows[1996].action, "template:a1");
  EXPECT_EQ(rows.rows[1996].parent, 1995);
  EXPECT_EQ(rows.rows.back().title, "Settings");
  EXPECT_TRUE(wire::rowsToVariant(rows.rows));
}

TEST(FlatMenu, LeavesOutTheEndHoweverItIsGrouped) {
  std::vector<MenuItem> sections;
  for (int number = 0; number < 2500; ++number) {
    const auto name = std::to_string(number);
    sections.push_back(submenu(name, list(templateItem(name))));
  }
  const Menu menu{"", list(templateItem("a"), MenuItem::separator(), submenu("More", std::move(sections)),
                           MenuItem::separator(), MenuItem::titled("Settings"))};
  const auto rows = flattened(menu);
  EXPECT_EQ(rows.leftOut, 1503U) << "two rows each";
  EXPECT_EQ(rows.rows.back().title, "Settings");
  EXPECT_TRUE(wire::rowsToVariant(rows.rows));

  std::vector<MenuItem> wide;
  for (int number = 0; number < 1990; ++number) wide.push_back(templateItem(std::string(1000, 'x')));
  const Menu bytes{"", list(templateItem("a"), MenuItem::separator(), submenu("More", std::move(wide)),
                            MenuItem::separator(), templateItem("b"))};
  EXPECT_GT(flattened(bytes).rows.size(), 900U);
}

TEST(FlatMenu, MergesSeparatorsThatHaveLostWhatTheySeparated) {
  auto entries = templates(1997, MenuItem::separator(), submenu("More", list(templateItem("x"))),
                           MenuItem::separator(), MenuItem::titled("Settings"));
  const auto rows = flattened({"", std::move(entries)}).rows;
  ASSERT_EQ(rows.size(), 1999U);
  EXPECT_EQ(rows[1996].action, "template:1996");
  EXPECT_EQ(rows[1997].type, wire::Row::Type::separator);
}

TEST(FlatMenu, CutsWhatIsTooLongForTheBus) {
  const std::string name(2'000'000, 'x');
  const Menu menu{"", list(templateItem("a"), templateItem(name, name), templateItem(name, name),
                           submenu(name, list(templateItem("c"))))};
  const auto rows = flattened(menu);
  const auto cut = "template:" + std::string(160, 'x') + "…" + std::string(85, 'x');
  EXPECT_EQ(actionsOf(rows), (std::vector<std::string>{"template:a", cut, cut + "#2", "", "template:c"}));
  EXPECT_TRUE(wire::rowsToVariant(rows.rows));
}

TEST(SymbolIcons, AreOwnDrawingsOrNamesOfTheTheme) {
  const std::pair<const char*, const char*> known[] = {
      {"doc.text", "sprig-doc-text-symbolic"},
      {"chevron.left.forwardslash.chevron.right", "sprig-chevron-left-forwardslash-chevron-right-symbolic"},
      {"doc.richtext", "x-office-document-symbolic"},
      {"x-office-2", "x-office-2"},
  };
  for (const auto& [symbol, icon] : known) EXPECT_EQ(ports::iconName(symbol), icon);
  for (const auto* unknown : {"doc.unknown", "", "Terminal", "../secret", "/etc/icon.png", "a b"}) {
    EXPECT_EQ(ports::iconName(unknown), std::nullopt) << unknown;
  }
}

}  // namespace
}  // namespace sprig::desktop
