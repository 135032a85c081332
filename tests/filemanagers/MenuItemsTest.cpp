// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "filemanagers/FakeExtension.h"
#include "filemanagers/client/MenuEntry.h"
#include "filemanagers/gtk3/themedIcon.h"
#include "filemanagers/thunar/ThunarMenus.h"

namespace sprig::filemanagers {
namespace {

using test::row;
using wire::Kind;
using wire::Row;
using Type = Row::Type;

/// A menu on one line: submenus in brackets, separators as dashes.
std::string drawn(const std::vector<MenuEntry>& entries) {
  std::string text;
  for (const auto& entry : entries) {
    if (!text.empty()) text += ' ';
    text += entry.type == MenuEntry::Type::separator ? "-" : entry.title;
    if (!entry.children.empty()) text += "[" + drawn(entry.children) + "]";
  }
  return text;
}

void collectNames(const std::vector<MenuEntry>& entries, std::vector<std::string>& names) {
  for (const auto& entry : entries) {
    names.push_back(entry.name);
    collectNames(entry.children, names);
  }
}

TEST(MenuEntries, StandAsTheRowsSayWithoutWhatShowsNothing) {
  const struct {
    const char* what;
    std::vector<Row> rows;
    const char* drawn;
  } cases[] = {
      {"nothing", {}, ""},
      {"a tree",
       {row(-1, Type::submenu, "Sprig"), row(0, Type::item, "a"), row(0, Type::submenu, "More"),
        row(2, Type::submenu, "Notes"), row(3, Type::item, "b"), row(2, Type::item, "c"),
        row(0, Type::separator), row(0, Type::item, "d")},
       "Sprig[a More[Notes[b] c] - d]"},
      {"separators at the ends and twice",
       {row(-1, Type::separator), row(-1, Type::item, "a"), row(-1, Type::separator),
        row(-1, Type::separator), row(-1, Type::item, "b"), row(-1, Type::separator)},
       "a - b"},
      {"submenus without entries",
       {row(-1, Type::submenu, "x"), row(-1, Type::submenu, "y"), row(1, Type::separator),
        row(-1, Type::item, "a")},
       "a"},
  };
  for (const auto& test : cases) EXPECT_EQ(drawn(*entriesFromRows(test.rows)), test.drawn) << test.what;
}

TEST(MenuEntries, HaveNoMnemonicsWhateverMarksThem) {
  MenuEntry entry;
  entry.title = "R&D_notes && __ 日本";
  EXPECT_EQ(escapeMnemonics(entry, '_'), "R&D__notes && ____ 日本");
  EXPECT_EQ(escapeMnemonics(entry, '&'), "R&&D_notes &&&& __ 日本");
  entry.title = std::string(50, 'a') + "_" + std::string(50, 'b');
  EXPECT_EQ(escapeMnemonics(entry, '_'), std::string(39, 'a') + "…" + std::string(20, 'b'))
      << "no wider than it need be";
  entry.title = "日e";
  for (int mark = 0; mark < 30'000; ++mark) entry.title += "\u0301";
  EXPECT_LT(escapeMnemonics(entry, '_').size(), 200U);
}

TEST(MenuEntries, HaveADocumentForAnIconThatTheThemeDoesNotHave) {
  const wire::ObjectPointer<GtkIconTheme> theme(gtk_icon_theme_new());
  const char* drawings = SPRIG_DRAWINGS;
  gtk_icon_theme_set_search_path(theme.get(), &drawings, 1);
  EXPECT_STREQ(themedIcon(*theme, "sprig-gearshape-symbolic"), "sprig-gearshape-symbolic");
  EXPECT_STREQ(themedIcon(*theme, "hammer"), "sprig-doc-text-symbolic");
}

TEST(MenuEntries, HaveNamesThatAreUniquePlainAndAlwaysTheSame) {
  const std::vector<Row> rows = {
      row(-1, Type::submenu, "Sprig"),
      row(0, Type::item, "a", "template:a/b"),
      row(0, Type::item, "a", "template:a_2fb"),
      row(0, Type::item, "a", "template:日"),
      row(0, Type::submenu, "Sprig"),
      row(4, Type::item, "b", "x"),
      row(0, Type::separator),
      row(0, Type::item, "c", "x"),
      row(0, Type::separator),
      row(0, Type::item, "d", "x__2"),
  };
  std::vector<std::string> names;
  collectNames(*entriesFromRows(rows), names);
  EXPECT_EQ(names.size(), rows.size());
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
  for (const auto& name : names) {
    EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_"),
              std::string::npos)
        << name;
  }
  std::vector<std::string> again;
  collectNames(*entriesFromRows(rows), again);
  EXPECT_EQ(again, names);
}

/// Thunar, as far as it holds menus.
class ThunarItemsTest : public testing::Test {
 protected:
  GList* open(const char* folder, void* window = nullptr) {
    return items.itemsFor({Kind::background, {folder}, {}}, window);
  }

  static void close(GList* list) { thunarx_menu_item_list_free(list); }

  /// Picks what lies in the submenu of the first item. Gives what the extension is told.
  std::string pick(GList* list, int index) {
    const auto calls = extension.calls("Activate");
    thunarx_menu_item_activate(child(list, index));
    EXPECT_TRUE(test::comesTrue([&] { return extension.calls("Activate") > calls; }));
    return extension.lastCall("Activate");
  }

  static ThunarxMenuItem* child(GList* list, int index) {
    ThunarxMenu* submenu = nullptr;
    g_object_get(list->data, "menu", &submenu, nullptr);
    GList* children = thunarx_menu_get_items(submenu);
    auto* item = static_cast<ThunarxMenuItem*>(g_list_nth_data(children, static_cast<guint>(index)));
    thunarx_menu_item_list_free(children);
    // Here the real one keeps its reference to the submenu.
    g_object_unref(submenu);
    return item;
  }

  /// Changes what the menu lists, and waits until that is known.
  void change(std::vector<Row> rows, const std::string& wanted) {
    extension.changeMenu(std::move(rows));
    ASSERT_TRUE(test::comesTrue(
        [&] { return drawn(*client->menu(Kind::background, "file:///home/ann")) == wanted; }));
  }

  test::PrivateBus bus;
  wire::ObjectPointer<GDBusConnection> connection = bus.connect();
  test::FakeExtension extension{bus,
                                {row(-1, Type::submenu, "Sprig"),
                                 row(0, Type::item, "Note", "note"),
                                 row(0, Type::separator),
                                 {0, Type::item, "", "No Templates Configured", "", "", false},
                                 row(0, Type::item, "Settings", "settings")}};
  std::shared_ptr<ExtensionClient> client = std::make_shared<ExtensionClient>(
      ExtensionClient::Settings{.kinds = {Kind::items, Kind::background}, .connection = connection.get()});
  MenuItems<ThunarMenus> items{client};
};

TEST_F(ThunarItemsTest, AnOpenMenuKeepsItsFolderWhileAnotherIsAskedFor) {
  auto* first = open("file:///home/ann/one");
  auto* second = open("file:///home/ann/two");
  EXPECT_EQ(pick(first, 0), "('note', 1, ['file:///home/ann/one'], {'title': <'Note'>})");
  EXPECT_EQ(pick(second, 0), "('note', 1, ['file:///home/ann/two'], {'title': <'Note'>})");
  close(first);
  close(second);
  auto* third = open("file:///home/ann/three");
  const bool showsDisabledItems = std::tuple(thunarx_major_version, thunarx_minor_version,
                                             thunarx_micro_version) >= std::tuple(4U, 19U, 3U);
  EXPECT_EQ(pick(third, showsDisabledItems ? 2 : 1),
            "('settings', 1, ['file:///home/ann/three'], {'title': <'Settings'>})")
      << "no separator, and a disabled item only where Thunar can draw it as one";
  close(third);
}

TEST_F(ThunarItemsTest, AnOpenMenuOutlivesItsSuccessorAndTheProvider) {
  auto* old = open("file:///home/ann/old");
  change({row(-1, Type::submenu, "Sprig"), row(0, Type::item, "New", "new")}, "Sprig[New]");
  auto* fresh = open("file:///home/ann/fresh");
  EXPECT_EQ(pick(old, 0), "('note', 1, ['file:///home/ann/old'], {'title': <'Note'>})");
  close(old);
  close(fresh);
}

TEST_F(ThunarItemsTest, AChangedMenuIsMadeOfTheItemsThatThereWere) {
  auto* list = open("file:///home/ann/demo");
  const auto* top = list->data;
  const auto* note = child(list, 0);
  close(list);
  change({row(-1, Type::submenu, "Sprig"), row(0, Type::item, "First", "first"),
          row(0, Type::item, "Renamed", "note")},
         "Sprig[First Renamed]");
  list = open("file:///home/ann/demo");
  EXPECT_EQ(list->data, top);
  EXPECT_EQ(child(list, 1), note);
  gchar* label = nullptr;
  g_object_get(child(list, 1), "label", &label, nullptr);
  EXPECT_STREQ(wire::TextPointer(label).get(), "Renamed");
  EXPECT_EQ(pick(list, 0), "('first', 1, ['file:///home/ann/demo'], {'title': <'First'>})");
  EXPECT_EQ(pick(list, 1), "('note', 1, ['file:///home/ann/demo'], {'title': <'Renamed'>})");
  close(list);
}

TEST_F(ThunarItemsTest, AWindowThatKeepsItsItemsGetsThemAgainAndNoOther) {
  const auto newWindow = [] {
    return wire::ObjectPointer<GObject>(static_cast<GObject*>(g_object_new(G_TYPE_OBJECT, nullptr)));
  };
  auto first = newWindow();
  const auto second = newWindow();
  std::vector<GList*> kept{open("file:///home/ann/one", first.get()),
                           open("file:///home/ann/two", second.get()),
                           open("file:///home/ann/three", first.get())};
  EXPECT_EQ(kept[0]->data, kept[2]->data);
  EXPECT_NE(kept[0]->data, kept[1]->data);
  EXPECT_EQ(pick(kept[1], 0), "('note', 1, ['file:///home/ann/two'], {'title': <'Note'>})");
  EXPECT_EQ(pick(kept[0], 0), "('note', 1, ['file:///home/ann/three'], {'title': <'Note'>})");
  first.reset();
  kept.push_back(open("file:///home/ann/four", newWindow().get()));
  EXPECT_EQ(kept[0]->data, kept[3]->data) << "the first window has gone";
  for (auto* list : kept) close(list);
}

}  // namespace
}  // namespace sprig::filemanagers
