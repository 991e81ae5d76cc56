// SPDX-License-Identifier: Apache-2.0
//
// A cancel at each poll of each pass and walk, by a query that keeps saying yes and by one that
// changes its mind.
#include "regression/logistic/mcpatterntabulator.h"
#include "support/tabulation.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using mctest::Rows;
using mctest::RowSource;
using mctest::ScriptedCancel;
using mctest::TabulatedDesign;
using mctest::Tabulation;

constexpr int kNRows = 5;
const Rows kRows = {{0, 1}, {1, 0}, {2, 2}, {0, 1}, {1, 2}};

TabulatedDesign OneFactor() {
  TabulatedDesign design;
  design.factors = {{1, 3}};
  design.effects = {{}, {1}};
  return design;
}

// Cancelled at the given poll after what has been done so far.
void CancelAt(Tabulation& tabulation, int poll, ScriptedCancel::Duration duration) {
  tabulation.fQuery = ScriptedCancel(poll, duration);
}

class CancelledTabulation : public testing::TestWithParam<ScriptedCancel::Duration> {};

TEST_P(CancelledTabulation, FirstPassEndsBeforeTheRowOfThePoll) {
  // One poll before each row, and one at the end.
  for (int poll = 1; poll <= kNRows + 1; ++poll) {
    Tabulation tabulation(OneFactor(), ScriptedCancel(poll, GetParam()));
    RowSource source(kRows);
    // Without a valid row that is what is told.
    EXPECT_EQ(tabulation.FirstPass(source).GetErrorCode(), poll == 1 ? 307 : 1);
    EXPECT_EQ(source.fNextCalls, poll - 1);
    EXPECT_EQ(tabulation.fQuery.fPolls, poll);
  }
  Tabulation tabulation(OneFactor());
  RowSource source(kRows);
  EXPECT_TRUE(tabulation.FirstPass(source).IsOK());
  EXPECT_EQ(tabulation.fQuery.fPolls, kNRows + 1);
}

TEST_P(CancelledTabulation, AFirstPassWithoutWeightTellsThatOfACancelledOne) {
  Tabulation tabulation(OneFactor(), ScriptedCancel(2, GetParam()));
  RowSource source({{3, 1}, {0, 1}});
  EXPECT_EQ(tabulation.FirstPass(source).GetErrorCode(), 308);
}

TEST_P(CancelledTabulation, SecondPassEndsBeforeTheRowOfThePollAndMakesNoPatterns) {
  for (int poll = 1; poll <= kNRows + 1; ++poll) {
    Tabulation tabulation(OneFactor());
    RowSource source(kRows);
    ASSERT_TRUE(tabulation.FirstPass(source).IsOK());
    CancelAt(tabulation, poll, GetParam());
    EXPECT_EQ(tabulation.SecondPass(source).GetErrorCode(), poll == 1 ? 307 : 1);
    EXPECT_EQ(source.fNextCalls, kNRows + poll - 1);
    EXPECT_EQ(tabulation.fQuery.fPolls, poll);
    CancelAt(tabulation, 0, GetParam());
    EXPECT_EQ(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel).GetErrorCode(), 303);
  }
}

TEST_P(CancelledTabulation, DesignWalkEndsBeforeTheRowOfThePoll) {
  for (int poll = 1; poll <= kNRows + 2; ++poll) {
    Tabulation tabulation(OneFactor());
    ASSERT_TRUE(tabulation.BothPasses(kRows).IsOK());
    CancelAt(tabulation, poll, GetParam());
    const MCCommon::MCStatus status = tabulation.fTabulator.FillDesignMatrix(tabulation.fModel);
    const bool isCancelled = poll <= kNRows + 1;
    EXPECT_EQ(status.GetErrorCode(), isCancelled ? 1 : 0);
    EXPECT_EQ(static_cast<int>(tabulation.fModel.fDesignRows.size()), std::min(poll - 1, kNRows));
    EXPECT_EQ(tabulation.fQuery.fPolls, isCancelled ? poll : kNRows + 1);
  }
}

TEST_P(CancelledTabulation, ARowRefusedForACancelIsACancel) {
  Tabulation tabulation(OneFactor());
  ASSERT_TRUE(tabulation.BothPasses(kRows).IsOK());
  tabulation.fModel.fRefuseAt = 3;
  // The third poll lets the third row pass; the fourth comes when the model has refused it.
  CancelAt(tabulation, 4, GetParam());
  EXPECT_EQ(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel).GetErrorCode(), 1);
  EXPECT_EQ(tabulation.fModel.fDesignRows.size(), 3U);
}

TEST_P(CancelledTabulation, StatisticsEndBeforeTheRowOfThePoll) {
  for (int poll = 1; poll <= kNRows + 2; ++poll) {
    Tabulation tabulation(OneFactor());
    ASSERT_TRUE(tabulation.BothPasses(kRows).IsOK());
    CancelAt(tabulation, poll, GetParam());
    const MCCommon::MCStatus status = tabulation.fTabulator.ComputeStatsForOptimizer(false);
    const bool isCancelled = poll <= kNRows + 1;
    EXPECT_EQ(status.GetErrorCode(), isCancelled ? 1 : 0);
    EXPECT_EQ(static_cast<int>(tabulation.fAccumulator.fRows.size()), std::min(poll - 1, kNRows));
    EXPECT_EQ(tabulation.fQuery.fPolls, isCancelled ? poll : kNRows + 1);
  }
}

INSTANTIATE_TEST_SUITE_P(MCPatternTabulatorCancel, CancelledTabulation,
                         testing::Values(ScriptedCancel::kOnce, ScriptedCancel::kForGood));

TEST(MCPatternTabulatorCancel, TheFlagCountsWithoutAQuery) {
  Tabulation tabulation(OneFactor());
  ASSERT_TRUE(tabulation.BothPasses(kRows).IsOK());
  tabulation.fCancel.SetCancelPtr(nullptr);
  EXPECT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(true).IsOK());
  tabulation.fCancel.SetCancel();
  EXPECT_EQ(tabulation.fTabulator.ComputeStatsForOptimizer(true).GetErrorCode(), 1);
  EXPECT_EQ(tabulation.fAccumulator.fRows.size(), static_cast<std::size_t>(kNRows));
}

}  // namespace
