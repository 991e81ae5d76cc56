// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcpmmlparser.h"
#include "readersupport.h"
#include "support/countingallocator.h"
#include "support/leaksallowed.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <string>
#include <xercesc/dom/DOM.hpp>

// Documents as a whole: what is one, in which encodings, and what becomes of those that aren't.

namespace {

using namespace mctest;
using MCCommonMetadata::MCUniStats;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::MCPMMLParser;
using std::string;
using testing::HasSubstr;
using xercesc::DOMElement;

const char kField[] = R"(<DataField name="x" optype="continuous" dataType="double"/>)";

long Parse(const string& document) {
  MCPMMLParser parser;
  return ParseText(parser, document);
}

// What the variables of a document come to.
string Variables(const string& document) {
  MCPMMLParser parser;
  EXPECT_EQ(ParseText(parser, document), 0);
  MCVarList list;
  EXPECT_EQ(parser.FillVarList(list, {}, false).GetErrorCode(), 0);
  return ListText(list);
}

TEST(MCPMMLParserDocument, FreshParserIsGoodButHoldsNothing) {
  MCPMMLParser parser;
  EXPECT_TRUE(parser.GetStatus().IsOK());
  EXPECT_EQ(parser.GetRootElement(), nullptr);
  EXPECT_EQ(parser.GetXercesMessage(), "");
  EXPECT_FALSE(parser.IsStrict());
}

TEST(MCPMMLParserDocument, EveryReadBeforeAParseIs107) {
  const MCPMMLParser parser;
  MCVarList list;
  EXPECT_EQ(parser.FillVarList(list, {}, false), MCCommon::MCStatus(107, false));
  EXPECT_EQ(list.Size(), 0);
  MCUniStats stats;
  const DOMElement* cursor = nullptr;
  EXPECT_EQ(parser.FillUniStats(stats, cursor), MCCommon::MCStatus(107, false));
  std::vector<double> cuts(1);
  std::vector<string> labels(1);
  EXPECT_FALSE(parser.SetBinsFrTransDict("x", cuts, labels));
  EXPECT_TRUE(cuts.empty() && labels.empty());
}

TEST(MCPMMLParserDocument, RootAndDictionaryAreRequired) {
  const struct {
    string document;
    long code;
  } cases[] = {{"", 105},
               {"no document", 105},
               {"<Pmml/>", 105},
               {"<p:PMML xmlns:p=\"http://www.dmg.org/PMML-3_2\"><DataDictionary/></p:PMML>", 105},
               {"<x><PMML><DataDictionary/></PMML></x>", 105},
               {"<PMML/>", 106},
               {"<PMML><Header><DataDictionary/></Header></PMML>", 106},
               {"<PMML><datadictionary/></PMML>", 106},
               {"<PMML><DataDictionary/></PMML>", 0},
               {"<PMML><Header/><!-- text --><DataDictionary/><x/></PMML>", 0}};
  for (const auto& [document, code] : cases) {
    EXPECT_EQ(Parse(document), code) << document;
  }
}

TEST(MCPMMLParserDocument, FailedParseIsTheAnswerOfEveryReadUntilTheNextOne) {
  MCPMMLParser parser;
  EXPECT_EQ(ParseText(parser, DictionaryText(kField)), 0);
  EXPECT_NE(parser.GetRootElement(), nullptr);
  const DOMElement& root = *parser.GetRootElement();
  EXPECT_TRUE(parser.SetModelElmt(root));

  EXPECT_EQ(ParseText(parser, "<PMML/>"), 106);
  EXPECT_EQ(parser.GetStatus(), MCCommon::MCStatus(106, false));
  EXPECT_EQ(parser.GetRootElement(), nullptr);
  MCVarList list;
  EXPECT_EQ(parser.FillVarList(list, {}, false).GetErrorCode(), 106);
  MCUniStats stats;
  const DOMElement* cursor = nullptr;
  EXPECT_EQ(parser.FillUniStats(stats, cursor).GetErrorCode(), 106);

  EXPECT_EQ(ParseText(parser, DictionaryText(kField)), 0);
  EXPECT_EQ(parser.FillVarList(list, {}, false).GetErrorCode(), 0);
  EXPECT_EQ(list.Size(), 1);
  EXPECT_EQ(parser.FillUniStats(stats, cursor).GetErrorCode(), 112) << "no model any more";
}

TEST(MCPMMLParserDocument, ModelIsTakenOnlyWhileADocumentIsHeld) {
  MCPMMLParser holder;
  ASSERT_EQ(ParseText(holder, DictionaryText("", "<TreeModel/>")), 0);
  const DOMElement& model =
      *MCComXPrsUtil::GetFirstChildElmt(*holder.GetRootElement(), "TreeModel");
  EXPECT_TRUE(holder.SetModelElmt(model));

  MCPMMLParser parser;
  EXPECT_FALSE(parser.SetModelElmt(model));
  EXPECT_EQ(ParseText(parser, "<x/>"), 105);
  EXPECT_FALSE(parser.SetModelElmt(model));
  EXPECT_EQ(ParseText(parser, DictionaryText("")), 0);
  MCUniStats stats;
  const DOMElement* cursor = nullptr;
  EXPECT_EQ(parser.FillUniStats(stats, cursor).GetErrorCode(), 112) << "nothing was stored";
}

TEST(MCPMMLParserDocument, NoVersionAndNoNamespaceMatters) {
  const string dictionary = string("><DataDictionary>") + kField + "</DataDictionary></PMML>";
  for (const char* root : {"<PMML", "<PMML version=\"3.2\" xmlns=\"http://www.dmg.org/PMML-3_2\"",
                           "<PMML version=\"4.0\" xmlns=\"http://www.dmg.org/PMML-4_0\"",
                           "<PMML version=\"4.1\" xmlns=\"http://www.dmg.org/PMML-4_1\"",
                           "<PMML version=\"4.3\" xmlns=\"http://www.dmg.org/PMML-4_3\"",
                           "<PMML version=\"4.4\" xmlns=\"http://www.dmg.org/PMML-4_4\"",
                           "<PMML version=\"none\" xmlns=\"urn:other\" xmlns:p=\"urn:more\""}) {
    EXPECT_EQ(Variables(root + dictionary), "x| cont (missing, max) missing {}") << root;
  }
}

string Utf16(const string& latin1, bool isBigEndian) {
  string bytes;
  const auto add = [&bytes, isBigEndian](unsigned unit) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    bytes += isBigEndian ? high : low;
    bytes += isBigEndian ? low : high;
  };
  add(0xFEFF);
  for (const char c : latin1) add(static_cast<unsigned char>(c));
  return bytes;
}

TEST(MCPMMLParserDocument, EncodingsComeBackAsUtf8) {
  const string fields =
      "<PMML><DataDictionary><DataField name=\"M\xFCller\" displayName=\"\xE9\" "
      "optype=\"categorical\" dataType=\"string\"><Value value=\"\xDF\" "
      "displayValue=\"\xA7\"/></DataField></DataDictionary></PMML>";
  const string expected = "M\xC3\xBCller|\xC3\xA9 string {\xC3\x9F=\xC2\xA7} missing {}";
  const string latin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + fields;
  const string utf16 = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + fields;
  EXPECT_EQ(Variables(latin1), expected);
  EXPECT_EQ(Variables(Utf16(utf16, false)), expected);
  EXPECT_EQ(Variables(Utf16(utf16, true)), expected);
}

TEST(MCPMMLParserDocument, CharactersBeyondTheFirstPlaneAndReferencesAreKept) {
  EXPECT_EQ(Variables(DictionaryText("<DataField name=\"\xF0\x9D\x9B\xBC\" displayName=\"&#x1D6FD; "
                                     "&lt;&amp;&gt;\" optype=\"continuous\" dataType=\"float\"/>")),
            "\xF0\x9D\x9B\xBC|\xF0\x9D\x9B\xBD <&> cont (missing, max) missing {}");
}

TEST(MCPMMLParserDocument, StreamIsReadFromWhereItStands) {
  std::istringstream stream("junk" + DictionaryText(kField));
  stream.seekg(4);
  MCPMMLParser parser;
  EXPECT_TRUE(parser.ParseToDOM(stream).IsOK());
}

// A document is read up to its first error, and what is missing then decides.
TEST(MCPMMLParserDocument, DocumentCutBehindItsDictionaryReadsWithSuccess) {
  const string whole = DictionaryText(kField, "<TreeModel><ModelStats>");
  EXPECT_EQ(Variables(whole), "x| cont (missing, max) missing {}");
  EXPECT_EQ(Variables(DictionaryText(kField) + "<second/>"), "x| cont (missing, max) missing {}");
  EXPECT_EQ(Variables("<PMML><DataDictionary>" + string(kField) + "<DataField name=\"y\" dataTy"),
            "x| cont (missing, max) missing {}");
  EXPECT_EQ(Parse("<PMML><DataDict"), 106);
}

TEST(MCPMMLParserDocument, NothingIsPrinted) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(Parse("<PMML><a></b>"), 106);
  EXPECT_NE(Parse("\xFF\xFE\xFF"), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(MCPMMLParserDocument, StrictParserRefusesWhatIsNotWellFormed) {
  MCPMMLParser parser;
  parser.SetStrict(true);
  EXPECT_TRUE(parser.IsStrict());
  EXPECT_EQ(ParseText(parser, "<PMML>\n<DataDictionary/>\n  <a></b>\n</PMML>"), 104);
  EXPECT_THAT(parser.GetXercesMessage(), HasSubstr("line 3, column "));
  EXPECT_EQ(parser.GetRootElement(), nullptr);
  EXPECT_EQ(ParseText(parser, DictionaryText(kField)), 0);
  EXPECT_EQ(parser.GetXercesMessage(), "");

  parser.SetStrict(false);
  EXPECT_EQ(ParseText(parser, "<PMML>\n<DataDictionary/>\n  <a></b>\n</PMML>"), 0);
  EXPECT_EQ(parser.GetXercesMessage(), "");
}

TEST(MCPMMLParserDocument, ExternalEntitiesAreReadByDefaultAndRefusedStrictly) {
  const TemporaryFolder folder;
  const string file = folder.Write("entity", "secret");
  const string document = "<!DOCTYPE PMML [<!ENTITY e SYSTEM \"file://" + file +
                          "\">]>\n<PMML><DataDictionary/><Header>&e;</Header></PMML>";
  MCPMMLParser parser;
  ASSERT_EQ(ParseText(parser, document), 0);
  const DOMElement* header = MCComXPrsUtil::GetFirstChildElmt(*parser.GetRootElement(), "Header");
  EXPECT_EQ(MCComXPrsUtil::ToUTF8(header->getTextContent()), "secret");

  parser.SetStrict(true);
  EXPECT_EQ(ParseText(parser, document), 104);
  EXPECT_NE(parser.GetXercesMessage(), "");
}

TEST(MCPMMLParserDocument, EntitiesThatMultiplyAreRefusedStrictly) {
  string entities = "<!ENTITY e0 \"0123456789\">";
  for (int i = 1; i <= 4; ++i) {
    entities += "<!ENTITY e" + std::to_string(i) + " \"";
    for (int k = 0; k < 10; ++k) entities += "&e" + std::to_string(i - 1) + ";";
    entities += "\">";
  }
  const string document =
      "<!DOCTYPE PMML [" + entities + "]><PMML><DataDictionary/><x>&e4;</x></PMML>";
  MCPMMLParser parser;
  EXPECT_EQ(ParseText(parser, document), 0);
  parser.SetStrict(true);
  EXPECT_EQ(ParseText(parser, document), 104);
}

TEST(MCPMMLParserDocument, LongAttributesAndDeepNestingAreRead) {
  const string label(1000000, 'a');
  EXPECT_EQ(
      Variables(DictionaryText("<DataField name=\"x\" optype=\"continuous\" dataType=\"float\" "
                               "displayName=\"" +
                               label + "\"/>")),
      "x|" + label + " cont (missing, max) missing {}");
  string deep;
  for (int i = 0; i < 10000; ++i) deep += "<a>";
  EXPECT_EQ(Variables(DictionaryText(kField, deep)), "x| cont (missing, max) missing {}");
}

TEST(MCPMMLParserDocument, ParserReadsOneDocumentAfterAnother) {
  MCPMMLParser parser;
  for (int i = 0; i < 50; ++i) {
    const string name = "v" + std::to_string(i);
    ASSERT_EQ(ParseText(parser, DictionaryText("<DataField name=\"" + name +
                                               "\" optype=\"continuous\" dataType=\"float\"/>")),
              0);
    MCVarList list;
    ASSERT_EQ(parser.FillVarList(list, {}, false).GetErrorCode(), 0);
    EXPECT_EQ(list.FindVariable(name), 0);
  }
}

// Xerces is up already, so that what fails is the making of its parser.
TEST(MCPMMLParserDocument, ParserThatCouldNotBeMadeAnswers103) {
  const MCPMMLParser holder;
  const LeaksAllowed leaks;  // Xerces loses the parts of a parser that it can't finish
  int nRefused = 0;
  for (std::size_t k = 1;; ++k) {
    std::optional<MCPMMLParser> parser;
    bool hasFired = false;
    try {
      const FailAllocation failure(k);
      parser.emplace();
      hasFired = failure.HasFired();
    } catch (const std::bad_alloc&) {
      continue;
    }
    if (!hasFired) break;
    if (parser->GetStatus().IsOK()) continue;
    ++nRefused;
    EXPECT_EQ(parser->GetStatus(), MCCommon::MCStatus(103, false));
    EXPECT_EQ(ParseText(*parser, DictionaryText(kField)), 103);
    MCVarList list;
    EXPECT_EQ(parser->FillVarList(list, {}, false).GetErrorCode(), 103);
  }
  EXPECT_GT(nRefused, 0);
  EXPECT_EQ(Parse(DictionaryText(kField)), 0);
}

}  // namespace
