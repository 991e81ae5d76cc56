// SPDX-License-Identifier: Apache-2.0
//
// Memory that runs out at each allocation of a whole build in turn: it ends in an error or an
// exception, and the sanitizers see no leak.
#include "support/countingallocator.h"
#include "support/libraryfit.h"

#include <gtest/gtest.h>

#include <new>

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

// Fits, reads the results and scores a row; false if any of it reports a failure.
bool DoWholeJob(const LinearProblem& problem) {
  LibraryFit fit(problem);
  if (fit.Build().IsError()) return false;
  IMCRegOutputStats* results = nullptr;
  if (fit.Component().GetOutputStats(results).IsError()) return false;
  MCCommon::Record row(4);
  double value = 0.0;
  std::vector<double> none;
  std::vector<double> design;
  return fit.Component().Score(row, value, none).IsOK() && results->ExpandRow(row, design);
}

TEST(MemoryExhaustion, AtAnyAllocationOfABuildEndsInAnErrorOrAnException) {
  const LinearProblem problem = MakeProblem();
  std::size_t k = 0;
  bool fired = true;
  while (fired) {
    FailAllocation failure(++k);
    bool done = false;
    bool thrown = false;
    try {
      done = DoWholeJob(problem);
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
    fired = failure.HasFired();
    // The one allocation that may fail unnoticed is none: a job that lost one is not done.
    EXPECT_EQ(done, !fired) << "allocation " << k << (thrown ? " (thrown)" : "");
  }
  EXPECT_GT(k, 50u);
}

}  // namespace
