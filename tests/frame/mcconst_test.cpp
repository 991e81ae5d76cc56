// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mcconst.h"

#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace {

constexpr int kMinInt = std::numeric_limits<int>::min();
constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(Constants, EnumeratorsKeepTheirNumbers) {
  using namespace MCConst;
  EXPECT_EQ(MC_VAR_UNSPECIFIED, 0);
  EXPECT_EQ(MC_VAR_FREQ_WEIGHT, 1);
  EXPECT_EQ(MC_VAR_REGR_WEIGHT, 2);
  EXPECT_EQ(MC_VAR_FACTOR, 3);
  EXPECT_EQ(MC_VAR_COVARIATE, 4);
  EXPECT_EQ(MC_VAR_DEPENDENT, 5);
  EXPECT_EQ(MC_EST_FISHER, 0);
  EXPECT_EQ(MC_EST_NEWTON, 1);
  EXPECT_EQ(MC_EST_HYBRID, 2);
  EXPECT_EQ(MC_FIT_RMSE, 0);
  EXPECT_EQ(MC_FIT_MULTIPLE_R2, 1);
  EXPECT_EQ(MC_FIT_COX_SNELL, 2);
  EXPECT_EQ(MC_FIT_NAGELKERKE, 3);
  EXPECT_EQ(MC_FIT_MCFADDEN, 4);
  EXPECT_EQ(MC_OFFSET_NONE, 0);
  EXPECT_EQ(MC_OFFSET_VARIABLE, 1);
  EXPECT_EQ(MC_OFFSET_FIXED, 2);
  EXPECT_EQ(MC_MODEL_LINEAR, 0);
  EXPECT_EQ(MC_MODEL_LOGISTIC, 1);
}

template <class... Enums>
constexpr bool HoldAnyInt() {
  return (std::is_same_v<std::underlying_type_t<Enums>, int> && ...);
}

TEST(Constants, EnumerationsArePlainIntegers) {
  using namespace MCConst;
  static_assert(HoldAnyInt<MCVariableType, MCEstimationMethod, MCModelFitStat, MCOffsetType,
                           MCTestType, MCPAdjustMethod, MCCovbType>());
  EXPECT_EQ(static_cast<MCModelFitStat>(kMaxInt), kMaxInt);
  EXPECT_EQ(static_cast<MCVariableType>(kMinInt), kMinInt);
}

TEST(Constants, ChoicesKeptForTheHostStartAtZero) {
  EXPECT_EQ(MCConst::MCTestType(), MCConst::MC_TEST_WALD);
  EXPECT_EQ(MCConst::MCPAdjustMethod(), MCConst::MC_PADJ_NONE);
  EXPECT_EQ(MCConst::MCCovbType(), MCConst::MC_COVB_MODEL);
}

TEST(MissingValue, HasTheBitPatternOfTheMostNegativeFiniteDouble) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &MCMV::gMissingValue, sizeof bits);
  EXPECT_EQ(bits, 0xFFEFFFFFFFFFFFFFULL);
}

TEST(MissingValue, EqualsItselfAndNothingNearIt) {
  EXPECT_TRUE(MCMV::gMissingValue == -std::numeric_limits<double>::max());
  EXPECT_FALSE(MCMV::gMissingValue == std::nextafter(MCMV::gMissingValue, 0.0));
  EXPECT_FALSE(MCMV::gMissingValue == -kInfinity);
  EXPECT_FALSE(MCMV::gMissingValue == kNaN);
}

TEST(TruncateToInt, TruncatesWhatAnIntHoldsAndGivesTheSmallestIntElse) {
  const struct {
    double x;
    int expected;
  } kCases[] = {
      {0.0, 0},
      {-0.0, 0},
      {0.999999, 0},
      {-0.999999, 0},
      {1.5, 1},
      {-1.5, -1},
      {2147483647.0, kMaxInt},
      {2147483647.999, kMaxInt},
      {2147483648.0, kMinInt},
      {-2147483648.0, kMinInt},
      {-2147483648.999, kMinInt},
      {-2147483649.0, kMinInt},
      {1e300, kMinInt},
      {-1e300, kMinInt},
      {kInfinity, kMinInt},
      {-kInfinity, kMinInt},
      {kNaN, kMinInt},
      {MCMV::gMissingValue, kMinInt},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(MCCommon::detail::TruncateToInt(row.x), row.expected) << row.x;
  }
}

TEST(CategoryLevel, RoundsByTruncatingTheCodePlusAHalf) {
  using MCCommon::detail::CategoryLevel;
  EXPECT_EQ(CategoryLevel(2.0, 0), 2);
  EXPECT_EQ(CategoryLevel(2.49, 0), 2);
  EXPECT_EQ(CategoryLevel(2.5, 0), 3);
  EXPECT_EQ(CategoryLevel(-0.4, 0), 0);
  EXPECT_EQ(CategoryLevel(-1.0, 0), 0);  // -0.5 truncates to 0
  EXPECT_EQ(CategoryLevel(5.0, 3), 2);
}

TEST(CategoryLevel, TheDifferenceOfTwoIntsMayPassAnInt) {
  EXPECT_EQ(MCCommon::detail::CategoryLevel(kNaN, kMaxInt), -4294967295LL);
  EXPECT_EQ(MCCommon::detail::CategoryLevel(2147483647.0, kMinInt), 4294967295LL);
}

}  // namespace
