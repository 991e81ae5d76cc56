// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcpmmlexporter.h"

#include "mcxml/writetree.h"
#include "metadata/mccatvar.h"
#include "regression/frame/mcmv.h"
#include "support/exacttype.h"
#include "support/pmmlcheck.h"
#include "support/scriptedcancel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <limits>
#include <memory>
#include <sstream>

namespace {

using namespace MCCommonMetadata;
using MCCommon::MCStatus;
using MCCommonXML::ExportFormat;
using MCCommonXML::XMLElement;
using mctest::Is;
using mctest::ScriptedCancel;
using std::string;
using std::vector;

static_assert(std::is_constructible_v<MCPMMLExporter, MCQueryCancel*>);
static_assert(!std::has_virtual_destructor_v<MCPMMLExporter>);
static_assert(Is<XMLElement* (MCPMMLExporter::*)() const>(&MCPMMLExporter::ExportPMMLElement));
static_assert(Is<MCStatus (MCPMMLExporter::*)(const MCApplicInfo4XML*, const string&, bool,
                                              XMLElement*&)>(&MCPMMLExporter::ExportHeader));
static_assert(Is<MCStatus (MCPMMLExporter::*)(const MCVarList&, const vector<int>&, XMLElement*&)>(
    &MCPMMLExporter::ExportDataDictionary));
static_assert(Is<MCStatus (MCPMMLExporter::*)(const MCUniStats&, XMLElement*&)>(
    &MCPMMLExporter::ExportUniStats));
using ExportText = void (MCPMMLExporter::*)(const string&, const string&, XMLElement*&);
using ExportNumber = void (MCPMMLExporter::*)(const string&, double, XMLElement*&);
[[maybe_unused]] constexpr ExportText kExportText = &MCPMMLExporter::ExportExtension;
[[maybe_unused]] constexpr ExportNumber kExportNumber = &MCPMMLExporter::ExportExtension;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kLargest = std::numeric_limits<double>::max();

using Owned = std::unique_ptr<XMLElement>;

/// The element on one line.
string Text(const XMLElement& element) {
  string text;
  ExportFormat format;
  format.SetFormat(false);
  element.ToString(text, format);
  return text;
}

string Text(XMLElement* element) {
  const Owned owned(element);
  return owned == nullptr ? "null" : Text(*owned);
}

string Header(const MCApplicInfo4XML* info, const string& description) {
  MCPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  EXPECT_EQ(exporter.ExportHeader(info, description, false, out).GetErrorCode(), 0);
  return Text(out);
}

string Dictionary(const MCVarList& list, const vector<int>& indices = {}) {
  MCPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  const MCStatus status = exporter.ExportDataDictionary(list, indices, out);
  EXPECT_EQ(status.GetErrorCode(), 0);
  return Text(out);
}

string UniStats(const MCUniStats& stats) {
  MCPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  EXPECT_EQ(exporter.ExportUniStats(stats, out).GetErrorCode(), 0);
  return Text(out);
}

/// A document of a header, a dictionary and statistics, as a host puts one together.
string DocumentText(const MCVarList& list, const vector<MCUniStats>& stats) {
  MCPMMLExporter exporter(nullptr);
  const Owned root(exporter.ExportPMMLElement());
  XMLElement* out = nullptr;
  const MCApplicInfo4XML info("host", "2.5");
  EXPECT_FALSE(exporter.ExportHeader(&info, "A test", true, out).IsError());
  root->AddElement(out);
  EXPECT_FALSE(exporter.ExportDataDictionary(list, {}, out).IsError());
  root->AddElement(out);

  XMLElement* model = XMLElement::Create("TreeModel");
  root->AddElement(model);
  model->AddAttribute("functionName", "classification");
  XMLElement* schema = XMLElement::Create("MiningSchema");
  model->AddElement(schema);
  XMLElement* all = XMLElement::Create("ModelStats");
  model->AddElement(all);
  for (const MCUniStats& one : stats) {
    XMLElement* field = XMLElement::Create("MiningField");
    schema->AddElement(field);
    field->AddAttribute("name", one.GetVarName());
    EXPECT_FALSE(exporter.ExportUniStats(one, out).IsError());
    all->AddElement(out);
  }
  XMLElement* node = XMLElement::Create("Node");
  model->AddElement(node);
  node->AddAttribute("score", "all");
  node->AddElement(XMLElement::Create("True"));

  std::ostringstream text;
  WriteTree(text, nullptr, root.get(), true);
  return text.str();
}

string Field(const string& attributes, const string& children) {
  return "<DataDictionary numberOfFields=\"1\"><DataField " + attributes +
         (children.empty() ? "/>" : ">" + children + "</DataField>") + "</DataDictionary>";
}

MCVarList OneVariable(const string& name = "x") {
  MCVarList list;
  list.AddContVar(name, "", MC_ROLE_INPUT);
  return list;
}

// Three inputs, of which the second isn't used, and a target.
MCVarList FourVariables() {
  MCVarList list;
  list.AddContVar("a", "", MC_ROLE_INPUT);
  list.AddContVar("b", "", MC_ROLE_UNUSED);
  list.AddContVar("c", "", MC_ROLE_UNDEFINED);
  list.AddContVar("d", "", MC_ROLE_TARGET);
  return list;
}

string Continuous(const string& name) {
  return "<DataField name=\"" + name + "\" optype=\"continuous\" dataType=\"float\"/>";
}

TEST(MCApplicInfo4XML, HoldsThreeTextsThatAreEmptyAtFirst) {
  const MCApplicInfo4XML none;
  EXPECT_EQ(none.fName + none.fVersion + none.fCopyright, "");
  const MCApplicInfo4XML all("n", "v", "c");
  EXPECT_EQ(all.fName, "n");
  EXPECT_EQ(all.fVersion, "v");
  EXPECT_EQ(all.fCopyright, "c");
}

TEST(MCPMMLExporter, TheRootNamesVersionAndSchema) {
  EXPECT_EQ(Text(MCPMMLExporter(nullptr).ExportPMMLElement()),
            "<PMML version=\"3.2\" xmlns=\"http://www.dmg.org/PMML-3_2\""
            " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
            " xsi:schemaLocation=\"http://www.dmg.org/PMML-3_2 pmml-3-2.xsd\"/>");
}

TEST(MCPMMLExporterHeader, WithoutInfoHoldsTheCopyrightOfTheDeployment) {
  EXPECT_EQ(Header(nullptr, ""), "<Header copyright=\"Copyright (c) The mcstat authors\"/>");
}

TEST(MCPMMLExporterHeader, HoldsWhatIsKnownOfTheApplication) {
  const struct {
    MCApplicInfo4XML info;
    const char* description;
    const char* text;
  } cases[] = {
      {MCApplicInfo4XML("n", "1.2", "mine"), "what",
       "<Header copyright=\"mine\" description=\"what\">"
       "<Application name=\"n\" version=\"1.2\"/></Header>"},
      {MCApplicInfo4XML("n", "", "mine"), "",
       "<Header copyright=\"mine\"><Application name=\"n\"/></Header>"},
      {MCApplicInfo4XML("", "1.2", "mine"), "",
       "<Header copyright=\"mine\"><Application version=\"1.2\"/></Header>"},
      {MCApplicInfo4XML("", "", ""), "what",
       "<Header copyright=\"Copyright (c) The mcstat authors\" description=\"what\"/>"},
  };
  for (const auto& one : cases) EXPECT_EQ(Header(&one.info, one.description), one.text);
}

// The text is the local time, whatever the time zone: it lies between the times before and after.
TEST(MCPMMLExporterHeader, CarriesTheLocalTime) {
  MCPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  const std::time_t before = std::time(nullptr);
  ASSERT_EQ(exporter.ExportHeader(nullptr, "", true, out).GetErrorCode(), 0);
  const std::time_t after = std::time(nullptr);
  const string text = Text(out);
  bool isBetween = false;
  for (std::time_t time = before; time <= after; ++time) {
    const string line = std::ctime(&time);
    isBetween |= text == "<Header copyright=\"Copyright (c) The mcstat authors\"><Timestamp>" +
                             line.substr(0, line.size() - 1) + "</Timestamp></Header>";
  }
  EXPECT_TRUE(isBetween) << text;
}

TEST(MCPMMLExporterHeader, AsksNobodyWhetherToCancel) {
  ScriptedCancel cancel(1);
  MCPMMLExporter exporter(&cancel);
  XMLElement* out = nullptr;
  EXPECT_EQ(exporter.ExportHeader(nullptr, "", false, out).GetErrorCode(), 0);
  EXPECT_NE(Text(out), "null");
  EXPECT_EQ(exporter.ExportUniStats(MCUniStats("x", 0.0, {}), out).GetErrorCode(), 0);
  EXPECT_NE(Text(out), "null");
  EXPECT_EQ(cancel.fPolls + cancel.fIsCancelCalls, 0);
}

TEST(MCPMMLExporterDictionary, WithoutIndicesHoldsAllVariablesThatAreUsed) {
  EXPECT_EQ(Dictionary(FourVariables()), "<DataDictionary numberOfFields=\"3\">" + Continuous("a") +
                                             Continuous("c") + Continuous("d") +
                                             "</DataDictionary>");
}

TEST(MCPMMLExporterDictionary, HoldsTheVariablesAskedForInTheirOrder) {
  EXPECT_EQ(Dictionary(FourVariables(), {3, 1, 3}), "<DataDictionary numberOfFields=\"3\">" +
                                                        Continuous("d") + Continuous("b") +
                                                        Continuous("d") + "</DataDictionary>");
}

TEST(MCPMMLExporterDictionary, OfAnEmptyListHasNoFields) {
  EXPECT_EQ(Dictionary(MCVarList()), "<DataDictionary numberOfFields=\"0\"/>");
}

TEST(MCPMMLExporterDictionary, CountsItsFieldsWithoutADecimalPoint) {
  MCVarList list;
  for (int i = 0; i < 12; ++i) list.AddContVar("x" + std::to_string(i), "", MC_ROLE_INPUT);
  EXPECT_THAT(Dictionary(list), testing::StartsWith("<DataDictionary numberOfFields=\"12\">"));
}

TEST(MCPMMLExporterDictionary, EndsBeforeAnIndexOutOfRange) {
  const struct {
    vector<int> indices;
    int bad;
    string text;
  } cases[] = {
      {{4}, 4, "<DataDictionary numberOfFields=\"0\"/>"},
      {{-1}, -1, "<DataDictionary numberOfFields=\"0\"/>"},
      {{0, std::numeric_limits<int>::min(), 2},
       std::numeric_limits<int>::min(),
       "<DataDictionary numberOfFields=\"1\">" + Continuous("a") + "</DataDictionary>"},
      {{2, 0, 99, -3},
       99,
       "<DataDictionary numberOfFields=\"2\">" + Continuous("c") + Continuous("a") +
           "</DataDictionary>"},
  };
  for (const auto& one : cases) {
    MCPMMLExporter exporter(nullptr);
    XMLElement* out = nullptr;
    const MCStatus status = exporter.ExportDataDictionary(FourVariables(), one.indices, out);
    EXPECT_EQ(status.GetErrorCode(), 101);
    EXPECT_TRUE(status.IsError());
    EXPECT_EQ(status.GetDiscreteDatum(0), one.bad);
    EXPECT_EQ(Text(out), one.text);
  }
}

TEST(MCPMMLExporterDictionary, TellsLevelsAndLabels) {
  MCVarList list;
  list.AddCatVar("s", "strings", 2, MC_LEVEL_CAT_STRING, MC_ROLE_INPUT);
  list.AddCatVar("n", "", 2, MC_LEVEL_CAT_NUM, MC_ROLE_INPUT);
  list.AddCatVar("o", "", 2, MC_LEVEL_CAT_NUM, MC_ROLE_INPUT);
  list.AddCatVar("p", "", 2, MC_LEVEL_CAT_STRING, MC_ROLE_INPUT);
  list.AddCatVar("u", "", 2, MC_LEVEL_UNKNOWN, MC_ROLE_INPUT);
  list.AddCatVar("v", "", 2, static_cast<MeasureLevel>(9), MC_ROLE_INPUT);
  list.AddContVar("c", "a < b & \"c\"", MC_ROLE_INPUT);
  list.SetWeightVar("w", "", MC_ROUND_AS_IS);
  for (const int i : {2, 3}) dynamic_cast<MCCatVar&>(*list.GetVarAt(i)).SetOrdinalFlag(true);
  EXPECT_EQ(
      Dictionary(list),
      "<DataDictionary numberOfFields=\"8\">"
      "<DataField name=\"s\" displayName=\"strings\" optype=\"categorical\" dataType=\"string\"/>"
      "<DataField name=\"n\" optype=\"categorical\" dataType=\"float\"/>"
      "<DataField name=\"o\" optype=\"ordinal\" dataType=\"float\"/>"
      "<DataField name=\"p\" optype=\"ordinal\" dataType=\"string\"/>"
      "<DataField name=\"u\" dataType=\"float\"/>"
      "<DataField name=\"v\" dataType=\"float\"/>"
      "<DataField name=\"c\" displayName=\"a &lt; b &amp; &quot;c&quot;\" optype=\"continuous\" "
      "dataType=\"float\"/>"
      "<DataField name=\"w\" optype=\"continuous\" dataType=\"float\"/></DataDictionary>");
}

const char kStrings[] = "name=\"s\" optype=\"categorical\" dataType=\"string\"";
const char kNumbers[] = "name=\"n\" optype=\"categorical\" dataType=\"float\"";
const char kScale[] = "name=\"x\" optype=\"continuous\" dataType=\"float\"";

TEST(MCPMMLExporterDictionary, ListsCategoriesWithTheirLabels) {
  MCVarList strings;
  strings.AddCatVar("s", "", vector<string>{"lo", "mid", "hi"}, {"Low", ""}, MC_ROLE_INPUT);
  EXPECT_EQ(Dictionary(strings),
            Field(kStrings,
                  "<Value value=\"lo\" displayValue=\"Low\" property=\"valid\"/>"
                  "<Value value=\"mid\" property=\"valid\"/>"
                  "<Value value=\"hi\" property=\"valid\"/>"));
  MCVarList numbers;
  numbers.AddCatVar("n", "", vector<double>{0.5, -2.0}, {"half", "minus two", "beyond"},
                    MC_ROLE_INPUT);
  EXPECT_EQ(Dictionary(numbers),
            Field(kNumbers,
                  "<Value value=\"0.5\" displayValue=\"half\" property=\"valid\"/>"
                  "<Value value=\"-2\" displayValue=\"minus two\" property=\"valid\"/>"));
}

TEST(MCPMMLExporterDictionary, LeavesLabelsOutWhereTheNumbersOfCategoriesDiffer) {
  MCVarList list;
  // A repeated value counts as a category of the variable and not of the encoder.
  list.AddCatVar("s", "", vector<string>{"a", "b", "a"}, {"A", "B", "C"}, MC_ROLE_INPUT);
  list.GetEncoderAt(0)->AddDiscreteUserMissing("?", "unknown");
  EXPECT_EQ(Dictionary(list),
            Field(kStrings,
                  "<Value value=\"a\" property=\"valid\"/>"
                  "<Value value=\"b\" property=\"valid\"/>"
                  "<Value value=\"?\" displayValue=\"unknown\" property=\"missing\"/>"));
}

TEST(MCPMMLExporterDictionary, ListsMissingValuesBehindTheCategories) {
  MCVarList numbers;
  numbers.AddCatVar("n", "", vector<double>{1.0}, MC_ROLE_INPUT);
  numbers.GetEncoderAt(0)->AddDiscreteUserMissing(-9.0, "refused");
  numbers.GetEncoderAt(0)->AddDiscreteUserMissing(-8.5, "");
  EXPECT_EQ(Dictionary(numbers),
            Field(kNumbers,
                  "<Value value=\"1\" property=\"valid\"/>"
                  "<Value value=\"-9\" displayValue=\"refused\" property=\"missing\"/>"
                  "<Value value=\"-8.5\" property=\"missing\"/>"));
  MCVarList scale = OneVariable();
  scale.GetEncoderAt(0)->AddDiscreteUserMissing(99.0, "");
  EXPECT_EQ(Dictionary(scale), Field(kScale, "<Value value=\"99\" property=\"missing\"/>"));
  MCVarList weight;
  weight.SetWeightVar("x", "", MC_ROUND_NEAREST);
  weight.GetEncoderAt(0)->AddDiscreteUserMissing(7.0, "lucky");
  EXPECT_EQ(Dictionary(weight),
            Field(kScale, "<Value value=\"7\" displayValue=\"lucky\" property=\"missing\"/>"));
}

string Bound(const char* name, const char* value) {
  return string("<Extension name=\"") + name + "\" value=\"" + value +
         "\" extender=\"mcstat.example\"/>";
}

TEST(MCPMMLExporterDictionary, TellsTheBoundsOfTheMissingIntervalBehindAllValues) {
  const struct {
    double low;
    double high;
    string text;
  } cases[] = {
      {-99.0, -1.5, Bound("invalidRangeLower", "-99") + Bound("invalidRangeUpper", "-1.5")},
      {90.0, kLargest, Bound("invalidRangeLower", "90")},
      {kLowest, 0.0, Bound("invalidRangeUpper", "0")},
      {kLowest, kLargest, ""},
  };
  for (const auto& one : cases) {
    MCVarList list = OneVariable();
    ASSERT_TRUE(list.GetEncoderAt(0)->SetMissingInterval(one.low, one.high));
    EXPECT_EQ(Dictionary(list), Field(kScale, one.text));
    list.GetEncoderAt(0)->AddDiscreteUserMissing(5.0, "");
    EXPECT_EQ(Dictionary(list),
              Field(kScale, "<Value value=\"5\" property=\"missing\"/>" + one.text));
  }
}

TEST(MCPMMLExporterDictionary, AVariableWithoutEncoderIsAFieldWithoutValues) {
  MCVarList list;
  list.AddCatVar("s", "", vector<string>{"a"}, MC_ROLE_TARGET);
  EXPECT_FALSE(list.ChangeTargetEncoder(nullptr));
  EXPECT_EQ(Dictionary(list), Field(kStrings, ""));
}

TEST(MCPMMLExporterDictionary, AsksBeforeEachFieldAndAtTheEndWhetherToCancel) {
  ScriptedCancel cancel;
  MCPMMLExporter exporter(&cancel);
  XMLElement* out = nullptr;
  EXPECT_EQ(exporter.ExportDataDictionary(FourVariables(), {}, out).GetErrorCode(), 0);
  Text(out);
  EXPECT_EQ(cancel.fPolls, 3 + 1);
  EXPECT_EQ(cancel.fIsCancelCalls, 0);
  EXPECT_EQ(exporter.ExportDataDictionary(MCVarList(), {}, out).GetErrorCode(), 0);
  Text(out);
  EXPECT_EQ(cancel.fPolls, 4 + 1);
}

TEST(MCPMMLExporterDictionary, ACancelThatLastsLeavesNothing) {
  for (int poll = 1; poll <= 4; ++poll) {
    ScriptedCancel cancel(poll);
    MCPMMLExporter exporter(&cancel);
    const Owned before(XMLElement::Create("before"));
    XMLElement* out = before.get();
    const MCStatus status = exporter.ExportDataDictionary(FourVariables(), {}, out);
    EXPECT_EQ(status.GetErrorCode(), 1);
    EXPECT_TRUE(status.IsError());
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(cancel.fPolls, poll < 4 ? poll + 1 : 4);
  }
}

TEST(MCPMMLExporterDictionary, ACancelThatPassesLeavesTheFieldsBeforeIt) {
  ScriptedCancel cancel(2, ScriptedCancel::kOnce);
  MCPMMLExporter exporter(&cancel);
  XMLElement* out = nullptr;
  EXPECT_EQ(exporter.ExportDataDictionary(FourVariables(), {}, out).GetErrorCode(), 0);
  EXPECT_EQ(Text(out),
            "<DataDictionary numberOfFields=\"1\">" + Continuous("a") + "</DataDictionary>");
}

TEST(MCPMMLExporterDictionary, ACancelReplacesAnEarlierError) {
  ScriptedCancel cancel(2);
  MCPMMLExporter exporter(&cancel);
  XMLElement* out = nullptr;
  EXPECT_EQ(exporter.ExportDataDictionary(FourVariables(), {77}, out).GetErrorCode(), 1);
  EXPECT_EQ(out, nullptr);
}

TEST(MCPMMLExporterExtension, LeavesOutWhatIsEmpty) {
  MCPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  exporter.ExportExtension("n", string("v"), out);
  EXPECT_EQ(Text(out), "<Extension name=\"n\" value=\"v\" extender=\"mcstat.example\"/>");
  exporter.ExportExtension("", string("v"), out);
  EXPECT_EQ(Text(out), "<Extension value=\"v\" extender=\"mcstat.example\"/>");
  exporter.ExportExtension("n", string(), out);
  EXPECT_EQ(Text(out), "<Extension name=\"n\" extender=\"mcstat.example\"/>");
  exporter.ExportExtension("", string(), out);
  EXPECT_EQ(Text(out), "<Extension extender=\"mcstat.example\"/>");
}

TEST(MCPMMLExporterExtension, AlwaysTellsANumber) {
  MCPMMLExporter exporter(nullptr);
  XMLElement* out = nullptr;
  exporter.ExportExtension("n", 1.0 / 3.0, out);
  EXPECT_EQ(Text(out),
            "<Extension name=\"n\" value=\"0.333333333333333\" extender=\"mcstat.example\"/>");
  exporter.ExportExtension("", 0.0, out);
  EXPECT_EQ(Text(out), "<Extension value=\"0\" extender=\"mcstat.example\"/>");
  exporter.ExportExtension("", kMissing, out);
  EXPECT_EQ(Text(out), "<Extension value=\"-1.79769313486232e+308\" extender=\"mcstat.example\"/>");
}

TEST(MCPMMLExporterUniStats, OfCategoriesAreTheirFrequencies) {
  EXPECT_EQ(UniStats(MCUniStats("s", 6.5, {1.0, 2.25, 0.0, 1e20, 1.0 / 3.0})),
            "<UnivariateStats field=\"s\"><Counts totalFreq=\"6.5\"/><DiscrStats>"
            "<Array type=\"real\">1 2.25 0 1e+20 0.333333333333333</Array>"
            "</DiscrStats></UnivariateStats>");
  EXPECT_EQ(UniStats(MCUniStats("s", 7.0, {7.0})),
            "<UnivariateStats field=\"s\"><Counts totalFreq=\"7\"/><DiscrStats>"
            "<Array type=\"real\">7</Array></DiscrStats></UnivariateStats>");
  EXPECT_EQ(UniStats(MCUniStats("s", 0.0, {})),
            "<UnivariateStats field=\"s\"><Counts totalFreq=\"0\"/><DiscrStats>"
            "<Array type=\"real\"/></DiscrStats></UnivariateStats>");
}

MCUniStats Scale(const vector<double>& frequencies, const vector<double>& cuts) {
  return MCUniStats("x", 4.0, {1.0, 9.5, 4.25, 2.5}, frequencies, cuts);
}

const string kSummary =
    "<UnivariateStats field=\"x\"><Counts totalFreq=\"4\"/>"
    "<NumericInfo minimum=\"1\" maximum=\"9.5\" mean=\"4.25\" standardDeviation=\"2.5\"/>";

TEST(MCPMMLExporterUniStats, WithoutCutPointsHoldAnEmptyHistogram) {
  EXPECT_EQ(UniStats(Scale({}, {})), kSummary + "<ContStats/></UnivariateStats>");
}

TEST(MCPMMLExporterUniStats, HoldIntervalsThenFrequencies) {
  EXPECT_EQ(UniStats(Scale({1.0, 3.0}, {1.0, 2.5, 9.5})),
            kSummary +
                "<ContStats>"
                "<Interval leftMargin=\"1\" rightMargin=\"2.5\" closure=\"openClosed\"/>"
                "<Interval leftMargin=\"2.5\" rightMargin=\"9.5\" closure=\"openClosed\"/>"
                "<Array type=\"real\">1 3</Array></ContStats></UnivariateStats>");
}

TEST(MCPMMLExporterUniStats, TellNoMarginThatIsMissing) {
  MCUniStats stats = Scale({1.0, 2.0, 1.0}, {kMissing, 1.0, 2.0, kMissing});
  stats.SetIntervalsOpenLeft(false);
  EXPECT_EQ(UniStats(stats),
            kSummary +
                "<ContStats><Interval rightMargin=\"1\" closure=\"closedOpen\"/>"
                "<Interval leftMargin=\"1\" rightMargin=\"2\" closure=\"closedOpen\"/>"
                "<Interval leftMargin=\"2\" closure=\"closedOpen\"/>"
                "<Array type=\"real\">1 2 1</Array></ContStats></UnivariateStats>");
}

TEST(MCPMMLExporterUniStats, TellNoSummaryThatIsMissing) {
  EXPECT_EQ(UniStats(MCUniStats("x", 0.0, {}, {}, {})),
            "<UnivariateStats field=\"x\"><Counts totalFreq=\"0\"/><NumericInfo/>"
            "<ContStats/></UnivariateStats>");
  EXPECT_EQ(UniStats(MCUniStats("x", 1.0, {2.0, kMissing, 2.0, kMissing}, {}, {})),
            "<UnivariateStats field=\"x\"><Counts totalFreq=\"1\"/>"
            "<NumericInfo minimum=\"2\" mean=\"2\"/><ContStats/></UnivariateStats>");
}

TEST(MCPMMLExporterUniStats, AreRefusedUnlessTheyAreValid) {
  const MCUniStats refused[] = {
      MCUniStats(),                           // no name
      MCUniStats("s", -1.0, {}),              // a negative number of cases
      MCUniStats("s", 2.0, {1.0, kMissing}),  // a frequency that is missing
      Scale({1.0}, {1.0}),                    // one cut point
      Scale({}, {1.0, 2.0}),                  // cut points without frequencies
  };
  for (const MCUniStats& stats : refused) {
    MCPMMLExporter exporter(nullptr);
    const Owned before(XMLElement::Create("before"));
    XMLElement* out = before.get();
    const MCStatus status = exporter.ExportUniStats(stats, out);
    EXPECT_EQ(status.GetErrorCode(), 117);
    EXPECT_TRUE(status.IsError());
    EXPECT_EQ(out, nullptr);
  }
}

MCVarList AllKinds() {
  MCVarList list;
  list.AddCatVar("region", "Sales & region", vector<string>{"north", "south"}, {"N", "S"},
                 MC_ROLE_INPUT);
  list.AddCatVar("grade", "", vector<double>{1.0, 2.0}, MC_ROLE_INPUT);
  list.AddContVar("yield", "t/ha", MC_ROLE_TARGET);
  list.SetWeightVar("cases", "", MC_ROUND_TRUNCATE);
  for (const int i : {1, 2, 3}) list.GetEncoderAt(i)->AddDiscreteUserMissing(-1.0, "none");
  list.GetEncoderAt(0)->AddDiscreteUserMissing("NA", "");
  return list;
}

const vector<MCUniStats>& StatsOfAllKinds() {
  static const vector<MCUniStats> stats = {
      MCUniStats("region", 12.0, {5.0, 7.0}), MCUniStats("grade", 12.0, {12.0, 0.0}),
      MCUniStats("yield", 10.0, {1.0, 8.0, 3.0, 2.0}, {4.0, 6.0}, {kMissing, 2.5, 8.0})};
  return stats;
}

TEST(MCPMMLExporter, PiecesMakeADocumentThatTheStandardAllows) {
  EXPECT_EQ(mctest::PmmlFaults(DocumentText(AllKinds(), StatsOfAllKinds())), "");
}

// Where the interval stands behind the values, it does so knowingly.
TEST(MCPMMLExporter, AnIntervalBehindValuesIsAllThatADocumentIsFaultedFor) {
  MCVarList list = OneVariable();
  list.GetEncoderAt(0)->SetMissingInterval(-2.0, -1.0);
  const vector<MCUniStats> stats = {MCUniStats("x", 0.0, {}, {}, {})};
  EXPECT_EQ(mctest::PmmlFaults(DocumentText(list, stats)), "");
  list.GetEncoderAt(0)->AddDiscreteUserMissing(9.0, "");
  EXPECT_THAT(mctest::PmmlFaults(DocumentText(list, stats)),
              testing::StartsWith("DataField holds Value Extension Extension \n"));
}

TEST(MCPMMLExporter, ADocumentIsWrittenLineByLine) {
  MCPMMLExporter exporter(nullptr);
  const Owned root(exporter.ExportPMMLElement());
  XMLElement* out = nullptr;
  EXPECT_FALSE(exporter.ExportHeader(nullptr, "", false, out).IsError());
  root->AddElement(out);
  EXPECT_FALSE(exporter.ExportDataDictionary(OneVariable("x y"), {}, out).IsError());
  root->AddElement(out);
  std::ostringstream text;
  WriteTreeUTF8(text, nullptr, root.get(), true);
  EXPECT_EQ(text.str(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
            "\n<PMML"
            "\n\tversion=\"3.2\""
            "\n\txmlns=\"http://www.dmg.org/PMML-3_2\""
            "\n\txmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
            "\n\txsi:schemaLocation=\"http://www.dmg.org/PMML-3_2 pmml-3-2.xsd\">"
            "\n\t<Header"
            "\n\t\tcopyright=\"Copyright (c) The mcstat authors\"/>"
            "\n\t<DataDictionary"
            "\n\t\tnumberOfFields=\"1\">"
            "\n\t\t<DataField"
            "\n\t\t\tname=\"x y\""
            "\n\t\t\toptype=\"continuous\""
            "\n\t\t\tdataType=\"float\"/>"
            "\n\t</DataDictionary>"
            "\n</PMML>");
}

}  // namespace
