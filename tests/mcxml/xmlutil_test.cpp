// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmlutil.h"

#include <climits>
#include <gtest/gtest.h>

#include <string>

namespace {

using MCCommonXML::XMLUtil;

TEST(XMLUtil, HasTheCharactersOfDocuments) {
  EXPECT_EQ(XMLUtil::FIRST_LINE, "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>");
  EXPECT_EQ(XMLUtil::ROWSEP, "\n");
  EXPECT_EQ(XMLUtil::ITEMINDENT, "\t");
  EXPECT_EQ(XMLUtil::QUOTE, "\"");
  EXPECT_EQ(XMLUtil::EQUAL, "=");
  EXPECT_EQ(XMLUtil::BEGIN_ELEMENT, "<");
  EXPECT_EQ(XMLUtil::BEGIN_PREPROCESSOR, "!");
  EXPECT_EQ(XMLUtil::END_ELEMENT, ">");
  EXPECT_EQ(XMLUtil::BEGIN_END_ELEMENT, "/");
  EXPECT_EQ(XMLUtil::SPACE, " ");
  EXPECT_EQ(XMLUtil::AMPERSAND, "&");
  EXPECT_EQ(XMLUtil::LESS_THAN, "<");
  EXPECT_EQ(XMLUtil::GREATER_THAN, ">");
  EXPECT_EQ(XMLUtil::XML_AMPERSAND, "&amp;");
  EXPECT_EQ(XMLUtil::XML_LESS_THAN, "&lt;");
  EXPECT_EQ(XMLUtil::XML_GREATER_THAN, "&gt;");
  EXPECT_EQ(XMLUtil::XML_QUOTE, "&quot;");
  EXPECT_EQ(XMLUtil::XML_CHARREF_TAB, "&#9;");
  EXPECT_EQ(XMLUtil::XML_CHARREF_NL, "&#10;");
  EXPECT_EQ(XMLUtil::XML_CHARREF_CR, "&#13;");
  EXPECT_EQ(XMLUtil::XML_CHARREF_SP, "&#32;");
  EXPECT_EQ(XMLUtil::XML_SP_CHARREF_SP, " &#32;");
  EXPECT_EQ(XMLUtil::TAB_LENGTH, 8);
}

TEST(XMLUtil, MakesTabsAndDecimals) {
  EXPECT_EQ(XMLUtil::GetTabs(3), "\t\t\t");
  EXPECT_EQ(XMLUtil::GetTabs(0), "");
  EXPECT_EQ(XMLUtil::GetTabs(-1), "");
  EXPECT_EQ(XMLUtil::toString(-17), "-17");
  EXPECT_EQ(XMLUtil::toString(INT_MIN), "-2147483648");
}

TEST(XMLUtil, ReplacesFromAPosition) {
  std::string text = "a&b&c";
  int pos = 2;
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "&", "and", pos), 3);
  EXPECT_EQ(text, "a&bandc");
  EXPECT_EQ(pos, 3);
}

TEST(XMLUtil, MissesOnePositionLess) {
  std::string text = "abc";
  int pos = 3;  // the end is a position
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "x", "y", pos), -1);
  EXPECT_EQ(pos, 2);
  pos = 0;
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "x", "y", pos), -1);
  EXPECT_EQ(pos, -1);
  EXPECT_EQ(text, "abc");
}

TEST(XMLUtil, RefusesPositionsOutsideTheText) {
  std::string text = "abc";
  for (const int outside : {-1, INT_MIN, 4, INT_MAX}) {
    int pos = outside;
    EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "", "y", pos), -1);
    EXPECT_EQ(pos, outside);
  }
  EXPECT_EQ(text, "abc");
}

TEST(XMLUtil, FindsAnEmptyTextAtOnce) {
  std::string text = "abc";
  int pos = 1;
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "", "-", pos), 1);
  EXPECT_EQ(text, "a-bc");
}

TEST(XMLUtil, ReplacesAllButNotWhatItPutIn) {
  std::string text = "&&a&";
  XMLUtil::ReplaceAll(text, "&", "&&");
  EXPECT_EQ(text, "&&&&a&&");
  text = "aaa";
  XMLUtil::ReplaceAll(text, "aa", "b");
  EXPECT_EQ(text, "ba");
  text = "aaa";
  XMLUtil::ReplaceAll(text, "", "b");
  XMLUtil::ReplaceAll(text, "c", "b");
  EXPECT_EQ(text, "aaa");
}

TEST(XMLUtil, ReplacesAMillionInOnePass) {
  std::string text(1000000, '&');
  XMLUtil::ReplaceAll(text, "&", "&amp;");
  EXPECT_EQ(text.size(), 5000000u);
}

TEST(XMLUtil, ReplacesTheFirst) {
  std::string text = "xaxa";
  EXPECT_EQ(XMLUtil::ReplaceString(text, "a", "bb"), 1);
  EXPECT_EQ(text, "xbbxa");
  EXPECT_EQ(XMLUtil::ReplaceString(text, "c", "d"), -1);
  EXPECT_EQ(text, "xbbxa");
}

}  // namespace
