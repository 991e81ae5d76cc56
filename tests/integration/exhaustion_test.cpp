// SPDX-License-Identifier: Apache-2.0
//
// Memory that runs out at each allocation of a whole build in turn: it ends in an error or an
// exception, or the loss was made good and the results are those of an undisturbed build. The
// component can be asked and built on after it, and the sanitizers see no leak.
#include "mcmath/mcsymmatrix.h"
#include "regression/component/mcregfactory.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/libraryfit.h"
#include "support/makerecord.h"
#include "support/rowsource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <new>
#include <vector>

namespace {

using mctest::FailAllocation;
using mctest::LibraryFit;
using mctest::LinearProblem;
using mctest::LogisticProblem;

LinearProblem MakeLinear() {
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

// Three categories, spread over all levels; both weights.
LogisticProblem MakeLogistic() {
  LogisticProblem problem;
  static_cast<LinearProblem&>(problem) = MakeLinear();
  problem.categories = 3;
  problem.freqWeight = 4;
  problem.regrWeight = 5;
  for (std::size_t r = 0; r < problem.rows.size(); ++r) {
    std::vector<double>& row = problem.rows[r];
    row[0] = static_cast<double>((r * r + r / 4) % 3);
    row[3] = std::sin(static_cast<double>(r));
    row.push_back(static_cast<double>(1 + r % 2));
    row.push_back(1.0 + 0.25 * static_cast<double>(r % 5));
  }
  return problem;
}

// What a host gets of a fit; the buffers are made before memory runs out.
struct Outcome {
  std::vector<double> estimates = std::vector<double>(20);
  std::vector<double> covariance = std::vector<double>(400);
  std::vector<double> fitStats = std::vector<double>(5);
  std::vector<double> probabilities = std::vector<double>(5);
  double score = 0.0;

  bool operator==(const Outcome& other) const {
    return estimates == other.estimates && covariance == other.covariance &&
           fitStats == other.fitStats && probabilities == other.probabilities &&
           score == other.score;
  }
};

// A component and all that a host needs to use it, made before memory runs out.
class Job {
public:
  Job(LibraryFit& fit, const LinearProblem& problem)
      : fSettings(&fit.Settings()),
        fSource(problem.rows),
        fRow(mctest::MakeRecord(problem.rows[0])) {}

  // Fits, reads the results and scores a row; false if any of it reports a failure.
  bool Do(Outcome& outcome) {
    fComponent.reset(MCRegFactory().CreateRegAlgorithm(*fSettings));
    if (fComponent->BuildModel(fSource).IsError()) return false;
    IMCRegOutputStats* results = nullptr;
    if (fComponent->GetOutputStats(results).IsError()) return false;
    outcome.estimates = *results->GetParamEstimates();
    outcome.covariance = results->GetCovarianceMatrix()->AsVectorConst();
    for (int stat = 0; stat < 5; ++stat) {
      outcome.fitStats[static_cast<std::size_t>(stat)] =
          results->GetModelFitStat(static_cast<MCConst::MCModelFitStat>(stat));
    }
    std::vector<double> design;
    return fComponent->Score(fRow, outcome.score, outcome.probabilities).IsOK() &&
           results->ExpandRow(fRow, design);
  }

  // With memory again; whatever the answers are.
  void UseAgain() {
    if (fComponent == nullptr) return;
    Outcome ignored;
    static_cast<void>(fComponent->Score(fRow, ignored.score, ignored.probabilities));
    static_cast<void>(fComponent->BuildModel(fSource));
    IMCRegOutputStats* results = nullptr;
    static_cast<void>(fComponent->GetOutputStats(results));
    static_cast<void>(fComponent->Score(fRow, ignored.score, ignored.probabilities));
  }

private:
  MCRegSettings* fSettings;
  mctest::RowSource fSource;
  MCCommon::Record fRow;
  std::unique_ptr<IMCRegComponent> fComponent;
};

// Fails the k-th allocation of a job. Answers whether there was one.
bool DoWithout(std::size_t k, LibraryFit& fit, const LinearProblem& problem,
               const Outcome& expected, std::size_t& madeGood) {
  Job job(fit, problem);
  Outcome outcome;
  bool done = false;
  bool fired = false;
  {
    const FailAllocation failure(k);
    try {
      done = job.Do(outcome);
    } catch (const std::bad_alloc&) {
      done = false;
    }
    fired = failure.HasFired();
  }
  if (done && fired) ++madeGood;
  EXPECT_TRUE(done ? outcome == expected : fired) << "allocation " << k;
  job.UseAgain();
  return fired;
}

void ExpectEachAllocationMayFail(LibraryFit& fit, const LinearProblem& problem) {
  Outcome expected;
  ASSERT_TRUE(Job(fit, problem).Do(expected));
  ASSERT_NE(expected.score, MCMV::gMissingValue);
  std::size_t k = 1;
  std::size_t madeGood = 0;
  while (DoWithout(k, fit, problem, expected, madeGood)) ++k;
  EXPECT_GT(k, 50u);
  EXPECT_LT(madeGood, k / 10);
}

TEST(MemoryExhaustion, AtAnyAllocationOfALinearBuildEndsInAnErrorOrLeavesTheResultsWhole) {
  const LinearProblem problem = MakeLinear();
  LibraryFit fit(problem);
  ExpectEachAllocationMayFail(fit, problem);
}

TEST(MemoryExhaustion, AtAnyAllocationOfALogisticBuildEndsInAnErrorOrLeavesTheResultsWhole) {
  const LogisticProblem problem = MakeLogistic();
  for (const bool patterns : {true, false}) {
    SCOPED_TRACE(patterns ? "patterns" : "reread");
    LibraryFit fit(problem);
    fit.LogisticSettings().SetUsePatternTabulator(patterns);
    // Further iterations allocate what these do.
    fit.LogisticSettings().SetMaxIterations(2);
    ExpectEachAllocationMayFail(fit, problem);
  }
}

}  // namespace
