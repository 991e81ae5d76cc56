// SPDX-License-Identifier: Apache-2.0
//
// Whole logistic builds, forced to each vector width: a fit doesn't depend on the processor.
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcconst.h"
#include "support/extendedmatrix.h"
#include "support/libraryfit.h"
#include "support/makerecord.h"
#include "support/samebits.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using mctest::LibraryFit;
using mctest::LogisticProblem;

// Positions in a row.
enum { kY, kA, kB, kX, kZ, kFreq, kRegr, kWidth };

int Code(mctest::Noise& noise, int nCodes) {
  return std::min(static_cast<int>((noise.Next() + 1.0) / 2 * nCodes), nCodes - 1);
}

/// Two factors and two covariates, one of them often 0; `nCategs` categories, none of them sure.
LogisticProblem Problem(int nCategs, bool hasFactors, std::size_t nRows) {
  LogisticProblem problem;
  problem.dependent = kY;
  problem.factors = {kA, kB};
  problem.factorSizes = {4, 3};
  problem.covariates = {kX, kZ};
  problem.freqWeight = kFreq;
  problem.regrWeight = kRegr;
  problem.effects = {{{}, {kX}}, {{}, {kZ}}, {{}, {kX, kX}}};
  if (hasFactors) {
    problem.effects.insert(problem.effects.begin(), {{{{kA, false}}, {}}, {{{kB, false}}, {}}});
    problem.effects.push_back({{{kA, false}}, {kX}});
  }
  problem.categories = nCategs;
  mctest::Noise noise(static_cast<std::uint64_t>(nCategs));
  for (std::size_t r = 0; r < nRows; ++r) {
    std::vector<double> row(kWidth);
    row[kA] = Code(noise, 4);
    row[kB] = Code(noise, 3);
    row[kX] = 2.0 * noise.Next();
    row[kZ] = noise.Next() < 0.0 ? 0.0 : noise.Next();
    row[kY] = noise.Next() < 0.2 * row[kX] ? 0 : Code(noise, nCategs);
    row[kFreq] = 1.0 + Code(noise, 3);
    row[kRegr] = 1.5 + noise.Next();
    problem.rows.push_back(row);
  }
  return problem;
}

/// Everything that a build and the scores of its rows come to.
std::vector<double> Outcome(const LogisticProblem& problem, bool keepsRows) {
  LibraryFit fit(problem);
  fit.LogisticSettings().SetUsePatternTabulator(keepsRows);
  EXPECT_FALSE(fit.Build().IsError());
  const IMCRegOutputStats& results = fit.Results();
  std::vector<double> outcome = *results.GetParamEstimates();
  const std::vector<double>& covariance = results.GetCovarianceMatrix()->AsVectorConst();
  outcome.insert(outcome.end(), covariance.begin(), covariance.end());
  for (const auto stat :
       {MCConst::MC_FIT_COX_SNELL, MCConst::MC_FIT_NAGELKERKE, MCConst::MC_FIT_MCFADDEN}) {
    outcome.push_back(results.GetModelFitStat(stat));
  }
  for (std::size_t r = 0; r < 20; ++r) {
    double predicted = 0.0;
    std::vector<double> probabilities;
    EXPECT_FALSE(fit.Component()
                     .Score(mctest::MakeRecord(problem.rows[r]), predicted, probabilities)
                     .IsError());
    outcome.push_back(predicted);
    outcome.insert(outcome.end(), probabilities.begin(), probabilities.end());
  }
  return outcome;
}

TEST(LogisticPaths, GiveTheSameFitToTheBit) {
  for (const int nCategs : {2, 3, 5}) {
    for (const bool hasFactors : {false, true}) {
      for (const bool keepsRows : {false, true}) {
        const LogisticProblem problem = Problem(nCategs, hasFactors, 700);
        const std::vector<double> expected = Outcome(problem, keepsRows);
        ASSERT_TRUE(std::all_of(expected.begin(), expected.end(),
                                [](double x) { return std::isfinite(x); }));
        for (const auto path : mctest::SupportedPaths()) {
          SCOPED_TRACE(testing::Message() << nCategs << " categories, factors " << hasFactors
                                          << ", path " << static_cast<int>(path));
          const mctest::NarrowedVectorPath narrowed(path);
          EXPECT_TRUE(mctest::SameBits(expected, Outcome(problem, keepsRows)));
        }
      }
    }
  }
}

// Patterns sum the rows in another order, which the dense design, of one pattern, doesn't have.
TEST(LogisticPaths, OnePatternGivesTheBitsOfRowsThatAreReadAgain) {
  const LogisticProblem problem = Problem(3, false, 500);
  EXPECT_TRUE(mctest::SameBits(Outcome(problem, false), Outcome(problem, true)));
}

}  // namespace
