// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcurandom.h"

#include "mcmath/random/mcrandom.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>
#include <vector>

namespace {

using MCCommonMath::MCRandomTwister;
using MCCommonMath::MCURandom;

constexpr std::uint64_t kModulus = 2147483647;
constexpr std::uint64_t kMultiplier = 397204094;

MCURandom Congruential(unsigned long seed) {
  MCURandom uniform(seed);
  uniform.SetUseTwister(false);
  return uniform;
}

// A host's generator that counts up by eighths and tells when it is deleted.
class Eighths : public MCCommon::MCRandom {
public:
  explicit Eighths(bool* isDeleted) : fpIsDeleted(isDeleted) {}
  ~Eighths() override { *fpIsDeleted = true; }
  Eighths(const Eighths&) = delete;
  Eighths& operator=(const Eighths&) = delete;

  double GetRandom() override { return fCount++ / 8.0; }

private:
  int fCount = 0;
  bool* fpIsDeleted;
};

TEST(MCURandom, IsPortableWithTheTwisterWhenFresh) {
  MCURandom uniform;
  EXPECT_EQ(uniform.GetSeed(), 5489U);
  EXPECT_TRUE(uniform.GetUsePortable());
  EXPECT_TRUE(uniform.GetUseTwister());
  EXPECT_EQ(uniform.GetUserRNG(), nullptr);
  MCRandomTwister twister;
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(uniform.GetRandom(), twister.GetRealOpen());
}

TEST(MCURandom, GivesTheOpenNumbersOfTheTwisterOfASeed) {
  MCURandom uniform(20020126);
  MCRandomTwister twister;
  twister.Initialize(20020126);
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(uniform.GetRandom(), twister.GetRealOpen());
  uniform.SetSeed(20020126);
  twister.Initialize(20020126);
  EXPECT_EQ(uniform.GetRandom(), twister.GetRealOpen());
}

TEST(MCURandom, GivesTheTenThousandthCongruentialNumberThatIntegersGive) {
  // 397204094^10000 mod 2147483647 by Python's pow().
  MCURandom uniform = Congruential(1);
  double last = 0.0;
  for (int i = 0; i < 10000; ++i) last = uniform.GetRandom();
  EXPECT_EQ(uniform.GetSeed(), 10939054U);
  EXPECT_EQ(last, 10939054 * 4.656612873077393e-10);
}

TEST(MCURandom, MultipliesCongruentiallyAsIntegersDoFromAnyState) {
  for (const std::uint64_t first : {1UL, 2UL, 65535UL, 65536UL, 1073741824UL, 2147483646UL}) {
    MCURandom uniform = Congruential(first);
    std::uint64_t state = first;
    for (int i = 0; i < 20000; ++i) {
      state = state * kMultiplier % kModulus;
      ASSERT_EQ(uniform.GetRandom(), static_cast<double>(state) * 4.656612873077393e-10);
      ASSERT_EQ(uniform.GetSeed(), state);
    }
  }
}

TEST(MCURandom, ReducesCongruentialSeedsBeforeUse) {
  const auto second = [](unsigned long seed) {
    MCURandom uniform = Congruential(seed);
    EXPECT_EQ(uniform.GetSeed(), seed);
    uniform.GetRandom();
    return uniform.GetSeed();
  };
  // A state of 0 would last for ever.
  EXPECT_EQ(second(0), kMultiplier);
  EXPECT_EQ(second(kModulus), kMultiplier);
  EXPECT_EQ(second(kModulus * 5), kMultiplier);
  EXPECT_EQ(second(kModulus + 3), 3 * kMultiplier % kModulus);
  // Beyond 2^53, where doubles lose bits.
  const unsigned long huge = std::numeric_limits<unsigned long>::max();
  EXPECT_EQ(second(huge), huge % kModulus * kMultiplier % kModulus);
}

TEST(MCURandom, DrawsFromTheCLibraryWhereItIsNotPortable) {
  MCURandom uniform;
  uniform.SetUsePortable(false);
  EXPECT_FALSE(uniform.GetUsePortable());
  EXPECT_FALSE(uniform.GetUseTwister());
  std::srand(42);
  std::vector<double> expected;
  for (int i = 0; i < 100; ++i) expected.push_back(std::rand() / 2147483647.0);
  // srand() takes an unsigned int.
  uniform.SetSeed((7UL << 32) + 42);
  EXPECT_EQ(uniform.GetSeed(), (7UL << 32) + 42);
  for (const double x : expected) ASSERT_EQ(uniform.GetRandom(), x);
}

TEST(MCURandom, LeavesTheCLibraryAloneWhereItIsPortable) {
  std::srand(42);
  const int expected = std::rand();
  std::srand(42);
  MCURandom uniform(1);
  uniform.SetUsePortable(false);
  uniform.SetUsePortable(true);
  uniform.SetSeed(2);
  uniform.GetRandom();
  EXPECT_EQ(std::rand(), expected);
}

TEST(MCURandom, EndsTheTwisterWithTheCLibraryAndDoesNotBringItBack) {
  MCURandom uniform(9);
  uniform.SetUsePortable(false);
  uniform.SetUsePortable(true);
  EXPECT_FALSE(uniform.GetUseTwister());
  EXPECT_EQ(uniform.GetRandom(),
            static_cast<double>(9 * kMultiplier % kModulus) * 4.656612873077393e-10);
}

TEST(MCURandom, RefusesATwisterThatIsNotPortable) {
  MCURandom uniform;
  uniform.SetUsePortable(false);
  EXPECT_FALSE(uniform.SetUseTwister(true));
  EXPECT_FALSE(uniform.GetUseTwister());
  EXPECT_FALSE(uniform.GetUsePortable());
  EXPECT_TRUE(uniform.SetUseTwister(false));
}

TEST(MCURandom, BeginsATwisterWithItsSeedAndKeepsOneThatRuns) {
  MCURandom uniform = Congruential(77);
  EXPECT_TRUE(uniform.SetUseTwister(true));
  MCURandom fresh(77);
  EXPECT_EQ(uniform.GetRandom(), fresh.GetRandom());
  EXPECT_TRUE(uniform.SetUseTwister(true));
  EXPECT_EQ(uniform.GetRandom(), fresh.GetRandom());
}

TEST(MCURandom, DrawsFromTheHostsGeneratorInEveryModeAndDoesNotOwnIt) {
  bool isDeleted = false;
  auto* const host = new Eighths(&isDeleted);
  {
    MCURandom uniform(5);
    MCURandom untouched(5);
    uniform.SetUserRNG(host);
    EXPECT_EQ(uniform.GetUserRNG(), host);
    EXPECT_EQ(uniform.GetRandom(), 0.0);
    uniform.SetUseTwister(false);
    EXPECT_EQ(uniform.GetRandom(), 0.125);
    uniform.SetUsePortable(false);
    EXPECT_EQ(uniform.GetRandom(), 0.25);
    uniform.SetUsePortable(true);
    uniform.SetSeed(5);
    uniform.SetUseTwister(true);
    uniform.SetUserRNG(nullptr);
    EXPECT_EQ(uniform.GetRandom(), untouched.GetRandom());
    uniform.SetUserRNG(host);
  }
  EXPECT_FALSE(isDeleted);
  EXPECT_EQ(host->GetRandom(), 0.375);
  delete host;
}

TEST(MCURandom, HandsOnWhateverTheHostsGeneratorGives) {
  bool isDeleted = false;
  Eighths host(&isDeleted);
  MCURandom uniform;
  uniform.SetUserRNG(&host);
  double last = 0.0;
  for (int i = 0; i <= 16; ++i) last = uniform.GetRandom();
  EXPECT_EQ(last, 2.0);
}

TEST(MCURandom, IsCopiedWithItsTwister) {
  MCURandom original(123);
  for (int i = 0; i < 700; ++i) original.GetRandom();
  MCURandom copy(original);
  MCURandom assigned = Congruential(1);
  assigned = original;
  for (int i = 0; i < 700; ++i) {
    const double expected = original.GetRandom();
    ASSERT_EQ(copy.GetRandom(), expected);
    ASSERT_EQ(assigned.GetRandom(), expected);
  }
  const MCURandom& same = copy;
  copy = same;
  EXPECT_EQ(copy.GetRandom(), original.GetRandom());
}

TEST(MCURandom, IsCopiedWithItsOtherModesAndTheHostsGenerator) {
  MCURandom congruential = Congruential(9);
  MCURandom copy;
  copy = congruential;
  EXPECT_FALSE(copy.GetUseTwister());
  EXPECT_EQ(copy.GetRandom(), congruential.GetRandom());
  bool isDeleted = false;
  Eighths host(&isDeleted);
  congruential.SetUserRNG(&host);
  EXPECT_EQ(MCURandom(congruential).GetUserRNG(), &host);
  copy = congruential;
  EXPECT_EQ(copy.GetUserRNG(), &host);
}

TEST(MCURandom, StaysAsItWasWhereThereIsNoMemoryForATwister) {
  const MCURandom twister(4);
  MCURandom uniform = Congruential(9);
  {
    const mctest::FailAllocation failure(1);
    EXPECT_THROW(uniform = twister, std::bad_alloc);
  }
  {
    const mctest::FailAllocation failure(1);
    EXPECT_THROW(uniform.SetUseTwister(true), std::bad_alloc);
  }
  EXPECT_FALSE(uniform.GetUseTwister());
  EXPECT_EQ(uniform.GetSeed(), 9U);
  EXPECT_EQ(uniform.GetRandom(), Congruential(9).GetRandom());
}

TEST(MCURandom, DrawsWithoutAllocating) {
  MCURandom uniform;
  const std::size_t before = mctest::AllocationCount();
  for (int i = 0; i < 2000; ++i) uniform.GetRandom();
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCURandom, ShowsSeedAndModes) {
  EXPECT_EQ(mctest::DisplayOf(MCURandom(18446744073709551615UL)),
            "\nMCURandom display start"
            "\nThe seed = 18446744073709551615"
            "\nPortable RNG indicator = true"
            "\nMersenne Twister RNG indicator = true"
            "\nMCURandom display end");
  MCURandom uniform(3);
  uniform.SetUsePortable(false);
  EXPECT_EQ(mctest::DisplayOf(uniform),
            "\nMCURandom display start"
            "\nThe seed = 3"
            "\nPortable RNG indicator = false"
            "\nMersenne Twister RNG indicator = false"
            "\nMCURandom display end");
}

}  // namespace
