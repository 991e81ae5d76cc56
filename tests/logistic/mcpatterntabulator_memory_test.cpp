// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcpatterntabulator.h"
#include "support/countingallocator.h"
#include "support/makerecord.h"
#include "support/tabulation.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

namespace {

using mctest::FailAllocation;
using mctest::Rows;
using mctest::RowSource;
using mctest::TabulatedDesign;
using mctest::Tabulation;

// A factor of 7 levels at 1, a covariate at 2, and a factor that no effect names at 3.
TabulatedDesign OneEffect(int size) {
  TabulatedDesign design;
  design.factors = {{1, size}, {3, 2}};
  design.covariates = {2};
  design.effects = {{}, {1}};
  return design;
}

Rows RowsOf(int n, int nLevels) {
  Rows rows;
  for (int r = 0; r < n; ++r) {
    rows.push_back({0, static_cast<double>(r % nLevels), r + 0.5, static_cast<double>(r % 2)});
  }
  return rows;
}

TEST(MCPatternTabulatorMemory, APatternTakesJustTheRoomThatItsRowsNeed) {
  for (const bool interceptAlone : {false, true}) {
    TabulatedDesign design = OneEffect(7);
    if (interceptAlone) design.effects = {{}};
    Tabulation tabulation(design);
    // Rows that the tables drop take no room.
    Rows rows = RowsOf(1000, 7);
    rows.push_back({3, 1, 0, 0});
    ASSERT_TRUE(tabulation.BothPasses(rows).IsOK());
    for (int level = 0; level < (interceptAlone ? 1 : 7); ++level) {
      const std::vector<int> indices =
          interceptAlone ? std::vector<int>{} : std::vector<int>{level};
      const MCRowPatterns* pattern = tabulation.fTabulator.GetRowPatternsPtr(indices);
      ASSERT_NE(pattern, nullptr);
      EXPECT_EQ(pattern->GetAllRecords().capacity(), pattern->GetAllRecords().size());
    }
  }
}

TEST(MCPatternTabulatorMemory, InteractionsTakeJustTheRoomThatTheirRowsNeed) {
  // More combinations of parameters than a grid may have, but few cells of factors.
  TabulatedDesign design;
  design.factors = {{1, 12}, {2, 10}};
  design.effects = {{1}, {2}, {1, 2}, {2, 1}};
  Rows rows;
  for (int r = 0; r < 1200; ++r) {
    rows.push_back({0, static_cast<double>(r % 12), static_cast<double>(r / 12 % 10)});
  }
  Tabulation tabulation(design);
  ASSERT_TRUE(tabulation.BothPasses(rows).IsOK());
  for (int a = 0; a < 12; ++a) {
    for (int b = 0; b < 10; ++b) {
      const MCRowPatterns* pattern =
          tabulation.fTabulator.GetRowPatternsPtr({a, b, a * 10 + b, b * 12 + a});
      ASSERT_NE(pattern, nullptr);
      EXPECT_EQ(pattern->GetAllRecords().size(), 10U * 3);
      EXPECT_EQ(pattern->GetAllRecords().capacity(), 10U * 3);
    }
  }
}

TEST(MCPatternTabulatorMemory, ACountThatDoesNotHoldIsNoLimit) {
  for (const int nFirst : {3, 30}) {
    Tabulation tabulation(OneEffect(7));
    RowSource first(RowsOf(nFirst, 7));
    RowSource second(RowsOf(20, 7));
    ASSERT_TRUE(tabulation.FirstPass(first).IsOK());
    ASSERT_TRUE(tabulation.SecondPass(second).IsOK());
    ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(true).IsOK());
    std::size_t nKnown = 0;
    for (int r = 0; r < 20; ++r) nKnown += r % 7 < nFirst ? 1U : 0U;
    EXPECT_EQ(tabulation.fAccumulator.fRows.size(), nKnown);
  }
}

TEST(MCPatternTabulatorMemory, TooManyCellsToCountLeaveASixteenthAtMost) {
  Tabulation tabulation(OneEffect(20000));
  ASSERT_TRUE(tabulation.BothPasses(RowsOf(3000, 7)).IsOK());
  for (int level = 0; level < 7; ++level) {
    const std::vector<double>& rows =
        tabulation.fTabulator.GetRowPatternsPtr({level})->GetAllRecords();
    EXPECT_LE(rows.capacity(), rows.size() + rows.size() / 16);
  }
}

// Whether `act` succeeds with its k-th allocation failing; else the exception has passed.
template <class Act>
bool Succeeds(std::size_t k, Act act) {
  const FailAllocation failure(k);
  try {
    act();
  } catch (const std::bad_alloc&) {
    EXPECT_TRUE(failure.HasFired());
    return false;
  }
  EXPECT_FALSE(failure.HasFired()) << "an allocation failed and nobody told";
  return true;
}

TEST(MCPatternTabulatorMemory, ConstructionPassesTheException) {
  const TabulatedDesign design = OneEffect(3);
  const Tabulation tabulation(design);
  MCCancelInfo cancel(nullptr);
  std::size_t k = 1;
  while (!Succeeds(k, [&] {
    const MCPatternTabulator tabulator(tabulation.fSettings, tabulation.fExtractor, cancel, true);
  })) {
    ++k;
  }
  EXPECT_GT(k, 3U);
}

TEST(MCPatternTabulatorMemory, AFailedSecondPassMayBeBegunAnew) {
  // More patterns than the table holds before it grows.
  const Rows rows = RowsOf(150, 75);
  for (std::size_t k = 1;; ++k) {
    Tabulation tabulation(OneEffect(75));
    RowSource source(rows);
    ASSERT_TRUE(tabulation.FirstPass(source).IsOK());
    const std::size_t before = mctest::AllocationCount();
    const bool succeeded = Succeeds(k, [&] {
      source.NewPass();
      tabulation.fTabulator.CreateRowPatterns(source, tabulation.fTables, tabulation.fModel);
    });
    if (!succeeded) {
      EXPECT_TRUE(tabulation.SecondPass(source).IsOK());
    }
    ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(true).IsOK());
    EXPECT_EQ(tabulation.fAccumulator.fRows.size(), rows.size());
    if (succeeded) {
      // Nothing is allocated for a row, but for the first of a pattern.
      EXPECT_GT(mctest::AllocationCount() - before, 75U * 4);
      break;
    }
  }
}

TEST(MCPatternTabulatorMemory, ARowAfterAFailedSecondPassIsStoredOrRefused) {
  const MCCommon::Record row = mctest::MakeRecord({0, 1, 0.5, 0});
  std::size_t nRefused = 0;
  for (std::size_t k = 1;; ++k) {
    Tabulation tabulation(OneEffect(3));
    RowSource source(RowsOf(3, 3));
    ASSERT_TRUE(tabulation.FirstPass(source).IsOK());
    const auto createPatterns = [&] { tabulation.SecondPass(source); };
    // One attempt fails at each point of its way; the next, which finds what that one has left, at
    // its first allocation.
    if (Succeeds(k, createPatterns)) break;
    for (const bool again : {false, true}) {
      if (again) {
        ASSERT_FALSE(Succeeds(1, createPatterns));
      }
      const MCCommon::MCStatus status =
          tabulation.fTabulator.ProcessRowPattern(row, tabulation.fTables);
      const MCRowPatterns* pattern = tabulation.fTabulator.GetRowPatternsPtr({1});
      EXPECT_EQ(status.GetErrorCode(), pattern == nullptr ? 313 : 0);
      if (pattern == nullptr) {
        ++nRefused;
        break;  // for good: 313 stands
      }
    }
  }
  EXPECT_GT(nRefused, 2U);
}

TEST(MCPatternTabulatorMemory, ARowThatCouldNotBeStoredCanBeGivenAgain) {
  Tabulation tabulation(OneEffect(7));
  RowSource first(RowsOf(7, 7));
  ASSERT_TRUE(tabulation.FirstPass(first).IsOK());
  RowSource second(RowsOf(1, 7));
  ASSERT_TRUE(tabulation.SecondPass(second).IsOK());
  for (int level = 1; level < 7; ++level) {
    const MCCommon::Record row = mctest::MakeRecord({0, static_cast<double>(level), 0.5, 0});
    std::size_t k = 1;
    while (
        !Succeeds(k, [&] { tabulation.fTabulator.ProcessRowPattern(row, tabulation.fTables); })) {
      ++k;
    }
    EXPECT_EQ(tabulation.fTabulator.GetRowPatternsPtr({level})->GetAllRecords().size(), 4U);
  }
}

TEST(MCPatternTabulatorMemory, RowsOfKnownPatternsAllocateNothing) {
  Tabulation tabulation(OneEffect(7));
  ASSERT_TRUE(tabulation.BothPasses(RowsOf(70, 7)).IsOK());
  // With the grids of the pass gone: by key.
  const MCCommon::Record row = mctest::MakeRecord({0, 5, 0.5, 0});
  tabulation.fTabulator.ProcessRowPattern(row, tabulation.fTables);
  std::size_t nAllocating = 0;
  for (int r = 0; r < 16 * 11; ++r) {
    const std::size_t before = mctest::AllocationCount();
    tabulation.fTabulator.ProcessRowPattern(row, tabulation.fTables);
    nAllocating += mctest::AllocationCount() - before;
  }
  // Growth alone, from 11 rows to 187: by the row below 32 rows, as a sixteenth of less isn't two
  // rows, then by a sixteenth at least halved by rounding.
  EXPECT_LT(nAllocating, 80U);
}

}  // namespace
