// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/mcdesigncolumns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace {
using MCCommon::detail::CovariatePosition;
using MCCommon::detail::MakeCovariateLookup;
using MCCommon::detail::MCDesignColumns;
using MCCommon::detail::ParameterValue;
using testing::ElementsAre;

using Powers = std::vector<std::pair<int, int>>;

MCRegrParameter Column(const Powers& powers) {
  MCRegrParameter parameter;
  for (const auto& [covariate, power] : powers) parameter.AddCovariate(covariate, power);
  return parameter;
}

TEST(MCDesignColumns, LookUpCovariatesWhereverTheyStand) {
  EXPECT_THAT(MakeCovariateLookup({}, {}, 1), ElementsAre(-1));
  EXPECT_THAT(MakeCovariateLookup({2, 0}, {7, 8}, 1), ElementsAre(8, -1, 7));
  EXPECT_THAT(MakeCovariateLookup({2, 0}, {7, 8}, 5), ElementsAre(8, -1, 7, -1, -1));
  EXPECT_THAT(MakeCovariateLookup({2, 0}, {7}, 1), ElementsAre(-1, -1, 7)) << "one has no position";
  EXPECT_THAT(MakeCovariateLookup({1}, {3, 4}, 1), ElementsAre(-1, 3)) << "a position too many";
}

TEST(MCDesignColumns, KnowNoCovariateBeyondTheLookup) {
  const std::vector<int> lookup = {5, -1};
  EXPECT_EQ(CovariatePosition(lookup, 0), 5);
  EXPECT_EQ(CovariatePosition(lookup, 1), -1);
  EXPECT_EQ(CovariatePosition(lookup, 2), -1);
  EXPECT_EQ(CovariatePosition(lookup, -1), -1);
  EXPECT_EQ(CovariatePosition(lookup, std::numeric_limits<int>::min()), -1);
}

TEST(MCDesignColumns, HaveTheValuesOfTheirParameters) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const std::vector<double> row = {1.1, 0.7, kInf};
  const std::vector<int> lookup = {0, 1, 2, -1};
  const std::vector<MCRegrParameter> parameters = {
      Column({}), Column({{1, 1}}), Column({{0, 3}, {1, 2}}), Column({{2, 1}, {3, 1}})};
  const double expected[] = {1.0, 0.7, 1.1 * 1.1 * 1.1 * 0.7 * 0.7, 0.0};
  const bool isPlain[] = {false, true, false, false};
  const MCDesignColumns columns(parameters, lookup);
  EXPECT_TRUE(columns.HasTerms());
  for (std::size_t j = 0; j < parameters.size(); ++j) {
    EXPECT_EQ(columns.Value(row.data(), j), expected[j]) << j;
    EXPECT_EQ(ParameterValue(row.data(), parameters[j], lookup), expected[j]) << j;
    EXPECT_EQ(columns.IsPlainCopy(j), isPlain[j]) << j;
  }
}

TEST(MCDesignColumns, ArePlainCopiesOnlyOfOneKnownValue) {
  const MCDesignColumns columns({Column({{0, 2}}), Column({{1, 1}}), Column({{0, 1}})}, {4, -1});
  EXPECT_FALSE(columns.IsPlainCopy(0));
  EXPECT_FALSE(columns.IsPlainCopy(1));
  EXPECT_TRUE(columns.IsPlainCopy(2));
  EXPECT_FALSE(MCDesignColumns({Column({})}, {}).HasTerms());
}

}  // namespace
