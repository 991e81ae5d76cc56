// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcunistats.h"

#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using MCCommonMetadata::MCUniStats;
using SummStats = MCUniStats::SummStats;
using Values = std::vector<double>;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(MCUniStats, BeginsEmptyAndContinuous) {
  const MCUniStats stats;
  EXPECT_EQ(stats.GetVarName(), "");
  EXPECT_FALSE(stats.IsCategorical());
  EXPECT_EQ(stats.GetNumberOfCases(), 0.0);
  EXPECT_TRUE(stats.GetFrequencies().empty());
  EXPECT_TRUE(stats.GetCutPoints().empty());
  EXPECT_TRUE(stats.AreIntervalsOpenLeft());
  EXPECT_EQ(stats.GetSummStats().fMinimum, kMissing);
  EXPECT_EQ(stats.GetSummStats().fMaximum, kMissing);
  EXPECT_EQ(stats.GetSummStats().fMean, kMissing);
  EXPECT_EQ(stats.GetSummStats().fStdDev, kMissing);
  EXPECT_FALSE(stats.IsValid());
}

TEST(MCUniStats, HoldsWhatItIsGiven) {
  const MCUniStats categorical("c", 5.0, {2.0, 3.0});
  EXPECT_TRUE(categorical.IsCategorical());
  EXPECT_EQ(categorical.GetVarName(), "c");
  EXPECT_EQ(categorical.GetFrequencies(), (Values{2.0, 3.0}));
  MCUniStats continuous("x", 5.0, SummStats{1.0, 2.0, 1.5, 0.25}, {5.0}, {1.0, 2.0});
  EXPECT_FALSE(continuous.IsCategorical());
  EXPECT_EQ(continuous.GetNumberOfCases(), 5.0);
  EXPECT_EQ(continuous.GetCutPoints(), (Values{1.0, 2.0}));
  EXPECT_EQ(continuous.GetSummStats().fMinimum, 1.0);
  EXPECT_EQ(continuous.GetSummStats().fMaximum, 2.0);
  EXPECT_EQ(continuous.GetSummStats().fMean, 1.5);
  EXPECT_EQ(continuous.GetSummStats().fStdDev, 0.25);
  continuous.SetIntervalsOpenLeft(false);
  EXPECT_FALSE(continuous.AreIntervalsOpenLeft());
}

struct Categorical {
  std::string name;
  double nCases;
  Values frequencies;
  bool isValid;
};

TEST(MCUniStats, OfACategoricalVariableNeedNameCasesAndFrequencies) {
  const Categorical cases[] = {{"c", 5.0, {2.0, 0.0}, true}, {"c", 0.0, {}, true},
                               {"", 5.0, {2.0}, false},      {"c", -1.0, {2.0}, false},
                               {"c", kNaN, {2.0}, true},     {"c", 5.0, {2.0, -1e-9}, false},
                               {"c", 5.0, {kNaN}, false},    {"c", 5.0, {kMissing}, false}};
  for (const Categorical& c : cases) {
    EXPECT_EQ(MCUniStats(c.name, c.nCases, c.frequencies).IsValid(), c.isValid);
  }
}

struct Histogram {
  Values frequencies;
  Values cutPoints;
  bool isValid;
};

TEST(MCUniStats, OfAContinuousVariableNeedOneMoreCutThanFrequencies) {
  const Values three{1.0, 2.0, 3.0};
  const Histogram cases[] = {{{}, {}, true},
                             {{}, {1.0}, false},
                             {three, {}, false},
                             {three, {0.0, 1.0, 2.0}, false},
                             {three, {0.0, 1.0, 2.0, 3.0}, true},
                             {three, {0.0, 1.0, 2.0, 3.0, 4.0}, false},
                             {three, {kMissing, 1.0, 2.0, kMissing}, true},
                             {three, {kMissing, 1.0, 2.0, 3.0}, true},
                             {three, {0.0, 1.0, 2.0, kMissing}, true},
                             {three, {0.0, 1.0, kMissing, 3.0}, false},
                             {three, {0.0, kMissing, 2.0, 3.0}, false},
                             {three, {kMissing, kMissing, 2.0, 3.0}, false},
                             {three, {0.0, 1.0, kMissing, kMissing}, false},
                             {three, {0.0, 1.0, 1.0, 3.0}, false},
                             {three, {0.0, 2.0, 1.0, 3.0}, false},
                             {three, {0.0, kNaN, 2.0, 3.0}, false},
                             {three, {kNaN, 1.0, 2.0, 3.0}, false},
                             {three, {0.0, 1.0, 2.0, kNaN}, false},
                             {three, {-1.0, 2.0, -3.0, 4.0}, false},
                             {{1.0}, {0.0, 1.0}, true},
                             {{1.0}, {kMissing, 1.0}, true},
                             {{1.0}, {1.0, kMissing}, true},
                             {{1.0}, {kMissing, kMissing}, false},
                             {{1.0}, {kNaN, kMissing}, false},
                             {{1.0}, {kMissing, kNaN}, false},
                             {{1.0, 1.0}, {kMissing, kMissing, kMissing}, false},
                             {{-1.0}, {0.0, 1.0}, false},
                             {{kNaN}, {0.0, 1.0}, false},
                             {{kMissing}, {0.0, 1.0}, false}};
  for (const Histogram& c : cases) {
    const MCUniStats stats("x", 6.0, SummStats(), c.frequencies, c.cutPoints);
    EXPECT_EQ(stats.IsValid(), c.isValid) << testing::PrintToString(c.cutPoints);
  }
}

struct Summary {
  double nCases;
  SummStats stats;
  bool isValid;
};

TEST(MCUniStats, OfAContinuousVariableNeedASummaryThatTheCasesAllow) {
  const Summary cases[] = {{0.0, {}, true},
                           {0.0, {1.0, kMissing, kMissing, kMissing}, false},
                           {0.0, {kMissing, 1.0, kMissing, kMissing}, false},
                           {-0.0, {kMissing, kMissing, 1.0, kMissing}, false},
                           {0.0, {kMissing, kMissing, kMissing, 0.0}, false},
                           {0.5, {1.0, 1.0, 1.0, kMissing}, true},
                           {0.5, {1.0, 1.0, 1.0, 0.0}, false},
                           {1.0, {1.0, 1.0, 1.0, kMissing}, true},
                           {1.0, {1.0, 1.0, 1.0, 0.0}, false},
                           {1.5, {1.0, 1.0, 1.0, 0.0}, false},
                           {1.5, {1.0, 1.0, 1.0, kNaN}, false},
                           {2.0, {1.0, 1.0, 1.0, 0.0}, true},
                           {2.0, {1.0, 2.0, 1.5, -0.1}, false},
                           {2.0, {1.0, 2.0, 1.5, kMissing}, true},
                           {2.0, {1.0, 2.0, 1.5, kNaN}, true},
                           {2.0, {2.0, 1.0, 1.5, 0.5}, false},
                           {2.0, {kMissing, 1.0, 1.5, 0.5}, true},
                           {2.0, {1.0, kMissing, 1.5, 0.5}, true},
                           {2.0, {kNaN, 1.0, 1.5, 0.5}, true},
                           {2.0, {1.0, 2.0, 99.0, 0.5}, true},
                           {-1.0, {}, false},
                           {kNaN, {1.0, 2.0, 1.5, 0.5}, true},
                           {kNaN, {1.0, 2.0, 1.5, -0.5}, false}};
  for (const Summary& c : cases) {
    EXPECT_EQ(MCUniStats("x", c.nCases, c.stats, {}, {}).IsValid(), c.isValid)
        << c.nCases << " " << c.stats.fMinimum << " " << c.stats.fStdDev;
  }
}

TEST(MCUniStats, OfACategoricalVariableNeedNothingMore) {
  EXPECT_TRUE(MCUniStats("c", 1.0, {5.0, 7.0}).IsValid());
  EXPECT_FALSE(MCUniStats("", 5.0, SummStats(), {}, {}).IsValid());
}

}  // namespace
