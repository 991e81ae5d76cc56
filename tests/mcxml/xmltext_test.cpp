// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmltext.h"

#include "mcxml/mbtoutf8.h"
#include "support/localeguard.h"

#include <climits>
#include <gtest/gtest.h>

#include <cfloat>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>

namespace {

using namespace MCCommonXML;
using mctest::LocaleGuard;

constexpr char kGerman[] = "de_DE.UTF-8";

TEST(XMLText, NamesItsFormats) {
  const LocaleGuard locale("C");
  EXPECT_EQ(GetDefaultNumericFormat(), "%.15g");
  EXPECT_EQ(GetListSeparator(), ";");
  EXPECT_EQ(GetDecimalCharacter(), ".");
}

TEST(XMLText, PrintsNumbersWithFifteenDigits) {
  EXPECT_EQ(ReplaceSep(12.0, nullptr), "12");
  EXPECT_EQ(ReplaceSep(0.1, "%.3f"), "0.1");
  EXPECT_EQ(ReplaceSep(1.0 / 3.0, nullptr), "0.333333333333333");
  EXPECT_EQ(ReplaceSep(1e15, nullptr), "1e+15");
  EXPECT_EQ(ReplaceSep(123456789012345.0, nullptr), "123456789012345");
  EXPECT_EQ(ReplaceSep(1e-5, nullptr), "1e-05");
  EXPECT_EQ(ReplaceSep(-0.0, nullptr), "-0");
  EXPECT_EQ(ReplaceSep(-DBL_MAX, nullptr), "-1.79769313486232e+308");
  EXPECT_EQ(ReplaceSep(5e-324, nullptr), "4.94065645841247e-324");
}

TEST(XMLText, PrintsWhatIsNoNumberAsAStreamDoes) {
  for (const double value :
       {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN()}) {
    std::ostringstream stream;
    stream << value;
    EXPECT_EQ(ReplaceSep(value, nullptr), stream.str());
  }
}

TEST(XMLText, FormatsByTheCLibrary) {
  const LocaleGuard locale("C");
  EXPECT_EQ(Format(0.5, true, nullptr), "0.5");
  EXPECT_EQ(Format(0.5, true, "%.3f"), "0.500");
  EXPECT_EQ(Format(0.5, false, "%.3f"), "0.5");
  EXPECT_EQ(Format(1e308, true, "%.3f").size(), 313u);
  EXPECT_EQ(Format(1.0, true, "%600.1f").size(), 600u);
  EXPECT_EQ(Format(1.0, true, ""), "");
}

TEST(XMLText, PassesIntegersThroughFifteenDigits) {
  const LocaleGuard locale("C");
  EXPECT_EQ(Format(42L), "42");
  EXPECT_EQ(Format(-123456789012345L), "-123456789012345");
  EXPECT_EQ(Format(1234567890123456L), "1.23456789012346e+15");
  EXPECT_EQ(Format(LONG_MIN), "-9.22337203685478e+18");
}

TEST(XMLText, KnowsTheLocaleWhereItIsToldTo) {
  const LocaleGuard german(kGerman);
  ASSERT_TRUE(german.IsSet());
  EXPECT_EQ(GetDecimalCharacter(), ",");
  EXPECT_EQ(Format(0.5, true, nullptr), "0,5");
  EXPECT_EQ(Format(1234567890123456L), "1,23456789012346e+15");
  EXPECT_EQ(Format(0.5, false, nullptr), "0.5");
  EXPECT_EQ(ReplaceSep(1234567.5, nullptr), "1234567.5");
}

TEST(XMLText, WritesWithoutPadding) {
  std::ostringstream stream;
  stream << std::setw(10) << std::setfill('*');
  EXPECT_EQ(Write(stream, "ab"), 0);
  EXPECT_EQ(Write(stream, ""), 0);
  EXPECT_EQ(stream.str(), "ab");
}

TEST(XMLText, LeavesErrorsToTheStream) {
  std::ostringstream stream;
  stream.setstate(std::ios::badbit);
  EXPECT_EQ(Write(stream, "ab"), 0);
  EXPECT_EQ(stream.str(), "");
}

struct Encoded {
  const char* locale;
  const char* text;
  const char* utf8;
};

TEST(XMLText, ConvertsFromTheLocalesCodeSet) {
  const Encoded cases[] = {
      {"C", "plain", "plain"},
      {kGerman, "\xC3\xA4", "\xC3\xA4"},
      {"de_DE.ISO-8859-1", "\xE4\xA4", "\xC3\xA4\xC2\xA4"},
      {"de_DE.ISO-8859-15", "\xE4\xA4", "\xC3\xA4\xE2\x82\xAC"},  // the euro sign
      {"de_DE.ISO-8859-1", "", ""},
  };
  for (const Encoded& encoded : cases) {
    const LocaleGuard guard(encoded.locale);
    ASSERT_TRUE(guard.IsSet()) << encoded.locale;
    EXPECT_EQ(MbToUTF8(encoded.text), encoded.utf8) << encoded.locale;
    std::ostringstream stream;
    EXPECT_EQ(WriteUTF(stream, encoded.text), 0);
    EXPECT_EQ(stream.str(), encoded.utf8);
  }
}

TEST(XMLText, ConvertsLongTexts) {
  const LocaleGuard latin("de_DE.ISO-8859-1");
  ASSERT_TRUE(latin.IsSet());
  std::string expected;
  for (int i = 0; i < 100000; ++i) expected += "\xC3\xA4";
  EXPECT_EQ(MbToUTF8(std::string(100000, '\xE4')), expected);
}

TEST(XMLTextDeathTest, EndsTheProcessForATextThatIsNotInTheCodeSet) {
  const LocaleGuard locale("C");
  EXPECT_DEATH(MbToUTF8("\xC3\xA4"),
               "Assertion failed: conversions != \\(size_t\\)-1, mcxml/mbtoutf8_unix");
}

}  // namespace
