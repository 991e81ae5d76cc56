// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcpmmlparser.h"
#include "mcxml/writetree.h"
#include "metadata/mcpmmlexporter.h"
#include "readersupport.h"
#include "support/numbers.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

// Univariate statistics of a model.

namespace {

using namespace mctest;
using MCCommon::MCStatus;
using MCCommonMetadata::MCUniStats;
using MCComXPrsUtil::GetFirstChildElmt;
using MCComXPrsUtil::MCPMMLParser;
using std::string;
using std::vector;
using xercesc::DOMElement;

/// All that statistics tell: "name cases [frequencies]" and, of a continuous variable,
/// "(minimum maximum mean deviation) <cuts> open left".
string StatsText(const MCUniStats& stats) {
  string text = stats.GetVarName() + " " + NumberText(stats.GetNumberOfCases()) + " [" +
                NumbersText(stats.GetFrequencies()) + "]";
  if (stats.IsCategorical()) return text;
  const MCUniStats::SummStats& summary = stats.GetSummStats();
  text += " (" + NumbersText({summary.fMinimum, summary.fMaximum, summary.fMean, summary.fStdDev}) +
          ") <" + NumbersText(stats.GetCutPoints()) + ">";
  return text + (stats.AreIntervalsOpenLeft() ? " open left" : " open right");
}

/// A parser of a document whose model holds what is given.
class ModelParser {
public:
  explicit ModelParser(const string& insideModel) {
    EXPECT_EQ(ParseText(fParser, DictionaryText("", "<TreeModel>" + insideModel + "</TreeModel>")),
              0);
    const DOMElement* model = GetFirstChildElmt(*fParser.GetRootElement(), "TreeModel");
    EXPECT_TRUE(model != nullptr && fParser.SetModelElmt(*model));
  }

  const MCPMMLParser& operator*() const { return fParser; }
  const MCPMMLParser* operator->() const { return &fParser; }

  /// The element of a path of tags under the model.
  const DOMElement& At(const vector<const char*>& path) const {
    const DOMElement* element = GetFirstChildElmt(*fParser.GetRootElement(), "TreeModel");
    for (const char* tag : path) element = GetFirstChildElmt(*element, tag);
    return *element;
  }

private:
  MCPMMLParser fParser;
};

string Model(const string& stats) {
  return "<ModelStats>" + stats + "</ModelStats>";
}

string Categorical(const string& name) {
  return "<UnivariateStats field=\"" + name +
         "\"><Counts totalFreq=\"3\"/><DiscrStats><Array type=\"int\">1 2</Array></DiscrStats>"
         "</UnivariateStats>";
}

/// Reads the first statistics of a model: the code, and what `stats` then are.
string First(const string& stats, MCUniStats& read) {
  const ModelParser parser(Model(stats));
  const DOMElement* cursor = nullptr;
  const MCStatus status = parser->FillUniStats(read, cursor);
  EXPECT_EQ(status.IsOK(), cursor != nullptr) << stats;
  EXPECT_FALSE(status.IsWarning());
  return status.IsOK() ? StatsText(read) : std::to_string(status.GetErrorCode());
}

string First(const string& stats) {
  MCUniStats read;
  return First(stats, read);
}

TEST(MCPMMLParserStats, ModelWithoutStatisticsEndsAtOnce) {
  for (const string& model : {string(""), Model(""), Model("<Other/>"), string("<x/>")}) {
    const ModelParser parser(model);
    MCUniStats stats("before", 1.0, {1.0});
    const DOMElement* cursor = nullptr;
    EXPECT_TRUE(parser->FillUniStats(stats, cursor).IsOK()) << model;
    EXPECT_EQ(cursor, nullptr) << model;
    EXPECT_EQ(StatsText(stats), "before 1 [1]") << model;
  }
}

TEST(MCPMMLParserStats, CursorWalksThroughAllStatistics) {
  const ModelParser parser("<ModelStats>" + Categorical("a") + " text <x/>" + Categorical("b") +
                           "</ModelStats><ModelStats>" + Categorical("c") + "</ModelStats>");
  string names;
  MCUniStats stats;
  const DOMElement* cursor = nullptr;
  do {
    ASSERT_TRUE(parser->FillUniStats(stats, cursor).IsOK());
    if (cursor != nullptr) names += stats.GetVarName();
  } while (cursor != nullptr);
  EXPECT_EQ(names, "ab");
}

TEST(MCPMMLParserStats, CursorIsNullAfterAnError) {
  const ModelParser parser(Model(Categorical("a") + "<UnivariateStats/>" + Categorical("b")));
  MCUniStats stats;
  const DOMElement* cursor = nullptr;
  ASSERT_TRUE(parser->FillUniStats(stats, cursor).IsOK());
  EXPECT_EQ(parser->FillUniStats(stats, cursor), MCStatus(108, false));
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(stats.GetVarName(), "a");
}

TEST(MCPMMLParserStats, ModelIsRequired) {
  MCPMMLParser parser;
  ASSERT_EQ(ParseText(parser, DictionaryText("", "<TreeModel/>")), 0);
  MCUniStats stats;
  const DOMElement* cursor = parser.GetRootElement();
  EXPECT_EQ(parser.FillUniStats(stats, cursor), MCStatus(112, false));
  EXPECT_EQ(cursor, nullptr);
}

const char kContinuous[] =
    "<UnivariateStats field=\"x\"><Counts totalFreq=\"10\"/>"
    "<NumericInfo minimum=\"1\" maximum=\"9\" mean=\"5\" standardDeviation=\"2\"/>"
    "<ContStats><Interval leftMargin=\"0\" rightMargin=\"5\" closure=\"closedOpen\"/>"
    "<Interval leftMargin=\"5\" rightMargin=\"10\" closure=\"closedOpen\"/>"
    "<Array type=\"real\">4 6</Array></ContStats></UnivariateStats>";

TEST(MCPMMLParserStats, BothKindsAreRead) {
  EXPECT_EQ(First(Categorical("a")), "a 3 [1 2]");
  EXPECT_EQ(First(kContinuous), "x 10 [4 6] (1 9 5 2) <0 5 10> open right");
}

TEST(MCPMMLParserStats, NumericInfoMakesThemContinuous) {
  EXPECT_EQ(First("<UnivariateStats field=\"x\"><Counts totalFreq=\"10\"/><DiscrStats/>"
                  "<NumericInfo/><ContStats/></UnivariateStats>"),
            "x 10 [] (missing missing missing missing) <> open left");
}

TEST(MCPMMLParserStats, EachRequiredPartHasItsCode) {
  const string array = "<Array type=\"int\">1 2</Array>";
  const struct {
    string document;
    string from;
    string to;
    string outcome;
  } cases[] = {{Categorical("a"), " field=\"a\"", "", "108"},
               {Categorical("a"), " totalFreq=\"3\"", "", "108"},
               {Categorical("a"), " type=\"int\"", "", "108"},
               {Categorical("a"), "\"int\"", "\"real\"", "a 3 [1 2]"},
               {Categorical("a"), "\"int\"", "\"string\"", "109"},
               {Categorical("a"), "\"int\"", "\"\"", "109"},
               {Categorical("a"), "\"3\"", "\"many\"", "109"},
               {Categorical("a"), "\"3\"", "\"-1\"", "109"},
               {Categorical("a"), "\"3\"", "\"NaN\"", "109"},
               {Categorical("a"), "\"3\"", "\"INF\"", "109"},
               {Categorical("a"), "\"3\"", "\"0\"", "a 0 [1 2]"},
               {Categorical("a"), "<Counts totalFreq=\"3\"/>", "", "113"},
               {Categorical("a"), "<DiscrStats>" + array + "</DiscrStats>", "", "113"},
               {Categorical("a"), array, "", "113"},
               {Categorical("a"), "1 2", "1 -2", "114"},
               {Categorical("a"), "1 2", "1 two", "114"},
               {Categorical("a"), "1 2", "1 NaN", "114"},
               {Categorical("a"), "1 2", "1 <!-- and --> 2", "114"},
               {Categorical("a"), "1 2", "", "a 3 []"},
               {Categorical("a"), "1 2", "\n\t0.5   7e1 ", "a 3 [0.5 70]"},
               {Categorical("a"), "\"a\"", "\"\"", "116"},
               {kContinuous, " field=\"x\"", "", "108"},
               {kContinuous, "<Counts totalFreq=\"10\"/>", "", "113"},
               {kContinuous, "minimum=\"1\"", "minimum=\"low\"", "109"},
               {kContinuous, "maximum=\"9\"", "maximum=\"\"", "109"},
               {kContinuous, "mean=\"5\"", "mean=\"-INF\"", "109"},
               {kContinuous, "standardDeviation=\"2\"", "standardDeviation=\"x\"", "109"},
               {kContinuous, "standardDeviation=\"2\"", "standardDeviation=\"-2\"", "116"},
               {kContinuous, "standardDeviation=\"2\"", "standardDeviation=\"NaN\"",
                "x 10 [4 6] (1 9 5 missing) <0 5 10> open right"},
               {kContinuous, "minimum=\"1\"", "", "x 10 [4 6] (missing 9 5 2) <0 5 10> open right"},
               {kContinuous, "maximum=\"9\"", "", "x 10 [4 6] (1 missing 5 2) <0 5 10> open right"},
               {kContinuous, "mean=\"5\"", "", "x 10 [4 6] (1 9 missing 2) <0 5 10> open right"},
               {kContinuous, "minimum=\"1\"", "minimum=\"10\"", "116"},
               {kContinuous, "\"10\"", "\"1\"", "116"},
               {kContinuous, "<Array type=\"real\">4 6</Array>", "", "113"},
               {kContinuous, " type=\"real\"", "", "108"},
               {kContinuous, "\"real\"", "\"date\"", "109"},
               {kContinuous, "4 6", "4 -6", "114"},
               {kContinuous, "4 6", "4", "115"},
               {kContinuous, "4 6", "4 6 1", "115"},
               {kContinuous, "4 6", "", "115"},
               {kContinuous, " closure=\"closedOpen\"", "", "108"}};
  for (const auto& [document, from, to, outcome] : cases) {
    EXPECT_EQ(First(Replaced(document, from, to)), outcome) << from << " -> " << to;
  }
}

string Interval(const string& left, const string& right, const string& closure) {
  const auto attribute = [](const char* name, const string& value) {
    return value.empty() ? string() : string(" ") + name + "=\"" + value + "\"";
  };
  return "<Interval" + attribute("leftMargin", left) + attribute("rightMargin", right) +
         attribute("closure", closure) + "/>";
}

// "cuts [frequencies] open", or the code.
string Histogram(const string& insideContStats) {
  const ModelParser parser("<ContStats>" + insideContStats + "</ContStats>");
  vector<double> cuts = {8.0};
  vector<double> freqs = {9.0};
  bool open = false;
  const MCStatus status =
      MCPMMLParser::FillCutPointsFreqs(cuts, freqs, open, parser.At({"ContStats"}));
  if (!status.IsOK()) return std::to_string(status.GetErrorCode());
  return NumbersText(cuts) + " [" + NumbersText(freqs) + "]" + (open ? " open" : " closed");
}

TEST(MCPMMLParserStats, IntervalsBecomeCuts) {
  const auto array = [](const char* text) {
    return "<Array type=\"real\">" + string(text) + "</Array>";
  };
  const struct {
    string inside;
    string outcome;
  } cases[] = {
      {"", " [] open"},
      {array("1 2 3"), " [] open"},
      {Interval("1", "2", "openClosed") + array("5"), "1 2 [5] open"},
      {Interval("1", "2", "openOpen") + array("5"), "1 2 [5] open"},
      {Interval("1", "2", "closedOpen") + array("5"), "1 2 [5] closed"},
      {Interval("1", "2", "closedClosed") + array("5"), "1 2 [5] closed"},
      {Interval("1", "2", "other") + array("5"), "1 2 [5] closed"},
      {array("5 6") + Interval("1", "2", "openClosed") + Interval("2", "3", "openOpen"),
       "1 2 3 [5 6] open"},
      {Interval("", "2", "openClosed") + Interval("2", "", "openClosed") + array("5 6"),
       "missing 2 missing [5 6] open"},
      {Interval("NaN", "2", "openClosed") + array("5"), "missing 2 [5] open"},
      // Intervals that don't meet make a cut more than there are intervals.
      {Interval("1", "2", "openClosed") + Interval("3", "4", "openClosed") + array("5 6"), "115"},
      {Interval("1", "2", "openClosed") + Interval("3", "4", "openClosed") + array("5 0 6"),
       "1 2 3 4 [5 0 6] open"},
      {Interval("1", "3", "openClosed") + Interval("2", "4", "openClosed") + array("5 6"), "115"},
      {Interval("1", "2", "openClosed") + Interval("", "4", "openClosed") + array("5 6"), "115"},
      {Interval("1", "", "openClosed") + Interval("2", "4", "openClosed") + array("5 6"), "115"},
      {Interval("1", "", "openClosed") + "<Interval/>" + array("5 6"), "115"},
      {Interval("", "NaN", "openClosed") + Interval("2", "4", "openClosed") + array("5 6"), "115"},
      {Interval("1", "2", "openClosed") + Interval("2", "3", "closedOpen") + array("5 6"), "115"},
      {Interval("1", "2", "openClosed") + Interval("2", "x", "openClosed") + array("5 6"), "109"},
      {Interval("1", "2", "openClosed"), "113"},
      {Interval("1", "2", "openClosed") + "<Array>5</Array>", "108"},
      {Interval("1", "2", "openClosed") + array("-5"), "114"},
      {Interval("1", "2", "openClosed") + array("5 6"), "115"}};
  for (const auto& [inside, outcome] : cases) EXPECT_EQ(Histogram(inside), outcome) << inside;
}

TEST(MCPMMLParserStats, IntervalIsTakenApart) {
  const struct {
    string interval;
    string outcome;
  } cases[] = {{Interval("1", "2", "openOpen"), "1 2 open"},
               {Interval("1", "2", "openClosed"), "1 2 open"},
               {Interval("1", "2", "closedOpen"), "1 2 closed"},
               {Interval("1", "2", "OpenOpen"), "1 2 closed"},
               {Interval("", "2", "openOpen"), "missing 2 open"},
               {Interval("1", "", "openOpen"), "1 missing open"},
               {Interval("NaN", "2", "openOpen"), "missing 2 open"},
               {Interval("", "NaN", "openOpen"), "missing missing open"},
               {Interval("", "", "openOpen"), "108"},
               {Interval("NaN", "", "openOpen"), "108"},
               {Interval("1", "2", ""), "108"},
               {Interval("x", "2", "openOpen"), "109"},
               {Interval("1", "x", "openOpen"), "109"},
               {Interval("INF", "2", "openOpen"), "109"},
               {Interval("2", "2", "openOpen"), "109"},
               {Interval("2", "1", "openOpen"), "109"},
               {Interval("1", "NaN", "openOpen"), "109"}};
  for (const auto& [interval, outcome] : cases) {
    const ModelParser parser(interval);
    double left = 77.0;
    double right = 78.0;
    bool open = true;
    const MCStatus status =
        MCPMMLParser::ExtractInterval(left, right, open, parser.At({"Interval"}));
    if (status.IsOK()) {
      EXPECT_EQ(NumbersText({left, right}) + (open ? " open" : " closed"), outcome) << interval;
    } else {
      EXPECT_EQ(status, MCStatus(ToNumber<long>(outcome), false)) << interval;
      EXPECT_TRUE(left == 77.0 && right == 78.0 && open) << interval << ": arguments changed";
    }
  }
}

// Of continuous statistics without "ContStats" nothing is kept, and what was there is judged.
TEST(MCPMMLParserStats, WithoutContStatsTheStatisticsStayAsTheyWere) {
  const string stats =
      "<UnivariateStats field=\"x\"><Counts totalFreq=\"10\"/><NumericInfo mean=\"5\"/>"
      "</UnivariateStats>";
  EXPECT_EQ(First(stats), "116");
  MCUniStats valid("before", 3.0, {1.0, 2.0});
  EXPECT_EQ(First(stats, valid), "before 3 [1 2]");
  EXPECT_EQ(First(Replaced(stats, "mean=\"5\"", "standardDeviation=\"-1\""), valid), "116");
  EXPECT_EQ(StatsText(valid), "before 3 [1 2]");
}

TEST(MCPMMLParserStats, StatisticsThatAreReadAndNotValidStand) {
  MCUniStats stats;
  EXPECT_EQ(First(Replaced(kContinuous, "minimum=\"1\"", "minimum=\"10\""), stats), "116");
  EXPECT_EQ(StatsText(stats), "x 10 [4 6] (10 9 5 2) <0 5 10> open right");
}

TEST(MCPMMLParserStats, StepsReadOneElementEach) {
  const ModelParser parser(Model(Categorical("a") + kContinuous));
  const DOMElement& categorical = parser.At({"ModelStats", "UnivariateStats"});
  const DOMElement& continuous = *MCComXPrsUtil::GetNextSiblingElmt(categorical, "UnivariateStats");
  MCUniStats stats;
  EXPECT_EQ(MCPMMLParser::FillUniStatsCat(stats, "n", 7.0, continuous), MCStatus(113, false));
  EXPECT_EQ(MCPMMLParser::FillUniStatsCont(stats, "n", 7.0, categorical), MCStatus(113, false));
  EXPECT_EQ(stats.GetVarName(), "");
  EXPECT_TRUE(MCPMMLParser::FillUniStatsCat(stats, "n", 7.0, categorical).IsOK());
  EXPECT_EQ(StatsText(stats), "n 7 [1 2]");
  EXPECT_TRUE(MCPMMLParser::FillUniStatsCont(stats, "n", 7.0, continuous).IsOK());
  EXPECT_EQ(StatsText(stats), "n 7 [4 6] (1 9 5 2) <0 5 10> open right");
}

TEST(MCPMMLParserStats, ExportedStatisticsComeBack) {
  MCUniStats::SummStats summary;
  summary.fMinimum = -1.25;
  summary.fMaximum = 1e6;
  summary.fMean = 0.1;
  MCUniStats openRight("y", 6.0, summary, {1.0, 2.0, 3.0}, {MCMV::gMissingValue, -1.0, 0.5, 1e6});
  openRight.SetIntervalsOpenLeft(false);
  const MCUniStats all[] = {
      MCUniStats("a & b", 6.5, {1.5, 0.0, 5.0}), MCUniStats("none", 0.0, {}),
      MCUniStats("x", 3.0, summary, {1.0, 2.0}, {0.0, 1.0, MCMV::gMissingValue}),
      MCUniStats("summary", 3.0, summary, {}, {}), openRight};
  for (const MCUniStats& stats : all) {
    MCCommonMetadata::MCPMMLExporter exporter(nullptr);
    MCCommonXML::XMLElement* element = nullptr;
    ASSERT_TRUE(exporter.ExportUniStats(stats, element).IsOK());
    const std::unique_ptr<MCCommonXML::XMLElement> owned(element);
    string text;
    MCCommonXML::ExportFormat format;
    element->ToString(text, format);
    EXPECT_EQ(First(text), StatsText(stats));
  }
}

}  // namespace
