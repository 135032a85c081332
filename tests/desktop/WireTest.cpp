// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <climits>

#include "support/uncheckedRows.h"
#include "wire/FileUri.h"
#include "wire/Rows.h"

namespace sprig::wire {
namespace {

using Type = Row::Type;

const std::vector<Row> menu = {
    {-1, Type::submenu, "", "Sprig", "sprig-doc-badge-plus-symbolic", "Sprig", true},
    {0, Type::item, "template:a", "R&D_notes\n日本 👋", "text-x-generic", "", true},
    {0, Type::submenu, "", "More Templates", "", "", true},
    {2, Type::submenu, "", "Notes & Documents", "", "", true},
    {3, Type::item, "template:b", "", "", "", false},
    {2, Type::submenu, "", "", "", "", true},
    {0, Type::separator, "", "", "", "", true},
    {-1, Type::item, "settings", "Sprig Settings…", "", "", true},
};

Row row(std::int32_t parent, Type type = Type::item, std::string title = {}) {
  Row result;
  result.parent = parent;
  result.type = type;
  result.title = std::move(title);
  return result;
}

std::vector<Row> chain(std::size_t levels) {
  std::vector<Row> rows;
  for (std::size_t level = 0; level < levels; ++level) {
    rows.push_back(row(static_cast<std::int32_t>(level) - 1, Type::submenu));
  }
  return rows;
}

std::vector<Row> large(std::size_t bytes) {
  const auto part = row(-1, Type::item, std::string(1000, 'x'));
  return std::vector<Row>(bytes / byteSize(part), part);
}

TEST(Rows, GetAcrossTheBusAsTheyAre) {
  for (const auto& rows :
       {menu, std::vector<Row>{}, chain(maxLevels), std::vector<Row>(maxRows), large(maxBytes)}) {
    const auto variant = rowsToVariant(rows);
    ASSERT_TRUE(variant) << variant.error();
    const auto back = rowsFromVariant(variant->get());
    ASSERT_TRUE(back) << back.error();
    EXPECT_EQ(*back, rows);
  }
}

TEST(Rows, OutOfOrderOrBoundsAreRefusedOnBothSides) {
  struct Case {
    std::vector<Row> rows;
    std::string fault;
  };
  const auto top = row(-1, Type::submenu);
  const std::string strayed = "parent is not a submenu that is open here";
  const Case cases[] = {
      {chain(maxLevels + 1), "row 8: more than 8 levels"},
      {std::vector<Row>(maxRows + 1), "more than 2000 rows"},
      {{row(0)}, "row 0: " + strayed},
      {{top, row(1)}, "row 1: " + strayed},
      {{top, row(INT_MAX)}, "row 1: " + strayed},
      {{top, row(INT_MIN)}, "row 1: " + strayed},
      {{top, row(-1), row(0)}, "row 2: " + strayed},
      {{row(-1), row(0)}, "row 1: " + strayed},
      {{row(-1, Type::separator), row(0)}, "row 1: " + strayed},
      {{top, row(0, Type::submenu), row(0), row(1)}, "row 3: " + strayed},
      {{row(-1, static_cast<Type>(3))}, "row 0: unknown type"},
      {{row(-1, Type::item, std::string(maxTextBytes + 1, 'x'))}, "row 0: a text of more than 1024 bytes"},
      {std::vector<Row>(1500, row(-1, Type::item, std::string(maxTextBytes, 'x'))),
       "more than 1048576 bytes"},
  };
  for (const auto& [rows, fault] : cases) {
    const auto sent = rowsToVariant(rows);
    ASSERT_FALSE(sent) << fault;
    EXPECT_EQ(sent.error(), fault);
    const auto received = rowsFromVariant(test::uncheckedRows(rows).get());
    ASSERT_FALSE(received) << fault;
    EXPECT_EQ(received.error(), fault);
  }
}

TEST(Rows, HoldOnlyTextThatTheBusCanCarry) {
  for (const auto& text : {std::string("\xFF"), std::string("a\0b", 3), std::string("\xED\xA0\x80")}) {
    for (auto field : {&Row::action, &Row::title, &Row::icon, &Row::description}) {
      Row bad;
      bad.*field = text;
      const auto variant = rowsToVariant({bad});
      ASSERT_FALSE(variant);
      EXPECT_EQ(variant.error(), "row 0: text is not UTF-8");
    }
  }
}

TEST(Rows, AreNotMadeFromAnythingElse) {
  for (const char* text : {"@a(iussssb) []", "'rows'", "(1, 2)", "@ay [1]", "@ay [0, 0, 0, 0, 255]"}) {
    const VariantPointer variant(g_variant_parse(nullptr, text, nullptr, nullptr, nullptr));
    EXPECT_FALSE(rowsFromVariant(variant.get())) << text;
  }
}

TEST(FileUri, NamesLocalPathsOnly) {
  const std::string longest(PATH_MAX - 2, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {"file:///", "/"},
      {"file:///home/ann/demo", "/home/ann/demo"},
      {"file:///a%20b/%E2%82%AC", "/a b/€"},
      {"file:///%FF%0A%25", "/\xFF\n%"},
      {"file:///a?b", "/a?b"},
      {"file:///" + longest, "/" + longest},
  };
  for (const auto& [uri, path] : cases) EXPECT_EQ(pathFromUri(uri), path) << uri;
  for (const auto& other : {"file:///x" + longest, std::string("file:///a%2Fb"), std::string("file:///a%00b"),
                            std::string("file:///a%zz"), std::string("file:///a#b"),
                            std::string("file://localhost/a"), std::string("file:/a"), std::string("/a"),
                            std::string(), std::string("sftp://host/a"), std::string("file:///a\0b", 11)}) {
    EXPECT_EQ(pathFromUri(other), std::nullopt) << other;
  }
}

TEST(FileUri, TellsWhatIsInAFolder) {
  for (const auto* path : {"/home/ann", "/home/ann/", "/home/ann/a", "/home/ann/..a"}) {
    EXPECT_TRUE(isInFolder(path, "/home/ann") && isInFolder(path, "/home/ann/") && isInFolder(path, "/"))
        << path;
  }
  for (const auto* path : {"/home/annabel", "/home", "/", "/home/ann/../bob", "/home/ann/.."}) {
    EXPECT_FALSE(isInFolder(path, "/home/ann")) << path;
  }
}

TEST(FileUri, ComesBackToThePathItWasMadeFrom) {
  std::string everyByte = "/";
  for (int byte = 1; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  for (const auto& path : {std::string("/"), std::string("/a b/c"), everyByte}) {
    const auto uri = uriFromPath(path);
    ASSERT_TRUE(uri);
    EXPECT_EQ(pathFromUri(*uri), path);
  }
  for (const auto& path : {std::string("a"), std::string(), std::string("/a\0b", 4)})
    EXPECT_FALSE(uriFromPath(path));
}

}  // namespace
}  // namespace sprig::wire
