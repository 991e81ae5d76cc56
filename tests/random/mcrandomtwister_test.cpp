// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrandomtwister.h"

#include "support/csvrows.h"
#include "support/numbers.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

using MCCommonMath::MCRandomTwister;
using mctest::ToNumber;
using Words = std::array<std::uint32_t, MCRandomTwister::kWords>;

// Outputs of Python's twister (tests/data/random/mt19937.py).
std::vector<std::vector<std::string>> Recorded(const std::string& output, const std::string& key) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& row : mctest::CsvRows("random/mt19937.csv")) {
    if (row[0] == output && row[1] == key) rows.push_back(row);
  }
  EXPECT_FALSE(rows.empty());
  return rows;
}

MCRandomTwister SeededByPublishedKey() {
  const std::array<unsigned long, 4> key = {0x123, 0x234, 0x345, 0x456};
  MCRandomTwister twister;
  twister.InitByArray(key.data(), key.size());
  return twister;
}

TEST(MCRandomTwister, GivesTheFirstPublishedNumbersOfTheKeyOfFourWords) {
  // The first line of the output that its authors publish with their program of 2002.
  MCRandomTwister twister = SeededByPublishedKey();
  for (const unsigned long expected :
       {1067595299UL, 955945823UL, 477289528UL, 4107218783UL, 4228976476UL}) {
    EXPECT_EQ(twister.GetInteger32(), expected);
  }
}

TEST(MCRandomTwister, GoesOnAsAnotherImplementationDoesFromThatKey) {
  MCRandomTwister twister = SeededByPublishedKey();
  for (const auto& row : Recorded("int32", "published")) {
    ASSERT_EQ(twister.GetInteger32(), ToNumber<std::uint32_t>(row[3])) << row[2];
  }
  for (const auto& row : Recorded("res53", "published")) {
    ASSERT_EQ(twister.GetRealRes53(), ToNumber(row[3])) << row[2];
  }
}

TEST(MCRandomTwister, TakesKeysShorterAndLongerThanItsState) {
  for (const unsigned long length : {1UL, 2UL, 623UL, 624UL, 625UL, 1300UL}) {
    std::vector<unsigned long> key;
    for (unsigned long i = 1; i <= length; ++i) key.push_back(2654435761UL * i % 4294967296UL);
    MCRandomTwister twister;
    twister.InitByArray(key.data(), length);
    for (const auto& row : Recorded("int32", std::to_string(length))) {
      EXPECT_EQ(twister.GetInteger32(), ToNumber<std::uint32_t>(row[3])) << length;
    }
  }
}

TEST(MCRandomTwister, GivesTheTenThousandthNumberThatTheStandardOfTheLanguageTells) {
  MCRandomTwister twister;
  twister.Initialize(5489);
  for (int i = 1; i < 10000; ++i) twister.GetInteger32();
  EXPECT_EQ(twister.GetInteger32(), 4123659995UL);
}

TEST(MCRandomTwister, AgreesWithTheGeneratorOfTheLanguageForAnySeed) {
  for (const std::uint32_t seed : {0U, 1U, 5489U, 20020126U, 4294967295U}) {
    MCRandomTwister twister;
    twister.Initialize(seed);
    std::mt19937 peer(seed);
    for (int i = 0; i < 2000; ++i) ASSERT_EQ(twister.GetInteger32(), peer()) << seed << ' ' << i;
  }
}

TEST(MCRandomTwister, IsSeededBeforeAnybodySeedsIt) {
  MCRandomTwister twister;
  EXPECT_EQ(twister.GetInteger32(), std::mt19937(5489)());
}

TEST(MCRandomTwister, TakesTheLowerThirtyTwoBitsOfSeedsAndKeys) {
  MCRandomTwister narrow;
  MCRandomTwister wide;
  narrow.Initialize(7);
  wide.Initialize(0xabcdef0000000007UL);
  EXPECT_EQ(wide.GetWords(), narrow.GetWords());
  const std::array<unsigned long, 2> narrowKey = {7, 8};
  const std::array<unsigned long, 2> wideKey = {0xabcdef0000000007UL, 0x1000000000000008UL};
  narrow.InitByArray(narrowKey.data(), 2);
  wide.InitByArray(wideKey.data(), 2);
  EXPECT_EQ(wide.GetWords(), narrow.GetWords());
}

TEST(MCRandomTwister, WithoutAKeyIsAsWithoutASeed) {
  const unsigned long key = 1;
  MCRandomTwister fresh;
  MCRandomTwister twister;
  twister.Initialize(1);
  twister.InitByArray(&key, 0);
  EXPECT_EQ(twister.GetWords(), fresh.GetWords());
  twister.Initialize(1);
  twister.InitByArray(nullptr, 3);
  EXPECT_EQ(twister.GetWords(), fresh.GetWords());
  EXPECT_EQ(twister.GetPosition(), fresh.GetPosition());
}

TEST(MCRandomTwister, MakesItsOutputsOfTheSameWords) {
  const auto seeded = [] {
    MCRandomTwister twister;
    twister.Initialize(11);
    return twister;
  };
  MCRandomTwister words = seeded();
  MCRandomTwister halves = seeded();
  MCRandomTwister closed = seeded();
  MCRandomTwister halfOpen = seeded();
  MCRandomTwister open = seeded();
  for (int i = 0; i < 1500; ++i) {
    const unsigned long word = words.GetInteger32();
    const auto number = static_cast<double>(word);
    ASSERT_EQ(halves.GetInteger31(), static_cast<long>(word / 2));
    // To the bit, as the authors write them: products with a rounded reciprocal.
    ASSERT_EQ(closed.GetRealClosed(), number * (1.0 / 4294967295.0));
    ASSERT_EQ(halfOpen.GetRealClosedOpen(), number / 4294967296.0);
    ASSERT_EQ(open.GetRealOpen(), (number + 0.5) / 4294967296.0);
  }
}

// A state whose next word is `word` tempered: the words themselves don't matter.
MCRandomTwister BeforeExtreme(std::uint32_t word) {
  Words words;
  words.fill(word);
  words[1] = 1;
  MCRandomTwister twister;
  EXPECT_TRUE(twister.SetState(words, 0));
  return twister;
}

TEST(MCRandomTwister, ReachesTheEndsOfClosedRangesOnly) {
  // Tempering is linear and can be undone, so the word 0 alone gives 0; this one gives all bits.
  constexpr std::uint32_t kZero = 0;
  constexpr std::uint32_t kAllBits = 0x12dd9bb3U;
  ASSERT_EQ(BeforeExtreme(kZero).GetInteger32(), 0U);
  EXPECT_EQ(BeforeExtreme(kZero).GetRealClosed(), 0.0);
  EXPECT_EQ(BeforeExtreme(kZero).GetRealClosedOpen(), 0.0);
  EXPECT_GT(BeforeExtreme(kZero).GetRealOpen(), 0.0);
  ASSERT_EQ(BeforeExtreme(kAllBits).GetInteger32(), 4294967295U);
  EXPECT_EQ(BeforeExtreme(kAllBits).GetInteger31(), 2147483647);
  EXPECT_EQ(BeforeExtreme(kAllBits).GetRealClosed(), 1.0);
  EXPECT_LT(BeforeExtreme(kAllBits).GetRealClosedOpen(), 1.0);
  EXPECT_LT(BeforeExtreme(kAllBits).GetRealOpen(), 1.0);
}

TEST(MCRandomTwister, GoesOnFromAStateAtEveryPosition) {
  MCRandomTwister twister;
  twister.Initialize(3);
  for (int drawn = 0; drawn < 1300; ++drawn) {
    MCRandomTwister copy;
    ASSERT_TRUE(copy.SetState(twister.GetWords(), twister.GetPosition()));
    MCRandomTwister original = twister;
    for (int i = 0; i < 3; ++i) ASSERT_EQ(copy.GetInteger32(), original.GetInteger32()) << drawn;
    twister.GetInteger32();
  }
}

TEST(MCRandomTwister, TellsHowManyWordsOfABlockWereGivenOut) {
  MCRandomTwister twister;
  EXPECT_EQ(twister.GetPosition(), 624U);
  twister.GetInteger32();
  EXPECT_EQ(twister.GetPosition(), 1U);
  twister.GetRealRes53();
  EXPECT_EQ(twister.GetPosition(), 3U);
}

TEST(MCRandomTwister, RefusesStatesThatNoSeedLeadsTo) {
  MCRandomTwister twister;
  twister.GetInteger32();
  const Words before = twister.GetWords();
  Words words = {};
  EXPECT_FALSE(twister.SetState(words, 0));
  words[0] = 0x7fffffffU;
  EXPECT_FALSE(twister.SetState(words, 0));
  EXPECT_FALSE(twister.SetState(before, 625));
  EXPECT_EQ(twister.GetWords(), before);
  EXPECT_EQ(twister.GetPosition(), 1U);

  words[0] = 0x80000000U;
  EXPECT_TRUE(twister.SetState(words, 624));
  words[0] = 0;
  words[623] = 1;
  EXPECT_TRUE(twister.SetState(words, 0));
}

}  // namespace
