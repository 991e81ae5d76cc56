// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcregoptimizer.h"
#include "support/scriptedrun.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {
using MCCommon::MCStatus;
using mctest::RecordingListener;
using mctest::ScriptedRun;

// What is due: the initial estimates, every frequency-th iteration, and the last if it isn't one
// of those.
std::vector<int> Due(int frequency, int lastIteration) {
  std::vector<int> due = {0};
  for (int i = 1; i <= lastIteration; ++i) {
    if (i % frequency == 0 || i == lastIteration) due.push_back(i);
  }
  return due;
}

TEST(MCRegOptimizerReport, ComesEveryFewIterationsAndForTheLast) {
  for (int frequency = 1; frequency <= 5; ++frequency) {
    for (int last = 0; last <= 8; ++last) {
      ScriptedRun run;
      run.fReportFrequency = frequency;
      run.fSettings.SetMaxIterations(last);
      EXPECT_TRUE(run.Estimate().IsOK());
      EXPECT_EQ(run.fListener.Iterations(), Due(frequency, last)) << frequency << ' ' << last;
    }
  }
}

TEST(MCRegOptimizerReport, OfFrequency3AndAStopAt7Or6) {
  for (const int last : {7, 6}) {
    ScriptedRun run;
    run.fReportFrequency = 3;
    run.fSettings.SetMaxIterations(last);
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.fListener.Iterations(),
              last == 7 ? (std::vector<int>{0, 3, 6, 7}) : (std::vector<int>{0, 3, 6}));
  }
}

TEST(MCRegOptimizerReport, ComesForEveryIterationIfTheFrequencyIsBelow1) {
  for (const int frequency : {0, -1, -5, std::numeric_limits<int>::min()}) {
    ScriptedRun run;
    run.fReportFrequency = frequency;
    run.fSettings.SetMaxIterations(3);
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.fListener.Iterations(), (std::vector<int>{0, 1, 2, 3})) << frequency;
  }
}

TEST(MCRegOptimizerReport, OfTheLargestFrequencyIsTheFirstAndTheLast) {
  ScriptedRun run;
  run.fReportFrequency = std::numeric_limits<int>::max();
  run.fSettings.SetMaxIterations(9);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fListener.Iterations(), (std::vector<int>{0, 9}));
}

TEST(MCRegOptimizerReport, HasTheValuesOfItsIteration) {
  ScriptedRun run;
  run.fReportFrequency = 2;
  run.fSettings.SetMaxIterations(3);
  run.fEstimates = {10.0};
  run.Script().fScores = {{1.0}, {2.0}, {4.0}};
  run.Script().fTrialLL = {-7.0, -9.0, -9.0, -5.0, -6.0, -3.0};
  run.Script().fFullLL = {-8.0, -7.0, -5.0, -3.5};
  EXPECT_TRUE(run.Estimate().IsOK());
  const auto& entries = run.fListener.fEntries;
  ASSERT_EQ(run.fListener.Iterations(), (std::vector<int>{0, 2, 3}));
  EXPECT_EQ(entries[0].fHalvings, 0);
  EXPECT_EQ(entries[0].fLogLik, -8.0);
  EXPECT_EQ(entries[0].fEstimates, std::vector<double>{10.0});
  EXPECT_EQ(entries[1].fHalvings, 2);
  EXPECT_EQ(entries[1].fLogLik, -5.0);
  EXPECT_EQ(entries[1].fEstimates, std::vector<double>{11.5});
  EXPECT_EQ(entries[2].fHalvings, 1);
  EXPECT_EQ(entries[2].fLogLik, -3.5);
  EXPECT_EQ(entries[2].fEstimates, std::vector<double>{13.5});
  double before = 0.0;
  for (const RecordingListener::Entry& entry : entries) {
    EXPECT_GE(entry.fSeconds, before);
    EXPECT_LT(entry.fSeconds, 60.0);
    before = entry.fSeconds;
  }
}

TEST(MCRegOptimizerReport, ShowsALikelihoodAbove0As0AndAMissingOneAsMissing) {
  for (const double logLik : {1e-9, MCMV::gMissingValue}) {
    ScriptedRun run;
    run.fSettings.SetMaxIterations(0);
    run.Script().fFullLL = {logLik};
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.fListener.fEntries[0].fLogLik, logLik > 0.0 ? 0.0 : logLik);
  }
}

TEST(MCRegOptimizerReport, DoesNotComeAfterAnError) {
  // By the pass that fails, with a report due every other iteration.
  const std::vector<std::vector<int>> expected = {{}, {0}, {0}, {0}, {0}, {0, 2}, {0, 2}};
  for (std::size_t pass = 0; pass < expected.size(); ++pass) {
    ScriptedRun run;
    run.fReportFrequency = 2;
    run.fSettings.SetMaxIterations(3);
    run.Script().fStatuses[static_cast<int>(pass)] = MCStatus(313, false);
    EXPECT_TRUE(run.Estimate().IsError());
    EXPECT_EQ(run.fListener.Iterations(), expected[pass]) << pass;
  }
}

TEST(MCRegOptimizerReport, OfAGivenUpStepHasTheEstimatesBeforeIt) {
  ScriptedRun run;
  run.Script().fTrialLL = {-2.0};
  EXPECT_TRUE(run.Estimate().IsOK());
  ASSERT_EQ(run.fListener.Iterations(), (std::vector<int>{0, 1}));
  EXPECT_EQ(run.fListener.fEntries[1].fHalvings, 5);
  EXPECT_EQ(run.fListener.fEntries[1].fEstimates, std::vector<double>{0.0});
}

}  // namespace
