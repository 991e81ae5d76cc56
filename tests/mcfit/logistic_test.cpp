// SPDX-License-Identifier: Apache-2.0
//
// Runs `mcfit logistic` as a user does.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/temporaryfolder.h"
#include "support/numbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <sstream>
#include <unistd.h>

namespace {
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The report from behind the iterations on.
std::string Results(const std::string& report) {
  const std::size_t begin = report.find("onverged");
  return begin == std::string::npos ? report : report.substr(begin);
}

std::vector<std::vector<std::string>> Cells(const std::string& csv) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(csv);
  for (std::string line; std::getline(lines, line);) {
    rows.emplace_back();
    std::istringstream cells(line + ",");
    for (std::string cell; std::getline(cells, cell, ',');) rows.back().push_back(cell);
  }
  return rows;
}

const Arguments kHair = {"logistic",    kData + "haireyecolor.csv",
                         "--dependent", "hair",
                         "--reference", "Brown",
                         "--factors",   "eye,sex",
                         "--freq",      "people"};

const Arguments kBirths = {"logistic",     kData + "birthwt.csv",
                           "--dependent",  "birthweight",
                           "--factors",    "race,smoke,hypertension,irritability",
                           "--covariates", "age,lwt"};

// One figure of a table: its line, its place in the line, and what another program says.
struct Figure {
  const char* line;
  std::size_t place;
  double value;
};

void ExpectFigures(const std::string& report, const std::vector<Figure>& figures,
                   double tolerance) {
  const auto numbers = Numbers(report);
  for (const Figure& figure : figures) {
    ASSERT_GT(numbers.count(figure.line), 0u) << figure.line;
    ASSERT_GT(numbers.at(figure.line).size(), figure.place) << figure.line;
    EXPECT_NEAR(numbers.at(figure.line)[figure.place], figure.value,
                tolerance * std::abs(figure.value))
        << figure.line << ' ' << figure.place;
  }
}

// R 4.2.2 with nnet 7.3-18, the last levels of eye and sex and "Brown" of hair as reference:
//
//   m <- multinom(hair ~ eye + sex, weights = people, data = d, reltol = 1e-16, abstol = 1e-16,
//                 maxit = 10000, Hess = TRUE)
//   coef(m); summary(m)$standard.errors; logLik(m); logLik(multinom(hair ~ 1, ...))
//
// The quasi-Newton method of multinom leaves some 1e-7 of the smallest coefficients.
TEST(McfitLogistic, FrequenciesAndFourCategoriesAgreeWithMultinom) {
  const ProgramResult run = RunMcfit(kHair + Arguments{"--digits", "12"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::vector<Figure> figures = {
      {"(Intercept)", 0, -1.20564851563},  {"(Intercept)", 1, 0.309622153384},
      {"(Intercept)", 7, -2.10283975833},  {"(Intercept)", 8, 0.377366127476},
      {"(Intercept)", 14, -1.40523923670}, {"(Intercept)", 15, 0.328602373760},
      {"eye=Blue", 0, -0.158182292942},    {"eye=Blue", 1, 0.383714338733},
      {"eye=Blue", 7, 1.816631144977},     {"eye=Blue", 14, -0.244892757793},
      {"eye=Brown", 0, 0.734625579077},    {"eye=Brown", 7, -1.202802192711},
      {"eye=Brown", 8, 0.521595399637},    {"eye=Brown", 14, -0.180156513252},
      {"eye=Green", 0, -0.483709533757},   {"eye=Green", 7, 1.121799163388},
      {"eye=Green", 14, 0.626384777990},   {"eye=Green", 15, 0.442813303817},
      {"sex=Female", 0, -0.164596139837},  {"sex=Female", 7, 0.732840770442},
      {"sex=Female", 14, 0.112446712370},  {"sex=Female", 15, 0.268162099397},
  };
  ExpectFigures(run.out, figures, 5e-7);
  const double first = -737.890066177;
  const double last = -658.885327349;
  ExpectFigures(run.out,
                {{"First log-likelihood", 0, first},
                 {"Final log-likelihood", 0, last},
                 {"Cox-Snell R square", 0, 1 - std::exp(2 * (first - last) / 592)},
                 {"Nagelkerke R square", 0,
                  (1 - std::exp(2 * (first - last) / 592)) / (1 - std::exp(2 * first / 592))},
                 {"McFadden R square", 0, 1 - last / first},
                 {"Parameters estimated", 0, 15},
                 {"Sum of frequencies", 0, 592}},
                1e-9);
}

// R 4.2.2: glm((birthweight == "low") ~ race + smoke + hypertension + irritability + age + lwt,
// binomial, b, epsilon = 1e-15) with the last level of each factor as reference; logLik(), and
// null.deviance / -2.
//
// In the last iteration the full step gains less than rounding, is refused by luck, and the half
// step ends the fit: the criterion of 1e-6 is met with some 1e-7 of the estimates to go.
TEST(McfitLogistic, TwoCategoriesAgreeWithGlm) {
  const ProgramResult run = RunMcfit(kBirths + Arguments{"--digits", "14"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const double wald = 2.86262833059303 * 2.86262833059303;
  const std::vector<Figure> figures = {
      {"(Intercept)", 0, 4.217814486272413},
      {"(Intercept)", 1, 1.4734062543839328},
      {"(Intercept)", 2, wald},
      {"(Intercept)", 4, std::exp(4.217814486272413)},
      {"race=black", 0, 1.280640588420793},
      {"race=black", 1, 0.5266989553260111},
      {"race=other", 0, 0.901880064945998},
      {"race=other", 1, 0.4343671011552316},
      {"smoke=no", 0, -1.027570566591447},
      {"smoke=no", 1, 0.3939350824455692},
      {"hypertension=no", 0, -1.857616924334365},
      {"hypertension=no", 1, 0.6888525843246545},
      {"irritability=no", 0, -0.895386776394586},
      {"irritability=no", 1, 0.4484960298451008},
      {"age", 0, -0.018255996456835},
      {"age", 1, 0.0353544563293768},
      {"lwt", 0, -0.016285030089889},
      {"lwt", 1, 0.0068586582724465},
      {"First log-likelihood", 0, -117.33599809661},
      {"Final log-likelihood", 0, -101.97403197337},
  };
  ExpectFigures(run.out, figures, 2e-7);
}

TEST(McfitLogistic, TheReportHasRowsIterationsEndingBlocksFitAndClassification) {
  const ProgramResult run = RunMcfit(kHair);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  // Estimates, standard errors and log-likelihoods are those of multinom to seven digits, and the
  // cases those that it predicts; Wald and exp(Estimate) follow from the former.
  EXPECT_EQ(WithoutTimes(run.out),
            "Logistic regression of hair\n"
            "\n"
            "Rows read     32\n"
            "Rows used     32\n"
            "Rows dropped   0\n"
            "\n"
            "Category  Rows  Cases\n"
            "---------------------\n"
            "Black        8    108\n"
            "Blond        8    127\n"
            "Red          8     71\n"
            "Brown        8    286  reference\n"
            "\n"
            "Iteration  Log-likelihood  Halvings  Seconds\n"
            "        0       -737.8901         0     T\n"
            "        1       -667.6579         0     T\n"
            "        2       -659.3676         0     T\n"
            "        3       -658.8943         0     T\n"
            "        4       -658.8853         0     T\n"
            "        5       -658.8853         0     T\n"
            "        6       -658.8853         0     T\n"
            "\n"
            "Converged after 6 iterations: the estimates no longer change\n"
            "\n"
            "Black against Brown\n"
            "\n"
            "Parameter      Estimate  Std. error       Wald          p  exp(Estimate)  Lower 95 "
            "%  Upper 95 %\n"
            ""
            "--------------------------------------------------------------------------------------"
            "----------\n"
            "(Intercept)   -1.205649   0.3096222   15.16273  9.863e-05      0.2994977    "
            "0.163246   0.5494705\n"
            "eye=Blue     -0.1581823   0.3837143  0.1699416     0.6802      0.8536941   "
            "0.4024242    1.811009\n"
            "eye=Brown     0.7346256   0.3298381   4.960558    0.02593       2.084701    "
            "1.092157    3.979262\n"
            "eye=Green    -0.4837095   0.5656337  0.7313053     0.3925      0.6164922   "
            "0.2034508    1.868082\n"
            "eye=Hazel             0           .          .          .              .           "
            ".           .  redundant\n"
            "sex=Female   -0.1645961   0.2308683  0.5082889     0.4759      0.8482362   "
            "0.5395123    1.333621\n"
            "sex=Male              0           .          .          .              .           "
            ".           .  redundant\n"
            ""
            "--------------------------------------------------------------------------------------"
            "----------\n"
            "\n"
            "Blond against Brown\n"
            "\n"
            "Parameter     Estimate  Std. error      Wald          p  exp(Estimate)  Lower 95 %  "
            "Upper 95 %\n"
            ""
            "--------------------------------------------------------------------------------------"
            "--------\n"
            "(Intercept)   -2.10284   0.3773661  31.05178  2.512e-08      0.1221092   0.0582819  "
            " 0.2558367\n"
            "eye=Blue      1.816631   0.3787016   23.0112  1.611e-06       6.151101    2.928205  "
            "  12.92124\n"
            "eye=Brown    -1.202802   0.5215954  5.317664    0.02111      0.3003514   0.1080555  "
            " 0.8348577\n"
            "eye=Green     1.121799   0.4682293  5.740015    0.01658       3.070373    1.226404  "
            "  7.686855\n"
            "eye=Hazel            0           .         .          .              .           .  "
            "         .  redundant\n"
            "sex=Female   0.7328408   0.2391254  9.392212   0.002179       2.080984    1.302341  "
            "   3.32516\n"
            "sex=Male             0           .         .          .              .           .  "
            "         .  redundant\n"
            ""
            "--------------------------------------------------------------------------------------"
            "--------\n"
            "\n"
            "Red against Brown\n"
            "\n"
            "Parameter      Estimate  Std. error       Wald          p  exp(Estimate)  Lower 95 "
            "%  Upper 95 %\n"
            ""
            "--------------------------------------------------------------------------------------"
            "----------\n"
            "(Intercept)   -1.405239   0.3286024    18.2877  1.899e-05      0.2453084   "
            "0.1288266     0.46711\n"
            "eye=Blue     -0.2448928   0.4009633  0.3730291     0.5414      0.7827885   "
            "0.3567335    1.717691\n"
            "eye=Brown    -0.1801565   0.3705835  0.2363348     0.6269      0.8351395   "
            "0.4039408    1.726634\n"
            "eye=Green     0.6263848   0.4428133   2.000972     0.1572       1.870835   "
            "0.7854383     4.45614\n"
            "eye=Hazel             0           .          .          .              .           "
            ".           .  redundant\n"
            "sex=Female    0.1124467   0.2681621  0.1758323      0.675       1.119013   "
            "0.6615688    1.892758\n"
            "sex=Male              0           .          .          .              .           "
            ".           .  redundant\n"
            ""
            "--------------------------------------------------------------------------------------"
            "----------\n"
            "\n"
            "redundant: a linear combination of parameters above it, so its coefficient is 0\n"
            "\n"
            "Tests that all parameters of an effect are 0\n"
            "\n"
            "Effect  DF      Wald          p\n"
            "-------------------------------\n"
            "eye      9  102.3274  5.318e-18\n"
            "sex      3  11.23792    0.01051\n"
            "-------------------------------\n"
            "\n"
            "First log-likelihood         -737.8901  each category as likely as it is frequent\n"
            "Final log-likelihood         -658.8853\n"
            "Likelihood ratio chi square   158.0095  all effects against the intercepts alone\n"
            "Degrees of freedom                  12\n"
            "p                            1.336e-27\n"
            "Cox-Snell R square           0.2342564\n"
            "Nagelkerke R square          0.2553683\n"
            "McFadden R square            0.1070684\n"
            "Parameters estimated                15\n"
            "Sum of frequencies                 592\n"
            "Condition index               8.302457  of the columns of the design; above 30 they "
            "are nearly collinear\n"
            "\n"
            "Cases by observed and predicted category\n"
            "\n"
            "Observed  Black  Blond  Red  Brown  Correct\n"
            "-------------------------------------------\n"
            "Black         0      9    0     99    0.0 %\n"
            "Blond         0     64    0     63   50.4 %\n"
            "Red           0      7    0     64    0.0 %\n"
            "Brown         0     34    0    252   88.1 %\n"
            "-------------------------------------------\n"
            "All                                  53.4 %\n");
}

TEST(McfitLogistic, ATableOfManyCategoriesShowsThoseThatArePredictedRight) {
  const TemporaryFolder folder;
  std::string text = "y,x\n";
  for (int i = 0; i < 120; ++i) {
    text += "c" + std::to_string(10 + i % 12) + "," + std::to_string((i * i) % 7) + "\n";
  }
  const ProgramResult run = RunMcfit({"logistic", folder.Write("d.csv", text), "--dependent", "y",
                                      "--covariates", "x", "--effects", ""});
  ASSERT_EQ(run.status, 0) << run.err;
  // All categories are equally frequent; the tie goes to the one that sorts first.
  EXPECT_THAT(run.out, HasSubstr("Observed  Cases  Correct  Correct\n"
                                 "---------------------------------\n"
                                 "c10          10       10  100.0 %\n"
                                 "c11          10        0    0.0 %\n"));
  EXPECT_THAT(run.out, testing::EndsWith("All                         8.3 %\n"));
}

TEST(McfitLogistic, RereadingTheRowsGivesTheSameResultsForEachReference) {
  const TemporaryFolder folder;
  // Codes of first appearance, of sorted labels and of the library's list all differ; "none" is
  // the category of a dropped row alone, and sorts before others.
  std::string text = "x,grade,a,n\n,none,p,1\n1,top,q,0\n";
  const char* grades[] = {"poor", "good", "top", "fair"};
  unsigned state = 7;
  for (int i = 0; i < 200; ++i) {
    state = state * 1664525U + 1013904223U;
    const unsigned draw = state >> 16U;
    text += std::to_string(draw % 97) + "," + grades[(draw / 97 + (draw % 97) / 40) % 4] + "," +
            (draw % 3 == 0 ? "p" : "q") + "," + std::to_string(1 + draw % 2) + "\n";
  }
  const std::string data = folder.Write("d.csv", text);
  for (const char* reference : {"first", "last", "top", "good", "none"}) {
    const Arguments fit = {"logistic",    data,           "--dependent", "grade",  "--factors",
                           "a",           "--covariates", "x",           "--freq", "n",
                           "--reference", reference,      "--predict",   data,     "--out"};
    const ProgramResult kept = RunMcfit(fit + Arguments{folder.Path("kept.csv")});
    const ProgramResult reread = RunMcfit(fit + Arguments{folder.Path("kept2.csv"), "--reread"});
    ASSERT_EQ(kept.status, 0) << kept.err;
    ASSERT_EQ(reread.status, 0) << reread.err;
    EXPECT_EQ(Results(kept.out).substr(0, Results(kept.out).find("Scored")),
              Results(reread.out).substr(0, Results(reread.out).find("Scored")))
        << reference;
    EXPECT_EQ(kept.err, reread.err);
    const auto keptCells = Cells(folder.Read("kept.csv"));
    const auto rereadCells = Cells(folder.Read("kept2.csv"));
    ASSERT_EQ(keptCells.size(), rereadCells.size());
    for (std::size_t i = 0; i < keptCells.size(); ++i) {
      EXPECT_EQ(keptCells[i][4], rereadCells[i][4]) << reference << ' ' << i;
    }
  }
}

TEST(McfitLogistic, AReferenceOfDroppedRowsAloneIsReplacedWithAWarning) {
  const TemporaryFolder folder;
  const std::string data =
      folder.Write("d.csv", "y,x\nb,1\na,2\nb,3\na,2.5\nc,2\nb,2\nc,3\nzero,\n");
  const Arguments fit = {"logistic", data, "--dependent", "y", "--covariates", "x"};
  const ProgramResult asked = RunMcfit(fit + Arguments{"--reference", "zero"});
  ASSERT_EQ(asked.status, 0) << asked.err;
  EXPECT_THAT(asked.err, StartsWith("mcfit: warning 319 (MCS_REFCAT_REPLACED)"));
  EXPECT_THAT(asked.out, HasSubstr("\na against c\n"));
  EXPECT_THAT(asked.out, HasSubstr("c            2  reference\n"));
  const ProgramResult last = RunMcfit(fit);
  EXPECT_EQ(last.err, "");
  EXPECT_EQ(Results(asked.out), Results(last.out));
}

TEST(McfitLogistic, TheOddsTurnRoundWithTheReference) {
  const Arguments fit = kBirths + Arguments{"--digits", "12"};
  const auto low = Numbers(RunMcfit(fit + Arguments{"--reference", "normal"}).out);
  const auto normal = Numbers(RunMcfit(fit + Arguments{"--reference", "first"}).out);
  EXPECT_NEAR(low.at("age")[0], -normal.at("age")[0], 1e-9);
  EXPECT_NEAR(low.at("age")[1], normal.at("age")[1], 1e-9);
  EXPECT_NEAR(low.at("age")[4], 1.0 / normal.at("age")[4], 1e-9);
}

TEST(McfitLogistic, FrequenciesCountRowsSeveralTimes) {
  const TemporaryFolder folder;
  const std::string grouped =
      folder.Write("grouped.csv", "y,x,n\nno,1,2\nyes,2,1\nno,3,3\nyes,4,2\nno,4,1\nyes,1,1\n");
  const std::string single = folder.Write(
      "single.csv", "y,x\nno,1\nno,1\nyes,2\nno,3\nno,3\nno,3\nyes,4\nyes,4\nno,4\nyes,1\n");
  const Arguments fit = {"--dependent", "y", "--covariates", "x"};
  const ProgramResult a = RunMcfit(Arguments{"logistic", grouped} + fit + Arguments{"--freq", "n"});
  const ProgramResult b = RunMcfit(Arguments{"logistic", single} + fit);
  ASSERT_EQ(a.status, 0) << a.err;
  EXPECT_EQ(Results(a.out), Results(b.out));
  EXPECT_THAT(a.out, HasSubstr("Category  Rows  Cases\n"
                               "---------------------\n"
                               "no           3      6\n"
                               "yes          3      4  reference\n"));
}

TEST(McfitLogistic, WeightsEnterTheEstimatesButNotTheCases) {
  const TemporaryFolder folder;
  const std::string data =
      folder.Write("d.csv", "y,x,w\nno,1,2\nyes,2,1\nno,3,3\nyes,4,2\nno,4,1\nyes,1,1\n");
  const Arguments fit = {"logistic", data, "--dependent", "y", "--covariates", "x"};
  const ProgramResult weighted = RunMcfit(fit + Arguments{"--weight", "w"});
  const ProgramResult counted = RunMcfit(fit + Arguments{"--freq", "w"});
  ASSERT_EQ(weighted.status, 0) << weighted.err;
  EXPECT_NEAR(Numbers(weighted.out).at("x")[0], Numbers(counted.out).at("x")[0], 1e-6);
  EXPECT_EQ(Numbers(weighted.out).at("Sum of frequencies")[0], 6);
  EXPECT_EQ(Numbers(counted.out).at("Sum of frequencies")[0], 10);
}

TEST(McfitLogistic, FrequenciesOfAnySizeAreReported) {
  const TemporaryFolder folder;
  for (const char* size : {"1e308", "1e-308"}) {
    std::string text = "y,x,n\n";
    for (const char* row : {"a,1,", "b,2,", "a,3,", "b,2,", "b,1,"}) {
      text += std::string(row) + size + "\n";
    }
    for (const Arguments& way : {Arguments{}, Arguments{"--reread"}}) {
      const ProgramResult run =
          RunMcfit(Arguments{"logistic", folder.Write("d.csv", text), "--dependent", "y",
                             "--covariates", "x", "--freq", "n"} +
                   way);
      EXPECT_EQ(run.status, 0) << run.err;
      EXPECT_THAT(run.out, Not(HasSubstr("nan"))) << size;
    }
  }
}

TEST(McfitLogistic, RowsAreDroppedForTheSameReasonsAsInEveryFit) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("d.csv",
                                        "y,a,x,n\nb,p,1,1\na,q,2,1\nb,q,3,1\na,p,2.5,1\n,p,1,1\n"
                                        "?,p,1,1\na,,1,1\nb,p,?,1\nb,p,1,0\na,p,1,-1\nb,p,1,\n");
  const ProgramResult run = RunMcfit({"logistic", data, "--dependent", "y", "--factors", "a",
                                      "--covariates", "x", "--freq", "n", "--missing", "?"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, StartsWith("Logistic regression of y\n"
                                  "\n"
                                  "Rows read     11\n"
                                  "Rows used      4\n"
                                  "Rows dropped   7\n"
                                  "           2  dependent 'y' is missing\n"
                                  "           1  factor 'a' is missing\n"
                                  "           1  covariate 'x' is missing\n"
                                  "           1  frequency weight 'n' is missing\n"
                                  "           2  frequency weight 'n' is not above 0\n"
                                  "\n"
                                  "Category  Rows  Cases\n"
                                  "---------------------\n"
                                  "a            2      2\n"
                                  "b            2      2  reference\n"));
}

TEST(McfitLogistic, CompleteSeparationIsAWarning) {
  const TemporaryFolder folder;
  std::string text = "y,x\n";
  for (int i = 0; i < 20; ++i) {
    text += (i < 10 ? "low," : "high,") + std::to_string(i) + "\n";
  }
  const ProgramResult run =
      RunMcfit({"logistic", folder.Write("d.csv", text), "--dependent", "y", "--covariates", "x"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, HasSubstr("\nNot converged: stopped after 20 iterations: the data are "
                                 "completely separated\n"));
  EXPECT_THAT(run.err, StartsWith("mcfit: warning: complete separation: "));
  EXPECT_THAT(run.out, testing::EndsWith("  100.0 %\n"));
}

TEST(McfitLogistic, SeparationOfAPartOfTheRowsIsAWarning) {
  const ProgramResult run = RunMcfit({"logistic", kData + "iris.csv", "--dependent", "species",
                                      "--covariates", "petal_length,petal_width"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, HasSubstr("iterations: the data are quasi-completely separated\n"));
  EXPECT_THAT(run.err, StartsWith("mcfit: warning: quasi-complete separation: "));
}

TEST(McfitLogistic, TheIterationLimitIsAWarning) {
  const ProgramResult run = RunMcfit(kBirths + Arguments{"--max-iterations", "2"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out,
              HasSubstr("\nNot converged: stopped after 2 iterations: that is the limit\n"));
  EXPECT_EQ(run.err, "mcfit: warning: not converged; allow more with --max-iterations\n");
}

TEST(McfitLogistic, WithoutIterationsTheFirstEstimatesStand) {
  const ProgramResult none = RunMcfit(kBirths + Arguments{"--max-iterations", "0"});
  EXPECT_EQ(none.status, 0);
  EXPECT_THAT(none.out, HasSubstr("\nNo iteration was run: the first estimates stand, which are "
                                  "not the solution\n"));
  EXPECT_THAT(none.err, StartsWith("mcfit: warning: the estimates are the first ones"));
  EXPECT_EQ(Numbers(none.out).at("age")[0], 0.0);
  EXPECT_THAT(none.out, HasSubstr("Final log-likelihood  "));

  // log(59 / 130), and the log-likelihood by the shares.
  const ProgramResult intercept =
      RunMcfit({"logistic", kData + "birthwt.csv", "--dependent", "birthweight"});
  EXPECT_EQ(intercept.status, 0);
  EXPECT_EQ(intercept.err, "");
  EXPECT_THAT(intercept.out,
              HasSubstr("\nNo iteration was run: the first estimates are the solution\n"));
  EXPECT_NEAR(Numbers(intercept.out).at("(Intercept)")[0], std::log(59.0 / 130.0), 1e-6);
  EXPECT_NEAR(Numbers(intercept.out).at("First log-likelihood")[0], -117.335998, 1e-4);
  EXPECT_EQ(Numbers(intercept.out).at("McFadden R square")[0], 0.0);
}

TEST(McfitLogistic, EmptyCellsLeaveNoParameterAndRedundantOnesAreMarkedInEachBlock) {
  const TemporaryFolder folder;
  const std::string data = folder.Write(
      "d.csv",
      "y,a,b\nr,p,1\ns,p,1\nt,p,1\nr,p,2\ns,p,2\nt,p,2\ns,q,1\nr,q,1\nt,q,1\nr,q,1\ns,p,2\n");
  const ProgramResult run = RunMcfit(
      {"logistic", data, "--dependent", "y", "--factors", "a,b", "--effects", "a, b, a*b"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, Not(HasSubstr("a=q * b=2")));
  const std::string redundant = "redundant\n";
  int count = 0;
  for (std::size_t at = run.out.find(redundant); at != std::string::npos;
       at = run.out.find(redundant, at + 1)) {
    ++count;
  }
  // Three cells hold data, so three of the eight parameters of each block are free.
  EXPECT_EQ(count, 10);
  EXPECT_EQ(Numbers(run.out).at("Parameters estimated")[0], 6);
  EXPECT_THAT(run.out, HasSubstr("redundant: a linear combination of parameters above it"));
}

TEST(McfitLogistic, ASecondFileGetsCategoriesAndTheirProbabilities) {
  const TemporaryFolder folder;
  const ProgramResult run = RunMcfit(
      kBirths + Arguments{"--predict", kData + "birthwt.csv", "--out", folder.Path("s.csv")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("\nScored 189 of 189 rows, written to " + folder.Path("s.csv")));
  const auto rows = Cells(folder.Read("s.csv"));
  ASSERT_EQ(rows.size(), 190u);
  EXPECT_EQ(rows[0][7], "predicted");
  EXPECT_EQ(rows[0][8], "p(low)");
  EXPECT_EQ(rows[0][9], "p(normal)");
  // fitted() of the glm of TwoCategoriesAgreeWithGlm.
  const double low[] = {0.33237299485888, 0.14337861229852, 0.35200506779031};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(rows[i + 1][7], "normal");
    EXPECT_NEAR(mctest::ToNumber(rows[i + 1][8]), low[i], 2e-8);
    EXPECT_NEAR(mctest::ToNumber(rows[i + 1][8]) + mctest::ToNumber(rows[i + 1][9]), 1.0, 1e-15);
  }
}

TEST(McfitLogistic, RowsThatCannotBeScoredHaveEmptyScores) {
  const TemporaryFolder folder;
  const std::string data = folder.Write(
      "d.csv",
      "y,a,b,x\n\"r, s\",p,1,1\nt,p,2,2\n\"r, s\",p,2,3\nt,p,1,2\nt,q,1,4\n\"r, s\",q,1,2\n");
  const std::string news = folder.Write("new.csv", "id,x,a,b\n1,2,p,1\n2,2,q,2\n3,,p,1\n4,2,z,1\n");
  const ProgramResult run =
      RunMcfit({"logistic", data, "--dependent", "y", "--factors", "a,b", "--covariates", "x",
                "--effects", "a*b, x", "--predict", news, "--out", folder.Path("s.csv")});
  ASSERT_EQ(run.status, 0) << run.err;
  std::istringstream scores(folder.Read("s.csv"));
  std::string line;
  std::getline(scores, line);
  EXPECT_EQ(line, "id,x,a,b,predicted,\"p(r, s)\",p(t)");
  std::getline(scores, line);
  EXPECT_THAT(line, testing::AnyOf(StartsWith("1,2,p,1,t,0."), StartsWith("1,2,p,1,\"r, s\",0.")));
  for (const char* unscored : {"2,2,q,2,,,", "3,,p,1,,,", "4,2,z,1,,,"}) {
    std::getline(scores, line);
    EXPECT_EQ(line, unscored);
  }
  EXPECT_THAT(run.out, HasSubstr("Scored 1 of 4 rows"));
}

TEST(McfitLogistic, OptionsThatCannotBeUsedEndWithStatusTwo) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("d.csv", "y,a,x\nno,p,1\nyes,q,2\nno,p,4\n");
  const std::string scored = folder.Write("scored.csv", "a,x,p(no)\np,1,0.5\n");
  const Arguments fit = {"logistic",  data, "--dependent",  "y",
                         "--factors", "a",  "--covariates", "x"};
  ExpectFailures(
      2, {{{"logistic"}, "data is required"},
          {{"logistic", data}, "--dependent is required"},
          {fit + Arguments{"--reference", "maybe"},
           "--reference: no row has 'maybe' in column 'y'; the categories are 'no', 'yes'"},
          {fit + Arguments{"--max-iterations", "-1"}, "--max-iterations must not be negative"},
          {fit + Arguments{"--max-iterations", "many"}, "--max-iterations"},
          {fit + Arguments{"--tolerance", "1"}, "--tolerance must lie between 0 and 1"},
          {fit + Arguments{"--effects", "zz"}, "'zz' is neither a factor nor a covariate"},
          {fit + Arguments{"--freq", "zz"}, "there is no column 'zz'"},
          {fit + Arguments{"--freq", "y"}, "column 'y' stands in --dependent and in --freq"},
          {fit + Arguments{"--predict", scored, "--out", folder.Path("s.csv")},
           "scored.csv: there is a column 'p(no)' already"}});
  EXPECT_FALSE(folder.Has("s.csv"));
}

TEST(McfitLogistic, ModelsThatCannotBeFittedEndWithStatusOneAndTheCodeInWords) {
  const TemporaryFolder folder;
  const std::string one = folder.Write("one.csv", "y,x\nno,1\nno,2\nyes,\n");
  const std::string none = folder.Write("none.csv", "y,x\n,1\nno,\n");
  const std::string zero = folder.Write("zero.csv", "y,x\nno,1\nyes,0\nno,2\nyes,3\n");
  const Arguments fit = {"--dependent", "y", "--covariates", "x"};
  const std::string advice =
      "\na row without a single column that isn't 0 can't be fitted: use an intercept";
  for (const Arguments& way : {Arguments{}, Arguments{"--reread"}}) {
    ExpectFailures(1,
                   {{Arguments{"logistic", one} + fit + way,
                     "mcfit: error 318 (MCS_FEW_CATEGORIES): fewer than two categories"},
                    {Arguments{"logistic", none} + fit + way,
                     "mcfit: error 307 (MCS_NO_DATA): the source has no usable row, or a new "
                     "pass could not be begun\n           1  dependent 'y' is missing\n"
                     "           1  covariate 'x' is missing\n"},
                    {Arguments{"logistic", zero} + fit + way + Arguments{"--no-intercept"}, advice},
                    {{"logistic", one, "--dependent", "y", "--no-intercept"},
                     "mcfit: error 302 (MCS_EMPTY_MODEL)"}});
  }
}

TEST(McfitLogistic, HelpTellsTheOptionsOfTheFitBesideThoseOfAll) {
  const ProgramResult help = RunMcfit({"logistic", "--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--dependent", "--factors", "--covariates", "--effects", "--freq",
                             "--weight", "--no-intercept", "--tolerance", "--missing", "--digits",
                             "--predict", "--out", "--reference", "--max-iterations", "--reread"}) {
    EXPECT_THAT(help.out, HasSubstr(option));
  }
  EXPECT_THAT(RunMcfit({"--help"}).out, HasSubstr("logistic"));
}

TEST(McfitLogistic, ResultsThatCannotBeWrittenEndWithStatusTwo) {
  ChildProcess::Options options;
  options.outPath = "/dev/full";
  const ProgramResult run = RunMcfit(kBirths, options);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("could not be written"));
}

// A model of several iterations, each of which looks at some thousand rows.
Arguments FitOfManyRows(const TemporaryFolder& folder) {
  std::string text = "y,x\n";
  unsigned state = 1;
  for (int row = 0; row < 3000; ++row) {
    state = state * 1664525U + 1013904223U;
    const unsigned x = (state >> 8U) % 1000;
    const unsigned noise = (state >> 20U) % 400;
    text += "c" + std::to_string((x + noise) / 350) + "," + std::to_string(x) + "." +
            std::to_string(row) + "\n";
  }
  return {"logistic", folder.Write("d.csv", text), "--dependent", "y", "--covariates", "x"};
}

// Interrupts the program in the midst of its iterations as soon as the progress line has the text,
// however fast or slow the machine: the program can't go on while nobody reads the line of an
// iteration, and when it may go on, the time is over in which it shows no progress.
ProgramResult InterruptedAt(const std::string& progress, const Arguments& arguments) {
  constexpr useconds_t kPatience = 500000;
  ChildProcess::Options options;
  options.errOnTerminal = true;
  options.outInPieces = true;
  ChildProcess run(arguments, options);
  EXPECT_TRUE(run.WaitForOutput("\n        0  "));
  usleep(kPatience);
  EXPECT_TRUE(run.WaitForOutput("\n        1  "));
  EXPECT_TRUE(run.WaitForError(progress));
  run.Send(SIGINT);
  return run.Finish();
}

TEST(McfitLogistic, InterruptingTheIterationsEndsWithStatus130AndLeavesTheirHistory) {
  const TemporaryFolder folder;
  const ProgramResult result = InterruptedAt("fitting: iteration ", FitOfManyRows(folder));
  EXPECT_EQ(result.status, 130);
  EXPECT_THAT(result.err, testing::EndsWith("\r\033[Kmcfit: interrupted\n"));
  EXPECT_THAT(result.out, HasSubstr("Iteration  Log-likelihood  Halvings  Seconds\n        0  "));
  EXPECT_THAT(result.out, Not(HasSubstr("against")));
}

TEST(McfitLogistic, InterruptingAPassOverTheRowsEndsWithStatus130) {
  const TemporaryFolder folder;
  const ProgramResult result =
      InterruptedAt("fitting: pass ", FitOfManyRows(folder) + Arguments{"--reread"});
  EXPECT_EQ(result.status, 130);
  EXPECT_THAT(result.err, testing::EndsWith("\r\033[Kmcfit: interrupted\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("against")));
}

}  // namespace
