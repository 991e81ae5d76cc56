// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcpackedint.h"

#include "mcmath/mchashkey.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {
using MCCommonMath::MCHashKey;
using MCCommonMath::MCPackedInt;
using Ints = std::vector<int>;

constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kSmallest = std::numeric_limits<int>::min();

TEST(MCPackedInt, IsEmptyByDefault) {
  const MCPackedInt packer;
  EXPECT_EQ(packer.GetSeqSize(), 0);
  EXPECT_EQ(packer.GetLowerBound(), 0);
  EXPECT_EQ(packer.GetNDiffVal(0), -1);
  Ints packed = {9};
  EXPECT_TRUE(packer.Pack({}, packed, true));
  EXPECT_EQ(packed, Ints{});
  Ints seq = {4};
  EXPECT_TRUE(packer.Unpack(seq, {}));
  EXPECT_EQ(seq, Ints{4});
}

TEST(MCPackedInt, PacksOnePosition) {
  const MCPackedInt packer(1, 1, {5});
  Ints packed;
  EXPECT_TRUE(packer.Pack({3}, packed, true));
  EXPECT_EQ(packed, Ints{2});
  Ints seq;
  EXPECT_TRUE(packer.Unpack(seq, {2}));
  EXPECT_EQ(seq, Ints{3});
}

TEST(MCPackedInt, LetsTheFirstPositionVaryFastest) {
  const MCPackedInt packer(3, 0, {2, 3, 4});
  Ints packed;
  int expected = 0;
  for (int c = 0; c < 4; ++c) {
    for (int b = 0; b < 3; ++b) {
      for (int a = 0; a < 2; ++a) {
        ASSERT_TRUE(packer.Pack({a, b, c}, packed, true));
        EXPECT_EQ(packed, Ints{expected++});
      }
    }
  }
}

TEST(MCPackedInt, SplitsAtThePositionThatCrossesTheBound) {
  ASSERT_EQ(MCHashKey::GetElementUpperBound(), 9377657);
  // 3062 * 3062 = 9375844 fits, 3062 * 3063 = 9378906 doesn't.
  MCPackedInt packer(2, 0, {3062, 3062});
  Ints packed;
  ASSERT_TRUE(packer.Pack({3061, 3061}, packed, true));
  EXPECT_EQ(packed, Ints{9375843});
  ASSERT_TRUE(packer.SetForSequence(2, 0, {3062, 3063}));
  ASSERT_TRUE(packer.Pack({3061, 3062}, packed, true));
  EXPECT_EQ(packed, (Ints{3061, 3062}));
  ASSERT_TRUE(packer.SetForSequence(4, 0, {3062, 2, 3063, 3}));
  ASSERT_TRUE(packer.Pack({1, 1, 7, 2}, packed, true));
  EXPECT_EQ(packed, (Ints{1 + 3062, 7 + 2 * 3063}));
}

TEST(MCPackedInt, KeepsEveryUnitWithinTheKeyBound) {
  const Ints counts(40, 10);  // 6 positions of 10 values make 10^6, 7 would pass the bound
  const MCPackedInt packer(40, 0, counts);
  Ints packed;
  ASSERT_TRUE(packer.Pack(Ints(40, 9), packed, true));
  EXPECT_EQ(packed, (Ints{999999, 999999, 999999, 999999, 999999, 999999, 9999}));
}

TEST(MCPackedInt, GivesAPositionBeyondTheBoundAUnitOfItsOwn) {
  const MCPackedInt packer(3, 0, {2, kLargest, 3});
  Ints packed;
  ASSERT_TRUE(packer.Pack({1, kLargest - 1, 2}, packed, true));
  EXPECT_EQ(packed, (Ints{1, kLargest - 1, 2}));
  Ints seq;
  ASSERT_TRUE(packer.Unpack(seq, packed));
  EXPECT_EQ(seq, (Ints{1, kLargest - 1, 2}));
}

TEST(MCPackedInt, LeavesUnit0EmptyWhereTheFirstPositionIsBeyondTheBound) {
  const MCPackedInt packer(2, 0, {9377658, 4});
  Ints packed;
  ASSERT_TRUE(packer.Pack({9377657, 3}, packed, true));
  EXPECT_EQ(packed, (Ints{0, 9377657, 3}));
  Ints seq;
  ASSERT_TRUE(packer.Unpack(seq, packed));
  EXPECT_EQ(seq, (Ints{9377657, 3}));
}

TEST(MCPackedInt, RefusesBadDescriptionsAndIsEmptyThen) {
  struct Case {
    int fSize;
    Ints fCounts;
  };
  for (const auto& [size, counts] : {Case{0, {2}}, Case{-1, {2}}, Case{kSmallest, {2}},
                                     Case{3, {2, 2}}, Case{2, {2, 0}}, Case{2, {-1, 2}}}) {
    MCPackedInt packer(2, 5, {3, 4});
    EXPECT_FALSE(packer.SetForSequence(size, 5, counts));
    EXPECT_EQ(packer.GetSeqSize(), 0);
    EXPECT_EQ(packer.GetNDiffVal(0), -1);
    EXPECT_EQ(packer.GetLowerBound(), 5);
    Ints packed = {1};
    EXPECT_TRUE(packer.Pack({}, packed, true));
    EXPECT_EQ(packed, Ints{});
    EXPECT_FALSE(packer.Setup());
    EXPECT_EQ(MCPackedInt(size, 5, counts).GetSeqSize(), 0);
  }
}

TEST(MCPackedInt, ADescriptionThatRunsOutOfMemoryChangesNothing) {
  MCPackedInt packer(2, 1, {3, 4});
  const Ints counts(50, 10);
  std::size_t failed = 0;
  for (bool done = false; !done;) {
    const mctest::FailAllocation failure(failed + 1);
    try {
      EXPECT_TRUE(packer.SetForSequence(50, 0, counts));
      done = true;
    } catch (const std::bad_alloc&) {
      ++failed;
      ASSERT_EQ(packer.GetSeqSize(), 2);
      ASSERT_EQ(packer.GetLowerBound(), 1);
      ASSERT_EQ(packer.GetNDiffVal(1), 4);
    }
  }
  EXPECT_GE(failed, 3U);
  EXPECT_EQ(packer.GetSeqSize(), 50);
}

TEST(MCPackedInt, LooksAtTheNumbersOfItsOwnPositionsOnly) {
  MCPackedInt packer(2, -1, {3, 4, 0});
  EXPECT_EQ(packer.GetSeqSize(), 2);
  EXPECT_EQ(packer.GetLowerBound(), -1);
  EXPECT_EQ(packer.GetNDiffVal(1), 4);
  EXPECT_EQ(packer.GetNDiffVal(2), 0) << "as stored, beyond the sequence";
  for (const int i : {-1, 3, kLargest, kSmallest}) EXPECT_EQ(packer.GetNDiffVal(i), -1);
  EXPECT_TRUE(packer.Setup());
  EXPECT_EQ(packer.GetSeqSize(), 2);
}

TEST(MCPackedInt, ChecksElementsOnDemand) {
  const MCPackedInt packer(2, 1, {3, 4});
  Ints packed = {-7};
  for (const Ints& seq :
       {Ints{0, 1}, Ints{4, 1}, Ints{1, 0}, Ints{1, 5}, Ints{kSmallest, 1}, Ints{1, kLargest}}) {
    EXPECT_FALSE(packer.Pack(seq, packed, true));
    EXPECT_EQ(packed, Ints{-7});
    EXPECT_TRUE(packer.Pack(seq, packed, false));
    packed = {-7};
  }
  EXPECT_TRUE(packer.Pack({3, 4}, packed, true));
  EXPECT_EQ(packed, Ints{2 + 3 * 3});
}

TEST(MCPackedInt, RefusesAShortSequenceWithAndWithoutCheck) {
  const MCPackedInt packer(2, 1, {3, 4});
  Ints packed = {-7};
  for (const bool check : {false, true}) {
    EXPECT_FALSE(packer.Pack({1}, packed, check));
    EXPECT_EQ(packed, Ints{-7});
  }
}

TEST(MCPackedInt, IgnoresElementsBeyondTheSequence) {
  const MCPackedInt packer(2, 1, {3, 4});
  Ints packed;
  EXPECT_TRUE(packer.Pack({3, 4, 99}, packed, true));
  EXPECT_EQ(packed, Ints{11});
  Ints seq = {0, 0, 99};
  EXPECT_TRUE(packer.Unpack(seq, {11, 5}));
  EXPECT_EQ(seq, (Ints{3, 4, 99}));
}

TEST(MCPackedInt, RefusesToUnpackTooFewUnits) {
  const MCPackedInt packer(2, 0, {9377658, 9377658});
  Ints seq = {8};
  EXPECT_FALSE(packer.Unpack(seq, {0, 1}));
  EXPECT_EQ(seq, Ints{8});
}

TEST(MCPackedInt, TakesBoundsWhoseSumNoIntHolds) {
  const MCPackedInt packer(2, kLargest - 1, {5, 5});
  Ints packed;
  ASSERT_TRUE(packer.Pack({kLargest, kLargest - 1}, packed, true));
  EXPECT_EQ(packed, Ints{1});
  EXPECT_FALSE(packer.Pack({kSmallest, kLargest}, packed, true));
  const MCPackedInt lowest(1, kSmallest, {5});
  ASSERT_TRUE(lowest.Pack({kSmallest + 4}, packed, true));
  EXPECT_EQ(packed, Ints{4});
  EXPECT_FALSE(lowest.Pack({kLargest}, packed, true));
}

TEST(MCPackedInt, AnyValuesAreSafeWithoutCheck) {
  const MCPackedInt packer(4, kSmallest, {100, 100, 100, kLargest});
  const Ints extremes = {kSmallest, kLargest, -1, 0};
  Ints packed;
  Ints seq;
  for (const int a : extremes) {
    for (const int b : extremes) {
      ASSERT_TRUE(packer.Pack({a, b, a, b}, packed, false));
      ASSERT_TRUE(packer.Unpack(seq, {a, b}));
    }
  }
}

TEST(MCPackedInt, UnpackRestoresRandomSequences) {
  std::mt19937 random(97);
  for (int round = 0; round < 200; ++round) {
    const int size = 1 + static_cast<int>(random() % 30);
    const int lower = static_cast<int>(random() % 2000) - 1000;
    Ints counts;
    Ints seq;
    for (int i = 0; i < size; ++i) {
      const int count = 1 + static_cast<int>(random() % (i % 5 == 0 ? 100000U : 12U));
      counts.push_back(count);
      seq.push_back(lower + static_cast<int>(random() % static_cast<unsigned>(count)));
    }
    MCPackedInt packer;
    ASSERT_TRUE(packer.SetForSequence(size, lower, counts));
    Ints packed;
    ASSERT_TRUE(packer.Pack(seq, packed, true));
    for (const int unit : packed) {
      EXPECT_GE(unit, 0);
      EXPECT_LT(unit, MCHashKey::GetElementUpperBound());
    }
    Ints restored;
    ASSERT_TRUE(packer.Unpack(restored, packed));
    EXPECT_EQ(restored, seq);
  }
}

TEST(MCPackedInt, PackingAgainAllocatesNothing) {
  const MCPackedInt packer(2, 0, {9377658, 4});
  const Ints seq = {9, 3};
  Ints packed;
  ASSERT_TRUE(packer.Pack(seq, packed, true));
  Ints restored(2);
  const std::size_t before = mctest::AllocationCount();
  packer.Pack(seq, packed, true);
  packer.Unpack(restored, packed);
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCPackedInt, GivesEachPositionItsUnitWhereTheOffsetLeavesNoBound) {
  for (const int offset : {9377657, 9377658, kLargest}) {
    MCHashKey::SetElementOffset(offset);
    MCPackedInt packer;
    const bool set = packer.SetForSequence(3, 0, {100000, 100000, 100000});
    MCHashKey::SetElementOffset(0);
    ASSERT_TRUE(set);
    Ints packed;
    ASSERT_TRUE(packer.Pack({99999, 5, 6}, packed, true));
    EXPECT_EQ(packed, (Ints{0, 99999, 5, 6})) << offset;
  }
}

TEST(MCPackedInt, FillsUnitsUpToTheLargestIntWhereTheOffsetAllowsIt) {
  MCHashKey::SetElementOffset(kSmallest);
  const MCPackedInt packer(3, 0, {65536, 32767, 2});
  MCHashKey::SetElementOffset(0);
  Ints packed;
  ASSERT_TRUE(packer.Pack({65535, 32766, 1}, packed, true));
  EXPECT_EQ(packed, (Ints{65536 * 32767 - 1, 1}));
}

TEST(MCPackedInt, DisplaysItsFieldsInOrder) {
  EXPECT_EQ(mctest::DisplayOf(MCPackedInt(3, 1, {5, 4, 9377657})),
            "\nMCPackedInt display start"
            "\nThe sequence size = 3"
            "\nThe lower bound = 1"
            "\nThe vector of numbers of different values (size = 3)\n 5 4 9377657"
            "\nThe number of packed storage units = 2"
            "\nThe vector of packed storage unit indices (size = 3)\n 0 0 1"
            "\nThe vector of products (size = 3)\n 5 20 9377657"
            "\nMCPackedInt display end");
}
}  // namespace
