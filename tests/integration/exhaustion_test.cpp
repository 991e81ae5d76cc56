// SPDX-License-Identifier: Apache-2.0
//
// Memory that runs out at each allocation of a whole build in turn: it ends in an error or an
// exception, or the loss was made good and the results are those of an undisturbed build. The
// sanitizers see no leak.
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/libraryfit.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

namespace {

using mctest::FailAllocation;
using mctest::LibraryFit;
using mctest::LinearProblem;

LinearProblem MakeProblem() {
  LinearProblem problem;
  problem.dependent = 0;
  problem.factors = {1, 2};
  problem.factorSizes = {2, 3};
  problem.covariates = {3};
  problem.effects = {{{{1, false}}, {}}, {{{1, false}, {2, true}}, {3}}, {{}, {3, 3}}};
  for (int r = 0; r < 30; ++r) {
    problem.rows.push_back({1.0 * r * r, 1.0 * (r % 2), 1.0 * (r % 3), 0.5 * r - 3.0});
  }
  return problem;
}

// What a host gets of a fit; the buffers are made before memory runs out.
struct Outcome {
  std::vector<double> estimates = std::vector<double>(20);
  std::vector<double> covariance = std::vector<double>(400);
  double score = 0.0;

  bool operator==(const Outcome& other) const {
    return estimates == other.estimates && covariance == other.covariance && score == other.score;
  }
};

// Fits, reads the results and scores a row; false if any of it reports a failure.
bool DoWholeJob(LibraryFit& fit, const MCCommon::Record& row, Outcome& outcome) {
  if (fit.Build().IsError()) return false;
  IMCRegOutputStats* results = nullptr;
  if (fit.Component().GetOutputStats(results).IsError()) return false;
  outcome.estimates = *results->GetParamEstimates();
  outcome.covariance = results->GetCovarianceMatrix()->AsVectorConst();
  std::vector<double> none;
  std::vector<double> design;
  return fit.Component().Score(row, outcome.score, none).IsOK() && results->ExpandRow(row, design);
}

TEST(MemoryExhaustion, AtAnyAllocationOfABuildEndsInAnErrorOrLeavesTheResultsWhole) {
  const LinearProblem problem = MakeProblem();
  const MCCommon::Record row(4);
  Outcome expected;
  LibraryFit undisturbed(problem);
  ASSERT_TRUE(DoWholeJob(undisturbed, row, expected));
  ASSERT_NE(expected.score, MCMV::gMissingValue);

  std::size_t k = 0;
  std::size_t madeGood = 0;
  bool fired = true;
  while (fired) {
    LibraryFit fit(problem);
    Outcome outcome;
    FailAllocation failure(++k);
    bool done = false;
    try {
      done = DoWholeJob(fit, row, outcome);
    } catch (const std::bad_alloc&) {
      done = false;
    }
    fired = failure.HasFired();
    if (done && fired) ++madeGood;
    if (done) {
      EXPECT_TRUE(outcome == expected) << "allocation " << k;
    } else {
      EXPECT_TRUE(fired) << "allocation " << k;
    }
  }
  EXPECT_GT(k, 50u);
  EXPECT_LT(madeGood, k / 10);
}

}  // namespace
