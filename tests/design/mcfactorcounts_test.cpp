// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactorcounts.h"

#include "support/countingallocator.h"
#include "support/makerecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <type_traits>
#include <vector>

namespace {

using Counts = MCFactorCounts::CategoryCounts;
using mctest::MakeRecord;
using testing::ElementsAre;
using testing::Pair;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

MCFactorCounts MakeCounts(const std::vector<int>& factors, const std::vector<int>& sizes,
                          int lowest = 0) {
  return MCFactorCounts(factors, sizes, -1, -1, 0, lowest, -1, 0.0, MCConst::MC_OFFSET_NONE);
}

// Level of the one category that was counted, -1 for none.
int CountedLevel(const MCFactorCounts& counts) {
  const Counts& pairs = *counts.GetCountsPtr(0);
  int level = -1;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    if (pairs[i].second > 0.0) level = static_cast<int>(i);
  }
  return level;
}

TEST(MCFactorCounts, AreZeroForEveryCategoryAtTheStart) {
  const MCFactorCounts counts({4, 2}, {2, 3}, 0, 1, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  EXPECT_EQ(counts.GetNFactors(), 2);
  EXPECT_EQ(counts.GetNCategories(0), 2);
  EXPECT_EQ(counts.GetNCategories(1), 3);
  EXPECT_EQ(*counts.GetCountsPtr(0), Counts(2));
  EXPECT_EQ(*counts.GetCountsPtr(1), Counts(3));
  EXPECT_EQ(*counts.GetDependCountsPtr(), Counts(2));
  EXPECT_EQ(counts.GetDepCountsWithOffsetPtr(), nullptr);
  EXPECT_EQ(counts.GetNActiveCategories(0), 0);
}

TEST(MCFactorCounts, AnswerMinusOneOrNullForAFactorThatIsNone) {
  const MCFactorCounts counts = MakeCounts({0}, {2});
  for (const int factor : {-1, 1, kMaxInt, kMinInt}) {
    EXPECT_EQ(counts.GetNCategories(factor), -1);
    EXPECT_EQ(counts.GetCountsPtr(factor), nullptr);
    EXPECT_EQ(counts.GetNActiveCategories(factor), -1);
  }
}

TEST(MCFactorCounts, CountTheDependentOnlyIfItHasAPositionAndCategories) {
  const struct {
    int dependentVar;
    int nCategories;
    bool counted;
  } cases[] = {{-1, 3, false}, {0, 0, false}, {0, -2, false}, {0, 1, true}, {-1, 0, false}};
  for (const auto& c : cases) {
    const MCFactorCounts counts({}, {}, -1, c.dependentVar, c.nCategories, 0, -1, 0.0,
                                MCConst::MC_OFFSET_NONE);
    EXPECT_EQ(counts.GetDependCountsPtr() != nullptr, c.counted);
  }
}

TEST(MCFactorCounts, RoundACodeByAddingAHalfAndTruncatingTowardZero) {
  const struct {
    double code;
    int lowest;
    int level;  // -1: out of range
  } cases[] = {{1.4999, 0, 1},
               {1.5, 0, 2},
               {-0.4, 0, 0},
               {-0.6, 0, 0},
               {-1.4999, 0, 0},
               {-1.5, 0, -1},
               {3.4, 0, 3},
               {3.5, 0, -1},
               {4.0, 0, -1},
               {4.0, 1, 3},
               {0.0, 1, -1},
               {-3.0, -4, 2},  // -2.5 truncates to -2
               {kMinInt, kMinInt, 1},
               {kNaN, 0, -1},
               {kInfinity, 0, -1},
               {-kInfinity, 0, -1},
               {1e300, 0, -1},
               {-1e300, 0, -1},
               {2147483647.0, 0, -1},
               {2147483647.0, kMaxInt, 0},
               {2147483648.0, kMaxInt, -1},
               {0.0, kMinInt, -1},           // level 2^31
               {2147483647.0, kMinInt, -1},  // level 2^32 - 1
               {kNaN, kMinInt, 0},           // truncates to the smallest int
               {1e10, kMinInt, 0},
               {-1e10, kMaxInt, -1}};
  for (const auto& c : cases) {
    MCFactorCounts counts = MakeCounts({0}, {4}, c.lowest);
    EXPECT_EQ(counts.Update(MakeRecord({c.code})), c.level >= 0) << c.code << " " << c.lowest;
    EXPECT_EQ(CountedLevel(counts), c.level) << c.code << " " << c.lowest;
  }
}

TEST(MCFactorCounts, AddTheWeightFirstAndOneSecond) {
  MCFactorCounts counts({1}, {2}, 0, 2, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  EXPECT_TRUE(counts.Update(MakeRecord({2.5, 1, 0})));
  EXPECT_TRUE(counts.Update(MakeRecord({-1.0, 1, 1})));
  EXPECT_TRUE(counts.Update(MakeRecord({0.0, 0, 1})));
  EXPECT_THAT(*counts.GetCountsPtr(0), ElementsAre(Pair(0.0, 1.0), Pair(1.5, 2.0)));
  EXPECT_THAT(*counts.GetDependCountsPtr(), ElementsAre(Pair(2.5, 1.0), Pair(-1.0, 2.0)));
  EXPECT_EQ(counts.GetNActiveCategories(0), 1) << "a weighted count of 0 isn't active";
}

TEST(MCFactorCounts, CountTheOtherFactorsOfARowWithABadCode) {
  MCFactorCounts counts({0, 1, 2}, {2, 2, 2}, -1, 3, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  EXPECT_FALSE(counts.Update(MakeRecord({1, 2, 1, 0})));
  EXPECT_THAT(*counts.GetCountsPtr(0), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
  EXPECT_EQ(*counts.GetCountsPtr(1), Counts(2));
  EXPECT_THAT(*counts.GetCountsPtr(2), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
  EXPECT_EQ(*counts.GetDependCountsPtr(), Counts(2)) << "the dependent is not reached";
}

TEST(MCFactorCounts, KeepTheFactorsOfARowWhoseDependentIsOutOfRange) {
  MCFactorCounts counts({0}, {2}, -1, 1, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  EXPECT_FALSE(counts.Update(MakeRecord({1, 2})));
  EXPECT_THAT(*counts.GetCountsPtr(0), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
  EXPECT_EQ(*counts.GetDependCountsPtr(), Counts(2));
}

TEST(MCFactorCounts, RefuseAShortRecordAndCountNothingOfIt) {
  const struct {
    int factor;
    int weight;
    int dependent;
    int offset;
  } cases[] = {{2, 0, 0, 0},       {0, 2, 0, 0},       {0, 0, 2, 0},
               {0, 0, 0, 2},       {kMaxInt, 0, 0, 0}, {0, kMaxInt, 0, 0},
               {0, 0, kMaxInt, 0}, {0, 0, 0, kMaxInt}, {-1, 0, 0, 0}};
  for (const auto& c : cases) {
    MCFactorCounts counts({c.factor, 1}, {3, 3}, c.weight, c.dependent, 3, 0, c.offset, 0.0,
                          MCConst::MC_OFFSET_VARIABLE);
    EXPECT_FALSE(counts.Update(MakeRecord({1, 1})));
    EXPECT_EQ(*counts.GetCountsPtr(0), Counts(3));
    EXPECT_EQ(*counts.GetCountsPtr(1), Counts(3));
    EXPECT_EQ(*counts.GetDependCountsPtr(), Counts(3));
  }
}

TEST(MCFactorCounts, NeedNoOffsetThatIsNotRead) {
  for (const auto type : {MCConst::MC_OFFSET_NONE, MCConst::MC_OFFSET_FIXED}) {
    MCFactorCounts counts({0}, {2}, -1, -1, 0, 0, 9, 1.0, type);
    EXPECT_TRUE(counts.Update(MakeRecord({1})));
  }
  MCFactorCounts counts({0}, {2}, -1, -1, 0, 0, -1, 1.0, MCConst::MC_OFFSET_VARIABLE);
  EXPECT_TRUE(counts.Update(MakeRecord({1})));
}

TEST(MCFactorCounts, WithoutFactorsAndDependentAcceptAnyRecord) {
  MCFactorCounts counts = MakeCounts({}, {});
  EXPECT_EQ(counts.GetNFactors(), 0);
  EXPECT_TRUE(counts.Update(MCCommon::Record(0)));
}

TEST(MCFactorCounts, GiveNoCategoriesToAFactorWithoutAPositiveSize) {
  MCFactorCounts counts = MakeCounts({0, 1, 2}, {-3, 2});
  EXPECT_EQ(counts.GetNCategories(0), 0);
  EXPECT_EQ(counts.GetNCategories(1), 2);
  EXPECT_EQ(counts.GetNCategories(2), 0);
  EXPECT_TRUE(counts.GetCountsPtr(2)->empty());
  EXPECT_FALSE(counts.Update(MakeRecord({0, 0, 0})));
  EXPECT_THAT(*counts.GetCountsPtr(1), ElementsAre(Pair(1.0, 1.0), Pair(0.0, 0.0)));
}

// The sums with the offset are there for derived classes.
class OffsetCounts : public MCFactorCounts {
public:
  OffsetCounts(int dependentVar, int offsetVar, double offsetValue, MCConst::MCOffsetType type)
      : MCFactorCounts({}, {}, 0, dependentVar, 2, 0, offsetVar, offsetValue, type) {
    KeepOffsetSums();
  }
};

TEST(MCFactorCounts, AddWeightTimesOffsetWhereTheSumsAreKept) {
  const struct {
    int offsetVar;
    MCConst::MCOffsetType type;
    double offset;
  } cases[] = {{2, MCConst::MC_OFFSET_NONE, 0.0},
               {2, MCConst::MC_OFFSET_VARIABLE, 7.0},
               {-1, MCConst::MC_OFFSET_VARIABLE, 0.0},
               {2, MCConst::MC_OFFSET_FIXED, 0.25}};
  for (const auto& c : cases) {
    OffsetCounts counts(1, c.offsetVar, 0.25, c.type);
    EXPECT_TRUE(counts.Update(MakeRecord({3, 1, 7})));
    EXPECT_TRUE(counts.Update(MakeRecord({2, 1, 7})));
    EXPECT_FALSE(counts.Update(MakeRecord({2, 5, 7})));
    EXPECT_THAT(*counts.GetDepCountsWithOffsetPtr(),
                ElementsAre(Pair(0.0, 0.0), Pair(5.0 * c.offset, 5.0)));
  }
}

TEST(MCFactorCounts, KeepNoOffsetSumsWithoutADependent) {
  OffsetCounts counts(-1, -1, 0.0, MCConst::MC_OFFSET_NONE);
  EXPECT_EQ(counts.GetDepCountsWithOffsetPtr(), nullptr);
  EXPECT_TRUE(counts.Update(MakeRecord({1, 0, 0})));
}

TEST(MCFactorCounts, CopiesShareNothing) {
  MCFactorCounts counts({0}, {2}, -1, 1, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  counts.Update(MakeRecord({1, 0}));
  const MCFactorCounts copy(counts);
  MCFactorCounts assigned = MakeCounts({0, 1}, {5, 5});
  assigned = counts;
  counts.Update(MakeRecord({0, 1}));
  for (const MCFactorCounts* other : {&copy, static_cast<const MCFactorCounts*>(&assigned)}) {
    EXPECT_EQ(other->GetNFactors(), 1);
    EXPECT_THAT(*other->GetCountsPtr(0), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
    EXPECT_THAT(*other->GetDependCountsPtr(), ElementsAre(Pair(1.0, 1.0), Pair(0.0, 0.0)));
    EXPECT_EQ(other->GetDepCountsWithOffsetPtr(), nullptr);
  }
}

TEST(MCFactorCounts, ACopyOfNoDependentHasNone) {
  MCFactorCounts assigned({0}, {2}, -1, 1, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  assigned = MakeCounts({0}, {2});
  EXPECT_EQ(assigned.GetDependCountsPtr(), nullptr);
}

// Whether the assignment succeeds with its k-th allocation failing; else the exception has passed.
bool IsAssigned(MCFactorCounts& to, const MCFactorCounts& from, std::size_t k) {
  const mctest::FailAllocation failure(k);
  try {
    to = from;
  } catch (const std::bad_alloc&) {
    return false;
  }
  EXPECT_FALSE(failure.HasFired());
  return true;
}

TEST(MCFactorCounts, AnAssignmentThatRunsOutOfMemoryChangesNothing) {
  const MCFactorCounts from({0, 1, 2}, {2, 2, 2}, -1, 3, 4, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  std::size_t k = 1;
  for (;; ++k) {
    MCFactorCounts to = MakeCounts({5}, {3});
    if (IsAssigned(to, from, k)) break;
    EXPECT_EQ(to.GetNFactors(), 1);
    EXPECT_EQ(to.GetNCategories(0), 3);
    EXPECT_EQ(to.GetDependCountsPtr(), nullptr);
    EXPECT_TRUE(to.Update(MakeRecord({9, 9, 9, 9, 9, 2})));
    EXPECT_THAT(*to.GetCountsPtr(0), ElementsAre(Pair(0, 0), Pair(0, 0), Pair(1, 1)));
  }
  EXPECT_GT(k, 5U);
}

TEST(MCFactorCounts, AMovedFromObjectIsAsItWas) {
  MCFactorCounts counts = MakeCounts({0}, {2});
  const MCFactorCounts taken(std::move(counts));
  EXPECT_EQ(counts.GetNActiveCategories(0), 0);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(taken.GetNActiveCategories(0), 0);
}

}  // namespace
