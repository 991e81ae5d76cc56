// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mciterationreporter.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {
using mctest::DisplayOf;

void ExpectCleared(MCIterationReporter& reporter) {
  EXPECT_EQ(reporter.DiscreteMeasure("iterNum"), 0);
  EXPECT_EQ(reporter.DiscreteMeasure("stepHalving"), 0);
  EXPECT_EQ(reporter.ScaleMeasure("loglik"), 0.0);
  EXPECT_EQ(reporter.ScaleMeasure("time"), 0.0);
  EXPECT_EQ(reporter.VectorMeasure("paramEstim"), nullptr);
}

TEST(MCIterationReporter, HasNothingToSayAtFirst) {
  MCIterationReporter reporter;
  ExpectCleared(reporter);
}

TEST(MCIterationReporter, AnswersItsMeasuresByName) {
  const std::vector<double> estimates = {1.0, 2.0};
  MCIterationReporter reporter;
  reporter.SetInfo(&estimates, 7, 3, -12.5, 0.25);
  EXPECT_EQ(reporter.DiscreteMeasure("iterNum"), 7);
  EXPECT_EQ(reporter.DiscreteMeasure("stepHalving"), 3);
  EXPECT_EQ(reporter.ScaleMeasure("loglik"), -12.5);
  EXPECT_EQ(reporter.ScaleMeasure("time"), 0.25);
  EXPECT_EQ(reporter.VectorMeasure("paramEstim"), &estimates);
  reporter.Reset();
  ExpectCleared(reporter);
}

TEST(MCIterationReporter, KnowsNoOtherName) {
  const std::vector<double> estimates = {1.0};
  MCIterationReporter reporter;
  reporter.SetInfo(&estimates, 7, 3, -12.5, 0.25);
  for (const char* name : {"", "iternum", "iterNum ", "loglik", "paramEstim", "time"}) {
    EXPECT_EQ(reporter.DiscreteMeasure(name), 0) << name;
  }
  for (const char* name : {"", "logLik", "iterNum", "stepHalving", "paramEstim"}) {
    EXPECT_EQ(reporter.ScaleMeasure(name), 0.0) << name;
  }
  for (const char* name : {"", "paramestim", "loglik", "iterNum"}) {
    EXPECT_EQ(reporter.VectorMeasure(name), nullptr) << name;
  }
}

TEST(MCIterationReporter, ShowsItsMeasures) {
  const std::vector<double> estimates = {1.5, -2.0};
  MCIterationReporter reporter;
  reporter.SetInfo(&estimates, 7, 3, -12.5, 0.25);
  EXPECT_EQ(DisplayOf(reporter),
            "\nMCIterationReporter display start"
            "\nIteration number = 7"
            "\nNumber of step halving = 3"
            "\nPseudo -2 log-likelihood = -12.5"
            "\nElapsed time in sec = 0.25"
            "\nParameter estimates (size = 2)"
            "\n 1.5 -2"
            "\nMCIterationReporter display end");
}

TEST(MCIterationReporter, ShowsThatItHasNoEstimates) {
  MCIterationReporter reporter;
  reporter.SetInfo(nullptr, 0, 0, MCMV::gMissingValue, 0.0);
  EXPECT_EQ(DisplayOf(reporter),
            "\nMCIterationReporter display start"
            "\nIteration number = 0"
            "\nNumber of step halving = 0"
            "\nPseudo -2 log-likelihood = miss"
            "\nElapsed time in sec = 0"
            "\nParameter estimates pointer is 0"
            "\nMCIterationReporter display end");
}

}  // namespace
