// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mccontstats.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {
using MCCommonMath::MCContStats;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
using Extrema = std::pair<double, double>;

// Whole numbers with whole weights, so that mean and sum of squares are fractions of integers.
struct Value {
  std::int64_t fX;
  int fFreqWeight;
  int fCompWeight;
};

struct Exact {
  long double fMean, fVariance;
};

// From integer sums of up to 128 bits: exact until the final divisions.
__extension__ using Integer = __int128;

Exact ExactStats(const std::vector<Value>& values) {
  Integer weight = 0;
  Integer sum = 0;
  Integer squares = 0;
  Integer cases = 0;
  for (const Value& v : values) {
    cases += v.fFreqWeight;
    weight += v.fCompWeight;
    sum += Integer{v.fX} * v.fCompWeight;
    squares += Integer{v.fX} * v.fX * v.fCompWeight;
  }
  const auto mean = static_cast<long double>(sum) / static_cast<long double>(weight);
  const auto scaled = static_cast<long double>(weight * squares - sum * sum);
  return {mean, scaled / static_cast<long double>(weight) / static_cast<long double>(cases - 1)};
}

std::vector<Value> RandomValues(int count, std::int64_t offset, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<Value> values;
  for (int i = 0; i < count; ++i) {
    values.push_back({offset + static_cast<std::int64_t>(random() % 2000) - 1000,
                      1 + static_cast<int>(random() % 3), 1 + static_cast<int>(random() % 5)});
  }
  return values;
}

MCContStats StatsOf(const std::vector<Value>& values) {
  MCContStats stats;
  for (const Value& v : values) {
    EXPECT_TRUE(stats.Update(static_cast<double>(v.fX), v.fFreqWeight, v.fCompWeight));
  }
  return stats;
}

void ExpectNear(double actual, long double expected, double relative) {
  EXPECT_NEAR(actual, static_cast<double>(expected),
              relative * std::fabs(static_cast<double>(expected)));
}

TEST(MCContStats, HasNothingToTellAtFirst) {
  const MCContStats stats;
  EXPECT_EQ(stats.GetMean(), kMissing);
  EXPECT_EQ(stats.GetVariance(), kMissing);
  EXPECT_EQ(stats.GetExtrema(), Extrema(kMissing, kMissing));
  EXPECT_EQ(stats.GetSumFreqWeights(), 0.0);
}

TEST(MCContStats, HasNoVarianceWithOneCase) {
  MCContStats stats;
  ASSERT_TRUE(stats.Update(5.0));
  EXPECT_EQ(stats.GetMean(), 5.0);
  EXPECT_EQ(stats.GetVariance(), kMissing);
  EXPECT_EQ(stats.GetExtrema(), Extrema(5.0, 5.0));
  ASSERT_TRUE(stats.Update(5.0));
  EXPECT_EQ(stats.GetVariance(), 0.0);
}

TEST(MCContStats, ValuesWhoseSquaresOverflowHaveAVariance) {
  MCContStats stats;
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(stats.Update(-1e200));
  EXPECT_EQ(stats.GetMean(), -1e200);
  EXPECT_EQ(stats.GetVariance(), 0.0);
  ASSERT_TRUE(stats.Update(1e200));
  EXPECT_EQ(stats.GetVariance(), kInfinity);
}

TEST(MCContStats, DividesByTheFrequencyWeightsLessOne) {
  MCContStats stats;
  ASSERT_TRUE(stats.Update(1.0, 2.5, 1.0));
  ASSERT_TRUE(stats.Update(3.0, 0.5, 3.0));
  EXPECT_EQ(stats.GetSumFreqWeights(), 3.0);
  EXPECT_EQ(stats.GetMean(), 2.5);
  EXPECT_EQ(stats.GetVariance(), 3.0 / 2.0);
}

TEST(MCContStats, AgreesWithExactFractionsAlsoFarFromZero) {
  // Each step rounds mean and sum a few times. Relative to the mean, and to the spread where the
  // offset is large: the mean is off by 2^-53 of the offset at each step, which enters the sum of
  // squares only multiplied by a difference.
  struct Case {
    std::int64_t fOffset;
    double fVarianceBound;
  };
  for (const auto& [offset, bound] :
       {Case{0, 1e-13}, Case{1000000, 1e-11}, Case{1000000000, 1e-8}}) {
    const std::vector<Value> values = RandomValues(5000, offset, 11);
    const Exact exact = ExactStats(values);
    const MCContStats stats = StatsOf(values);
    EXPECT_NEAR(stats.GetMean(), static_cast<double>(exact.fMean),
                1e-13 * (1000.0 + static_cast<double>(offset)));
    ExpectNear(stats.GetVariance(), exact.fVariance, bound);
  }
}

TEST(MCContStats, CountsWeightsThatAreNotPositiveAsOne) {
  for (const double weight : {0.0, -2.0, kNaN, -kInfinity}) {
    MCContStats odd;
    MCContStats plain;
    for (const double x : {1.0, 4.0, 6.0}) {
      ASSERT_TRUE(odd.Update(x, weight, weight));
      ASSERT_TRUE(plain.Update(x));
    }
    EXPECT_EQ(odd.GetSumFreqWeights(), 3.0);
    EXPECT_EQ(odd.GetMean(), plain.GetMean());
    EXPECT_EQ(odd.GetVariance(), plain.GetVariance());
  }
}

TEST(MCContStats, RefusesMissingArgumentsUnchanged) {
  MCContStats stats;
  ASSERT_TRUE(stats.Update(2.0, 3.0, 4.0));
  EXPECT_FALSE(stats.Update(kMissing));
  EXPECT_FALSE(stats.Update(1.0, kMissing, 1.0));
  EXPECT_FALSE(stats.Update(1.0, 1.0, kMissing));
  EXPECT_EQ(stats.GetSumFreqWeights(), 3.0);
  EXPECT_EQ(stats.GetMean(), 2.0);
  EXPECT_EQ(stats.GetExtrema(), Extrema(2.0, 2.0));
}

TEST(MCContStats, KeepsTheExtremes) {
  MCContStats stats;
  for (const double x : {3.0, -2.0, 7.0, 0.0}) ASSERT_TRUE(stats.Update(x));
  EXPECT_EQ(stats.GetExtrema(), Extrema(-2.0, 7.0));
  ASSERT_TRUE(stats.Update(-kInfinity));
  EXPECT_EQ(stats.GetExtrema(), Extrema(-kInfinity, 7.0));
}

TEST(MCContStats, LetsNaNIntoTheMeanButPastTheExtremes) {
  MCContStats stats;
  ASSERT_TRUE(stats.Update(1.0));
  ASSERT_TRUE(stats.Update(kNaN));
  ASSERT_TRUE(stats.Update(2.0));
  EXPECT_TRUE(std::isnan(stats.GetMean()));
  EXPECT_TRUE(std::isnan(stats.GetVariance()));
  EXPECT_EQ(stats.GetExtrema(), Extrema(1.0, 2.0));
  EXPECT_EQ(stats.GetSumFreqWeights(), 3.0);
}

TEST(MCContStats, TakesItsFirstValueAsBothExtremesAlsoIfItIsNaN) {
  MCContStats stats;
  ASSERT_TRUE(stats.Update(kNaN));
  ASSERT_TRUE(stats.Update(2.0));
  EXPECT_TRUE(std::isnan(stats.GetExtrema().first));
  EXPECT_TRUE(std::isnan(stats.GetExtrema().second));
}

TEST(MCContStats, PoolingEqualsUpdatingWithAll) {
  const std::vector<Value> all = RandomValues(999, 12345, 5);
  const Exact exact = ExactStats(all);
  for (const std::ptrdiff_t cut : {0, 1, 500, 998, 999}) {
    MCContStats stats = StatsOf({all.begin(), all.begin() + cut});
    stats.Pool(StatsOf({all.begin() + cut, all.end()}));
    const MCContStats whole = StatsOf(all);
    ExpectNear(stats.GetMean(), exact.fMean, 1e-14);
    ExpectNear(stats.GetVariance(), exact.fVariance, 1e-12);
    EXPECT_EQ(stats.GetSumFreqWeights(), whole.GetSumFreqWeights());
    EXPECT_EQ(stats.GetExtrema(), whole.GetExtrema());
  }
}

TEST(MCContStats, PoolingNothingChangesNothing) {
  MCContStats stats;
  stats.Pool(MCContStats());
  EXPECT_EQ(stats.GetMean(), kMissing);
  EXPECT_EQ(stats.GetExtrema(), Extrema(kMissing, kMissing));
}

TEST(MCContStats, PoolsWithItself) {
  std::vector<Value> values = RandomValues(50, 7, 3);
  MCContStats stats = StatsOf(values);
  stats.Pool(stats);
  values.insert(values.end(), values.begin(), values.end());
  const Exact exact = ExactStats(values);
  ExpectNear(stats.GetMean(), exact.fMean, 1e-14);
  ExpectNear(stats.GetVariance(), exact.fVariance, 1e-13);
}

TEST(MCContStats, DisplaysItsSums) {
  MCContStats stats;
  EXPECT_EQ(mctest::DisplayOf(stats),
            "\nMCContStats"
            "\nMin & max (size = 2)\n miss miss"
            "\nSum of freq. wgts, composite wgts (size = 2)\n 0 0"
            "\nSSQ = 0");
  ASSERT_TRUE(stats.Update(1.0, 2.0, 3.0));
  ASSERT_TRUE(stats.Update(3.0, 2.0, 3.0));
  EXPECT_EQ(mctest::DisplayOf(stats),
            "\nMCContStats"
            "\nMin & max (size = 2)\n 1 3"
            "\nSum of freq. wgts, composite wgts (size = 2)\n 4 6"
            "\nSSQ = 6");
}
}  // namespace
