// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxtranscoder.h"

#include "mcparsexml/mcxmlreadwrite.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using MCComXPrsUtil::MCXMLReadWrite;
using MCComXPrsUtil::MCXTranscoder;
using Units = std::vector<unsigned short>;

namespace {

/// The same text as the other type of units.
Units UnitsOf(const std::u16string& text) {
  Units units(text.begin(), text.end());
  units.push_back(0);
  return units;
}

struct TranscoderCase {
  const char* encoding;
  std::u16string units;
  std::string bytes;
};

const TranscoderCase gCases[] = {
    {nullptr, u"", ""},
    {nullptr, u"abc", "abc"},
    {"UTF-8", u"\u00E9\u20AC\U0001F600", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
    {"ISO-8859-1", u"\u00E9x", "\xE9x"},
    {"windows-1252", u"\u20AC\u00E9", "\x80\xE9"},
    {"US-ASCII", u"abc", "abc"},
    // Longer than a block, with characters of several bytes at the ends of blocks.
    {"UTF-8", std::u16string(999, u'x') + u"\u20AC" + std::u16string(999, u'y') + u"\U0001F600",
     std::string(999, 'x') + "\xE2\x82\xAC" + std::string(999, 'y') + "\xF0\x9F\x98\x80"},
};

}  // namespace

TEST(MCXTranscoder, ConvertsBothWays) {
  const MCXMLReadWrite xerces;
  for (const auto& [encoding, units, bytes] : gCases) {
    const MCXTranscoder transcoder(encoding);
    ASSERT_TRUE(transcoder.isValid());
    EXPECT_EQ(transcoder.TranscodeTo(units.c_str()), bytes);
    EXPECT_EQ(transcoder.TranscodeTo(UnitsOf(units).data()), bytes);
    EXPECT_EQ(transcoder.TranscodeFrom(bytes.c_str()), UnitsOf(units));
  }
}

TEST(MCXTranscoder, IsInvalidForAnEncodingThatXercesDoesNotKnow) {
  const MCXMLReadWrite xerces;
  for (const char* encoding : {"no-such-encoding", ""}) {
    const MCXTranscoder transcoder(encoding);
    EXPECT_FALSE(transcoder.isValid());
    EXPECT_EQ(transcoder.TranscodeTo(u"abc"), "");
    EXPECT_EQ(transcoder.TranscodeFrom("abc"), Units{0});
  }
}

TEST(MCXTranscoder, ConvertsNothingOfWhatItCannotConvertWhole) {
  const MCXMLReadWrite xerces;
  const MCXTranscoder latin1("ISO-8859-1");
  EXPECT_EQ(latin1.TranscodeTo((std::u16string(2000, u'x') + u"\u20AC").c_str()), "");
  const MCXTranscoder utf8(nullptr);
  for (const char16_t* text : {u"ab\xD800", u"\xDC00", u"\xD800\xD800", u"x\xD83Dy"}) {
    EXPECT_EQ(utf8.TranscodeTo(text), "");
    EXPECT_EQ(utf8.TranscodeTo(UnitsOf(text).data()), "");
  }
  // Cut characters, trailing bytes alone, halves of pairs, longer forms than needed.
  for (const char* text : {"ab\xE2\x82", "\x80", "\xC3", "\xED\xA0\x80", "\xC0\xAF", "\xFF"}) {
    EXPECT_EQ(utf8.TranscodeFrom(text), Units{0}) << text;
    EXPECT_EQ(utf8.TranscodeFrom((std::string(3000, 'x') + text).c_str()), Units{0}) << text;
  }
}

TEST(MCXTranscoderDeathTest, ANullTextEndsTheProcess) {
  const MCXMLReadWrite xerces;
  const MCXTranscoder transcoder(nullptr);
  const char* const text = "^Assertion failed: sourceStr, mcparsexml/mcxtranscoder\n$";
  const unsigned short* const noUnits = nullptr;
  const XMLCh* const noText = nullptr;
  EXPECT_DEATH(static_cast<void>(transcoder.TranscodeTo(noUnits)), text);
  EXPECT_DEATH(static_cast<void>(transcoder.TranscodeTo(noText)), text);
  EXPECT_DEATH(static_cast<void>(transcoder.TranscodeFrom(nullptr)), text);
}
