// SPDX-License-Identifier: Apache-2.0
//
// Runs `mcfit dictionary` as a user does.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/settingstext.h"
#include "mcfit/support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

ProgramResult DictionaryOf(const std::string& path) {
  return RunMcfit({"dictionary", path});
}

TEST(McfitDictionary, ShowsWhatDescribeWrote) {
  const TemporaryFolder folder;
  const std::string data =
      folder.Write("d.csv", "name,n,x\np,1,0.5\nq,2,1.5\np,2,99\n?,1,2.5\np,1,3.5\n");
  const ProgramResult described =
      RunMcfit({"describe", data, "--missing", "name=?", "--missing", "x=99", "--bins", "x=2",
                "--pmml", folder.Path("d.xml")});
  ASSERT_EQ(described.status, 0) << described.err;
  const ProgramResult run = DictionaryOf(folder.Path("d.xml"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "Dictionary of " + folder.Path("d.xml") +
                         "\n\n"
                         "Variable  Storage        Level  Categories  Label\n"
                         "------------------------------------------\n"
                         "name       string  categorical           2\n"
                         "n           float  categorical           2\n"
                         "x           float   continuous           .\n"
                         "------------------------------------------\n"
                         "\n"
                         "Variable      What  Value  Label\n"
                         "-------------------------\n"
                         "name      category      p\n"
                         "          category      q\n"
                         "           missing      ?\n"
                         "n         category      1\n"
                         "          category      2\n"
                         "x          missing     99\n"
                         "-------------------------\n"
                         "\n"
                         "Statistics of TreeModel 'description'\n"
                         "\n"
                         "Variable  Cases  Mean  Deviation  Minimum  Maximum\n"
                         "--------------------------------------------------\n"
                         "name          4     .          .        .        .\n"
                         "n             5     .          .        .        .\n"
                         "x             4     2   1.290994      0.5      3.5\n"
                         "--------------------------------------------------\n"
                         "\n"
                         "Variable  Value  Cases\n"
                         "----------------------\n"
                         "name          p      3\n"
                         "              q      1\n"
                         "n             1      3\n"
                         "              2      2\n"
                         "x          <= 2      2\n"
                         "            > 2      2\n"
                         "----------------------\n");
}

TEST(McfitDictionary, ShowsWhatAFitWrote) {
  const TemporaryFolder folder;
  ASSERT_EQ(RunMcfit({"linear", kData + "yields.csv", "--dependent", "yield", "--factors",
                      "variety", "--pmml", folder.Path("m.xml")})
                .status,
            0);
  const ProgramResult run = DictionaryOf(folder.Path("m.xml"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Dictionary of " + folder.Path("m.xml") +
                         "\n\n"
                         "Variable  Storage        Level  Categories  Label\n"
                         "------------------------------------------\n"
                         "yield       float   continuous           .\n"
                         "variety    string  categorical           4\n"
                         "------------------------------------------\n"
                         "\n"
                         "Variable      What       Value  Label\n"
                         "------------------------------\n"
                         "variety   category       Amber\n"
                         "          category      Bright\n"
                         "          category       Early\n"
                         "          category  Late, tall\n"
                         "------------------------------\n");
}

TEST(McfitDictionary, ShowsLabelsMissingValuesIntervalsAndBins) {
  const TemporaryFolder folder;
  const std::string file = folder.Write(
      "m.xml",
      "<PMML><DataDictionary>"
      "<DataField name=\"a\" displayName=\"The a\" optype=\"ordinal\" dataType=\"string\">"
      "<Value value=\"p\" displayValue=\"plus\"/><Value value=\"m\" displayValue=\"minus\"/>"
      "<Value value=\"-\" property=\"invalid\" displayValue=\"none\"/></DataField>"
      "<DataField name=\"day\" optype=\"continuous\" dataType=\"dateDaysSince[1960]\">"
      "<Extension name=\"invalidRangeLower\" value=\"-5\"/>"
      "<Extension name=\"invalidRangeUpper\" value=\"-1\"/></DataField>"
      "<DataField name=\"k\" optype=\"continuous\" dataType=\"integer\"/>"
      "</DataDictionary><TransformationDictionary>"
      "<DerivedField name=\"b\" optype=\"ordinal\" dataType=\"string\"><Discretize field=\"k\">"
      "<DiscretizeBin binValue=\"few\"><Interval rightMargin=\"3\"/></DiscretizeBin>"
      "<DiscretizeBin binValue=\"many\"><Interval leftMargin=\"3\"/></DiscretizeBin>"
      "</Discretize></DerivedField></TransformationDictionary></PMML>");
  const ProgramResult run = DictionaryOf(file);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, EndsWith("\n"
                                "Variable              Storage        Level  Categories  Label\n"
                                "------------------------------------------------------\n"
                                "a                      string  categorical           2  The a\n"
                                "day       dateDaysSince[1960]   continuous           .\n"
                                "k                     integer   continuous           .\n"
                                "------------------------------------------------------\n"
                                "\n"
                                "Variable      What     Value  Label\n"
                                "----------------------------\n"
                                "a         category         p  plus\n"
                                "          category         m  minus\n"
                                "           missing         -  none\n"
                                "day        missing  -5 to -1\n"
                                "k              bin      <= 3  few\n"
                                "               bin       > 3  many\n"
                                "----------------------------\n"));
}

// What stands between the elements of a field of statistics.
std::string Stats(const std::string& field, const std::string& content) {
  return "<UnivariateStats field=\"" + field + "\"><Counts totalFreq=\"7\"/>" + content +
         "</UnivariateStats>";
}

const std::string kTwo = "<DiscrStats><Array type=\"int\">3 4</Array></DiscrStats>";
const std::string kNumbers =
    "<NumericInfo minimum=\"1\" maximum=\"5\" mean=\"2.5\" standardDeviation=\"1.25\"/>";

std::string Document(const std::string& models) {
  return "<PMML><DataDictionary>" + Categorical("a", {"p", "q"}) + Continuous("x") +
         "</DataDictionary>" + models + "</PMML>";
}

TEST(McfitDictionary, ShowsTheStatisticsOfEachModelSegmentsIncluded) {
  const TemporaryFolder folder;
  const auto model = [](const std::string& stats) {
    return "<TreeModel><ModelStats>" + stats + "</ModelStats></TreeModel>";
  };
  const ProgramResult run = DictionaryOf(folder.Write(
      "m.xml", Document("<MiningModel modelName=\"all\"><Segmentation><Segment id=\"1\">" +
                        model(Stats("a", kTwo)) + "</Segment><Segment id=\"2\">" +
                        model(Stats("x", kNumbers)) + "</Segment></Segmentation></MiningModel>" +
                        "<RegressionModel modelName=\"own\"><ModelStats/></RegressionModel>")));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  // A producer that leaves the histogram out has a summary all the same.
  EXPECT_THAT(run.out, EndsWith("Statistics of TreeModel of segment '1'\n"
                                "\n"
                                "Variable  Cases  Mean  Deviation  Minimum  Maximum\n"
                                "--------------------------------------------------\n"
                                "a             7     .          .        .        .\n"
                                "--------------------------------------------------\n"
                                "\n"
                                "Variable  Value  Cases\n"
                                "----------------------\n"
                                "a             p      3\n"
                                "              q      4\n"
                                "----------------------\n"
                                "\n"
                                "Statistics of TreeModel of segment '2'\n"
                                "\n"
                                "Variable  Cases  Mean  Deviation  Minimum  Maximum\n"
                                "--------------------------------------------------\n"
                                "x             7   2.5       1.25        1        5\n"
                                "--------------------------------------------------\n"
                                "\n"
                                "Statistics of RegressionModel 'own'\n"
                                "\n"
                                "Variable  Cases  Mean  Deviation  Minimum  Maximum\n"
                                "--------------------------------------------------\n"
                                "--------------------------------------------------\n"));
}

TEST(McfitDictionary, IntervalsShowWhichEndIsTheirs) {
  const TemporaryFolder folder;
  const ProgramResult run = DictionaryOf(folder.Write(
      "m.xml",
      Document(
          "<TreeModel><ModelStats>" +
          Stats("x", kNumbers +
                         "<ContStats><Interval rightMargin=\"2\" closure=\"closedOpen\"/>"
                         "<Interval leftMargin=\"2\" rightMargin=\"3\" closure=\"closedOpen\"/>"
                         "<Interval leftMargin=\"3\" closure=\"closedOpen\"/>"
                         "<Array type=\"int\">1 2 4</Array></ContStats>") +
          Stats("elsewhere", kTwo) + "</ModelStats></TreeModel>")));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, EndsWith("Variable        Value  Cases\n"
                                "----------------------------\n"
                                "x                 < 2      1\n"
                                "               [2, 3)      2\n"
                                "                 >= 3      4\n"
                                "elsewhere  category 1      3\n"
                                "           category 2      4\n"
                                "----------------------------\n"));
}

TEST(McfitDictionary, StatisticsThatCannotBeReadEndTheirModelAndAreTold) {
  const TemporaryFolder folder;
  const std::string file = folder.Write(
      "m.xml", Document("<TreeModel modelName=\"t\"><ModelStats>" + Stats("a", kTwo) +
                        Stats("x", "<DiscrStats><Array type=\"int\">3 -4</Array></DiscrStats>") +
                        Stats("x", kNumbers) + "</ModelStats></TreeModel><TreeModel><ModelStats>" +
                        Stats("x", kNumbers) + "</ModelStats></TreeModel>"));
  const ProgramResult run = DictionaryOf(file);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "mcfit: note: " + file +
                         ": the statistics of TreeModel 't' behind those of 'a' can't be read: "
                         "error 114 (MCS_PMML_NEGATIVE_COUNT): counts could not be read, or one is "
                         "negative\n");
  EXPECT_THAT(run.out, HasSubstr("\na             7     .  "));
  EXPECT_THAT(run.out, HasSubstr("\nx             7   2.5  "));
}

TEST(McfitDictionary, AnyVersionNamespaceAndEncodingIsRead) {
  const TemporaryFolder folder;
  const std::string body = "<DataDictionary>" + Continuous("x") + "</DataDictionary></PMML>";
  for (const std::string& text :
       {"<PMML version=\"4.4\" xmlns=\"http://www.dmg.org/PMML-4_4\">" + body,
        "\xEF\xBB\xBF<PMML version=\"1.1\">" + body,
        InUtf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?><PMML>" + body, true),
        InUtf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?><PMML>" + body, false)}) {
    const ProgramResult run = DictionaryOf(folder.Write("m.xml", text));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("\nx          double  continuous           .\n"));
  }
  const ProgramResult latin = DictionaryOf(folder.Write(
      "m.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><PMML><DataDictionary>" +
                   Continuous("h\xF6he") + "</DataDictionary></PMML>"));
  EXPECT_THAT(latin.out, HasSubstr("\nh\xC3\xB6he "));
}

TEST(McfitDictionary, ControlCharactersDoNotReachTheTerminal) {
  const TemporaryFolder folder;
  const ProgramResult run = DictionaryOf(
      folder.Write("m.xml", Document("").insert(Document("").find("\"p\"") + 2, "&#9;&#x9b;2J")));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, Not(HasSubstr("\t")));
  EXPECT_THAT(run.out, Not(HasSubstr("\xC2\x9B")));
}

TEST(McfitDictionary, DeepDocumentsAreWalkedWithoutAStack) {
  const TemporaryFolder folder;
  std::string deep;
  constexpr int kLevels = 20000;
  for (int i = 0; i < kLevels; ++i) deep += "<d>";
  for (int i = 0; i < kLevels; ++i) deep += "</d>";
  const ProgramResult run = DictionaryOf(folder.Write("m.xml", Document(deep)));
  EXPECT_EQ(run.status, 0) << run.err;
}

TEST(McfitDictionary, FilesThatCannotBeReadAreRefusedWithTheirName) {
  const TemporaryFolder folder;
  int count = 0;
  const auto file = [&](const std::string& text) {
    return Arguments{"dictionary", folder.Write(std::to_string(++count) + ".xml", text)};
  };
  std::string expanding = "<!DOCTYPE PMML [<!ENTITY e0 \"x\">";
  for (int i = 1; i < 30; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    expanding += "<!ENTITY e" + std::to_string(i) + " \"" + inner + inner + "\">";
  }
  expanding += "]><PMML><DataDictionary/>&e29;</PMML>";
  ExpectFailures(
      2,
      {{{"dictionary"}, "file is required"},
       {{"dictionary", folder.Path("none.xml")}, "cannot open"},
       {file("a,b\n1,2\n"), ".xml: line 1, column 1: "},
       {file(Document("<TreeModel>")), ".xml: line 1, column "},
       {file(expanding), ".xml: line "},
       {file("<!DOCTYPE PMML [<!ENTITY f SYSTEM \"/etc/hostname\">]><PMML>&f;</PMML>"), ".xml: "},
       {file("<html/>"), ".xml: error 105 (MCS_PMML_NOT_PMML): the document is not PMML"},
       {file("<PMML/>"), ".xml: error 106 (MCS_PMML_NO_DICTIONARY)"},
       {file("<PMML><DataDictionary>" + Continuous("x") + Field("y", "continuous", "number") +
             "</DataDictionary></PMML>"),
        ".xml: field 2 of the DataDictionary: error 109 (MCS_DOC_BAD_VALUE)"}});
}

TEST(McfitDictionary, ResultsThatCannotBeWrittenEndWithStatusTwo) {
  ChildProcess::Options options;
  options.outPath = "/dev/full";
  const ProgramResult run = RunMcfit({"dictionary", kData + "birthwt-settings.xml"}, options);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("could not be written"));
}

}  // namespace
