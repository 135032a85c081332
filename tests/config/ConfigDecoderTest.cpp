// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "config/BuiltinTemplates.h"
#include "config/ConfigEncoder.h"
#include "config/JsonIndex.h"
#include "support/TemporaryFolder.h"

namespace sprig {
namespace {

/// A template with further members, which take the place of those with the same key.
std::string templateWith(const std::string& members = "") {
  return R"({"id":"i","name":"n","extension":".x","filenamePattern":"p","content":"c","icon":"s","category":"k",)"
         R"("enabled":true,"favorite":false,"requiresInput":true,"isBuiltin":false)" +
         (members.empty() ? "" : "," + members) + "}";
}

std::string documentWith(const std::string& settings, const std::string& templates) {
  return R"({"version":1,"settings":)" + settings + R"(,"templates":[)" + templates + "]}";
}

std::string errorOf(const std::string& document) {
  try {
    static_cast<void>(decodeConfig(document));
  } catch (const DecodingError& error) {
    return error.what();
  }
  return "no error";
}

TEST(ConfigDecoder, KeepsAbsentApartFromEmpty) {
  const auto config = decodeConfig(documentWith(
      R"({"launchAtLogin":null,"maxVisibleTemplates":-9223372036854775808,"defaultBehavior":"","other":[{}]})",
      templateWith() + "," + templateWith(R"("scope":null)") + "," + templateWith(R"("scope":{})") + "," +
          templateWith(R"("scope":{"projectTypes":[],"x":1},"contentBase64":"")")));
  EXPECT_EQ(config.settings.launchAtLogin, std::nullopt);
  EXPECT_EQ(config.settings.showInFinder, std::nullopt);
  EXPECT_EQ(config.settings.defaultBehavior, "");
  EXPECT_EQ(config.settings.maxVisibleTemplates, std::numeric_limits<std::int64_t>::min());
  const auto& templates = config.templates;
  EXPECT_EQ(templates[0], templates[1]);
  EXPECT_EQ(templates[0].scope, std::nullopt);
  EXPECT_EQ(templates[2].scope, TemplateScope{});
  EXPECT_EQ(templates[3].scope, TemplateScope{std::vector<std::string>{}});
  EXPECT_EQ(templates[3].contentBase64, "");
  EXPECT_EQ(templates[0].extensionName, ".x");
}

TEST(ConfigDecoder, NamesPlacePathAndTypeOfAWrongValue) {
  struct Row {
    std::string document;
    std::string error;
  };
  for (const auto& row : {
           Row{"[]", "line 1, column 1: the document: expected an object, found a list"},
           Row{R"({"version":"1","settings":{},"templates":[]})",
               "line 1, column 12: version: expected an integer, found a string"},
           Row{R"({"version":1,"settings":null,"templates":[]})",
               "line 1, column 25: settings: expected an object, found null"},
           Row{R"({"version":1,"settings":{},"templates":{}})",
               "line 1, column 40: templates: expected a list, found an object"},
           Row{documentWith(R"({"maxVisibleTemplates":"10"})", ""),
               "line 1, column 48: settings.maxVisibleTemplates: expected an integer, found a string"},
           Row{documentWith("{}", templateWith() + "," + templateWith(R"("enabled":1)")),
               "line 1, column 394: templates[1].enabled: expected true or false, found a number"},
           Row{documentWith("{}", R"({"id":"i","name":"n"})"),
               "line 1, column 41: templates[0].extension: missing"},
           Row{documentWith("{}", templateWith(R"("name":null)")),
               "line 1, column 219: templates[0].name: expected a string, found null"},
           Row{documentWith("{}", "true"), "line 1, column 41: templates[0]: expected an object, found true"},
           Row{documentWith("{}", templateWith(R"("scope":{"projectTypes":["a",2]})")),
               "line 1, column 241: templates[0].scope.projectTypes[1]: expected a string, found a number"},
           // The first failure in the order of the fields wins, whatever the order in the document.
           Row{R"({"templates":[1],"settings":{"showInFinder":1},"version":1})",
               "line 1, column 45: settings.showInFinder: expected true or false, found a number"},
           Row{documentWith("{}", R"({"isBuiltin":1,"name":2})"),
               "line 1, column 41: templates[0].id: missing"},
       }) {
    EXPECT_EQ(errorOf(row.document), row.error);
  }
}

TEST(ConfigDecoder, TakesOnlyWholeNumbersOf64Bits) {
  const auto versionIs = [](const std::string& number) {
    return R"({"version":)" + number + R"(,"settings":{},"templates":[]})";
  };
  EXPECT_EQ(decodeConfig(versionIs("9223372036854775807")).version, 9223372036854775807);
  EXPECT_EQ(decodeConfig(versionIs("-0")).version, 0);
  for (const char* bad : {"9223372036854775808", "18446744073709551616", "-9223372036854775809", "1.0", "1e0",
                          "1e400", "0.5"}) {
    EXPECT_TRUE(errorOf(versionIs(bad)).starts_with("line 1, column 12: version: expected an integer"))
        << errorOf(versionIs(bad));
  }
}

TEST(ConfigDecoder, NamesLineAndColumnOfWhatIsNotJSON) {
  struct Row {
    std::string document;
    std::string error;
  };
  using namespace std::string_literals;
  for (const auto& row : {
           Row{"", "line 1, column 1: the document ends too early"},
           Row{"{\n  \"version\": 1,\n", "line 3, column 1: the document ends too early"},
           Row{"{\n \"name\": \"caf\u00E9\" oops", "line 2, column 17: syntax error at \"o\""},
           Row{"{\"a\":01}", "line 1, column 7: syntax error at \"1\""},
           Row{"{\"a\":- }", "line 1, column 7: syntax error at \" \""},
           Row{"{} {}", "line 1, column 4: expected the end of the document, found \"{\""},
           Row{"{}~", "line 1, column 3: expected the end of the document, found \"~\""},
           Row{"{}\x7F", "line 1, column 3: expected the end of the document, found byte 0x7F"},
           Row{"{\"a\"\0}"s, "line 1, column 5: syntax error at byte 0x00"},
       }) {
    EXPECT_EQ(errorOf(row.document), row.error);
  }
  for (const auto& wide : {"\xFF\xFE\x7B\x11"s, "\xFE\xFF\x11\x7B"s, "{\0}\0"s}) {
    EXPECT_EQ(errorOf(wide),
              "line 1, column 1: the document is not UTF-8 text (it looks like UTF-16 or UTF-32)");
  }
  for (const auto& bad : {"{'a':1}"s, "{\"a\":NaN}"s, "{\"a\":\"\\ud800\"}"s, "{\"a\":\"\\udc00\"}"s,
                          "{\"a\":\"\xED\xA0\x80\"}"s, "{\"a\":\"\xFF\"}"s, "{\"a\":\"\n\"}"s, "// c\n{}"s,
                          "{\"a\":1,}"s, "{\"a\":\"\\x\"}"s}) {
    EXPECT_TRUE(errorOf(bad).starts_with("line ")) << bad << ": " << errorOf(bad);
  }
}

TEST(ConfigDecoder, SurvivesHostileDocuments) {
  using namespace std::string_literals;
  const auto deep = R"({"version":1,"settings":{},"templates":[],"x":)" + std::string(1'000'000, '[');
  EXPECT_EQ(errorOf(deep), "line 1, column 174: nested more than 128 levels deep");
  EXPECT_EQ(errorOf(documentWith("{}", "") + "\xEF\xBB\xBF"),
            "line 1, column 43: expected the end of the document, found byte 0xEF");
  EXPECT_EQ(decodeConfig("\xEF\xBB\xBF" + documentWith("{}", "") + " \t\r\n\n").version, 1)
      << "a byte-order mark is skipped, and white space";
  EXPECT_EQ(decodeConfig(R"({"version":1,"version":2,"settings":{},"templates":[]})").version, 2);
  const auto escaped = decodeConfig(documentWith("{}", templateWith(R"("content":"a\u0000\uD83D\uDE00")")));
  EXPECT_EQ(escaped.templates[0].content, "a\0\U0001F600"s);
}

TEST(ConfigEncoder, WritesWhatTheDecoderReads) {
  using namespace std::string_literals;
  AppConfigItem config = defaultFallbackConfig();
  EXPECT_EQ(decodeConfig(encodeConfig(config)), config);
  config.version = std::numeric_limits<std::int64_t>::min();
  config.settings = {};
  config.templates[0].content = "quote \" slash \\ nul \0 \x1F tab\t\u2028 \U0001F600"s;
  config.templates[0].contentBase64 = "";
  config.templates[1].scope = TemplateScope{};
  config.templates[2].scope = TemplateScope{std::vector<std::string>{}};
  EXPECT_EQ(decodeConfig(encodeConfig(config)), config);
  config.templates.clear();
  EXPECT_EQ(encodeConfig(config),
            "{\n  \"version\": -9223372036854775808,\n  \"settings\": {},\n  \"templates\": []\n}\n");
}

TEST(ConfigEncoder, WritesKeysInTheOrderOfTheFields) {
  TemplateItem item;
  item.contentBase64 = "eA==";
  item.scope = TemplateScope{std::vector<std::string>{"web", "go"}};
  const AppSettingsItem settings{true, false, "x", true, false, 3, true, false, true};
  std::istringstream keys(
      "version settings launchAtLogin showInFinder defaultBehavior showFavoritesFirst showCategories "
      "maxVisibleTemplates projectDetection notificationsEnabled anonymousAnalytics templates id name "
      "extension filenamePattern content contentBase64 icon category enabled favorite requiresInput "
      "isBuiltin scope projectTypes");
  const auto document = encodeConfig({1, settings, {item}});
  std::size_t position = 0;
  for (std::string key; keys >> key;) {
    position = document.find("\"" + key + "\": ", position);
    ASSERT_NE(position, std::string::npos) << key << " in\n" << document;
  }
}

TEST(BuiltinTemplates, HaveTheTextsThatUsersRelyOn) {
  EXPECT_EQ(encodeConfig(defaultFallbackConfig()),
            test::readFile(platform::FileURL(SPRIG_GOLDEN "/builtin-templates.json")));
}

TEST(JsonIndex, FindsTheSamePlacesAsASearch) {
  auto text = "\xEF\xBB\xBF\n\n" + encodeConfig(defaultFallbackConfig());
  for (const char lineBreak : {'\n', ' '}) {
    std::replace(text.begin(), text.end(), '\n', lineBreak);
    const JsonIndex index(text);
    for (std::size_t number = 0; number < 12; ++number) {
      for (const auto& path : {std::vector<JsonStep>{"templates", number, "id"},
                               {"templates", number, "scope"},
                               {"templates", number, "missing"},
                               {"version", "deeper", number}}) {
        const auto found = index.position(path);
        const auto searched = positionIn(text, offsetInJson(text, path));
        EXPECT_EQ(std::pair(found.line, found.column), std::pair(searched.line, searched.column)) << number;
      }
    }
  }
}

TEST(Documentation, HasAnExampleThatLoads) {
  const auto config = decodeConfig(test::readFile(platform::FileURL(SPRIG_DOCS "/config.example.json")));
  EXPECT_EQ(decodeConfig(encodeConfig(config)), config);
  EXPECT_GT(config.templates.size(), 1U);
}

}  // namespace
}  // namespace sprig
