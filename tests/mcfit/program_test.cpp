// SPDX-License-Identifier: Apache-2.0
//
// Runs the mcfit program as a user does.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/temporaryfolder.h"
#include "support/numbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <fstream>
#include <map>
#include <sstream>

namespace {
using testing::HasSubstr;
using testing::Not;

/// The certified values of a NIST data set by quantity: value, and standard deviation if any.
std::map<std::string, std::vector<double>> Certified(const std::string& set) {
  std::map<std::string, std::vector<double>> values;
  std::ifstream file(std::string(MCSTAT_TEST_DATA) + "/nist/certified.csv");
  for (std::string line; std::getline(file, line);) {
    std::istringstream cells(line);
    std::string name, quantity, value, deviation;
    std::getline(cells, name, ',');
    std::getline(cells, quantity, ',');
    std::getline(cells, value, ',');
    std::getline(cells, deviation, ',');
    if (name != set) continue;
    values[quantity].push_back(mctest::ToNumber(value));
    if (!deviation.empty()) values[quantity].push_back(mctest::ToNumber(deviation));
  }
  return values;
}

double CorrectDigits(double value, double certified) {
  return -std::log10(std::abs(value - certified) / std::abs(certified));
}

TEST(McfitProgram, LongleyHasTheCertifiedDigits) {
  const ProgramResult run =
      RunMcfit({"linear", kData + "longley.csv", "--dependent", "employed", "--covariates",
                "deflator,gnp,unemployed,forces,population,year", "--digits", "15"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("their condition index is 4.328e+04, above 30"));
  const auto numbers = Numbers(run.out);
  const auto certified = Certified("longley");
  const std::pair<const char*, const char*> parameters[] = {
      {"(Intercept)", "b0"}, {"deflator", "b1"},   {"gnp", "b2"}, {"unemployed", "b3"},
      {"forces", "b4"},      {"population", "b5"}, {"year", "b6"}};
  // R 4.2.2: svd() of the model matrix with columns of length 1.
  EXPECT_NEAR(numbers.at("Condition index")[0], 43275.0435872, 0.01);
  // A sweep of the raw cross-products is known to keep 8.5 digits of these data.
  for (const auto& [name, quantity] : parameters) {
    ASSERT_GE(numbers.at(name).size(), 6u) << name;
    const double estimate = numbers.at(name)[0];
    const double error = numbers.at(name)[1];
    EXPECT_GE(CorrectDigits(estimate, certified.at(quantity)[0]), 7.5) << name;
    EXPECT_GE(CorrectDigits(error, certified.at(quantity)[1]), 7.5) << name;
    EXPECT_NEAR(numbers.at(name)[2], estimate / error, 1e-12 * std::abs(estimate / error)) << name;
  }
  EXPECT_GE(CorrectDigits(numbers.at("R square")[0], certified.at("r_squared")[0]), 7.5);
  EXPECT_GE(
      CorrectDigits(numbers.at("Residual standard deviation")[0], certified.at("residual_sd")[0]),
      7.5);
  EXPECT_GE(CorrectDigits(numbers.at("Residual sum of squares")[0], certified.at("residual_ss")[0]),
            7.5);
  EXPECT_EQ(numbers.at("Degrees of freedom")[0], certified.at("residual_df")[0]);
  EXPECT_NEAR(numbers.at("Root mean square error")[0],
              std::sqrt(certified.at("residual_ss")[0] / 16.0), 1e-5);
}

// R 4.2.2: lm(yield ~ variety + water), summary(), confint(level = 0.9), and drop1(test = "F").
TEST(McfitProgram, ProbabilitiesAndLimitsAreThoseOfR) {
  const ProgramResult run =
      RunMcfit({"linear", kData + "yields.csv", "--dependent", "yield", "--factors",
                "variety,water", "--confidence", "90", "--digits", "10"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Lower 90 %"));
  const auto numbers = Numbers(run.out);
  const struct {
    const char* line;
    std::size_t place;
    double value;
    double tolerance;  // relative: four digits of a probability are shown
  } figures[] = {
      {"(Intercept)", 3, 6.784386157e-44, 5e-4},
      {"(Intercept)", 4, 50.944527339, 1e-8},
      {"(Intercept)", 5, 52.5390343049, 1e-8},
      {"variety=Amber", 3, 1.713577568e-10, 5e-4},
      {"variety=Amber", 4, -5.89901032489, 1e-8},
      {"variety=Amber", 5, -4.04551022306, 1e-8},
      {"variety=Early", 3, 0.1024938721, 5e-4},
      {"variety=Early", 4, -1.88834965486, 1e-8},
      {"variety=Early", 5, 0.0071852712981, 1e-8},
      {"water=10", 3, 1.077611584e-05, 5e-4},
      {"water=10", 4, -3.21169880093, 1e-8},
      {"water=10", 5, -1.63042448674, 1e-8},
      {"variety", 0, 3, 0},
      {"variety", 1, 36.6034597298, 1e-8},
      {"variety", 2, 1.316563015e-10, 5e-4},
      {"water", 0, 2, 0},
      {"water", 1, 61.2739281074, 1e-8},
      {"water", 2, 7.757530888e-12, 5e-4},
      {"All", 0, 5, 0},
      {"All", 1, 63.4901465307, 1e-8},
      {"All", 2, 5.736221932e-16, 5e-4},
      {"Condition index", 0, 5.2733884867, 1e-8},
  };
  for (const auto& figure : figures) {
    ASSERT_GT(numbers.at(figure.line).size(), figure.place) << figure.line;
    EXPECT_NEAR(numbers.at(figure.line)[figure.place], figure.value,
                figure.tolerance * std::abs(figure.value))
        << figure.line << ' ' << figure.place;
  }
}

TEST(McfitProgram, ADesignThatIsNearlyCollinearIsWarnedOf) {
  const TemporaryFolder folder;
  std::string text = "y,x,z\n";
  for (int i = 0; i < 20; ++i) {
    text += std::to_string(i % 7) + "," + std::to_string(i) + "," + std::to_string(i) + ".00" +
            std::to_string(i % 3) + "\n";
  }
  const std::string data = folder.Write("d.csv", text);
  const auto fit = [&data](const char* covariates) {
    return RunMcfit({"linear", data, "--dependent", "y", "--covariates", covariates});
  };
  const ProgramResult both = fit("x,z");
  ASSERT_EQ(both.status, 0) << both.err;
  EXPECT_THAT(both.err, HasSubstr("warning: the columns of the design are nearly collinear"));
  EXPECT_EQ(fit("x").err, "");
}

TEST(McfitProgram, AnEffectWithoutAParameterOfItsOwnIsNotTested) {
  const TemporaryFolder folder;
  const ProgramResult run =
      RunMcfit({"linear", folder.Write("d.csv", "y,x,z\n1,1,2\n3,2,4\n4,3,6\n4,4,8\n"),
                "--dependent", "y", "--covariates", "x,z"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("\nz        0   .        .\n"));
}

TEST(McfitProgram, LongleyIsPrintedAsStatisticiansKnowIt) {
  const ProgramResult run =
      RunMcfit({"linear", kData + "longley.csv", "--dependent", "employed", "--covariates",
                "deflator,gnp,unemployed,forces,population,year"});
  ASSERT_EQ(run.status, 0) << run.err;
  // The certified values to seven digits; t is their ratio.
  EXPECT_EQ(
      run.out,
      "Linear regression of employed\n"
      "\n"
      "Rows read     16\n"
      "Rows used     16\n"
      "Rows dropped   0\n"
      "\n"
      "Parameter       Estimate  Std. error           t          p  Lower 95 %  Upper 95 %\n"
      "-----------------------------------------------------------------------------------\n"
      "(Intercept)     -3482259    890420.4   -3.910803    0.00356    -5496529    -1467988\n"
      "deflator        15.06187    84.91493    0.177376     0.8631    -177.029    207.1528\n"
      "gnp          -0.03581918  0.03349101   -1.069516     0.3127  -0.1115811  0.03994274\n"
      "unemployed      -2.02023   0.4883997   -4.136427   0.002535   -3.125067   -0.915393\n"
      "forces         -1.033227   0.2142742   -4.821985  0.0009444   -1.517949   -0.548505\n"
      "population   -0.05110411   0.2260732  -0.2260511     0.8262  -0.5625172    0.460309\n"
      "year            1829.151    455.4785     4.01589   0.003037    798.7875    2859.515\n"
      "-----------------------------------------------------------------------------------\n"
      "\n"
      "Tests that all parameters of an effect are 0\n"
      "\n"
      "Effect      DF           F          p\n"
      "-------------------------------------\n"
      "deflator     1  0.03146226     0.8631\n"
      "gnp          1    1.143865     0.3127\n"
      "unemployed   1    17.11003   0.002535\n"
      "forces       1    23.25154  0.0009444\n"
      "population   1  0.05109912     0.8262\n"
      "year         1    16.12737   0.003037\n"
      "-------------------------------------\n"
      "All          6    330.2853  4.984e-10\n"
      "\n"
      "R square                     0.995479\n"
      "Root mean square error       228.6406  squared residuals divided by the sum of "
      "frequencies\n"
      "Residual standard deviation  304.8541  squared residuals divided by the degrees of "
      "freedom\n"
      "Residual sum of squares      836424.1\n"
      "Degrees of freedom                  9  sum of frequencies less the rank of the design, 7\n"
      "Sum of frequencies                 16\n"
      "Condition index              43275.04  of the columns of the design; above 30 they are "
      "nearly collinear\n");
}

TEST(McfitProgram, ModelsWithoutInterceptAreFitted) {
  const TemporaryFolder folder;
  std::ifstream source(std::string(MCSTAT_TEST_DATA) + "/nist/noint1.csv");
  std::stringstream text;
  text << source.rdbuf();
  const ProgramResult run =
      RunMcfit({"linear", folder.Write("noint1.csv", text.str()), "--dependent", "y",
                "--covariates", "x", "--no-intercept", "--digits", "15"});
  ASSERT_EQ(run.status, 0) << run.err;
  const auto numbers = Numbers(run.out);
  EXPECT_GE(CorrectDigits(numbers.at("x")[0], Certified("noint1").at("b1")[0]), 13.0);
  EXPECT_GE(CorrectDigits(numbers.at("x")[1], Certified("noint1").at("b1")[1]), 13.0);
  EXPECT_GE(CorrectDigits(numbers.at("R square")[0], Certified("noint1").at("r_squared")[0]), 13.0);
  EXPECT_THAT(run.out, HasSubstr("about 0, as there is no intercept"));
}

TEST(McfitProgram, GaltonsPeasAreFittedWithTheirWeights) {
  // By the closed formulas for one covariate, in Python, from the columns of the file.
  const ProgramResult run = RunMcfit({"linear", kData + "peas.csv", "--dependent", "progeny",
                                      "--covariates", "parent", "--weight", "weight"});
  ASSERT_EQ(run.status, 0) << run.err;
  const auto numbers = Numbers(run.out);
  EXPECT_NEAR(numbers.at("(Intercept)")[0], 12.79642, 2e-5);
  EXPECT_NEAR(numbers.at("(Intercept)")[1], 0.681124, 2e-5);
  EXPECT_NEAR(numbers.at("parent")[0], 0.204801, 2e-6);
  EXPECT_NEAR(numbers.at("parent")[1], 0.0381548, 2e-6);
  EXPECT_NEAR(numbers.at("Sum of weights")[0], 2.119296, 1e-6);
  EXPECT_EQ(numbers.at("Degrees of freedom")[0], 5);
}

TEST(McfitProgram, FrequenciesCountRowsSeveralTimes) {
  const TemporaryFolder folder;
  const std::string grouped = folder.Write("grouped.csv", "y,x,n\n1,1,2\n3,2,1\n2,3,3\n");
  const std::string single = folder.Write("single.csv", "y,x\n1,1\n1,1\n3,2\n2,3\n2,3\n2,3\n");
  const ProgramResult a =
      RunMcfit({"linear", grouped, "--dependent", "y", "--covariates", "x", "--freq", "n"});
  const ProgramResult b = RunMcfit({"linear", single, "--dependent", "y", "--covariates", "x"});
  ASSERT_EQ(a.status, 0) << a.err;
  // Same figures to the seven digits shown; only the numbers of rows differ.
  EXPECT_EQ(a.out.substr(a.out.find("Parameter")), b.out.substr(b.out.find("Parameter")));
}

TEST(McfitProgram, LabelsAreShownInOrderAndEmptyCellsLeaveNoParameter) {
  const ProgramResult run =
      RunMcfit({"linear", kData + "yields.csv", "--dependent", "yield", "--factors",
                "variety,water", "--effects", "variety, water, variety*water"});
  ASSERT_EQ(run.status, 0) << run.err;
  std::string names;
  std::istringstream lines(run.out.substr(run.out.find("(Intercept)")));
  for (std::string line; std::getline(lines, line) && line[0] != '-';) {
    names += line.substr(0, line.find("  ")) + "\n";
  }
  EXPECT_EQ(names,
            "(Intercept)\n"
            "variety=Amber\nvariety=Bright\nvariety=Early\nvariety=Late, tall\n"
            "water=5\nwater=10\nwater=20\n"
            "variety=Amber * water=5\nvariety=Amber * water=10\nvariety=Amber * water=20\n"
            "variety=Bright * water=5\nvariety=Bright * water=10\n"
            "variety=Early * water=5\nvariety=Early * water=10\nvariety=Early * water=20\n"
            "variety=Late, tall * water=10\nvariety=Late, tall * water=20\n");
  EXPECT_THAT(run.out, HasSubstr("Rows read     40\nRows used     39\nRows dropped   1\n"
                                 "           1  dependent 'yield' is missing\n"));
  // Ten cells hold data, so ten of the eighteen parameters are free.
  EXPECT_EQ(Numbers(run.out).at("Degrees of freedom")[0], 29);
  EXPECT_THAT(run.out, HasSubstr("redundant: a linear combination of parameters above it"));
}

TEST(McfitProgram, NestedEffectsAndSlopesWithinGroupsAreNamed) {
  const TemporaryFolder folder;
  const std::string data = folder.Write(
      "d.csv", "y,a,b,x\n1,p,1,1\n2,p,2,2\n4,q,1,3\n3,q,2,5\n5,p,1,6\n6,q,2,8\n2,p,2,9\n7,q,1,4\n");
  const ProgramResult run = RunMcfit({"linear", data, "--dependent", "y", "--factors", "a,b",
                                      "--covariates", "x", "--effects", "a, b(a), x(a)"});
  ASSERT_EQ(run.status, 0) << run.err;
  for (const char* name : {"\nb=1 (a=p) ", "\nb=2 (a=q) ", "\nx (a=p) ", "\nx (a=q) "}) {
    EXPECT_THAT(run.out, HasSubstr(name));
  }
}

TEST(McfitProgram, AnInterceptAloneIsTheMean) {
  const TemporaryFolder folder;
  const ProgramResult run =
      RunMcfit({"linear", folder.Write("d.csv", "y\n1\n2\n6\n"), "--dependent", "y"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Numbers(run.out).at("(Intercept)")[0], 3.0);
}

TEST(McfitProgram, FiguresThatAreNotDefinedAreDots) {
  const TemporaryFolder folder;
  const ProgramResult run = RunMcfit({"linear", folder.Write("d.csv", "y,x\n2,1\n2,2\n"),
                                      "--dependent", "y", "--covariates", "x"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("R square                            .\n"));
  EXPECT_THAT(run.out, HasSubstr("Residual standard deviation         .  "));
}

TEST(McfitProgram, TheDataMayComeFromAPipe) {
  ChildProcess::Options options;
  options.input = "\xEF\xBB\xBF\"y\",\"x\"\r\n1,1\r\n2,2\r\n\r\n4,3\r\n\r\n";
  const ProgramResult run =
      RunMcfit({"linear", "-", "--dependent", "y", "--covariates", "x"}, options);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Rows read     3\n"));
  EXPECT_EQ(Numbers(run.out).at("x")[0], 1.5);
}

TEST(McfitProgram, OptionsThatCannotBeUsedEndWithStatusTwo) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("d.csv", "y,a,x\n1,p,1\n2,q,2\n3,p,4\n");
  const std::string ragged = folder.Write("ragged.csv", "y,x\n1,1\n2\n");
  const std::string word = folder.Write("word.csv", "y,x\n1,1\n2,big\n");
  const Arguments fit = {"linear", data, "--dependent", "y", "--factors", "a", "--covariates", "x"};
  const auto with = [&fit](const Arguments& more) { return fit + more; };
  const std::vector<Failure> cases = {
      {{}, "a subcommand is required"},
      {{"cubic"}, "cubic"},
      {{"linear"}, "data is required"},
      {{"linear", data}, "--dependent is required"},
      {{"linear", data, "--dependent"}, "--dependent"},
      {with({"--nonsense"}), "--nonsense"},
      {with({"--tolerance", "much"}), "--tolerance"},
      {with({"--tolerance", "0"}), "--tolerance must lie between 0 and 1"},
      {with({"--tolerance", "nan"}), "--tolerance must lie between 0 and 1"},
      {with({"--digits", "0"}), "--digits must lie between 1 and 17"},
      {with({"--confidence", "0"}), "--confidence must lie between 0 and 100"},
      {with({"--confidence", "100"}), "--confidence must lie between 0 and 100"},
      {with({"--confidence", "nan"}), "--confidence must lie between 0 and 100"},
      {with({"--digits", "18"}), "--digits must lie between 1 and 17"},
      {with({"--predict", data}), "--out"},
      {with({"--out", folder.Path("s.csv")}), "--predict"},
      {with({"--predict", "", "--out", folder.Path("s.csv")}), "cannot open ''"},
      {with({"--predict", data, "--out", data}), "would overwrite an input file"},
      {with({"--predict", folder.Path("none.csv"), "--out", folder.Path("s.csv")}), "cannot open"},
      {with({"--predict", data, "--out", "/nonexistent/s.csv"}), "cannot write"},
      {with({"--predict", ragged, "--out", folder.Path("s.csv")}), "there is no column 'a'"},
      {with({"--effects", "a, zz"}), "'zz' is neither a factor nor a covariate"},
      {with({"--effects", "a,"}), "--effects 'a,', at its end: a column name is expected"},
      {with({"--freq", "zz"}), "there is no column 'zz'; the columns are 'y', 'a', 'x'"},
      {with({"--weight", "x"}), "column 'x' stands in --covariates and in --weight"},
      {{"linear", "-", "--dependent", "y", "--predict", "-", "--out", "s"},
       "can't both be the standard input"},
      {{"linear", folder.Path("none.csv"), "--dependent", "y"}, "No such file or directory"},
      {{"linear", folder.Write("empty.csv", ""), "--dependent", "y"}, "the file is empty"},
      {{"linear", ragged, "--dependent", "y"},
       "ragged.csv, line 3: the row has 1 cell, the header has 2"},
      {{"linear", word, "--dependent", "y", "--covariates", "x"},
       "word.csv, line 3, column 'x': 'big' is not a finite number"},
  };
  ExpectFailures(2, cases);
}

TEST(McfitProgram, ModelsThatCannotBeFittedEndWithStatusOneAndTheCodeInWords) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("d.csv", "y,a,n\n1,,1\n,q,1\n1,p,0\n");
  const std::vector<Failure> cases = {
      {{"linear", data, "--dependent", "y", "--factors", "a", "--freq", "n"},
       "mcfit: error 307 (MCS_NO_DATA): the source has no usable row, or a new pass could not be "
       "begun\n           1  dependent 'y' is missing\n           1  factor 'a' is missing\n"
       "           1  frequency weight 'n' is not above 0\n"},
      {{"linear", folder.Write("none.csv", "y,x\n"), "--dependent", "y"},
       "mcfit: error 307 (MCS_NO_DATA)"},
      {{"linear", data, "--dependent", "y", "--no-intercept"},
       "mcfit: error 302 (MCS_EMPTY_MODEL): the model has neither an intercept nor an effect"},
  };
  ExpectFailures(1, cases);
}

TEST(McfitProgram, HelpAndVersionAreNoFailures) {
  EXPECT_EQ(RunMcfit({"--help"}).status, 0);
  const ProgramResult help = RunMcfit({"linear", "--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--dependent", "--factors", "--covariates", "--effects", "--freq",
                             "--weight", "--no-intercept", "--tolerance", "--predict", "--out"}) {
    EXPECT_THAT(help.out, HasSubstr(option));
  }
  EXPECT_THAT(RunMcfit({"--version"}).out, HasSubstr("mcfit 0."));
}

TEST(McfitProgram, VariablesThatNoEffectUsesAreTold) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("d.csv", "y,a,x\n1,p,1\n2,q,2\n3,p,4\n");
  const ProgramResult run = RunMcfit({"linear", data, "--dependent", "y", "--factors", "a",
                                      "--covariates", "x", "--effects", "a"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("note: no effect uses 'x'"));
}

TEST(McfitProgram, ASecondFileIsScored) {
  const TemporaryFolder folder;
  // y = x + 2 [a = q] + 0 [a = p], without the cell (q, 2).
  const std::string data = folder.Write(
      "d.csv", "y,a,b,x\n1,p,1,1\n2,p,2,2\n3,p,1,3\n4,p,2,4\n6,q,1,4\n7,q,1,5\n,r,1,5\n");
  const std::string news =
      folder.Write("new.csv",
                   "id,b,x,a\r\n\"one, two\",1,10,p\r\n2,1,10,q\r\n3,,10,p\r\n4,1,,p\r\n"
                   "\" 5\",2,1,q\r\n6,1,1,s\r\n7,1,1,r\r\n\"a \"\"b\"\"\",2,0.5,p\r\n");
  const ProgramResult run =
      RunMcfit({"linear", data, "--dependent", "y", "--factors", "a,b", "--covariates", "x",
                "--effects", "a*b, x", "--predict", news, "--out", folder.Path("s.csv")});
  ASSERT_EQ(run.status, 0) << run.err;
  std::istringstream scores(folder.Read("s.csv"));
  const struct {
    const char* cells;
    double score;  // NaN: none
  } rows[] = {{"\"one, two\",1,10,p,", 10.0},
              {"2,1,10,q,", 12.0},
              {"3,,10,p,", NAN},
              {"4,1,,p,", NAN},
              {"\" 5\",2,1,q,", NAN},
              {"6,1,1,s,", NAN},
              {"7,1,1,r,", NAN},
              {"\"a \"\"b\"\"\",2,0.5,p,", 0.5}};
  std::string line;
  ASSERT_TRUE(std::getline(scores, line));
  EXPECT_EQ(line, "id,b,x,a,predicted");
  for (const auto& row : rows) {
    ASSERT_TRUE(std::getline(scores, line));
    const std::string cells = row.cells;
    ASSERT_EQ(line.substr(0, cells.size()), cells);
    const std::string score = line.substr(cells.size());
    if (std::isnan(row.score)) {
      EXPECT_EQ(score, "") << cells;
    } else {
      EXPECT_NEAR(mctest::ToNumber(score), row.score, 1e-10) << cells;
    }
  }
  EXPECT_FALSE(std::getline(scores, line));
  EXPECT_THAT(run.out, HasSubstr("Scored 3 of 8 rows, written to " + folder.Path("s.csv") + "\n" +
                                 "           2  a factor or covariate is missing\n"
                                 "           1  a factor has a label that the fit has not seen\n"
                                 "           2  the factors have a combination that the fit has "
                                 "not seen\n"));
}

TEST(McfitProgram, AFileThatCannotBeScoredLeavesNoScores) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("d.csv", "y,x\n1,1\n2,2\n4,3\n");
  const Arguments fit = {"linear", data,    "--dependent",        "y",        "--covariates",
                         "x",      "--out", folder.Path("s.csv"), "--predict"};
  const std::pair<const char*, const char*> cases[] = {
      {"x\n1\n1,2\n", "line 3: the row has 2 cells, the header has 1"},
      {"x\n1\none\n", "line 3, column 'x': 'one' is not a finite number"},
      {"x,predicted\n1,1\n", "there is a column 'predicted' already"},
  };
  for (const auto& [text, message] : cases) {
    const ProgramResult run = RunMcfit(fit + Arguments{folder.Write("new.csv", text)});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr(message));
    EXPECT_FALSE(folder.Has("s.csv"));
    EXPECT_FALSE(folder.Has("s.csv.part"));
  }
}

TEST(McfitProgram, ResultsThatCannotBeWrittenEndWithStatusTwo) {
  ChildProcess::Options options;
  options.outPath = "/dev/full";
  const ProgramResult run = RunMcfit(
      {"linear", kData + "peas.csv", "--dependent", "progeny", "--covariates", "parent"}, options);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("could not be written"));
}

TEST(McfitProgram, AFolderWithoutRoomForTheRowsIsNamed) {
  ChildProcess::Options options;
  options.temporaryFolder = "/nonexistent";
  const ProgramResult run =
      RunMcfit({"linear", kData + "peas.csv", "--dependent", "progeny"}, options);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("TMPDIR"));
}

TEST(McfitProgram, InterruptingTheReadingEndsWithStatus130) {
  ChildProcess::Options options;
  options.input = "y,x\n1,1\n";
  options.keepInputOpen = true;
  ChildProcess run({"linear", "-", "--dependent", "y", "--covariates", "x"}, options);
  run.WaitUntilInputIsTaken();
  run.Send(SIGINT);
  const ProgramResult result = run.Finish();
  EXPECT_EQ(result.status, 130);
  EXPECT_EQ(result.err, "mcfit: interrupted\n");
  EXPECT_EQ(result.out, "");
}

TEST(McfitProgram, InterruptingTheScoringLeavesNoScores) {
  const TemporaryFolder folder;
  ChildProcess::Options options;
  options.input = "x\n1\n";
  options.keepInputOpen = true;
  ChildProcess run({"linear", folder.Write("d.csv", "y,x\n1,1\n2,2\n4,3\n"), "--dependent", "y",
                    "--covariates", "x", "--predict", "-", "--out", folder.Path("s.csv")},
                   options);
  run.WaitUntilInputIsTaken();
  run.Send(SIGINT);
  const ProgramResult result = run.Finish();
  EXPECT_EQ(result.status, 130);
  EXPECT_FALSE(folder.Has("s.csv"));
  EXPECT_FALSE(folder.Has("s.csv.part"));
}

TEST(McfitProgram, LongReadingIsToldOnATerminalAndErased) {
  ChildProcess::Options options;
  options.input = "y,x\n";
  options.keepInputOpen = true;
  options.errOnTerminal = true;
  ChildProcess run({"linear", "-", "--dependent", "y", "--covariates", "x"}, options);
  std::string rows;
  for (int i = 0; i < 300; ++i) rows += std::to_string(i % 7) + "," + std::to_string(i) + "\n";
  int given = 0;
  do {
    run.Give(rows);
    given += 300;
  } while (!run.HasErrorWithin(50));
  run.EndInput();
  const ProgramResult result = run.Finish();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("\rreading standard input: "));
  EXPECT_THAT(result.err, testing::EndsWith("\r\033[K"));
  EXPECT_THAT(result.out, HasSubstr(" " + std::to_string(given) + "\nRows dropped"));
}

// Eight covariates and all products of their powers to the ninth of two each: more than 2,000
// columns, dense.
std::string ManyEffects() {
  std::string effects;
  for (int i = 0; i < 8; ++i) {
    for (int j = 0; j < i; ++j) {
      for (int p = 1; p <= 9; ++p) {
        for (int q = 1; q <= 9; ++q) {
          effects += (effects.empty() ? "x" : ", x") + std::to_string(i) + "^" + std::to_string(p) +
                     "*x" + std::to_string(j) + "^" + std::to_string(q);
        }
      }
    }
  }
  return effects;
}

// However fast the machine, the fit takes long beside the time in which no progress is shown: that
// is over when the rows are read, and each row costs some million additions.
TEST(McfitProgram, InterruptingTheFitErasesTheProgressAndEndsWithStatus130) {
  ChildProcess::Options options;
  options.input = "y,x0,x1,x2,x3,x4,x5,x6,x7\n";
  options.keepInputOpen = true;
  options.errOnTerminal = true;
  ChildProcess run({"linear", "-", "--dependent", "y", "--covariates", "x0,x1,x2,x3,x4,x5,x6,x7",
                    "--effects", ManyEffects()},
                   options);
  std::string rows;
  unsigned state = 1;
  for (int cell = 0; cell < 9 * 20000; ++cell) {
    state = state * 1664525U + 1013904223U;
    rows += "0." + std::to_string(state >> 8U) + (cell % 9 == 8 ? "\n" : ",");
  }
  do run.Give(rows);
  while (!run.HasErrorWithin(0));
  run.EndInput();
  ASSERT_TRUE(run.WaitForError("fitting: pass "));
  run.Send(SIGINT);
  const ProgramResult result = run.Finish();
  EXPECT_EQ(result.status, 130);
  EXPECT_THAT(result.err, testing::EndsWith("\r\033[Kmcfit: interrupted\n"));
  EXPECT_EQ(result.out, "");
}

// Sanitizers take memory of their own, so its limits are for the other builds.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

TEST(McfitProgram, AFileLargerThanTheMemoryIsFitted) {
  const TemporaryFolder folder;
  // About 60 MB of text and 10 MB of rows, beside 6 MB of memory.
  {
    std::ofstream file(folder.Path("d.csv"));
    const std::string filler(120, 'z');
    file << "y,a,x,comment\n";
    for (int i = 0; i < 450000; ++i) {
      file << i % 7 << ",group " << i % 13 << ',' << i % 101 << ',' << filler << '\n';
    }
  }
  ChildProcess::Options options;
  options.memoryLimit = std::size_t{6} << 20U;
  const ProgramResult run = RunMcfit(
      {"linear", folder.Path("d.csv"), "--dependent", "y", "--factors", "a", "--covariates", "x"},
      options);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Rows used     450000\n"));
  EXPECT_EQ(run.err, "");
}

TEST(McfitProgram, MemoryThatRunsOutIsAFailureInWords) {
  const TemporaryFolder folder;
  std::string text = "y,a\n";
  for (int i = 0; i < 8000; ++i) text += std::to_string(i % 7) + ",l" + std::to_string(i) + "\n";
  ChildProcess::Options options;
  options.memoryLimit = std::size_t{64} << 20U;
  // 8001 columns need a matrix of 256 MB.
  const ProgramResult run = RunMcfit(
      {"linear", folder.Write("d.csv", text), "--dependent", "y", "--factors", "a"}, options);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, testing::AnyOf(HasSubstr("out of memory"), HasSubstr("error 305")));
}

#endif

}  // namespace
