// SPDX-License-Identifier: Apache-2.0
// Every function for arguments at both ends of the doubles, crossed: an answer in the range,
// without long loops. Values by python3-mpmath at 50 digits.
#include "mcmath/mcdistfun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {
using D = MCCommonMath::MCDistFun;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kDigits = 2e-15;

// Arguments whose products, quotients and sums leave the range of doubles.
const std::vector<double> kArguments{5e-324, 1e-310, 1e-300, 1e-100, 1e-10, 0.3,   0.5,   0.75,
                                     1.0,    2.0,    7.5,    100.0,  1e5,   1e10,  1e15,  1e17,
                                     1e20,   1e100,  1e155,  1e200,  1e300, 1e306, 1e308, 1.7e308};
const std::vector<double> kLevels{5e-324, 1e-310, 1e-100,      1e-10,        0.3,
                                  0.5,    0.51,   1.0 - 1e-10, 1.0 - 0x1p-53};

bool IsProbability(double p) {
  return p >= 0.0 && p <= 1.0;
}

bool IsAtLeastZero(double x) {
  return x >= 0.0;
}
}  // namespace

TEST(MCDistFunHostile, GammaRatiosAreProbabilities) {
  long error = 0;
  for (const double a : kArguments) {
    for (const double x : kArguments) {
      EXPECT_TRUE(IsProbability(D::gammad(x, a, false, error))) << x << ' ' << a;
      EXPECT_TRUE(IsProbability(D::gammad(x, a, true, error))) << x << ' ' << a;
      EXPECT_TRUE(IsProbability(D::CdfChi(x, a))) << x << ' ' << a;
      EXPECT_TRUE(IsProbability(D::SigChi(x, a))) << x << ' ' << a;
    }
  }
  // The lower tail is 1 less what no double near 1 shows.
  EXPECT_EQ(D::gammad(0.1, 5e-324, false, error), 1.0);
  EXPECT_EQ(D::gammad(1e308, 0.75, false, error), 1.0);
  EXPECT_EQ(D::gammad(1.0, 1e306, false, error), 0.0);
}

TEST(MCDistFunHostile, BetaRatiosAreProbabilities) {
  long error = 0;
  for (const double a : kArguments) {
    for (const double b : kArguments) {
      for (const double x : kLevels) {
        EXPECT_TRUE(IsProbability(D::cdfbet(x, a, b, error))) << x << ' ' << a << ' ' << b;
      }
      const double mean = a / (a + b);
      EXPECT_TRUE(IsProbability(D::cdfbet(mean, a, b, error)) || !IsProbability(mean));
      EXPECT_TRUE(IsProbability(D::CdfF(1.0, a, b))) << a << ' ' << b;
      EXPECT_TRUE(IsProbability(D::SigF(1e-300, a, b))) << a << ' ' << b;
      EXPECT_TRUE(IsProbability(D::SigF(1e300, a, b))) << a << ' ' << b;
      EXPECT_TRUE(IsProbability(D::CdfT(a, b))) << a << ' ' << b;
      EXPECT_TRUE(IsProbability(D::SigT(a, b))) << a << ' ' << b;
    }
  }
  EXPECT_NEAR(D::cdfbet(0.5, 1e-300, 1e-300, error), 0.5, kDigits);
  EXPECT_NEAR(D::cdfbet(1e-320, 1e-10, 1e-10, error), 0.49999996315863931, kDigits);
}

TEST(MCDistFunHostile, FOfManyDegreesIsChiSquare) {
  // 2 degrees: 1 - exp(-f).
  for (const double d2 : {1e88, 1e92, 1e150, 1e300}) {
    EXPECT_NEAR(D::CdfF(1.0, 2.0, d2), 0.63212055882855768, kDigits) << d2;
    EXPECT_NEAR(D::SigF(5.0, 7.0, d2) / 1.1184430509074327e-05, 1.0, kDigits) << d2;
    EXPECT_NEAR(D::CdfF(1.0, d2, 2.0), 0.36787944117144232, kDigits) << d2;
  }
}

TEST(MCDistFunHostile, BinomialOfMoreTrialsThanDoublesCount) {
  long error = 0;
  for (const double trials : kArguments) {
    const double n = std::floor(trials);
    if (n < 1.0) continue;
    for (const double p : {5e-324, 1e-310, 1e-300, 1e-155, 1e-20, 50.0 / n, 0.5, 1.0 - 1e-15,
                           1.0 - 0x1p-52, 1.0 - 0x1p-53}) {
      if (p > 1.0) continue;
      for (const double k : {0.0, 1.0, 100.0, n * p, n * p + 1.0, n / 2.0, n - 100.0, n - 1.0}) {
        EXPECT_TRUE(IsProbability(D::CdfBin(k, n, p, error))) << k << ' ' << n << ' ' << p;
        const double term = D::PdfBin(std::floor(k), n, p, error);
        EXPECT_TRUE(IsProbability(term)) << k << ' ' << n << ' ' << p;
      }
      for (const double q : kLevels) {
        EXPECT_TRUE(IsAtLeastZero(D::IdfBin(q, n, p, error))) << q << ' ' << n << ' ' << p;
      }
    }
  }
  // 16 failures at least, of which 15.99 are expected: neighbours of n aren't doubles.
  const double tail = D::CdfBin(1.8e16 - 16.0, 1.8e16, 1.0 - 0x8p-53, error);
  EXPECT_NEAR(tail, 0.53198576544296442, kDigits);
  EXPECT_NEAR(D::CdfBin(100.0, 1e200, 1.01e-198, error), 0.48676720808145486, 4.0 * kDigits);
  EXPECT_NEAR(D::PdfBin(5e299, 1e300, 0.5, error) / 7.9788456080286533e-151, 1.0, kDigits);
}

TEST(MCDistFunHostile, InversesEnd) {
  long error = 0;
  for (const double a : kArguments) {
    for (const double p : kLevels) {
      EXPECT_TRUE(IsAtLeastZero(D::IdfChi(p, a))) << p << ' ' << a;
      EXPECT_FALSE(std::isnan(D::IdfT(p, a))) << p << ' ' << a;
      for (const double b : kArguments) {
        EXPECT_TRUE(IsAtLeastZero(D::idfchb(p, a, b, error))) << p << ' ' << a << ' ' << b;
        EXPECT_TRUE(IsAtLeastZero(D::IdfF(p, a, b))) << p << ' ' << a << ' ' << b;
        EXPECT_TRUE(IsProbability(D::betinv(p, a, b))) << p << ' ' << a << ' ' << b;
      }
    }
  }
  // Far more than some hundred factors of 64 between the start and the quantile.
  EXPECT_NEAR(D::idfchb(0.3, 1e100, 1e-300, error) / 1e100, 1.0, 1e-13);
  EXPECT_NEAR(D::idfchb(0.3, 0.01, 1e300, error) / D::IdfChi(0.3, 0.01), 1.0, 1e-13);
  EXPECT_NEAR(D::IdfChi(0.3, 1e306) / 1e306, 1.0, 1e-13);
}

TEST(MCDistFunHostile, OtherFunctionsStayFinite) {
  long error = 0;
  for (const double n : kArguments) {
    for (const double k : kArguments) {
      if (k <= n) {
        EXPECT_TRUE(std::isfinite(D::dnlbnc(n, k, error))) << n << ' ' << k;
      }
    }
  }
  // The difference overflows, but not the deviate.
  EXPECT_NEAR(D::CdfNorm(1e308, -1e308, 1e308), 0.97724986805182079, kDigits);
  EXPECT_EQ(D::CdfNorm(kInf, -1e308, 1e308), 1.0);
}
