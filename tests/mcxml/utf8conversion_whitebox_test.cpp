// SPDX-License-Identifier: Apache-2.0
#include "mcxml/detail/utf8conversion.h"

#include <gtest/gtest.h>

namespace {

using MCCommonXML::detail::ConvertToUTF8;

// TSCII is one of the few code sets of which one byte becomes many.
TEST(Utf8Conversion, GrowsBeyondFourTimesTheInput) {
  const std::string text(3000, '\x87');
  const std::string converted = ConvertToUTF8(text, "TSCII");
  EXPECT_GT(converted.size(), 4 * text.size());
}

TEST(Utf8Conversion, PassesOverThePrefixOfAnUnknownName) {
  EXPECT_EQ(ConvertToUTF8("\xE4", "ISO   latin1"), "\xC3\xA4");
}

TEST(Utf8ConversionDeathTest, EndsTheProcessWithoutACodeSet) {
  EXPECT_DEATH(ConvertToUTF8("a", nullptr), "Assertion failed: codeset, mcxml/mbtoutf8_unix");
}

TEST(Utf8ConversionDeathTest, EndsTheProcessForAnUnknownCodeSet) {
  EXPECT_DEATH(ConvertToUTF8("a", "nonsense"), "Assertion failed: cd != \\(iconv_t\\)-1");
  EXPECT_DEATH(ConvertToUTF8("a", "ISO nonsense"), "Assertion failed: cd != \\(iconv_t\\)-1");
}

TEST(Utf8ConversionDeathTest, EndsTheProcessForATextThatIsCutShort) {
  EXPECT_DEATH(ConvertToUTF8("\xC3", "UTF-8"), "Assertion failed: conversions != \\(size_t\\)-1");
}

}  // namespace
