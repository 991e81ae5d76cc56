// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/mcxtranscoder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace MCComXPrsUtil;

namespace {

using Units = std::vector<unsigned short>;

Units UnitsOf(const std::u16string& text) {
  Units units(text.begin(), text.end());
  units.push_back(0);
  return units;
}

const unsigned short* const gNoUnits = nullptr;
const XMLCh* const gNoText = nullptr;

/// The characters at which the length of a form changes, by every reader of Unicode's tables.
const std::pair<std::u16string, std::string> gPairs[] = {
    {u"", ""},
    {u"abc", "abc"},
    {u"\u007F\u0080", "\x7F\xC2\x80"},
    {u"\u07FF\u0800", "\xDF\xBF\xE0\xA0\x80"},
    {u"\uD7FF\uE000\uFFFF", "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"},
    {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
    {u"Gr\u00F6\u00DFe \u20AC \U0001F600",
     "Gr\xC3\xB6\xC3\x9F"
     "e \xE2\x82\xAC \xF0\x9F\x98\x80"},
};

}  // namespace

TEST(TextsOfXerces, ConvertBothWaysAsTheTranscoderOfXercesDoes) {
  const MCXMLReadWrite xerces;
  const MCXTranscoder transcoder(nullptr);
  for (const auto& [units, bytes] : gPairs) {
    EXPECT_EQ(ToUTF8(units.c_str()), bytes);
    EXPECT_EQ(ToUTF8(UnitsOf(units).data()), bytes);
    EXPECT_EQ(ToUTF16(bytes.c_str()), UnitsOf(units));
    EXPECT_EQ(transcoder.TranscodeTo(units.c_str()), bytes);
    EXPECT_EQ(transcoder.TranscodeFrom(bytes.c_str()), UnitsOf(units));
  }
}

TEST(TextsOfXerces, AreEmptyIfNullOrNotWellFormed) {
  EXPECT_EQ(ToUTF8(gNoUnits), "");
  EXPECT_EQ(ToUTF8(gNoText), "");
  EXPECT_EQ(ToUTF16(nullptr), Units{0});
  for (const char16_t* text : {u"ab\xD800", u"\xDC00", u"\xD800\xD800", u"\xD83Dy"}) {
    EXPECT_EQ(ToUTF8(text), "");
    EXPECT_EQ(ToUTF8(UnitsOf(text).data()), "");
  }
  for (const char* text :
       {"ab\xE2\x82", "\x80", "\xC3", "\xC3(", "\xED\xA0\x80", "\xC0\xAF", "\xE0\x9F\xBF",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF8\x88\x80", "\xFF"}) {
    EXPECT_EQ(ToUTF16(text), Units{0}) << text;
  }
}

TEST(TextsOfXerces, EqualWhatConvertsToThem) {
  const struct {
    std::u16string x;
    const char* s;
    bool areEqual;
  } cases[] = {
      {u"", "", true},
      {u"", nullptr, true},
      {u"a", "", false},
      {u"", "a", false},
      {u"a", nullptr, false},
      {u"abc", "abc", true},
      {u"abc", "abd", false},
      {u"abc", "ab", false},
      {u"ab", "abc", false},
      {u"a\u00E9", "a\xC3\xA9", true},
      {u"a\u00E9", "a\xE9", false},
      {u"a\u00E9", "ae", false},
      {u"ae", "a\xC3\xA9", false},
      {u"\U0001F600x", "\xF0\x9F\x98\x80x", true},
      {u"a\xD800", "a", false},  // not well-formed: an empty text
      {u"\xD800", "", true},
  };
  for (const auto& [x, s, areEqual] : cases) {
    EXPECT_EQ(XStrEqualsUTF8Str(x.c_str(), s), areEqual) << s;
    EXPECT_EQ(XStrEqualsUTF8Str(UnitsOf(x).data(), s), areEqual) << s;
  }
  EXPECT_TRUE(XStrEqualsUTF8Str(gNoText, ""));
  EXPECT_TRUE(XStrEqualsUTF8Str(gNoUnits, nullptr));
  EXPECT_FALSE(XStrEqualsUTF8Str(gNoUnits, "a"));
}

TEST(TextsOfXerces, AreFoundByTheirPlaceInAList) {
  const std::vector<std::string> list = {"b", "a", "a", "", "\xC3\xA9"};
  const std::pair<unsigned int, const char*> table[] = {{7, "b"}, {3, "a"},        {9, "a"},
                                                        {0, ""},  {1, "\xC3\xA9"}, {5, nullptr}};
  const std::pair<unsigned int, const char*> none[] = {{0, nullptr}};
  const std::pair<std::u16string, int> cases[] = {{u"b", 0},      {u"a", 1},  {u"", 3},
                                                  {u"\u00E9", 4}, {u"c", -1}, {u"B", -1}};
  for (const auto& [x, index] : cases) {
    EXPECT_EQ(FindXStrInList(x.c_str(), list), index);
    EXPECT_EQ(FindXStrInList(UnitsOf(x).data(), list), index);
    EXPECT_EQ(FindXStrInList(x.c_str(), table), index);
    EXPECT_EQ(FindXStrInList(UnitsOf(x).data(), table), index);
  }
  EXPECT_EQ(FindXStrInList(gNoText, list), 3);
  EXPECT_EQ(FindXStrInList(gNoUnits, table), 3);
  EXPECT_EQ(FindXStrInList(u"a", std::vector<std::string>()), -1);
  EXPECT_EQ(FindXStrInList(u"a", none), -1);
}
