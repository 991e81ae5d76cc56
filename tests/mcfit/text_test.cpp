// SPDX-License-Identifier: Apache-2.0
#include "text.h"

#include <gtest/gtest.h>

namespace {

TEST(McfitNumbers, DecimalNumbersAreRead) {
  const struct {
    const char* text;
    double value;
  } cases[] = {{"0", 0.0},       {"-0", 0.0},
               {"12", 12.0},     {"+3.5", 3.5},
               {" 7\t", 7.0},    {".5", 0.5},
               {"5.", 5.0},      {"1e3", 1000.0},
               {"-2E-2", -0.02}, {"1.7976931348623157e308", 1.7976931348623157e308}};
  for (const auto& c : cases) {
    ASSERT_TRUE(mcfit::ParseNumber(c.text).has_value()) << c.text;
    EXPECT_EQ(*mcfit::ParseNumber(c.text), c.value) << c.text;
  }
}

TEST(McfitNumbers, AllElseIsRefused) {
  for (const char* text : {"", " ", "x", "1x", "1 2", "inf", "-inf", "nan", "NaN", "0x10", "1e999",
                           "--1", "+-1", "+", "-", "1,5", "1e", "e1"}) {
    EXPECT_FALSE(mcfit::ParseNumber(text).has_value()) << text;
  }
  EXPECT_FALSE(mcfit::ParseNumber(std::string_view("1\0", 2)).has_value());
}

TEST(McfitText, ControlCharactersAreShownAsCodes) {
  EXPECT_EQ(mcfit::Printable(std::string_view("a\x1b[2J\n\0b\x7f", 9)),
            "a\\x1B[2J\\x0A\\x00b\\x7F");
  EXPECT_EQ(mcfit::Printable("\u0080 \u009B2J \u009F"), "\\xC2\\x80 \\xC2\\x9B2J \\xC2\\x9F");
  EXPECT_EQ(mcfit::Printable("\x80 \x9B \xC2"), "\\x80 \\x9B \xC2");
  for (const char* text : {"Größe", "\u00A0", "\u2080", "\U0001F600", "K\xE4se", ""}) {
    EXPECT_EQ(mcfit::Printable(text), text);
  }
}

TEST(McfitText, LongTextsAreCutAtACharacterInMessages) {
  EXPECT_EQ(mcfit::Quoted("short"), "'short'");
  const std::string exact(60, 'x');
  EXPECT_EQ(mcfit::Quoted(exact), "'" + exact + "'");
  const std::string across = std::string(59, 'x') + "ö" + "y";
  EXPECT_EQ(mcfit::Quoted(across), "'" + std::string(59, 'x') + "...'");
}

TEST(McfitText, ListsQuoteEachName) {
  EXPECT_EQ(mcfit::QuotedList({}), "");
  EXPECT_EQ(mcfit::QuotedList({"a", "b c"}), "'a', 'b c'");
}

TEST(McfitText, WidthCountsCodePoints) {
  EXPECT_EQ(mcfit::DisplayWidth(""), 0u);
  EXPECT_EQ(mcfit::DisplayWidth("abc"), 3u);
  EXPECT_EQ(mcfit::DisplayWidth("Größe"), 5u);
}

TEST(McfitText, TrimmingTakesBlanksAtBothEnds) {
  EXPECT_EQ(mcfit::Trimmed(" \ta b\t "), "a b");
  EXPECT_EQ(mcfit::Trimmed("  "), "");
}

}  // namespace
