// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Placeholders.h"

#include <gtest/gtest.h>

#include "support/TestPlatform.h"

namespace sprig {
namespace {

// A value is not searched again, nor joined with its surroundings.
TEST(Placeholders, AreReplacedInTheirTwoSpellingsAndNoOther) {
  PlaceholderValues values;
  values.set("name", "N");
  values.set("date", "{{name}}");
  values.set("zero", "");
  struct Row {
    const char* text;
    const char* expected;
  };
  for (const auto& row :
       {Row{"", ""}, Row{"plain", "plain"}, Row{"{{name}}", "N"}, Row{"{{ name }}", "N"},
        Row{"a{{name}}b{{ name }}c", "aNbNc"}, Row{"{{zero}}", ""},
        Row{"{{Name}} {{name }} {{ name}} {{  name  }} {name} {{title}} {{nam}} {{names}} {{}} {{ }}",
            "{{Name}} {{name }} {{ name}} {{  name  }} {name} {{title}} {{nam}} {{names}} {{}} {{ }}"},
        Row{"{{{name}}}", "{N}"}, Row{"{{{{name}}}}", "{{N}}"}, Row{"{{ {{name}} }}", "{{ N }}"},
        Row{"{{name", "{{name"}, Row{"{{name}", "{{name}"}, Row{"{", "{"}, Row{"{{", "{{"}, Row{"{{ ", "{{ "},
        Row{"{{date}}", "{{name}}"}, Row{"{{zero}}{name}}", "{name}}"}, Row{"{{{zero}}{name}}", "{{name}}"},
        Row{"grüße {{name}} \xFF", "grüße N \xFF"}}) {
    EXPECT_EQ(substitutePlaceholders(row.text, values).text, row.expected) << row.text;
  }
  for (std::size_t place = 0; place < 150; ++place) {
    const std::string before(place, 'x');
    const std::string after(150 - place, '}');
    EXPECT_EQ(substitutePlaceholders(before + "{{name}}" + after, values).text, before + "N" + after);
  }
}

TEST(Placeholders, TakeTheirValuesFromOneInstantAndTheSurroundings) {
  test::TestPlatform platform;
  const auto render = [](std::optional<std::string> folder, std::optional<std::string> project,
                         platform::Instant date) {
    return substitutePlaceholders(
               "{{date}}|{{time}}|{{datetime}}|{{year}}|{{month}}|{{day}}|{{project}}|{{folder}}|{{author}}",
               makePlaceholderValues(folder, project, date))
        .text;
  };
  const auto march = test::TestClock::at(2026, 3, 7, 0, 0, 0);
  EXPECT_EQ(render("src", "app", march), "2026-03-07|00:00:00|2026-03-07 00:00:00|2026|03|07|app|src|jdoe");
  EXPECT_EQ(render("src", {}, test::TestClock::at(1987, 11, 16, 9, 5, 2)),
            "1987-11-16|09:05:02|1987-11-16 09:05:02|1987|11|16|src|src|jdoe");
  platform.process.variables["USER"] = "";
  EXPECT_EQ(render({}, " x ", march), "2026-03-07|00:00:00|2026-03-07 00:00:00|2026|03|07| x ||");
  platform.process.variables.clear();
  EXPECT_EQ(render({}, {}, march), "2026-03-07|00:00:00|2026-03-07 00:00:00|2026|03|07|||Jane Doe");
}

}  // namespace
}  // namespace sprig
