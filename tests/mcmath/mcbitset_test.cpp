// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"

#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {
using MCCommonMath::MCBitSet;

constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kSmallest = std::numeric_limits<int>::min();

// "0110" is the set of 4 bits with bits 1 and 2 set.
MCBitSet FromText(const std::string& bits) {
  MCBitSet set(static_cast<int>(bits.size()));
  for (int i = 0; i < set.Size(); ++i) set.Set(i, bits[static_cast<std::size_t>(i)] == '1');
  return set;
}

std::string ToText(const MCBitSet& set) {
  std::string bits;
  for (int i = 0; i < set.Size(); ++i) bits += set.IsIn(i) ? '1' : '0';
  return bits;
}

TEST(MCBitSet, IsEmptyByDefaultAndForANegativeSize) {
  EXPECT_EQ(MCBitSet().Size(), 0);
  EXPECT_EQ(MCBitSet(-3).Size(), 0);
  EXPECT_EQ(MCBitSet(0).InSet(), 0);
}

TEST(MCBitSet, StartsWithAllBitsClear) {
  EXPECT_EQ(ToText(MCBitSet(5)), "00000");
}

TEST(MCBitSet, AnswersFalseForBitsOutsideTheSet) {
  MCBitSet set = FromText("111");
  for (const int i : {-1, 3, kLargest, kSmallest}) {
    EXPECT_FALSE(set.IsIn(i)) << i;
    EXPECT_FALSE(set.Set(i, false)) << i;
  }
  EXPECT_EQ(ToText(set), "111");
}

TEST(MCBitSet, SetsAndClearsOneBit) {
  MCBitSet set(70);
  EXPECT_TRUE(set.Set(0, true));
  EXPECT_TRUE(set.Set(69, true));
  EXPECT_TRUE(set.Set(0, false));
  EXPECT_FALSE(set.IsIn(0));
  EXPECT_TRUE(set.IsIn(69));
  EXPECT_EQ(set.InSet(), 1);
}

TEST(MCBitSet, SetsRangesWithBothEndsIncluded) {
  MCBitSet set(5);
  EXPECT_TRUE(set.SetRange(1, 3, true));
  EXPECT_EQ(ToText(set), "01110");
  EXPECT_TRUE(set.SetRange(2, 2, false));
  EXPECT_EQ(ToText(set), "01010");
}

struct Range {
  int i, j;
};
constexpr Range kBadRanges[] = {{-1, 2}, {3, 2}, {0, 5}, {5, 5}, {0, kLargest}, {kSmallest, 0}};

TEST(MCBitSet, RefusesBadRangesUnchanged) {
  MCBitSet set = FromText("01010");
  for (const auto& [i, j] : kBadRanges) {
    EXPECT_FALSE(set.SetRange(i, j, true)) << i << ' ' << j;
    EXPECT_EQ(set.InRange(i, j), -1) << i << ' ' << j;
  }
  EXPECT_EQ(ToText(set), "01010");
}

TEST(MCBitSet, SetsASubsetAllOrNothing) {
  MCBitSet set(5);
  EXPECT_TRUE(set.SetSubset({4, 0, 4}, true));
  EXPECT_EQ(ToText(set), "10001");
  EXPECT_FALSE(set.SetSubset({1, 2, 5}, true));
  EXPECT_FALSE(set.SetSubset({0, -1}, false));
  EXPECT_EQ(ToText(set), "10001");
  EXPECT_TRUE(set.SetSubset({}, true));
  EXPECT_TRUE(MCBitSet().SetSubset({}, true));
  EXPECT_TRUE(set.SetSubset({0}, false));
  EXPECT_EQ(ToText(set), "00001");
}

TEST(MCBitSet, AppendsABitAndAnswersTheNewSize) {
  MCBitSet set;
  EXPECT_EQ(set.Append(true), 1);
  EXPECT_EQ(set.Append(false), 2);
  EXPECT_EQ(set.Append(true), 3);
  EXPECT_EQ(ToText(set), "101");
}

TEST(MCBitSet, RefusesABitWhoseNumberNoIntHolds) {
  MCBitSet set(kLargest);
  EXPECT_EQ(set.Append(true), -1);
  EXPECT_EQ(set.Size(), kLargest);
  EXPECT_FALSE(set.IsIn(kLargest - 1));
}

TEST(MCBitSet, ClearKeepsTheSize) {
  MCBitSet set = FromText("101");
  set.Clear();
  EXPECT_EQ(ToText(set), "000");
}

TEST(MCBitSet, ResizeGivesEveryBitTheSameValue) {
  MCBitSet set = FromText("1010");
  set.Resize(4, false);
  EXPECT_EQ(ToText(set), "0000");
  set.Resize(4, true);
  EXPECT_EQ(ToText(set), "1111");
  set.Resize(6, false);
  EXPECT_EQ(ToText(set), "000000");
  set.Resize(2, true);
  EXPECT_EQ(ToText(set), "11");
  set.Resize(-1, true);
  EXPECT_EQ(set.Size(), 0);
}

TEST(MCBitSet, NegateFlipsAllBits) {
  MCBitSet set = FromText("0110");
  set.Negate();
  EXPECT_EQ(ToText(set), "1001");
}

TEST(MCBitSet, CountsSetBits) {
  const MCBitSet set = FromText("0110111");
  EXPECT_EQ(set.InSet(), 5);
  EXPECT_EQ(set.InRange(0, 6), 5);
  EXPECT_EQ(set.InRange(1, 3), 2);
  EXPECT_EQ(set.InRange(3, 3), 0);
  EXPECT_EQ(set.InRangeS(1, 3), 2);
  EXPECT_EQ(set.InRangeS(4, 3), 3);
  EXPECT_EQ(set.InRangeS(7, 0), 0);
}

TEST(MCBitSet, RefusesToCountOutsideTheSetAlsoWhereTheSumOverflowsAnInt) {
  const MCBitSet set(5);
  for (const auto& [start, count] : {Range{-1, 2}, Range{0, -1}, Range{3, 3}, Range{6, 0},
                                     Range{1, kLargest}, Range{kLargest, kLargest}}) {
    EXPECT_EQ(set.InRangeS(start, count), -1) << start << ' ' << count;
  }
}

TEST(MCBitSet, FindsBitsThatAreNewHere) {
  const MCBitSet set = FromText("0101");
  EXPECT_TRUE(set.IsNewFalse(FromText("0100"), 4));
  EXPECT_FALSE(set.IsNewFalse(FromText("0100"), 3));
  EXPECT_FALSE(set.IsNewFalse(FromText("1111"), 4));
  EXPECT_TRUE(set.IsNewFalse(FromText("1110"), kLargest));
}

TEST(MCBitSet, TakesAShorterSetAsClearBeyondItsEnd) {
  EXPECT_TRUE(FromText("0101").IsNewFalse(FromText("01"), 4));
  EXPECT_FALSE(FromText("0100").IsNewFalse(FromText("01"), 4));
  EXPECT_FALSE(FromText("01").IsNewFalse(FromText("0111"), 4));
}

TEST(MCBitSet, LooksAtNothingForANegativeCount) {
  EXPECT_FALSE(FromText("1").IsNewFalse(MCBitSet(), -1));
  EXPECT_FALSE(FromText("1").IsNewFalse(MCBitSet(), kSmallest));
}

TEST(MCBitSet, GetSubsetCutsItsRangeToTheSet) {
  const MCBitSet set = FromText("0110111");
  EXPECT_EQ(ToText(set.GetSubset(1, 3)), "110");
  EXPECT_EQ(ToText(set.GetSubset(-5, 1)), "01");
  EXPECT_EQ(ToText(set.GetSubset(5, kLargest)), "11");
  EXPECT_EQ(ToText(set.GetSubset(kSmallest, kLargest)), "0110111");
}

TEST(MCBitSet, GetSubsetOfAnEmptyRangeIsEmptyWhereCountingRefuses) {
  const MCBitSet set = FromText("0110111");
  EXPECT_EQ(set.InRange(3, 2), -1);
  EXPECT_EQ(set.GetSubset(3, 2).Size(), 0);
  EXPECT_EQ(set.GetSubset(7, 9).Size(), 0);
  EXPECT_EQ(set.GetSubset(-3, -1).Size(), 0);
  EXPECT_EQ(MCBitSet().GetSubset(0, 0).Size(), 0);
}

TEST(MCBitSet, CombinesOverTheSmallerSize) {
  MCBitSet set(9);
  set.DoAND(FromText("0101"), FromText("00111"));
  EXPECT_EQ(ToText(set), "0001");
  set.DoOR(FromText("01010"), FromText("0011"));
  EXPECT_EQ(ToText(set), "0111");
}

TEST(MCBitSet, CombinesWithItself) {
  MCBitSet set = FromText("01011");
  set.DoAND(set, FromText("1101"));
  EXPECT_EQ(ToText(set), "0101");
  set.DoOR(FromText("10"), set);
  EXPECT_EQ(ToText(set), "11");
  set.DoAND(set, set);
  EXPECT_EQ(ToText(set), "11");
}

TEST(MCBitSet, EqualsBySizeAndBits) {
  EXPECT_TRUE(FromText("010") == FromText("010"));
  EXPECT_FALSE(FromText("010") == FromText("0100"));
  EXPECT_FALSE(FromText("010") == FromText("011"));
  EXPECT_TRUE(MCBitSet() == MCBitSet(0));
}

TEST(MCBitSet, CopiesAreIndependent) {
  const MCBitSet set = FromText("010");
  MCBitSet copy = set;
  copy.Negate();
  EXPECT_EQ(ToText(set), "010");
}

TEST(MCBitSet, DisplaysItsBits) {
  EXPECT_EQ(mctest::DisplayOf(FromText("01")),
            "\nMCBitSet display start\nfbVec (size = 2)\n false true\nMCBitSet display end");
}
}  // namespace
