// SPDX-License-Identifier: Apache-2.0
//
// The distributions of all variates, at fixed seeds. Each statistic exceeds its limit with
// probability 1e-4 if the distribution is right (support/goodnessoffit.h).
#include "mcmath/random/mcrandomvalues.h"
#include "mcmath/random/mcrngbeta.h"
#include "mcmath/random/mcrngbinomial.h"
#include "mcmath/random/mcrngnormal.h"
#include "mcmath/random/mcrngucongruential.h"
#include "mcmath/random/mcrngutwister.h"
#include "mcmath/random/mcurandom.h"
#include "support/goodnessoffit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace MCCommonMath;
using namespace mctest;
using Numbers = std::vector<double>;

constexpr int kDraws = 40000;

template <class Draw>
Numbers Sample(int n, Draw draw) {
  Numbers numbers;
  numbers.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) numbers.push_back(draw());
  return numbers;
}

/// A distribution of numbers that are all different, with its first two moments.
struct Law {
  std::string name;
  std::function<double()> draw;
  std::function<long double(long double)> cdf;
  double mean;
  double variance;
};

void ExpectLaw(const Law& law) {
  const Numbers numbers = Sample(kDraws, law.draw);
  EXPECT_LT(KolmogorovSmirnov(numbers, law.cdf), kKolmogorovLimit) << law.name;
  EXPECT_LT(std::fabs(StandardisedMean(numbers, law.mean)), kNormalLimit) << law.name;
  Numbers squares(numbers);
  for (double& x : squares) x = (x - law.mean) * (x - law.mean);
  EXPECT_LT(std::fabs(StandardisedMean(squares, law.variance)), kNormalLimit) << law.name;
}

// Counts of pairs of successive numbers in 32 by 32 squares, and of single ones by their last bits.
void ExpectUniform(const std::string& name, const std::function<double()>& draw) {
  ExpectLaw({name, draw, [](long double x) { return x; }, 0.5, 1.0 / 12.0});
  Numbers squares(1024);
  Numbers lastBits(256);
  for (int i = 0; i < kDraws; ++i) {
    const double first = draw();
    const double second = draw();
    ASSERT_TRUE(first > 0.0 && first < 1.0) << name;
    squares[static_cast<std::size_t>(first * 32) * 32 + static_cast<std::size_t>(second * 32)] += 1;
    lastBits[static_cast<std::size_t>(first * 2147483647.0) % 256] += 1;
  }
  EXPECT_LT(ChiSquareOfCounts(squares, Numbers(1024, kDraws / 1024.0)), kUpperNormalLimit) << name;
  EXPECT_LT(ChiSquareOfCounts(lastBits, Numbers(256, kDraws / 256.0)), kUpperNormalLimit) << name;
}

TEST(Variates, AreUniformInAllModes) {
  for (const bool useTwister : {true, false}) {
    MCURandom uniform(2024);
    ASSERT_TRUE(uniform.SetUseTwister(useTwister));
    ExpectUniform(useTwister ? "twister" : "congruential",
                  [&uniform] { return uniform.GetRandom(); });
  }
  MCRNGUTwister twister;
  ExpectUniform("MCRNGUTwister", [&twister] { return twister.GetNext(); });
  MCRNGUCongruential congruential;
  ExpectUniform("MCRNGUCongruential", [&congruential] { return congruential.GetNext(); });
}

TEST(Variates, OfSingleLawsHaveTheirDistributions) {
  MCRandomValues values;
  values.SetSeed(31);
  const auto chi = [](long double df, long double x) { return GammaCdf(df / 2, x / 2); };
  const auto f = [](long double a, long double b, long double x) {
    return BetaCdf(a / 2, b / 2, a * x / (a * x + b));
  };
  const std::vector<Law> laws = {
      {"uniform", [&] { return values.RVUni(-3.0, 5.0); },
       [](long double x) { return (x + 3) / 8; }, 1.0, 64.0 / 12.0},
      {"exponential", [&] { return values.RVExp(2.5); },
       [](long double x) { return -std::expm1(-x / 2.5L); }, 2.5, 6.25},
      {"standard normal", [&] { return values.RVSNor(); }, NormalCdf, 0.0, 1.0},
      {"normal", [&] { return values.RVNor(10.0, 3.0); },
       [](long double x) { return NormalCdf((x - 10) / 3); }, 10.0, 9.0},
      {"chi-square 0.5", [&] { return values.RVChi(0.5); },
       [&](long double x) { return chi(0.5L, x); }, 0.5, 1.0},
      {"chi-square 7", [&] { return values.RVChi(7.0); }, [&](long double x) { return chi(7, x); },
       7.0, 14.0},
      {"F 3, 12", [&] { return values.RVAuxF(3.0, 12.0); },
       [&](long double x) { return f(3, 12, x); }, 1.2, 2.0 * 144 * 13 / (3.0 * 100 * 8)},
      {"F 40, 20", [&] { return values.RVAuxF(40.0, 20.0); },
       [&](long double x) { return f(40, 20, x); }, 20.0 / 18, 2.0 * 400 * 58 / (40.0 * 324 * 16)},
  };
  for (const Law& law : laws) ExpectLaw(law);
}

TEST(Variates, OfGammasHaveTheirDistributions) {
  MCRandomValues values;
  values.SetSeed(32);
  for (const double shape : {0.02, 0.3, 0.999, 1.0, 1.5, 4.0, 30.0, 500.0}) {
    ExpectLaw({"gamma " + std::to_string(shape), [&] { return values.RVGam(shape, 4.0); },
               [&](long double x) { return GammaCdf(shape, x / 4); }, 4.0 * shape, 16.0 * shape});
  }
}

TEST(Variates, OfBetasHaveTheirDistributions) {
  MCRNGBeta beta;
  beta.SetSeed(33.0);
  const std::vector<std::vector<double>> cases = {{0.5, 0.5}, {0.1, 0.2}, {1.0, 1.0},  {2.0, 3.0},
                                                  {0.3, 4.0}, {8.0, 1.0}, {60.0, 25.0}};
  for (const auto& parameters : cases) {
    const double a = parameters[0];
    const double b = parameters[1];
    ExpectLaw({"beta " + std::to_string(a) + ' ' + std::to_string(b),
               [&] { return beta.GetNext(a, b); }, [&](long double x) { return BetaCdf(a, b, x); },
               a / (a + b), a * b / ((a + b) * (a + b) * (a + b + 1.0))});
  }
}

// The next numbers of the uniform generators themselves are not those that variates are drawn from.
TEST(Variates, OfTheNormalGeneratorAreNormalFromAnyUniformGenerator) {
  MCRNGUCongruential congruential;
  MCRNGUTwister twister;
  MCRNGNormal normal(-1.0, 2.0);
  for (MCRNGenerator* uniform :
       {static_cast<MCRNGenerator*>(&congruential), static_cast<MCRNGenerator*>(&twister)}) {
    ASSERT_TRUE(normal.SetURNGenerator(*uniform));
    ExpectLaw({"normal", [&] { return normal.GetNext(); },
               [](long double x) { return NormalCdf((x + 1) / 2); }, -1.0, 4.0});
  }
}

TEST(Variates, OfTheNormalGeneratorHaveIndependentTails) {
  MCRNGNormal normal;
  normal.SetSeed(34.0);
  // Cells of width 1/2 from -4 to 4 with open ends, and pairs of signs.
  Numbers counts(18);
  Numbers expected;
  for (int i = 0; i < 18; ++i) {
    const long double low = i == 0 ? -40.0L : (i - 9) / 2.0L;
    const long double high = i == 17 ? 40.0L : (i - 8) / 2.0L;
    expected.push_back(static_cast<double>(NormalCdf(high) - NormalCdf(low)) * 10 * kDraws);
  }
  Numbers signs(4);
  double before = normal.GetNext();
  for (int i = 0; i < 10 * kDraws; ++i) {
    const double x = normal.GetNext();
    counts[static_cast<std::size_t>(std::clamp(std::floor(x * 2) + 9, 0.0, 17.0))] += 1;
    signs[(x > 0.0 ? 1U : 0U) + (before > 0.0 ? 2U : 0U)] += 1;
    before = x;
  }
  EXPECT_LT(ChiSquareOfCounts(counts, expected), kUpperNormalLimit);
  EXPECT_LT(ChiSquareOfCounts(signs, Numbers(4, 2.5 * kDraws)), kUpperNormalLimit);
}

TEST(Variates, OfBinomialsHaveTheirProbabilities) {
  MCRNGBinomial binomial;
  binomial.SetSeed(35.0);
  const std::vector<std::vector<double>> cases = {
      // Inversion; both sides of n p = 10, and of p = 1/2; rejection.
      {1, 0.3},      {12, 0.5},     {60, 0.05},     {1000, 0.001}, {199, 0.05}, {201, 0.05},
      {20, 0.5},     {20, 0.51},    {40, 0.3},      {40, 0.9},     {100, 0.5},  {100, 0.2},
      {1000, 0.012}, {1000, 0.999}, {100000, 0.37}, {1e6, 1e-5},
  };
  for (const auto& parameters : cases) {
    const double n = parameters[0];
    const double p = parameters[1];
    const double deviation = std::sqrt(n * p * (1 - p));
    // Cells from 8 deviations below the mean; the last takes what is above.
    const double first = std::max(0.0, std::floor(n * p - 8 * deviation));
    const double last = std::min(n, std::ceil(n * p + 8 * deviation + 10));
    Numbers expected;
    for (double k = first; k <= last; k += 1) {
      expected.push_back(static_cast<double>(BinomialProbability(n, p, k)) * kDraws);
    }
    Numbers counts(expected.size());
    for (int i = 0; i < kDraws; ++i) {
      const double k = binomial.GetNext(n, p);
      ASSERT_EQ(k, std::floor(k));
      ASSERT_TRUE(k >= first && k <= last) << n << ' ' << p << ' ' << k;
      counts[static_cast<std::size_t>(k - first)] += 1;
    }
    EXPECT_LT(ChiSquareOfCounts(counts, expected), kUpperNormalLimit) << n << ' ' << p;
  }
}

TEST(Variates, OfHugeBinomialsAreNormalWithTheirMoments) {
  MCRNGBinomial binomial;
  binomial.SetSeed(36.0);
  for (const double n : {1e9, 1e12, 9007199254740992.0}) {
    for (const double p : {0.5, 0.25, 0.9}) {
      const double mean = n * p;
      const double deviation = std::sqrt(n * p * (1 - p));
      // Steps of 1 are less than 1e-4 deviations, and the skewness is below 1e-4.
      ExpectLaw({"binomial", [&] { return binomial.GetNext(n, p) - mean; },
                 [&](long double x) { return NormalCdf((x + 0.5L) / deviation); }, 0.0,
                 deviation * deviation});
    }
  }
}

TEST(Variates, OfHugeGammasAreNormalWithTheirMoments) {
  MCRandomValues values;
  values.SetSeed(37);
  for (const double shape : {1e8, 1e12, 1e20}) {
    const double deviation = std::sqrt(shape);
    // The skewness, 2 / deviation, moves the distribution function by less than 3e-5.
    ExpectLaw({"gamma", [&] { return (values.RVGam(shape, 1.0) - shape) / deviation; }, NormalCdf,
               0.0, 1.0});
  }
  // Here a deviation is less than the steps of doubles.
  for (const double shape : {1e100, 1e300}) {
    EXPECT_NEAR(values.RVGam(shape, 1.0) / shape, 1.0, 1e-14);
  }
}

TEST(Variates, OfSharesAndRatiosOfHugeGammasAreNormalWithTheirMoments) {
  MCRNGBeta beta;
  beta.SetSeed(38.0);
  MCRandomValues values;
  values.SetSeed(39);
  // Of deviations below 1e-13, which steps of doubles near 1 cut in a hundred parts or more.
  constexpr double kBetaDeviation = 3.5355339059327376e-14;
  constexpr double kFDeviation = 6.3245553203367587e-14;
  ExpectLaw({"beta", [&] { return (beta.GetNext(1e26, 1e26) - 0.5) / kBetaDeviation; }, NormalCdf,
             0.0, 1.0});
  ExpectLaw(
      {"F", [&] { return (values.RVAuxF(1e27, 1e27) - 1.0) / kFDeviation; }, NormalCdf, 0.0, 1.0});
}

TEST(Variates, OfTheSmallestAndLargestParametersAreNumbers) {
  MCRandomValues values;
  constexpr double kLargest = std::numeric_limits<double>::max();
  for (const double a : {1e-300, 1e-10, 1.0, 1e10, kLargest}) {
    for (const double b : {1e-300, 1e-10, 1.0, 1e10, kLargest}) {
      for (int i = 0; i < 20; ++i) {
        for (const double x : {values.RVGam(a, b), values.RVAuxF(a, b), values.RVExp(a)}) {
          ASSERT_TRUE(x >= 0.0 && x <= kLargest) << a << ' ' << b << ' ' << x;
        }
      }
    }
  }
}

}  // namespace
