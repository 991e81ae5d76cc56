// SPDX-License-Identifier: Apache-2.0
//
// Fifty generated designs, fitted by the library and by elimination on the explicit design matrix.
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/densefit.h"
#include "support/libraryfit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using mctest::DenseFit;
using mctest::EffectTerms;
using mctest::LibraryFit;
using mctest::LinearProblem;

// Positions in a generated row.
enum { kY, kA, kB, kC, kX, kZ, kFreq, kRegr, kWidth };

constexpr int kLevelsA = 4;
constexpr int kLevelsB = 3;
constexpr int kLevelsC = 6;

const std::vector<std::vector<EffectTerms>> kEffectLists = {
    {{{{kA, false}}, {}}},
    {{{{kA, false}}, {}}, {{{kB, false}}, {}}, {{{kA, false}, {kB, false}}, {}}},
    {{{}, {kX}}, {{}, {kX, kX}}, {{}, {kX, kX, kX}}},
    {{{{kB, false}}, {}}, {{{kB, false}}, {kX}}, {{}, {kZ}}},
    // C within A, then a slope in each cell.
    {{{{kA, false}}, {}}, {{{kA, false}, {kC, true}}, {}}, {{{kB, false}}, {kX, kZ}}},
    {{{{kC, false}}, {}}, {{{kB, false}, {kA, true}}, {}}, {{}, {kX, kZ}}},
    // The same interaction told in both orders, so that one of them is redundant.
    {{{{kA, false}, {kB, false}}, {}}, {{{kB, false}, {kA, true}}, {}}, {{}, {kX}}},
    {{{}, {kX}}, {{}, {kZ}}, {{}, {kX}}},
    {{{{kA, false}}, {}},
     {{{kB, false}}, {}},
     {{{kC, false}}, {}},
     {{{kA, false}, {kC, false}}, {}},
     {{}, {kX}},
     {{{kC, false}}, {kZ}}},
    {{{{kA, false}, {kB, false}, {kC, false}}, {}}},
};

// Design number 0 to 49: its effects go round the list, its options with the rounds.
LinearProblem MakeProblem(int number) {
  std::mt19937 random(static_cast<unsigned>(1000 + number));
  auto uniform = [&] { return std::uniform_real_distribution<double>(-2.0, 2.0)(random); };
  auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const int round = number / static_cast<int>(kEffectLists.size());

  LinearProblem problem;
  problem.dependent = kY;
  problem.factors = {kA, kB, kC};
  problem.factorSizes = {kLevelsA, kLevelsB, kLevelsC};
  problem.covariates = {kX, kZ};
  problem.freqWeight = round % 2 == 1 ? kFreq : -1;
  problem.regrWeight = round >= 2 ? kRegr : -1;
  problem.intercept = round != 1 && round != 4;
  problem.effects = kEffectLists[static_cast<std::size_t>(number) % kEffectLists.size()];

  const int rows = 80 + below(120);
  for (int r = 0; r < rows; ++r) {
    std::vector<double> row(kWidth);
    row[kA] = below(kLevelsA);
    row[kB] = below(kLevelsB);
    row[kC] = below(kLevelsC);
    // Gaps: level 2 of C never occurs, and some cells of A by B and A by C are empty.
    if (row[kC] == 2.0) row[kC] = 5.0;
    if (row[kA] == 1.0) row[kB] = 0.0;
    if (row[kA] == 3.0 && row[kC] > 3.0) row[kC] = 0.0;
    row[kX] = uniform();
    row[kZ] = uniform();
    row[kFreq] = 1.0 + below(4);
    row[kRegr] = 0.5 + std::fabs(uniform());
    row[kY] = 1.0 + row[kA] - 0.5 * row[kB] + 0.7 * row[kX] * row[kX] + 0.3 * row[kZ] + uniform();
    // Rows that must drop out: missing values in turn, weights that are not positive.
    if (below(15) == 0) row[static_cast<std::size_t>(below(kFreq))] = MCMV::gMissingValue;
    if (below(25) == 0) row[below(2) == 0 ? kFreq : kRegr] = -below(2);
    problem.rows.push_back(std::move(row));
  }
  return problem;
}

class GeneratedDesign : public testing::TestWithParam<int> {};

TEST_P(GeneratedDesign, AgreesWithEliminationOnTheExplicitDesign) {
  const LinearProblem problem = MakeProblem(GetParam());
  const DenseFit expected = mctest::FitDense(problem);
  LibraryFit fit(problem);
  ASSERT_TRUE(fit.Build().IsOK());
  const IMCRegOutputStats& results = fit.Results();
  const std::vector<double>& estimates = *results.GetParamEstimates();
  const std::size_t p = expected.estimates.size();
  ASSERT_EQ(estimates.size(), p);

  // A solution of the scaled normal equations is good to about p times the condition times the
  // rounding of the n added products; the largest element sets the scale.
  const double eps = std::numeric_limits<double>::epsilon();
  const double bound = 8.0 * static_cast<double>(p) * expected.condition * eps *
                       std::sqrt(static_cast<double>(problem.rows.size()));
  ASSERT_LT(bound, 1e-8);
  long double largest = 0.0L;
  long double largestInverse = 0.0L;
  for (std::size_t i = 0; i < p; ++i) {
    largest = std::max(largest, std::fabs(expected.estimates[i]));
    largestInverse = std::max(largestInverse, expected.inverse[i][i]);
  }
  for (std::size_t i = 0; i < p; ++i) {
    SCOPED_TRACE("column " + std::to_string(i));
    const int k = static_cast<int>(i);
    EXPECT_EQ(results.GetRedundancyIndicators().IsIn(k), !expected.redundant[i]);
    EXPECT_EQ(results.GetParamStats()[i].fRedundant, expected.redundant[i]);
    EXPECT_NEAR(estimates[i], static_cast<double>(expected.estimates[i]),
                bound * static_cast<double>(largest));
    if (expected.redundant[i]) {
      EXPECT_EQ(estimates[i], 0.0);
    }
    for (std::size_t j = 0; j < p; ++j) {
      EXPECT_NEAR(results.GetCovarianceMatrix()->GetElem(k, static_cast<int>(j)),
                  static_cast<double>(expected.inverse[i][j]),
                  bound * static_cast<double>(largestInverse));
    }
  }
  EXPECT_NEAR(results.GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2),
              static_cast<double>(expected.rSquare), bound);
  EXPECT_NEAR(results.GetModelFitStat(MCConst::MC_FIT_RMSE), static_cast<double>(expected.rmse),
              bound * static_cast<double>(expected.rmse + largest));
  EXPECT_NEAR(results.GetTotalFreqWeight(), static_cast<double>(expected.totalWeight),
              1e-12 * static_cast<double>(expected.totalWeight));
  EXPECT_NEAR(results.GetTotalRegrWeight(), static_cast<double>(expected.totalRegrWeight),
              1e-12 * static_cast<double>(expected.totalRegrWeight));
}

INSTANTIATE_TEST_SUITE_P(Fifty, GeneratedDesign, testing::Range(0, 50));

}  // namespace
