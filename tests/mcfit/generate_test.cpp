// SPDX-License-Identifier: Apache-2.0
//
// Makes data sets with the program, as a user does.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/goldentext.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/temporaryfolder.h"
#include "support/numbers.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <map>
#include <sstream>

namespace {
using testing::HasSubstr;
using testing::StartsWith;

// The designs of the files that tests/data/mcfit/generate.py draws.
const Arguments kDeliveries = {
    "--rows",       "40",
    "--seed",       "5000000001",
    "--decimals",   "3",
    "--factors",    R"(region(North, East, "far, West"), service(standard, express))",
    "--covariates", "distance(-20:1000)",
    "--empty",      "region=North * service=express"};

Arguments LinearDeliveries(const std::string& out) {
  const std::string coefficients =
      R"((Intercept)=3.25, region=East=-0.7, region="far, West" * service=express=0.5, )"
      "distance=0.03, distance * score^2 (region=East)=0.25";
  const Arguments model = {"--dependent",    "hours",
                           "--normal",       "score(-2, 0.5)",
                           "--freq",         "parcels(2:4)",
                           "--missing",      "hours=0.1, service=0.2, distance=0.3, parcels=0.05",
                           "--deviation",    "0.9",
                           "--coefficients", coefficients};
  return Arguments{"generate", "linear", out} + model + kDeliveries;
}

Arguments LogisticDeliveries(const std::string& out) {
  const Arguments model = {"--dependent",    "outcome",
                           "--categories",   "on time, early, late",
                           "--coefficients", "late: region=East=0.8, distance=0.001",
                           "--coefficients", "early: (Intercept)=-0.5, distance=-0.002"};
  return Arguments{"generate", "logistic", out} + model + kDeliveries;
}

// A small linear data set on the standard output.
ProgramResult Generate(const Arguments& arguments) {
  return RunMcfit(Arguments{"generate", "linear", "-", "--dependent", "y"} + arguments);
}

// The cells of the lines behind the header, none of which is quoted.
std::vector<Arguments> Rows(const std::string& text) {
  std::vector<Arguments> rows;
  std::istringstream lines(text);
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    std::istringstream cells(line + ",");
    rows.emplace_back();
    for (std::string cell; std::getline(cells, cell, ',');) rows.back().push_back(cell);
  }
  return rows;
}

TEST(McfitGenerate, FilesAreThoseOfAnotherImplementationByteForByte) {
  const TemporaryFolder folder;
  const std::string path = folder.Path("rows.csv");
  const std::pair<Arguments, std::string> files[] = {
      {LinearDeliveries(path), Golden("generate-linear.csv")},
      {LogisticDeliveries(path), Golden("generate-logistic.csv")}};
  for (const auto& [arguments, expected] : files) {
    const ProgramResult run = RunMcfit(arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(folder.Read("rows.csv"), expected);
    EXPECT_FALSE(folder.Has("rows.csv.part"));
  }
}

TEST(McfitGenerate, ADashStandsForTheStandardOutput) {
  EXPECT_EQ(RunMcfit(LinearDeliveries("-")).out, Golden("generate-linear.csv"));
}

TEST(McfitGenerate, RowsAreThoseOfTheSeed) {
  const Arguments design = {"--rows", "50", "--normal", "x(0, 1)", "--coefficients", "x=1"};
  const std::string first = Generate(design).out;
  EXPECT_EQ(Generate(design).out, first);
  EXPECT_EQ(Generate(design + Arguments{"--seed", "1"}).out, first);
  EXPECT_NE(Generate(design + Arguments{"--seed", "2"}).out, first);
  EXPECT_NE(Generate(design + Arguments{"--seed", "9007199254740992"}).out,
            Generate(design + Arguments{"--seed", "9007199254740991"}).out);
}

TEST(McfitGenerate, AFileWithoutRowsIsItsHeader) {
  EXPECT_EQ(
      Generate({"--rows", "0", "--covariates", R"("x ""1"""(0:1))", "--coefficients", ""}).out,
      "y,\"x \"\"1\"\"\"\n");
}

// An empty line would be none.
TEST(McfitGenerate, ARowWithoutAnyCellIsReadAsARow) {
  ChildProcess::Options options;
  options.input =
      Generate({"--rows", "2", "--coefficients", "(Intercept)=1", "--missing", "y=1"}).out;
  EXPECT_EQ(options.input, "y\n\"\"\n\"\"\n");
  EXPECT_THAT(RunMcfit({"describe", "-"}, options).out, HasSubstr("Rows read  2\n"));
}

TEST(McfitGenerate, TheDependentFollowsFromNumbersAsTheyAreWritten) {
  const ProgramResult run =
      Generate({"--rows", "200", "--covariates", "x(-0.5:20)", "--decimals", "0", "--deviation",
                "0", "--coefficients", "(Intercept)=3, x=2, x^2=-1"});
  ASSERT_EQ(run.status, 0) << run.err;
  const std::vector<Arguments> rows = Rows(run.out);
  ASSERT_EQ(rows.size(), 200u);
  for (const Arguments& row : rows) {
    const double x = mctest::ToNumber(row[1]);
    EXPECT_EQ(mctest::ToNumber(row[0]), 3.0 + 2.0 * x - x * x);
  }
}

TEST(McfitGenerate, ZeroHasNoSign) {
  EXPECT_EQ(Generate({"--rows", "2", "--covariates", "x(-0.4:-0.1)", "--decimals", "0",
                      "--deviation", "0", "--coefficients", "x=1"})
                .out,
            "y,x\n0,0\n0,0\n");
}

// Mean and variance of each column, and the number of cells that aren't missing, within 5 standard
// errors of theirs: a sound generator would miss one of these eleven bounds 6 times in a million
// seeds.
TEST(McfitGenerate, ColumnsHaveTheirMoments) {
  constexpr int kRows = 40000;
  const ProgramResult run =
      Generate({"--rows", "40000", "--factors", "a(0, 1, 2)", "--covariates", "x(-2:10)",
                "--normal", "z(100, 15)", "--freq", "n(1:4)", "--missing", "x=0.25",
                "--coefficients", "(Intercept)=7", "--deviation", "3"});
  ASSERT_EQ(run.status, 0) << run.err;
  struct Column {
    const char* name;
    double mean, variance, kurtosis;
    double sum = 0.0, squares = 0.0;
    int count = 0;
  };
  // Kurtosis: 1.8 of a uniform distribution, 3 of the normal one; of n whole numbers in a row
  // 3 (3 n^2 - 7) / (5 (n^2 - 1)).
  Column columns[] = {{"y", 7.0, 9.0, 3.0},
                      {"a", 1.0, 2.0 / 3.0, 1.5},
                      {"x", 4.0, 12.0, 1.8},
                      {"z", 100.0, 225.0, 3.0},
                      {"n", 2.5, 1.25, 1.64}};
  const std::vector<Arguments> rows = Rows(run.out);
  ASSERT_EQ(rows.size(), static_cast<std::size_t>(kRows));
  for (const Arguments& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (row[i].empty()) continue;
      const double distance = mctest::ToNumber(row[i]) - columns[i].mean;
      columns[i].sum += distance;
      columns[i].squares += distance * distance;
      ++columns[i].count;
    }
  }
  for (const Column& column : columns) {
    const double n = column.count;
    EXPECT_LT(std::abs(column.sum / n), 5.0 * std::sqrt(column.variance / n)) << column.name;
    EXPECT_LT(std::abs(column.squares / n - column.variance),
              5.0 * column.variance * std::sqrt((column.kurtosis - 1.0) / n))
        << column.name;
  }
  EXPECT_LT(std::abs(columns[2].count - 0.75 * kRows), 5.0 * std::sqrt(0.75 * 0.25 * kRows));
  EXPECT_EQ(columns[0].count, kRows);
}

using Coefficients = std::map<std::string, double>;

std::string Written(const Coefficients& coefficients) {
  std::string text;
  for (const auto& [name, value] : coefficients) {
    text += (text.empty() ? "" : ", ") + name + "=" + fmt::format("{}", value);
  }
  return text;
}

// With another seed one estimate would be farther away 6 times in 100,000.
void ExpectFound(const std::string& report, const Coefficients& coefficients) {
  const auto numbers = Numbers(report);
  for (const auto& [name, value] : coefficients) {
    ASSERT_EQ(numbers.count(name), 1u) << name << "\n" << report;
    const std::vector<double>& line = numbers.at(name);
    ASSERT_GE(line.size(), 2u) << name;
    EXPECT_LT(std::abs(line[0] - value), 4.0 * line[1]) << name << "\n" << report;
  }
}

// Names of the report, by which the coefficients were given: powers, interactions and nesting.
TEST(McfitGenerate, ALinearFitFindsTheCoefficients) {
  const Coefficients coefficients = {
      {"(Intercept)", 5.0},   {"a=low one", 2.0},    {"a=high", -1.0},
      {"b=1 (a=high)", 0.75}, {"x1", 0.5},           {"x1^2", -0.25},
      {"x1^2 * x2", 0.125},   {"x2 * a=high", -3.0}, {"x2 * a=low one", 0.0}};
  const TemporaryFolder folder;
  const std::string path = folder.Path("rows.csv");
  const ProgramResult made =
      RunMcfit({"generate", "linear", path, "--rows", "5000", "--dependent", "y", "--factors",
                "a(high, low one, none), b(1, 2)", "--covariates", "x1(-3:3)", "--normal",
                "x2(1, 0.5)", "--deviation", "0.7", "--coefficients", Written(coefficients)});
  ASSERT_EQ(made.status, 0) << made.err;
  const ProgramResult fit =
      RunMcfit({"linear", path, "--dependent", "y", "--factors", "a,b", "--covariates", "x1,x2",
                "--effects", "a, b(a), x1, x1^2, x1^2*x2, x2, x2*a"});
  ASSERT_EQ(fit.status, 0) << fit.err;
  ExpectFound(fit.out, coefficients);
  const std::vector<double> deviation = Numbers(fit.out).at("Residual standard deviation");
  // Its standard error is 0.7 / sqrt(2 * 5000).
  EXPECT_NEAR(deviation[0], 0.7, 4.0 * 0.007);
}

TEST(McfitGenerate, ALogisticFitFindsTheCoefficientsOfEachCategory) {
  const Coefficients early = {{"(Intercept)", -1.0}, {"a=high", 0.8}, {"x", -0.5}};
  const Coefficients late = {{"(Intercept)", 0.5}, {"a=high", 0.0}, {"x", 0.25}};
  const TemporaryFolder folder;
  const std::string path = folder.Path("rows.csv");
  const ProgramResult made = RunMcfit(
      {"generate", "logistic", path, "--rows", "5000", "--dependent", "y", "--categories",
       "on time, early, late", "--factors", "a(high, low)", "--covariates", "x(-2:2)",
       "--coefficients", "early: " + Written(early), "--coefficients", "late: " + Written(late)});
  ASSERT_EQ(made.status, 0) << made.err;
  const ProgramResult fit = RunMcfit({"logistic", path, "--dependent", "y", "--reference",
                                      "on time", "--factors", "a", "--covariates", "x"});
  ASSERT_EQ(fit.status, 0) << fit.err;
  const std::size_t first = fit.out.find("early against on time");
  const std::size_t second = fit.out.find("late against on time");
  const std::size_t end = fit.out.find("First log-likelihood");
  ASSERT_LT(first, second);
  ASSERT_LT(second, end);
  ExpectFound(fit.out.substr(first, second - first), early);
  ExpectFound(fit.out.substr(second, end - second), late);
}

TEST(McfitGenerate, PredictorsFarFromZeroSettleTheCategory) {
  const ProgramResult run = RunMcfit(
      {"generate", "logistic", "-", "--rows", "3", "--dependent", "y", "--categories", "a,b,c",
       "--coefficients", "b: (Intercept)=1e300", "--coefficients", "c: (Intercept)=-1e300"});
  EXPECT_EQ(run.out, "y\nb\nb\nb\n");
}

// Behind a design of a factor and a covariate.
TEST(McfitGenerate, RefusesWhatIsNoDesign) {
  const std::pair<Arguments, const char*> refusals[] = {
      {{"--rows", "-5"}, "--rows must not be negative"},
      {{"--rows", "1e3"}, "--rows"},
      {{"--seed", "-1"}, "--seed must be from 0 to 2^53"},
      {{"--seed", "9007199254740993"}, "--seed must be from 0 to 2^53"},
      {{"--decimals", "-1"}, "--decimals must be from 0 to 15"},
      {{"--decimals", "16"}, "--decimals must be from 0 to 15"},
      {{"--dependent", ""}, "--dependent needs a name"},
      {{"--dependent", "x"}, "column 'x' is declared twice"},
      {{"--normal", "a(0,1)"}, "column 'a' is declared twice"},
      {{"--normal", "z(0,0)"}, "--normal 'z(0,0)', at ')': the standard deviation must be above 0"},
      {{"--normal", "z(0,-1)"}, "the standard deviation must be above 0"},
      {{"--normal", "z(0:1)"}, "',' is expected"},
      {{"--normal", "z(0,inf)"}, "a number is expected"},
      {{"--covariates", "x(1:1)"}, "the second number must be above the first"},
      {{"--covariates", "x(1:2"}, "')' is expected"},
      {{"--covariates", "x"}, "'(' is expected"},
      {{"--covariates", "(1:2)"}, "a column name is expected"},
      {{"--factors", "a(p,q,p)"}, "label 'p' stands there twice"},
      {{"--factors", "a()"}, "a label is expected"},
      {{"--freq", "n(0:3)"}, "two rising whole numbers from 1 to 1000000000 are expected"},
      {{"--freq", "n(1:2.5)"}, "two rising whole numbers"},
      {{"--freq", "n(3:2)"}, "two rising whole numbers"},
      {{"--freq", "n(1:1000000001)"}, "two rising whole numbers"},
      {{"--freq", "n(1:2), m(1:2)"}, "--freq takes one column"},
      {{"--missing", "x=1.5"}, "a probability is from 0 to 1"},
      {{"--missing", "x=-0.1"}, "a probability is from 0 to 1"},
      {{"--missing", "w=0.1"}, "there is no column 'w'"},
      {{"--missing", "x=0.1, x=0.1"}, "--missing names column 'x' twice"},
      {{"--missing", "x"}, "'=' is expected"},
      {{"--empty", "x"}, "a combination of labels is expected"},
      {{"--empty", "(Intercept)"}, "a combination of labels is expected"},
      {{"--empty", "a=p, a=q"}, "--empty leaves hardly a combination of labels, or none"},
      {{"--deviation", "-1"}, "--deviation must be a number from 0"},
      {{"--deviation", "nan"}, "--deviation must be a number from 0"},
      {{"--categories", "b,c"}, "--categories needs the kind logistic"},
      {{"--coefficients", "x=1"}, "linear takes --coefficients once"}};
  for (const auto& [options, message] : refusals) {
    std::map<std::string, std::string> design = {
        {"--dependent", "y"}, {"--rows", "3"}, {"--factors", "a(p,q)"}, {"--covariates", "x(1:5)"}};
    design[options[0]] = options[1];
    Arguments arguments = {"generate", "linear", "-", "--coefficients", "(Intercept)=1"};
    for (const auto& [option, text] : design) arguments.insert(arguments.end(), {option, text});
    ExpectFailures(2, {{arguments, message}});
  }
}

TEST(McfitGenerate, RefusesCoefficientsThatTheDesignHasNoParameterFor) {
  const std::pair<const char*, const char*> refusals[] = {
      {"w=1", "--coefficients 'w=1', at '=1': there is no factor or covariate 'w'"},
      {"y=1", "there is no factor or covariate 'y'"},
      {"n=1", "there is no factor or covariate 'n'"},
      {"a=1", "'a' has no label '1'"},
      {"a", "'a' is a factor: write a=label"},
      {"a=p", "'=' is expected"},
      {"x=", "a number is expected"},
      {"x=1e999", "a number is expected"},
      {"x=1 2", "a number is expected"},
      {"x^200=1", "a power must be a whole number from 1 to 100"},
      {"x * x=1", "'x' stands twice in a parameter: write a power"},
      {"a=p * a=q=1", "'a' stands twice in a parameter"},
      {"x * a=p=1, a=p * x=2", "the parameter has a coefficient already"},
      {"x (a=p=1", "')' is expected"},
      {"(intercept)=1", "write (Intercept)"},
      {"x=1; a=p=1", "a number is expected"},
      {"x=1,", "the name of a parameter is expected"},
      {"\"x=1", "a quoted name is never closed"},
      {"x=1e308", "the predictor of a row is beyond what a double can hold"}};
  for (const auto& [coefficients, message] : refusals) {
    ExpectFailures(
        2, {{{"generate", "linear", "-", "--dependent", "y", "--rows", "3", "--factors", "a(p,q)",
              "--covariates", "x(2:5)", "--freq", "n(1:2)", "--coefficients", coefficients},
             message}});
  }
}

TEST(McfitGenerate, RefusesCategoriesWithoutTheirCoefficients) {
  const std::pair<Arguments, const char*> refusals[] = {
      {{"--coefficients", "b:"}, "--categories must name two or more, the reference first"},
      {{"--categories", "b", "--coefficients", "b:"}, "--categories must name two or more"},
      {{"--categories", "a,b,a", "--coefficients", "b:"}, "--categories names 'a' twice"},
      {{"--categories", "a,b,c", "--coefficients", "b:"},
       "category c has no --coefficients 'c: ...'"},
      {{"--categories", "a,b", "--coefficients", "a:"}, "'a' is the reference"},
      {{"--categories", "a,b", "--coefficients", "d:"},
       "there is no category 'd'; a list begins with one of 'b' and a colon"},
      {{"--categories", "a,b", "--coefficients", "(Intercept)=1"}, "a category is expected"},
      {{"--categories", "a,b", "--coefficients", "b"}, "':' is expected"},
      {{"--categories", "a,b", "--coefficients", "b:", "--coefficients", "b:"},
       "'b' has coefficients already"},
      {{"--categories", "a,b", "--coefficients", "b:", "--deviation", "1"},
       "--deviation needs the kind linear"}};
  for (const auto& [options, message] : refusals) {
    ExpectFailures(
        2, {{Arguments{"generate", "logistic", "-", "--dependent", "y", "--rows", "3"} + options,
             message}});
  }
  ExpectFailures(2, {{{"generate", "quadratic", "-"}, "quadratic"}});
}

TEST(McfitGenerate, RefusalsLeaveTheFileAlone) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("rows.csv", "as it was\n");
  const ProgramResult run = RunMcfit({"generate", "linear", path, "--rows", "3", "--dependent", "y",
                                      "--covariates", "x(2:5)", "--coefficients", "x=1e308"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(folder.Read("rows.csv"), "as it was\n");
  EXPECT_FALSE(folder.Has("rows.csv.part"));
}

TEST(McfitGenerate, AFullDeviceIsTold) {
  const Arguments rows = {"--rows", "20000", "--dependent", "y", "--coefficients", "(Intercept)=1"};
  EXPECT_THAT(RunMcfit(Arguments{"generate", "linear", "/dev/full"} + rows).err,
              StartsWith("mcfit: cannot write '/dev/full'"));
  ChildProcess::Options options;
  options.outPath = "/dev/full";
  const ProgramResult run = RunMcfit(Arguments{"generate", "linear", "-"} + rows, options);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("the results could not be written"));
}

TEST(McfitGenerate, InterruptingErasesTheProgressAndLeavesNoFile) {
  const TemporaryFolder folder;
  ChildProcess::Options options;
  options.errOnTerminal = true;
  ChildProcess run({"generate", "linear", folder.Path("rows.csv"), "--rows", "1000000000",
                    "--dependent", "y", "--coefficients", "(Intercept)=1"},
                   options);
  ASSERT_TRUE(run.WaitForError(" of 1000000000 rows"));
  run.Send(SIGINT);
  const ProgramResult result = run.Finish();
  EXPECT_EQ(result.status, 130);
  EXPECT_THAT(result.err, testing::EndsWith("\r\033[Kmcfit: interrupted\n"));
  EXPECT_FALSE(folder.Has("rows.csv"));
  EXPECT_FALSE(folder.Has("rows.csv.part"));
}

}  // namespace
