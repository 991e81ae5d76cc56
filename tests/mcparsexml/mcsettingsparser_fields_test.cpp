// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcsettingsparser.h"
#include "readersupport.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

// Variables of a settings document.

namespace {

using namespace mctest;
using MCCommon::MCStatus;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::MCSettingsParser;
using std::string;

const char kTask[] = "<MiningBuildTask><Extension><Parameters/></Extension></MiningBuildTask>";

string Transformations(const string& inside) {
  return "<TransformationDictionary>" + inside + "</TransformationDictionary>";
}

// "code" or the list that is filled, then the code unless that is OK.
string Outcome(const MCStatus& status, const MCVarList& list) {
  if (status.IsOK()) return ListText(list);
  EXPECT_FALSE(status.IsWarning());
  return ListText(list) + (list.Size() > 0 ? "\n" : "") + std::to_string(status.GetErrorCode());
}

string Read(const string& fields, bool bins = false, const string& transformations = "") {
  MCSettingsParser parser;
  EXPECT_EQ(ParseText(parser, DictionaryText(fields, transformations + kTask)), 0);
  MCVarList list;
  const MCStatus status = parser.FillVarList(list, bins);
  return Outcome(status, list);
}

string ReadDerived(const string& fields) {
  MCSettingsParser parser;
  EXPECT_EQ(ParseText(parser, DictionaryText("", Transformations(fields) + kTask)), 0);
  MCVarList list;
  const MCStatus status = parser.FillTransDict(list);
  return Outcome(status, list);
}

string Field(const string& kind, const string& children, const string& tag = "DataField") {
  return "<" + tag + " name=\"x\" " + kind + ">" + children + "</" + tag + ">";
}

string Continuous(const string& children, const string& tag = "DataField") {
  return Field("optype=\"continuous\" dataType=\"double\"", children, tag);
}

TEST(MCSettingsParserFields, TypesTellTheStorage) {
  const std::tuple<const char*, const char*> types[] = {
      {"string", "x| string storage 3 {1} missing {}"},
      {"date", "x| num storage 4 {1} missing {}"},
      {"time", "x| num storage 5 {1} missing {}"},
      {"dateTime", "x| num storage 6 {1} missing {}"},
      {"double", "x| num storage 2 {1} missing {}"},
      {"float", "x| num storage 2 {1} missing {}"},
      {"integer", "x| num storage 1 {1} missing {}"},
      {"timeSeconds", "109"},
      {"dateDaysSince[0]", "109"},
      {"dateTimeSecondsSince[1980]", "109"},
      {"boolean", "109"},
      {"", "109"}};
  for (const auto& [type, outcome] : types) {
    EXPECT_EQ(Read(Field("optype=\"categorical\" dataType=\"" + string(type) + "\"",
                         "<Value value=\"1\"/>")),
              outcome)
        << type;
  }
}

TEST(MCSettingsParserFields, EachRequiredAttributeIs108WhereItIsAbsent) {
  for (const char* tag : {"DataField", "DerivedField"}) {
    const string good = string("<") + tag +
                        " name=\"a\" displayName=\"A\" dataType=\"double\" optype=\"continuous\"/>";
    const string field = Replaced(good, "\"a\"", "\"b\"");
    for (const char* attribute : {"name", "dataType", "optype"}) {
      const string fields = good + Without(field, attribute) + field;
      EXPECT_EQ(string(tag) == "DataField" ? Read(fields) : ReadDerived(fields),
                "a|A cont storage 2 (missing, max) missing {}\n108")
          << attribute;
    }
  }
}

TEST(MCSettingsParserFields, EveryFieldIsTakenWithItsValues) {
  EXPECT_EQ(Read("<DataField name=\"s\" displayName=\"S\" optype=\"ordinal\" dataType=\"string\">"
                 "<Value value=\"a\" displayValue=\"A\"/><Value value=\"?\" property=\"invalid\" "
                 "displayValue=\"none\"/><Interval leftMargin=\"x\"/></DataField>"
                 "<DataField name=\"n\" optype=\"categorical\" dataType=\"integer\">"
                 "<Value value=\"1\"/><Value value=\"9\" property=\"missing\"/>"
                 "<Extension name=\"invalidRangeLower\" value=\"90\"/></DataField>"
                 "<DerivedField name=\"d\" optype=\"continuous\" dataType=\"double\"/>"),
            "s|S string storage 3 {a=A} missing {?=none}\n"
            "n| num storage 1 {1} missing {9} [90, max]");
  EXPECT_EQ(Read(Continuous("") + Continuous("")),
            "x| cont storage 2 (missing, max) missing {}\n111");
}

// What the children of a continuous field make its range: "(low, high)" or the code.
string Range(const string& children) {
  const string text = Read(Continuous(children));
  const string head = "x| cont storage 2 ";
  return text.substr(0, head.size()) == head ? text.substr(head.size()) : text;
}

TEST(MCSettingsParserFields, IntervalTellsTheRangeOfAField) {
  const struct {
    const char* interval;
    const char* outcome;
  } cases[] = {
      {"", "(missing, max) missing {}"},
      {"<Interval leftMargin=\"-1\" rightMargin=\"2.5\"/>", "(-1, 2.5) missing {}"},
      {"<Interval leftMargin=\"2\" rightMargin=\"2\"/>", "(2, 2) missing {}"},
      {"<Interval leftMargin=\"-1\"/>", "(-1, max) missing {}"},
      // A left margin that is absent isn't the lowest number but the smallest positive one.
      {"<Interval rightMargin=\"3\"/>", "(tiny, 3) missing {}"},
      {"<Interval rightMargin=\"0\"/>", "109"},
      {"<Interval rightMargin=\"-3\"/>", "109"},
      {"<Interval/>", "(tiny, max) missing {}"},
      {"<Interval leftMargin=\"3\" rightMargin=\"2\"/>", "109"},
      {"<Interval leftMargin=\"low\" rightMargin=\"2\"/>", "109"},
      {"<Interval leftMargin=\"1\" rightMargin=\"\"/>", "109"},
      {"<Interval leftMargin=\"-INF\"/>", "109"},
      {"<Interval leftMargin=\"NaN\" rightMargin=\"2\"/>", "(missing, 2) missing {}"},
      {"<Interval leftMargin=\"1\" rightMargin=\"NaN\"/>", "109"},
      {"<Interval leftMargin=\"1\" rightMargin=\"2\"/><Interval leftMargin=\"3\"/>",
       "(3, max) missing {}"},
      {"<Interval leftMargin=\"x\"/><Interval leftMargin=\"1\"/>", "109"},
      {"<Extension><Interval leftMargin=\"1\" rightMargin=\"2\"/></Extension>",
       "(missing, max) missing {}"},
      {"<Value value=\"7\" property=\"missing\"/><Interval leftMargin=\"1\" rightMargin=\"5\"/>"
       "<Extension name=\"invalidRangeUpper\" value=\"0\"/>",
       "(1, 5) missing {7} [missing, 0]"}};
  for (const auto& [interval, outcome] : cases) EXPECT_EQ(Range(interval), outcome) << interval;
}

TEST(MCSettingsParserFields, RangeIsReadInEveryNumericField) {
  const string interval = "<Interval leftMargin=\"x\"/>";
  EXPECT_EQ(Read(Field("optype=\"categorical\" dataType=\"integer\"", interval)), "109");
  EXPECT_EQ(Read(Field("optype=\"categorical\" dataType=\"string\"", interval)),
            "x| string storage 3 {} missing {}");
  EXPECT_EQ(Read(Field("optype=\"continuous\" dataType=\"string\"", interval)),
            "x| cont storage 3 (missing, max) missing {}");
}

const char kBins[] =
    "<DerivedField name=\"b\" optype=\"categorical\" dataType=\"integer\"><Discretize field=\"x\">"
    "<DiscretizeBin binValue=\"0\"><Interval rightMargin=\"1\"/></DiscretizeBin>"
    "<DiscretizeBin binValue=\"1\"><Interval leftMargin=\"1\" rightMargin=\"4\"/></DiscretizeBin>"
    "</Discretize></DerivedField>";

TEST(MCSettingsParserFields, BinsBeatTheRange) {
  const string field = Continuous("<Interval leftMargin=\"-7\" rightMargin=\"7\"/>");
  EXPECT_EQ(Read(field, true, Transformations(kBins)),
            "x| cont storage 2 (missing, 4) missing {} cuts 1");
  EXPECT_EQ(Read(field, false, Transformations(kBins)), "x| cont storage 2 (-7, 7) missing {}");
  EXPECT_EQ(Read(field, true, Transformations("")), "110");
  EXPECT_EQ(Read(field, true), "110");
  const string oneBin = Replaced(kBins, "<Interval rightMargin=\"1\"/>", "");
  EXPECT_EQ(Read(field, true, Transformations(oneBin)), "x| cont storage 2 (-7, 7) missing {}");
}

TEST(MCSettingsParserFields, DerivedFieldsAreReadAsFieldsWithoutBins) {
  EXPECT_EQ(ReadDerived(""), "");
  EXPECT_EQ(ReadDerived(string(kBins) + Continuous("", "DerivedField")),
            "b| num storage 1 {} missing {}\nx| cont storage 2 (missing, max) missing {}");
  EXPECT_EQ(ReadDerived(Continuous("") + "<DerivedField/>"), "108");
  EXPECT_EQ(ReadDerived(Continuous("<Interval leftMargin=\"1\"/>", "DerivedField")),
            "x| cont storage 2 (1, max) missing {}");
}

TEST(MCSettingsParserFields, ExtensionOfADerivedFieldMayHoldItsRange) {
  const auto read = [](const string& children) {
    return ReadDerived(Continuous(children, "DerivedField"));
  };
  EXPECT_EQ(read("<Extension name=\"invalidRangeLower\" value=\"90\">"
                 "<Interval leftMargin=\"1\" rightMargin=\"5\"/></Extension>"),
            "x| cont storage 2 (1, 5) missing {} [90, max]");
  EXPECT_EQ(read("<Extension><Interval rightMargin=\"5\"/></Extension>"),
            "x| cont storage 2 (tiny, 5) missing {}");
  EXPECT_EQ(read("<Extension><Interval leftMargin=\"x\"/></Extension>"), "109");
  EXPECT_EQ(read("<Interval leftMargin=\"1\"/><Extension><x/><Interval leftMargin=\"2\"/>"
                 "<Interval leftMargin=\"3\"/></Extension>"),
            "x| cont storage 2 (2, max) missing {}");
  EXPECT_EQ(
      ReadDerived(Field("optype=\"categorical\" dataType=\"string\"",
                        "<Extension><Interval leftMargin=\"x\"/></Extension>", "DerivedField")),
      "x| string storage 3 {} missing {}");
}

TEST(MCSettingsParserFields, WithoutTransformationsNothingIsDone) {
  MCSettingsParser parser;
  ASSERT_EQ(ParseText(parser, DictionaryText(Continuous(""), kTask)), 0);
  MCVarList list;
  EXPECT_TRUE(parser.FillTransDict(list).IsOK());
  EXPECT_EQ(list.Size(), 0);
}

TEST(MCSettingsParserFields, BothDictionariesFillOneList) {
  MCSettingsParser parser;
  ASSERT_EQ(ParseText(parser, DictionaryText(Continuous(""), Transformations(kBins) + kTask)), 0);
  MCVarList list;
  EXPECT_TRUE(parser.FillVarList(list, true).IsOK());
  EXPECT_TRUE(parser.FillTransDict(list).IsOK());
  EXPECT_EQ(list.Size(), 2);
  EXPECT_EQ(parser.FillTransDict(list).GetErrorCode(), 111);
}

// The reader of PMML is still there, with its own types and without ranges.
TEST(MCSettingsParserFields, SettingsCanBeReadAsPmml) {
  MCSettingsParser parser;
  ASSERT_EQ(ParseText(parser, DictionaryText(Continuous("<Interval leftMargin=\"1\"/>"), kTask)),
            0);
  MCVarList list;
  EXPECT_TRUE(parser.MCPMMLParser::FillVarList(list, {"x"}, false).IsOK());
  EXPECT_EQ(ListText(list), "x| cont (missing, max) missing {}");
}

}  // namespace
