// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigDocument.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "config/ConfigDecoder.h"

namespace sprig {
namespace {

/// A template in one line, its keys in no usual order and with one that is unknown.
std::string oneLine(const std::string& id) {
  return R"({"name":"\u004e)" + id + R"(", "id":")" + id +
         R"(","extension" : ".x","filenamePattern":"p","x":[1,{}],)" +
         R"("content":"c","icon":"s","category":"k","enabled":true,"favorite":false,"requiresInput":true,"isBuiltin":false})";
}

/// The same in many lines, indented by tabs, with one key twice.
std::string manyLines(const std::string& id) {
  return "{\r\n\t\t\t\"id\": \"" + id +
         "\",\r\n\t\t\t\"name\": \"first\", \"name\": \"last\",\r\n\t\t\t\"extension\": \".x\", "
         "\"filenamePattern\": \"p\", "
         "\"content\": \"c\",\r\n\t\t\t\"contentBase64\": \"eA==\", \"icon\": \"s\", \"category\": \"k\", "
         "\"enabled\": "
         "true, \"favorite\": false,\r\n\t\t\t\"requiresInput\": true, \"isBuiltin\": "
         "false,\r\n\t\t\t\"scope\": "
         "{\"projectTypes\": [\"web\"], \"y\": 1}\r\n\t\t}";
}

const std::string compact =
    R"({"version":1,"settings":{},"templates":[)" + oneLine("a") + "," + oneLine("b") + "]}";
const std::string spacious =
    "\xEF\xBB\xBF\n{\r\n\t\"version\": 1 ,\r\n\t\"$schema\": \"s\",\r\n\t\"settings\": {\"showInFinder\": "
    "null, \"z\": 7},\r\n\t\"templates\": [\r\n\t\t" +
    manyLines("a") + ",\r\n\t\t" + manyLines("b") + "\r\n\t]\r\n}\r\n";
const std::string empty = "{\n  \"version\": 1, \"settings\": { },\n  \"templates\": []\n}";

std::string replaced(std::string text, const std::string& old, const std::string& wanted) {
  const auto found = text.find(old);
  EXPECT_NE(found, std::string::npos) << old;
  return text.replace(found, old.size(), wanted);
}

TEST(ConfigDocument, ChangesOnlyTheBytesOfAnEdit) {
  const auto mixed = replaced(empty, "[]", "[\n    " + oneLine("a") + "\n  ]");
  const auto three = replaced(compact, oneLine("b") + "]", oneLine("b") + "," + oneLine("c") + "]");
  struct Row {
    std::string before;
    std::function<void(ConfigDocument&)> edit;
    std::string after;
  };
  const auto change = [](std::size_t index, auto what) {
    return [=](ConfigDocument& document) {
      auto item = document.config().templates[index];
      what(item);
      document.setTemplate(index, item);
    };
  };
  const auto settings = [](auto what) {
    return [=](ConfigDocument& document) {
      auto wanted = document.config().settings;
      what(wanted);
      document.setSettings(wanted);
    };
  };
  const std::string inserted =
      R"({"id": "b", "name": "Nb", "extension": ".x", "filenamePattern": "p", "content": "c", )"
      R"("icon": "s", "category": "k", "enabled": true, "favorite": false, )"
      R"("requiresInput": true, "isBuiltin": false})";
  const Row rows[] = {
      {compact, [](ConfigDocument& it) { it.setTemplate(1, it.config().templates[1]); }, compact},
      {compact, change(0, [](TemplateItem& it) { it.name = "ü\"\n"; }),
       replaced(compact, R"("\u004ea")", R"("ü\"\n")")},
      {compact, change(1, [](TemplateItem& it) { it.contentBase64 = "eA=="; }),
       replaced(compact, "false}]", R"(false,"contentBase64": "eA=="}])")},
      {spacious, change(0, [](TemplateItem& it) { it.name = "new"; }),
       replaced(spacious, R"("last")", R"("new")")},
      {spacious, change(0, [](TemplateItem& it) { it.contentBase64.reset(); }),
       replaced(spacious, R"("contentBase64": "eA==", )", "")},
      {spacious, change(0, [](TemplateItem& it) { it.scope->projectTypes.reset(); }),
       replaced(spacious, R"("projectTypes": ["web"], )", "")},
      {spacious, change(1, [](TemplateItem& it) { it.scope.reset(); }),
       spacious.substr(0, spacious.rfind(",\r\n\t\t\t\"scope\"")) + "\r\n\t\t}\r\n\t]\r\n}\r\n"},
      {spacious, settings([](AppSettingsItem& it) { it.showInFinder = false; }),
       replaced(spacious, "null", "false")},
      {empty, settings([](AppSettingsItem& it) { it.maxVisibleTemplates = -1; }),
       replaced(empty, "{ }", "{\n    \"maxVisibleTemplates\": -1\n  }")},
      {mixed, change(0, [](TemplateItem& it) { it.scope = TemplateScope{{{"web"}}}; }),
       replaced(mixed, "false}\n",
                R"(false,"scope": {"projectTypes": ["web"]}})"
                "\n")},
      {mixed, [](ConfigDocument& it) { it.removeTemplate(0); }, empty},
      {three, [](ConfigDocument& it) { it.moveTemplate(2, 0); },
       replaced(compact, "[", "[" + oneLine("c") + ",")},
      {three, [](ConfigDocument& it) { it.moveTemplate(0, 2); },
       replaced(replaced(compact, oneLine("a") + ",", ""), "]}",
                "," + oneLine("c") + "," + oneLine("a") + "]}")},
      {compact, [](ConfigDocument& it) { it.removeTemplate(0); }, replaced(compact, oneLine("a") + ",", "")},
      {spacious, [](ConfigDocument& it) { it.removeTemplate(1); },
       replaced(spacious, ",\r\n\t\t" + manyLines("b"), "")},
      {spacious, [](ConfigDocument& it) { it.moveTemplate(0, 1); },
       replaced(spacious, manyLines("a") + ",\r\n\t\t" + manyLines("b"),
                manyLines("b") + ",\r\n\t\t" + manyLines("a"))},
      {compact, [](ConfigDocument& it) { it.insertTemplate(0, decodeConfig(compact).templates[1]); },
       replaced(compact, "[{", "[" + inserted + ",{")},
      {compact, [](ConfigDocument& it) { it.insertTemplate(2, decodeConfig(compact).templates[1]); },
       replaced(compact, "false}]", "false}," + inserted + "]")},
      {compact, [](ConfigDocument& it) { it.setText(1, it.textOf(0)); },
       replaced(compact, oneLine("b"), oneLine("a"))},
      {compact, [](ConfigDocument& it) { it.setOtherText(1, "note", "n"); },
       replaced(compact, "false}]", R"(false,"note": "n"}])")},
      {spacious, [](ConfigDocument& it) { it.setOtherText(0, "note", "n"); },
       replaced(spacious, "\"y\": 1}", "\"y\": 1},\r\n\t\t\t\"note\": \"n\"")},
      {empty, [](ConfigDocument& it) { it.insertTemplate(0, decodeConfig(compact).templates[0]); },
       replaced(empty, "[]",
                "[\n    {\n      \"id\": \"a\",\n      \"name\": \"Na\",\n      \"extension\": \".x\",\n"
                "      \"filenamePattern\": \"p\",\n      \"content\": \"c\",\n      \"icon\": \"s\",\n"
                "      \"category\": \"k\",\n      \"enabled\": true,\n      \"favorite\": false,\n"
                "      \"requiresInput\": true,\n      \"isBuiltin\": false\n    }\n  ]")},
  };
  for (const auto& row : rows) {
    ConfigDocument document(row.before);
    row.edit(document);
    EXPECT_EQ(document.text(), row.after);
  }
}

/// A template of any few characters, with the members that may be absent or not.
TemplateItem anyTemplate(const std::function<std::size_t(std::size_t)>& below) {
  TemplateItem item;
  for (auto* text : {&item.id, &item.name, &item.content}) *text = std::string(below(4), "\"\\ n"[below(4)]);
  item.enabled = below(2) == 0;
  if (below(2) == 0) item.contentBase64 = item.name;
  if (below(2) == 0) item.scope.emplace();
  if (item.scope && below(2) == 0) item.scope->projectTypes = {item.id};
  return item;
}

TEST(ConfigDocument, HoldsAfterAnyEditsWhatItsTextHolds) {
  std::mt19937 random{7};
  const auto below = [&](std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
  };
  for (const auto& text : {compact, spacious, empty}) {
    ConfigDocument document(text);
    for (int round = 0; round < 300; ++round) {
      const auto count = document.config().templates.size();
      const auto item = anyTemplate(below);
      const auto at = below(count + 1);
      const auto edit = below(4);
      if (edit == 0 || at == count) {
        document.insertTemplate(at, item);
      } else if (edit == 1) {
        document.removeTemplate(at);
      } else if (edit == 2) {
        document.moveTemplate(at, below(count));
      } else {
        document.setTemplate(at, item);
        document.setOtherText(at, "note", item.name);
        document.setSettings({.showInFinder = item.enabled, .defaultBehavior = item.contentBase64});
      }
      ASSERT_EQ(decodeConfig(document.text()), document.config()) << document.text();
      for (std::size_t index = 0; index < document.config().templates.size(); ++index) {
        ASSERT_EQ(decodeTemplate(document.textOf(index)), document.config().templates[index]);
      }
    }
    EXPECT_EQ(document.text().find("$schema") == std::string::npos,
              text.find("$schema") == std::string::npos);
  }
}

TEST(ConfigDocument, LaysOutALateMemberAsIfItHadBeenThere) {
  ConfigDocument late(empty);
  ConfigDocument whole(empty);
  auto item = decodeConfig(compact).templates[0];
  late.insertTemplate(0, item);
  item.scope = TemplateScope{};
  late.setTemplate(0, item);
  item.scope = TemplateScope{{{"web"}}};
  late.setTemplate(0, item);
  whole.insertTemplate(0, item);
  EXPECT_EQ(late.text(), whole.text());
  whole.insertTemplate(1, item);
  EXPECT_NE(whole.text().find("\n    },\n    {\n      \"id\": \"a\",\n      \"name\""), std::string::npos);
}

TEST(ConfigDocument, KnowsTemplatesWithOneIdByTheirOrder) {
  ConfigDocument document(compact);
  document.insertText(2, document.textOf(0));
  document.setOtherText(2, "note", "n\"");
  const TemplateKey second{document.config().templates[0].id, 1};
  EXPECT_EQ(document.find(document.keyOf(0)), 0U);
  EXPECT_EQ(document.find(second), 2U);
  EXPECT_EQ(document.keyOf(2).occurrence, 1U);
  EXPECT_EQ(document.find({second.id, 2}), std::nullopt);
  EXPECT_EQ(document.otherText(2, "note"), "n\"");
  EXPECT_EQ(document.otherText(2, "enabled"), std::nullopt) << "no text";
  EXPECT_EQ(document.otherText(0, "note"), std::nullopt);
}

TEST(ConfigDocument, RefusesWhatIsNoConfigurationAndStaysAsItWas) {
  EXPECT_THROW(ConfigDocument("{}"), DecodingError);
  ConfigDocument document(compact);
  auto item = document.config().templates[0];
  item.name = "\xFF";
  EXPECT_THROW(document.setTemplate(0, item), DecodingError);
  EXPECT_THROW(document.insertTemplate(0, item), DecodingError);
  EXPECT_THROW(document.setOtherText(0, "note", "\xFF"), DecodingError);
  EXPECT_THROW(document.insertText(1, oneLine("c") + "," + oneLine("d")), DecodingError);
  const std::string deep(maximumNesting - 2, '[');
  EXPECT_THROW(document.insertText(1, replaced(oneLine("c"), "{}", deep + std::string(deep.size(), ']'))),
               DecodingError);
  EXPECT_EQ(document.text(), compact);
}

}  // namespace
}  // namespace sprig
