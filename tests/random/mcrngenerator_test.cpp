// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrandomtwister.h"
#include "mcmath/random/mcrngbeta.h"
#include "mcmath/random/mcrngbinomial.h"
#include "mcmath/random/mcrngnormal.h"
#include "mcmath/random/mcrngucongruential.h"
#include "mcmath/random/mcrngutwister.h"
#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMath;
using MCMV::gMissingValue;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();
constexpr std::uint64_t kModulus = 2147483647;
constexpr std::uint64_t kMultiplier = 397204094;

// Numbers that are given, again and again.
class Scripted : public MCRNGenerator {
public:
  explicit Scripted(std::vector<double> numbers) : fNumbers(std::move(numbers)) {}

  bool SetSeed(double seed) override {
    fSeed = seed;
    return true;
  }
  double GetNext() override { return fNumbers[fCount++ % fNumbers.size()]; }

  double fSeed = 0.0;
  std::size_t fCount = 0;

private:
  std::vector<double> fNumbers;
};

TEST(MCRNGUCongruential, GivesTheTenThousandthNumberThatIntegersGive) {
  // 397204094^10000 * 20020126 mod 2147483647 by Python's pow().
  MCRNGUCongruential uniform;
  ASSERT_TRUE(uniform.SetSeed(20020126.0));
  for (int i = 1; i < 10000; ++i) uniform.GetNext();
  EXPECT_EQ(uniform.GetNext(), 857079744 * 4.656612873077393e-10);
}

TEST(MCRNGUCongruential, HasTheSeedOneWhenFresh) {
  MCRNGUCongruential fresh;
  EXPECT_EQ(fresh.GetNext(), 397204094 * 4.656612873077393e-10);
}

TEST(MCRNGUCongruential, TakesTheWholePartOfASeedModuloItsModulus) {
  const std::vector<std::pair<double, std::uint64_t>> cases = {
      {0.0, 1},
      {-0.0, 1},
      {0.9, 1},
      {kTiny, 1},
      {2147483647.0, 1},
      {-2147483647.0, 1},
      {5.99, 5},
      {-1.0, kModulus - 1},
      {-7.5, kModulus - 7},
      {2147483650.0, 3},
      // 2^62 and 2^1023 modulo 2^31 - 1.
      {4611686018427387904.0, 1},
      {8.98846567431158e+307, 1},
  };
  for (const auto& [seed, state] : cases) {
    MCRNGUCongruential uniform;
    ASSERT_TRUE(uniform.SetSeed(seed));
    const auto next = static_cast<double>(state * kMultiplier % kModulus);
    EXPECT_EQ(uniform.GetNext(), next * 4.656612873077393e-10) << seed;
  }
}

// All generators with a seed that isn't their first one.
template <class Generator>
void ExpectSeedsRefused() {
  for (const double seed : {kNaN, kInfinity, -kInfinity}) {
    Generator untouched;
    Generator generator;
    untouched.SetSeed(12.0);
    generator.SetSeed(12.0);
    untouched.GetNext();
    generator.GetNext();
    EXPECT_FALSE(generator.SetSeed(seed));
    EXPECT_EQ(generator.GetNext(), untouched.GetNext());
  }
}

TEST(MCRNGenerator, RefusesSeedsThatAreNotFinite) {
  ExpectSeedsRefused<MCRNGUCongruential>();
  ExpectSeedsRefused<MCRNGUTwister>();
  ExpectSeedsRefused<MCRNGNormal>();
  ExpectSeedsRefused<MCRNGBeta>();
  ExpectSeedsRefused<MCRNGBinomial>();
}

TEST(MCRNGUTwister, SeedsByTheWordsOfTheDouble) {
  // Exponent and significand of frexp(): 1 = 0.5 * 2^1, -0.75 * 2^-3, 1 + 2^-52.
  const std::vector<std::pair<double, std::array<unsigned long, 3>>> cases = {
      {0.0, {0, 0, 0}},
      {1.0, {1, 0x80000000UL, 0}},
      {-0.09375, {0x7ffffffdUL, 0xc0000000UL, 0}},
      {-1.0, {0x80000001UL, 0x80000000UL, 0}},
      {1.0 + 0x1p-52, {1, 0x80000000UL, 0x800}},
      {kLargest, {1024, 0xffffffffUL, 0xfffff800UL}},
      {-kTiny, {0x80000000UL - 1073UL, 0x80000000UL, 0}},
  };
  for (const auto& [seed, key] : cases) {
    MCRNGUTwister uniform;
    ASSERT_TRUE(uniform.SetSeed(seed));
    MCRandomTwister twister;
    twister.InitByArray(key.data(), key.size());
    for (int i = 0; i < 700; ++i) ASSERT_EQ(uniform.GetNext(), twister.GetRealOpen()) << seed;
  }
}

TEST(MCRNGUTwister, BeginsAnotherSequenceForEachSeed) {
  std::set<double> firsts;
  const std::vector<double> seeds = {0.0, 1.0, -1.0, 2.0, 0.5, 1.5, 1.0 + 0x1p-52, 3e10, kTiny,
                                     -kTiny, 1e300, kLargest, -kLargest,
                                     // Powers of two whose exponents have opposite bits.
                                     0.125, -0.125, -4.0, 0.03125};
  for (const double seed : seeds) {
    MCRNGUTwister uniform;
    ASSERT_TRUE(uniform.SetSeed(seed));
    firsts.insert(uniform.GetNext());
  }
  EXPECT_EQ(firsts.size(), seeds.size());
  MCRNGUTwister zero;
  MCRNGUTwister negative;
  MCRNGUTwister fresh;
  zero.SetSeed(0.0);
  negative.SetSeed(-0.0);
  const double first = fresh.GetNext();
  EXPECT_EQ(zero.GetNext(), first);
  EXPECT_EQ(negative.GetNext(), first);
}

// What generators of variates have in common, with two parameters that they take and all that they
// refuse.
template <class Generator>
struct Contract;

template <>
struct Contract<MCRNGNormal> {
  static constexpr std::array<double, 2> kFresh = {0.0, 1.0};
  static constexpr std::array<double, 2> kOther = {-3.0, 0.25};
  static std::vector<std::array<double, 2>> Refused() {
    return {{0, -1}, {0, -kTiny}, {0, kNaN}, {kNaN, 1}, {kInfinity, 1}, {0, kInfinity}};
  }
};

template <>
struct Contract<MCRNGBeta> {
  static constexpr std::array<double, 2> kFresh = {1.0, 1.0};
  static constexpr std::array<double, 2> kOther = {0.25, 30.0};
  static std::vector<std::array<double, 2>> Refused() {
    return {{0, 1}, {1, 0}, {-1, 1}, {1, 9e-301}, {kNaN, 1}, {1, kNaN}, {kInfinity, 1}};
  }
};

template <>
struct Contract<MCRNGBinomial> {
  static constexpr std::array<double, 2> kFresh = {1.0, 0.5};
  static constexpr std::array<double, 2> kOther = {1e6, 0.125};
  static std::vector<std::array<double, 2>> Refused() {
    return {{-1, 0.5},   {2.5, 0.5},  {1e16, 0.5}, {kInfinity, 0.5},
            {kNaN, 0.5}, {10, -1e-9}, {10, 1.001}, {10, kNaN}};
  }
};

template <class Generator>
class MCRNGVariates : public testing::Test {
protected:
  using Rules = Contract<Generator>;

  static constexpr double kA = Rules::kOther[0];
  static constexpr double kB = Rules::kOther[1];
};
using Generators = testing::Types<MCRNGNormal, MCRNGBeta, MCRNGBinomial>;
TYPED_TEST_SUITE(MCRNGVariates, Generators);

TYPED_TEST(MCRNGVariates, HasStandardParametersWhenFresh) {
  TypeParam fresh;
  TypeParam told(TestFixture::Rules::kFresh[0], TestFixture::Rules::kFresh[1]);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(fresh.GetNext(), told.GetNext());
}

TYPED_TEST(MCRNGVariates, TakesParametersOfConstructorSetterAndCallAlike) {
  TypeParam constructed(TestFixture::kA, TestFixture::kB);
  TypeParam set;
  TypeParam called;
  EXPECT_TRUE(set.SetParameters(TestFixture::kA, TestFixture::kB));
  for (int i = 0; i < 100; ++i) {
    const double expected = constructed.GetNext();
    EXPECT_EQ(set.GetNext(), expected);
    EXPECT_EQ(called.GetNext(TestFixture::kA, TestFixture::kB), expected);
  }
}

TYPED_TEST(MCRNGVariates, KeepsItsParametersWhenOthersAreUsedOnce) {
  TypeParam generator(TestFixture::kA, TestFixture::kB);
  generator.GetNext(TestFixture::Rules::kFresh[0], TestFixture::Rules::kFresh[1]);
  generator.SetSeed(4.0);
  TypeParam untouched(TestFixture::kA, TestFixture::kB);
  untouched.SetSeed(4.0);
  EXPECT_EQ(generator.GetNext(), untouched.GetNext());
}

TYPED_TEST(MCRNGVariates, RefusesParametersAndKeepsItsOwn) {
  for (const auto& [a, b] : TestFixture::Rules::Refused()) {
    TypeParam untouched(TestFixture::kA, TestFixture::kB);
    TypeParam generator(TestFixture::kA, TestFixture::kB);
    EXPECT_FALSE(generator.SetParameters(a, b)) << a << ' ' << b;
    EXPECT_EQ(generator.GetNext(a, b), gMissingValue) << a << ' ' << b;
    EXPECT_EQ(generator.GetNext(), untouched.GetNext());
    TypeParam fresh;
    EXPECT_EQ(TypeParam(a, b).GetNext(), fresh.GetNext());
  }
}

TYPED_TEST(MCRNGVariates, DependsOnTheStateOfTheUniformGeneratorAlone) {
  MCRNGUTwister shared;
  TypeParam generator(TestFixture::kA, TestFixture::kB);
  ASSERT_TRUE(generator.SetURNGenerator(shared));
  for (int i = 0; i < 7; ++i) generator.GetNext();
  MCRNGUTwister copy(shared);
  TypeParam other(TestFixture::kA, TestFixture::kB);
  ASSERT_TRUE(other.SetURNGenerator(copy));
  for (int i = 0; i < 100; ++i) EXPECT_EQ(generator.GetNext(), other.GetNext());
}

TYPED_TEST(MCRNGVariates, SeedsTheGeneratorThatItDrawsFrom) {
  Scripted script({0.5});
  TypeParam generator;
  ASSERT_TRUE(generator.SetURNGenerator(script));
  EXPECT_TRUE(generator.SetSeed(8.0));
  EXPECT_EQ(script.fSeed, 8.0);
}

TYPED_TEST(MCRNGVariates, DoesNotDrawFromItself) {
  TypeParam generator;
  EXPECT_FALSE(generator.SetURNGenerator(generator));
  TypeParam untouched;
  EXPECT_EQ(generator.GetNext(), untouched.GetNext());
}

TYPED_TEST(MCRNGVariates, PassesOverNumbersOutsideTheOpenInterval) {
  MCRNGUTwister good;
  std::vector<double> clean;
  std::vector<double> mixed;
  for (int i = 0; i < 50; ++i) {
    const double u = good.GetNext();
    clean.push_back(u);
    for (const double bad : {0.0, 1.0, -0.5, 7.0, kNaN, kInfinity}) mixed.push_back(bad);
    mixed.push_back(u);
  }
  Scripted cleanScript(clean);
  Scripted mixedScript(mixed);
  TypeParam expected(TestFixture::kA, TestFixture::kB);
  TypeParam actual(TestFixture::kA, TestFixture::kB);
  expected.SetURNGenerator(cleanScript);
  actual.SetURNGenerator(mixedScript);
  for (int i = 0; i < 10; ++i) {
    const double variate = expected.GetNext();
    EXPECT_TRUE(std::isfinite(variate));
    EXPECT_EQ(actual.GetNext(), variate);
  }
}

TYPED_TEST(MCRNGVariates, HasNoNumberWhereTheUniformGeneratorHasNone) {
  for (const double constant : {0.0, 1.0, kNaN}) {
    Scripted script({constant});
    for (const auto& parameters : {TestFixture::Rules::kFresh, TestFixture::Rules::kOther}) {
      TypeParam generator(parameters[0], parameters[1]);
      generator.SetURNGenerator(script);
      script.fCount = 0;
      EXPECT_EQ(generator.GetNext(), gMissingValue) << constant;
      // 1000 in a row are enough to tell, for each of the few numbers that a first round takes.
      EXPECT_LE(script.fCount, 6000U) << constant;
    }
  }
}

TYPED_TEST(MCRNGVariates, EndsWhateverConstantTheUniformGeneratorGives) {
  for (const double constant : {kTiny, 1e-300, 0.1, 0.5, 0.9, 0.999999, 1.0 - 0x1p-53}) {
    Scripted script({constant});
    TypeParam generator(TestFixture::kA, TestFixture::kB);
    generator.SetURNGenerator(script);
    EXPECT_FALSE(std::isnan(generator.GetNext())) << constant;
  }
}

TEST(MCRNGNormal, IsItsMeanWithoutDeviation) {
  MCRNGNormal normal(2.5, 0.0);
  EXPECT_EQ(normal.GetNext(), 2.5);
}

TEST(MCRNGNormal, EndsAtTheLargestDouble) {
  MCRNGNormal normal(0.0, kLargest);
  std::set<double> extremes;
  for (int i = 0; i < 1000; ++i) {
    const double x = normal.GetNext();
    ASSERT_TRUE(std::isfinite(x));
    if (std::fabs(x) == kLargest) extremes.insert(x);
  }
  EXPECT_EQ(extremes, (std::set<double>{-kLargest, kLargest}));
}

TEST(MCRNGBinomial, IsCertainAtTheEnds) {
  MCRNGBinomial binomial;
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(binomial.GetNext(0.0, 0.3), 0.0);
    EXPECT_EQ(binomial.GetNext(50.0, 0.0), 0.0);
    EXPECT_EQ(binomial.GetNext(50.0, 1.0), 50.0);
    EXPECT_EQ(binomial.GetNext(9007199254740992.0, 1.0), 9007199254740992.0);
    EXPECT_EQ(binomial.GetNext(9007199254740992.0, 1e-30), 0.0);
  }
}

TEST(MCRNGBeta, GoesToTheEndsForTinyParameters) {
  MCRNGBeta beta(1e-300, 1e-300);
  int nOnes = 0;
  for (int i = 0; i < 400; ++i) {
    const double x = beta.GetNext();
    ASSERT_TRUE(x == 0.0 || x == 1.0) << x;
    nOnes += x == 1.0 ? 1 : 0;
  }
  // Binomial with mean 200, standard deviation 10.
  EXPECT_NEAR(nOnes, 200, 40);
}

}  // namespace
