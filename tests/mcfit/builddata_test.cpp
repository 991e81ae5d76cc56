// SPDX-License-Identifier: Apache-2.0
//
// Runs `mcfit build` as a user does: data that are read by the dictionary of the settings.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/settingstext.h"
#include "mcfit/support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace {
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kRoles = Parameter("target", "y") + ListParameter("inputs", {"a", "x"});

/// A build on data and settings that the test writes.
ProgramResult Built(const TemporaryFolder& folder, const std::string& fields,
                    const std::string& data, const Arguments& more = {}) {
  return RunMcfit(Arguments{"build", folder.Write("s.xml", Settings(fields, kRoles)),
                            folder.Write("d.csv", data)} +
                  more);
}

/// The lines of the report that are about the parameters, by their names alone.
std::vector<std::string> ParameterNames(const std::string& report) {
  std::vector<std::string> names;
  const std::size_t begin = report.find("(Intercept)");
  std::istringstream lines(report.substr(begin, report.find("-----", begin) - begin));
  for (std::string line; std::getline(lines, line);)
    names.push_back(line.substr(0, line.find("  ")));
  return names;
}

TEST(McfitBuildData, DeclaredMissingValuesAndIntervalsAreMissing) {
  const TemporaryFolder folder;
  const ProgramResult run = Built(
      folder,
      Continuous("y", Missing("-1")) +
          Field("a", "categorical", "string", Categories({"p", "q"}) + Missing("?")) +
          Continuous("x", Missing("99") + "<Extension name=\"invalidRangeLower\" value=\"1000\"/>"
                                          "<Extension name=\"invalidRangeUpper\" value=\"2000\"/>"),
      "y,a,x\n1,p,1\n2,q,2\n4,p,3\n3,q,5\n-1,p,1\n-1.0,p,1\n5,?,1\n5,p,99\n5,p,99.0\n5,q,1500\n"
      "7,p,2001\n");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, StartsWith("Linear regression of y\n"
                                  "\n"
                                  "Rows read     11\n"
                                  "Rows used      5\n"
                                  "Rows dropped   6\n"
                                  "           2  dependent 'y' is missing\n"
                                  "           1  factor 'a' is missing\n"
                                  "           3  covariate 'x' is missing\n"));
}

TEST(McfitBuildData, CellsThatTheDictionaryDoesNotKnowCountAsMissingAndAreTold) {
  const TemporaryFolder folder;
  const ProgramResult run =
      Built(folder,
            Continuous("y") + Categorical("a", {"p", "q"}) +
                Continuous("x", "<Interval leftMargin=\"0\" rightMargin=\"10\"/>"),
            "y,a,x\n1,p,0\n2,q,2\n4,p,3\n3,q,10\n5,r,1\n6,P,1\n5,p,10.5\n5,p,-1\n5,r,11\n");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err,
            "mcfit: note: column 'a': 3 cells hold what isn't declared, such as 'r', and count as "
            "missing\n"
            "mcfit: note: column 'x': 3 cells hold what isn't declared, such as '10.5', and count "
            "as missing\n");
  EXPECT_THAT(run.out, HasSubstr("Rows used     4\n"));
}

TEST(McfitBuildData, CategoriesKeepTheOrderOfTheDictionary) {
  const TemporaryFolder folder;
  const std::string data = "y,a,x\n1,p,1\n2,q,2\n4,r,3\n3,q,5\n6,p,4\n";
  const ProgramResult run = Built(
      folder, Continuous("y") + Categorical("a", {"r", "never", "p", "q"}) + Continuous("x"), data);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(ParameterNames(run.out),
              testing::ElementsAre("(Intercept)", "a=r", "a=p", "a=q", "x"));
  // Without declared ones all are categories, as on the command line.
  const ProgramResult open =
      Built(folder, Continuous("y") + Categorical("a", {}) + Continuous("x"), data);
  const ProgramResult fit = RunMcfit(
      {"linear", folder.Path("d.csv"), "--dependent", "y", "--factors", "a", "--covariates", "x"});
  EXPECT_EQ(open.out, fit.out);
  EXPECT_EQ(open.err, "");
}

TEST(McfitBuildData, NumbersAreOneCategoryHoweverTheyAreWritten) {
  const TemporaryFolder folder;
  const std::string data = "y,a,x\n1,1,1\n2,2,2\n4,1.0,3\n3,2e0,5\n6,+1,4\n5,-9,1\n";
  for (const std::string& values : {Categories({"1", "2"}) + Missing("-9"), Missing("-9")}) {
    const ProgramResult run = Built(
        folder, Continuous("y") + Field("a", "ordinal", "integer", values) + Continuous("x"), data);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(ParameterNames(run.out), testing::ElementsAre("(Intercept)", "a=1", "a=2", "x"));
    EXPECT_THAT(run.out, HasSubstr("Rows dropped  1\n"));
  }
}

TEST(McfitBuildData, NumbersThatFifteenDigitsDoNotTellAreCategoriesOfTheirOwn) {
  const TemporaryFolder folder;
  const ProgramResult run =
      Built(folder,
            Continuous("y") +
                Field("a", "categorical", "double",
                      Categories({"0.3", "0.30000000000000004", "1.7976931348623157e308", "0"})) +
                Continuous("x"),
            "y,a,x\n1,0.3,1\n2,0.30000000000000004,2\n4,1.7976931348623157e308,3\n3,-0,5\n"
            "6,0.3,1.5\n7,0,2\n",
            {"--pmml", folder.Path("m.xml")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(ParameterNames(run.out),
              testing::ElementsAre("(Intercept)", "a=0.3", "a=0.30000000000000004",
                                   "a=1.7976931348623157e+308", "a=0", "x"));
}

TEST(McfitBuildData, CategoriesOfTheTargetKeepTheOrderOfTheDictionaryButForTheReference) {
  const TemporaryFolder folder;
  const std::string data = folder.Write(
      "d.csv", "g,x\nlow,1\nmid,2\nhigh,3\nmid,1\nlow,2\nhigh,1\nmid,3\nlow,3\nhigh,2\nodd,1\n");
  const std::string fields = Categorical("g", {"low", "mid", "high", "never"}) + Continuous("x");
  const std::string parameters = Parameter("target", "g") + Parameter("inputs", "x");
  const ProgramResult last =
      RunMcfit({"build", folder.Write("s.xml", Settings(fields, parameters)), data});
  ASSERT_EQ(last.status, 0) << last.err;
  EXPECT_THAT(last.out, HasSubstr("low against high\n"));
  EXPECT_THAT(last.out, HasSubstr("mid against high\n"));
  EXPECT_THAT(
      last.err,
      HasSubstr("column 'g': 1 cell holds what isn't declared, such as 'odd', and counts as "));
  const ProgramResult first = RunMcfit(
      {"build",
       folder.Write("s.xml", Settings(fields, parameters + Parameter("reference", "first"))),
       data});
  EXPECT_THAT(first.out, HasSubstr("mid against low\n"));
}

TEST(McfitBuildData, FactorsOfNumbersHaveTheBinsOfTheTransformationDictionary) {
  const TemporaryFolder folder;
  const std::string settings =
      folder.Write("s.xml", Settings(Continuous("y") + Continuous("x", Missing("99")),
                                     Parameter("target", "y") + Parameter("CatPredictors", "x"),
                                     BinsOf("x", {"2", "4"})));
  const std::string data =
      folder.Write("d.csv", "y,x\n1,1\n2,2\n4,3\n3,4\n6,5\n5,99\n7,-1e300\n8,2.5\n");
  // The same with the bins in the data.
  const std::string binned = folder.Write(
      "b.csv",
      "y,x\n1,<= 2\n2,<= 2\n4,\"(2, 4]\"\n3,\"(2, 4]\"\n6,> 4\n5,\n7,<= 2\n8,\"(2, 4]\"\n");
  const ProgramResult run = RunMcfit({"build", settings, data, "--pmml", folder.Path("m.xml")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(ParameterNames(run.out),
              testing::ElementsAre("(Intercept)", "x=<= 2", "x=(2, 4]", "x=> 4"));
  const auto estimates = Numbers(run.out);
  const auto expected =
      Numbers(RunMcfit({"linear", binned, "--dependent", "y", "--factors", "x"}).out);
  // The last bin is the redundant one there, where labels sort otherwise.
  const auto difference = [](const auto& table, const char* a, const char* b) {
    return table.at(a)[0] - table.at(b)[0];
  };
  EXPECT_NEAR(difference(estimates, "x=<= 2", "x=(2, 4]"),
              difference(expected, "x=<= 2", "x=(2, 4]"), 1e-6);

  const std::string pmml = folder.Read("m.xml");
  EXPECT_THAT(pmml, HasSubstr("<Discretize\n\t\t\t\t\tfield=\"x\">"));
  EXPECT_THAT(pmml, HasSubstr("binValue=\"(2, 4]\""));
  EXPECT_THAT(pmml, HasSubstr("predictorName=\"x in bins\""));
}

TEST(McfitBuildData, BinsHaveTheirNamesAndTheirEndsMustRise) {
  const TemporaryFolder folder;
  const auto build = [&](const std::string& bins) {
    return Arguments{
        "build",
        folder.Write(
            "s.xml",
            Settings(Continuous("y") + Continuous("x"),
                     Parameter("target", "y") + Parameter("CatPredictors", "x"),
                     "<TransformationDictionary><DerivedField name=\"d\" "
                     "optype=\"categorical\" dataType=\"string\"><Discretize field=\"x\">" +
                         bins + "</Discretize></DerivedField></TransformationDictionary>")),
        folder.Write("d.csv", "y,x\n1,1\n2,2\n4,3\n3,4\n")};
  };
  const ProgramResult named = RunMcfit(
      build("<DiscretizeBin binValue=\"few\"><Interval rightMargin=\"2\"/></DiscretizeBin>"
            "<DiscretizeBin binValue=\"many\"><Interval leftMargin=\"2\"/></DiscretizeBin>"));
  EXPECT_THAT(ParameterNames(named.out), testing::ElementsAre("(Intercept)", "x=few", "x=many"));
  const ProgramResult repeated = RunMcfit(
      build("<DiscretizeBin binValue=\"few\"><Interval rightMargin=\"2\"/></DiscretizeBin>"
            "<DiscretizeBin binValue=\"few\"><Interval leftMargin=\"2\"/></DiscretizeBin>"));
  EXPECT_THAT(ParameterNames(repeated.out), testing::ElementsAre("(Intercept)", "x=<= 2", "x=> 2"));
  ExpectFailures(2,
                 {{build("<DiscretizeBin><Interval rightMargin=\"2\"/><Interval rightMargin=\"2\"/>"
                         "<Interval/></DiscretizeBin>"),
                   "s.xml: the ends of the bins of field 'x' don't rise"}});
  ExpectFailures(
      2, {{build("<DiscretizeBin><Interval rightMargin=\"2\"/></DiscretizeBin>"),
           "the dictionary calls field 'x' continuous, and no Discretize sorts it into bins"}});
}

TEST(McfitBuildData, AFieldOfTheTransformationDictionaryIsAColumnLikeOthers) {
  const TemporaryFolder folder;
  const std::string settings = folder.Write(
      "s.xml", Settings(Continuous("y"), Parameter("target", "y") + Parameter("inputs", "half"),
                        "<TransformationDictionary><DerivedField name=\"half\" "
                        "optype=\"continuous\" dataType=\"double\"/></TransformationDictionary>"));
  const ProgramResult run =
      RunMcfit({"build", settings, folder.Write("d.csv", "y,half\n1,1\n2,2\n4,3\n")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("\nhalf "));
}

TEST(McfitBuildData, RowsToScoreAreReadByTheDictionary) {
  const TemporaryFolder folder;
  const std::string news = folder.Write("n.csv", "a,x\np,1\n?,1\nz,1\nr,1\np,99\np,11\nq,2\n");
  const ProgramResult run =
      Built(folder,
            Continuous("y") +
                Field("a", "categorical", "string", Categories({"p", "q", "r"}) + Missing("?")) +
                Continuous("x", "<Interval leftMargin=\"0\" rightMargin=\"10\"/>" + Missing("99")),
            "y,a,x\n1,p,1\n2,q,2\n4,p,3\n3,q,5\n7,q,1\n",
            {"--predict", news, "--out", folder.Path("s.csv")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Scored 2 of 7 rows, written to " + folder.Path("s.csv") + "\n" +
                                 "           3  a factor or covariate is missing\n"
                                 "           1  a factor has a label that the fit has not seen\n"
                                 "           1  the factors have a combination that the fit has "
                                 "not seen\n"));
}

TEST(McfitBuildData, DataThatContradictTheDictionaryAreRefusedWithLineAndColumn) {
  const TemporaryFolder folder;
  const std::string fields = Continuous("y") +
                             Field("a", "categorical", "integer", Categories({"1", "2"})) +
                             Continuous("x");
  const std::pair<const char*, const char*> cases[] = {
      {"y,a,x\n1,1,1\n2,two,2\n", "d.csv, line 3, column 'a': 'two' is not a finite number"},
      {"y,a,x\n1,1,much\n", "d.csv, line 2, column 'x': 'much' is not a finite number"},
      {"y,a\n1,1\n", "d.csv: there is no column 'x'"},
      {"y,a,x\n1,1\n", "d.csv, line 2: the row has 2 cells, the header has 3"},
  };
  for (const auto& [data, message] : cases) {
    const ProgramResult run = Built(folder, fields, data);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr(message));
    EXPECT_EQ(run.out, "");
  }
  // No row is left: the fit can't be.
  const ProgramResult none = Built(folder, fields, "y,a,x\n1,3,1\n2,4,2\n");
  EXPECT_EQ(none.status, 1);
  EXPECT_THAT(none.err, HasSubstr("column 'a': 2 cells hold what isn't declared, such as '3'"));
  EXPECT_THAT(none.err, HasSubstr("error 307 (MCS_NO_DATA)"));
}

TEST(McfitBuildData, WhatTheDictionaryDeclaresGoesOutWithTheModel) {
  const TemporaryFolder folder;
  const ProgramResult run = Built(
      folder,
      Continuous("y") +
          Field(
              "a", "ordinal", "integer",
              "<Value value=\"2\" displayValue=\"two\"/><Value value=\"7\" displayValue=\"never\"/>"
              "<Value value=\"1\" displayValue=\"one\"/><Value value=\"9\" property=\"missing\" "
              "displayValue=\"unknown\"/>") +
          Continuous("x",
                     "<Extension name=\"invalidRangeLower\" value=\"1000\"/>"
                     "<Extension name=\"invalidRangeUpper\" value=\"2000\"/>"),
      "y,a,x\n1,1,1\n2,2,2\n4,1,3\n3,2,5\n", {"--pmml", folder.Path("m.xml")});
  ASSERT_EQ(run.status, 0) << run.err;
  const ProgramResult dictionary = RunMcfit({"dictionary", folder.Path("m.xml")});
  EXPECT_EQ(dictionary.out, "Dictionary of " + folder.Path("m.xml") +
                                "\n\n"
                                "Variable  Storage        Level  Categories  Label\n"
                                "------------------------------------------\n"
                                "y           float   continuous           .\n"
                                "a           float  categorical           2\n"
                                "x           float   continuous           .\n"
                                "------------------------------------------\n"
                                "\n"
                                "Variable      What         Value  Label\n"
                                "--------------------------------\n"
                                "a         category             2  two\n"
                                "          category             1  one\n"
                                "           missing             9  unknown\n"
                                "x          missing  1000 to 2000\n"
                                "--------------------------------\n");
}

}  // namespace
