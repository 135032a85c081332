// SPDX-License-Identifier: GPL-3.0-or-later

#include "text/Text.h"

#include <gtest/gtest.h>

#include "text/TrailingNumber.h"

namespace sprig::text {
namespace {

TEST(Trimming, TakesEveryUnicodeSpaceAndLineBreakFromBothEndsOnly) {
  for (const std::string space : {" ", "\t", "\n", "\v", "\f", "\r", "\u0085", "\u00A0", "\u1680", "\u2003",
                                  "\u2028", "\u2029", "\u202F", "\u205F", "\u3000", "\r\n \u3000"}) {
    EXPECT_EQ(trimWhitespaceAndNewlines(space + "a" + space + "b" + space), "a" + space + "b") << space;
    EXPECT_EQ(trimWhitespaceAndNewlines(space), "") << space;
  }
  // Not white space: zero-width space, word joiner, byte-order mark, stray bytes.
  for (const std::string other : {"\u200B", "\u2060", "\uFEFF", "\xFF", "\x80"}) {
    EXPECT_EQ(trimWhitespaceAndNewlines(" " + other + " "), other);
  }
}

TEST(Trimming, OfHorizontalSpaceLeavesLineBreaks) {
  EXPECT_EQ(trimHorizontalWhitespace(" \t\u00A0\u3000a b\u2003"), "a b");
  for (const std::string kept : {"\n", "\r", "\v", "\u0085", "\u2028"}) {
    EXPECT_EQ(trimHorizontalWhitespace(" " + kept + "a" + kept + " "), kept + "a" + kept);
  }
}

TEST(Case, IsUnicodeAndIndependentOfTheLocale) {
  EXPECT_EQ(lowercased("TITLE \u0130 \u1E9E"), "title i\u0307 \u00DF");
  EXPECT_EQ(lowercased("ΟΔΟΣ ΣΑ"), "οδος σα");
  EXPECT_EQ(lowercased("a\xFF"
                       "B"),
            "a\xFF"
            "B");

  struct Row {
    const char* text;
    const char* expected;
  };
  for (const auto& row :
       {Row{"machine learning", "Machine Learning"}, Row{"UX research", "Ux Research"},
        Row{"  two\tby\nthree ", "  Two\tBy\nThree "}, Row{"data-science o'neill", "Data-science O'neill"},
        Row{"éCOLE ßtraße ΟΔΟΣ ΑΣ", "École SStraße Οδος Ας"}, Row{"", ""}}) {
    EXPECT_EQ(capitalized(row.text), row.expected);
  }
}

TEST(Equality, IsCanonicalEquivalence) {
  EXPECT_TRUE(isEqual("caf\u00E9", "cafe\u0301"));
  EXPECT_TRUE(isEqual("\u212B", "A\u030A"));
  EXPECT_FALSE(isEqual("cafe", "caf\u00E9"));
  EXPECT_FALSE(isEqual("caf\u00E9", "cafe"));
  EXPECT_FALSE(isEqual("a", "A"));
  EXPECT_FALSE(isEqual("\uFB01", "fi"));  // compatible, not canonically equivalent
  EXPECT_EQ(canonicalForm("e\u0301"), "\u00E9");
}

TEST(Length, CountsUTF16CodeUnits) {
  EXPECT_EQ(utf16Length("abc"), 3U);
  EXPECT_EQ(utf16Length("\u00E9\u20AC"), 2U);
  EXPECT_EQ(utf16Length("\U0001F600!\U00010000"), 5U);
  EXPECT_EQ(utf16Length("\uFFFF"), 1U);
}

TEST(Validity, RefusesWhatIsNotUTF8AndMendsIt) {
  EXPECT_TRUE(isValidUTF8("gr\u00FC\u00DFe \U0001F600"));
  for (const char* bad : {"\xFF", "\x80", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xE2\x82"}) {
    EXPECT_FALSE(isValidUTF8(bad));
    EXPECT_TRUE(isValidUTF8(toValidUTF8(bad)));
  }
  EXPECT_EQ(toValidUTF8("a\xFF"
                        "b"),
            "a\uFFFDb");
}

TEST(Validity, LooksAtEveryByteOfALongText) {
  const std::string text(40, 'a');
  for (std::size_t place = 0; place < text.size(); ++place) {
    auto whole = text;
    EXPECT_TRUE(isValidUTF8(whole.insert(place, "\u20AC"))) << place;
    EXPECT_FALSE(isValidUTF8(whole.erase(place + 1, 1))) << place;
  }
}

TEST(TrailingNumber, StandsAfterAnyUnicodeSpaceAndEndsTheText) {
  struct Row {
    std::string text;
    std::string stem;
    std::int64_t number;
  };
  for (const auto& row :
       {Row{"notes 3", "notes", 3}, Row{"file 007", "file", 7}, Row{"a   5", "a", 5}, Row{"a\t5", "a", 5},
        Row{"a 2 3", "a 2", 3}, Row{"a\u00A0\u30005", "a", 5}, Row{"a\n5", "a", 5},
        Row{"\U0001F600 1", "\U0001F600", 1}, Row{"v 9223372036854775807", "v", 9223372036854775807}}) {
    const auto split = splitTrailingNumber(row.text);
    ASSERT_TRUE(split) << row.text;
    EXPECT_EQ(split->stem, row.stem);
    EXPECT_EQ(split->number, row.number) << row.text;
  }
  for (const std::string none :
       {"notes", "notes3", "file-3", "file -3", "a 3b", "a 3 ", "a\nb 3", "a\u2028b 3", "a \u0663",
        "v 99999999999999999999", "a\u200B3", "a 3\n", "", "\xFF 3"}) {
    EXPECT_FALSE(splitTrailingNumber(none)) << none;
  }
}

}  // namespace
}  // namespace sprig::text
