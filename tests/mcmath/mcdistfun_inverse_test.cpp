// SPDX-License-Identifier: Apache-2.0
// Inverse distribution functions: both ways, monotone, and from any start.
#include "mcmath/mcdistfun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace {
using D = MCCommonMath::MCDistFun;

std::vector<double> Levels() {
  std::vector<double> levels;
  for (const double exponent : {-300.0, -100.0, -30.0, -10.0, -5.0, -3.0}) {
    levels.push_back(std::pow(10.0, exponent));
  }
  for (int i = 1; i < 100; ++i) levels.push_back(0.01 * i);
  for (const double rest : {1e-3, 1e-6, 1e-10, 1e-15}) levels.push_back(1.0 - rest);
  return levels;
}

struct Pair {
  const char* fName;
  std::function<double(double)> fValue;  // lower tail
  std::function<double(double)> fUpper;  // upper tail
  std::function<double(double)> fInverse;
};

// The parameters vary with `a` and `b`.
std::vector<Pair> Pairs(double a, double b) {
  return {
      {"normal", [](double x) { return D::prbnrm(x); }, [](double x) { return D::prbnrm(-x); },
       [](double p) { return D::probit(p); }},
      {"chi-square", [a](double x) { return D::CdfChi(x, a); },
       [a](double x) { return D::SigChi(x, a); }, [a](double p) { return D::IdfChi(p, a); }},
      {"t", [a](double x) { return D::CdfT(x, a); }, [a](double x) { return D::CdfT(-x, a); },
       [a](double p) { return D::IdfT(p, a); }},
      {"F", [a, b](double x) { return D::CdfF(x, a, b); },
       [a, b](double x) { return D::SigF(x, a, b); },
       [a, b](double p) { return D::IdfF(p, a, b); }},
  };
}

// A relative error of x of 2^-53 moves a tail by 2^-53 d ln(tail) / d ln(x) of itself, and the tail
// was rounded; 1e-13 is what an inverse may be off itself.
void ExpectTail(double tail, double target, double rate, const std::string& where) {
  EXPECT_NEAR(tail / target, 1.0, 1e-14 + 1e-13 * std::fabs(rate)) << where;
}

double Rate(const std::function<double(double)>& tail, double x) {
  const double h = 1e-6;
  return std::log(tail(x * (1.0 + h)) / tail(x * (1.0 - h))) / (2.0 * h);
}

TEST(MCDistFunInverse, GivesTheTailBack) {
  for (const double a : {0.5, 1.0, 2.0, 3.0, 10.0, 77.5, 1000.0, 1e5}) {
    for (const double b : {0.7, 4.0, 300.0}) {
      for (const Pair& pair : Pairs(a, b)) {
        for (const double p : Levels()) {
          const double x = pair.fInverse(p);
          // Beyond these, x is next to the ends of doubles or 0.
          if (std::fabs(x) < 1e-290 || std::fabs(x) > 1e290) continue;
          const std::string where = std::string(pair.fName) + " a " + std::to_string(a) + " b " +
                                    std::to_string(b) + " p " + std::to_string(p) + " x " +
                                    std::to_string(x);
          const bool isLower = p <= 0.5;
          const auto& tail = isLower ? pair.fValue : pair.fUpper;
          ExpectTail(tail(x), isLower ? p : 1.0 - p, Rate(tail, x), where);
        }
      }
    }
  }
}

TEST(MCDistFunInverse, RisesWithTheLevel) {
  for (const double a : {0.5, 1.0, 3.0, 77.5, 1e4}) {
    for (const Pair& pair : Pairs(a, 5.0)) {
      double before = -HUGE_VAL;
      for (const double p : Levels()) {
        const double x = pair.fInverse(p);
        EXPECT_GE(x, before) << pair.fName << ' ' << a << ' ' << p;
        before = x;
      }
    }
  }
}

TEST(MCDistFunInverse, OfBetaGivesTheRatioBackFromBothEnds) {
  long error = 0;
  for (const double a : {0.3, 1.0, 2.0, 40.0, 3000.0}) {
    for (const double b : {0.2, 1.0, 5.0, 500.0}) {
      double before = 0.0;
      for (const double p : Levels()) {
        const double x = D::IdfBeta(p, a, b);
        EXPECT_EQ(x, D::betinv(p, a, b));
        EXPECT_GE(x, before);
        before = x;
        const auto lower = [&](double y) { return D::cdfbet(y, a, b, error); };
        const auto upper = [&](double y) { return D::cdfbet(1.0 - y, b, a, error); };
        if (p <= 0.5 && x > 1e-290 && x < 0.9) ExpectTail(lower(x), p, Rate(lower, x), "lower");
        // Only there is 1 - x about as exact as x.
        if (p > 0.5 && x > 0.1 && x < 0.9) ExpectTail(upper(x), 1.0 - p, Rate(upper, x), "upper");
      }
    }
  }
}

TEST(MCDistFunInverse, IsSymmetricWhereTheDistributionIs) {
  // 1 - p is exact for these.
  for (const double p : {0x1p-53, 0x1p-40, 0x1p-10, 0.25, 0.375}) {
    EXPECT_EQ(D::probit(p), -D::probit(1.0 - p)) << p;
    EXPECT_EQ(D::IdfT(p, 7.0), -D::IdfT(1.0 - p, 7.0)) << p;
  }
  // One degree of freedom: tan, exactly 1 at the quartile but for rounding.
  EXPECT_NEAR(D::IdfT(0.75, 1.0), 1.0, 1e-15);
  EXPECT_NEAR(D::IdfT(1e-20, 1.0) * 1e-20, -0.3183098861837907, 1e-15);
}

TEST(MCDistFunInverse, OfChiSquareConvergesFromAnyStart) {
  long error = 0;
  for (const double df : {0.5, 4.0, 300.0}) {
    for (const double p : {1e-200, 1e-5, 0.3, 0.9, 1.0 - 1e-12}) {
      const double expected = D::veskidfchi(p, df, error);
      if (expected < 1e-290) continue;  // next to the end of doubles, or 0
      for (const double start : {1e-300, 1e-10, 0.5, 20.0, 1e4, 1e300}) {
        EXPECT_NEAR(D::idfchb(p, df, start, error) / expected, 1.0, 1e-13)
            << df << ' ' << p << ' ' << start;
      }
      // What is no start is replaced by the function's own.
      for (const double start : {0.0, -3.0, HUGE_VAL}) {
        EXPECT_EQ(D::idfchb(p, df, start, error), expected);
      }
    }
  }
}

TEST(MCDistFunInverse, OfBinomialIsTheLeastCountThatReachesTheLevel) {
  long error = 0;
  for (const double n : {1.0, 2.0, 7.0, 100.0, 12345.0, 1e9, 1e15}) {
    for (const double p : {1e-9, 0.02, 0.5, 0.9, 1.0 - 1e-10}) {
      for (const double q : {1e-300, 1e-10, 0.01, 0.5, 0.99, 1.0 - 1e-13}) {
        const double k = D::IdfBin(q, n, p, error);
        EXPECT_EQ(k, std::floor(k));
        EXPECT_GE(D::CdfBin(k, n, p, error), q) << n << ' ' << p << ' ' << q;
        EXPECT_LT(D::CdfBin(k - 1.0, n, p, error), q) << n << ' ' << p << ' ' << q;
      }
    }
  }
  // Of a fair coin thrown twice.
  EXPECT_EQ(D::IdfBin(0.25, 2.0, 0.5, error), 0.0);
  EXPECT_EQ(D::IdfBin(0.26, 2.0, 0.5, error), 1.0);
  EXPECT_EQ(D::IdfBin(1.0, 2.0, 0.5, error), 2.0);
}

TEST(MCDistFun, IsMonotoneAndItsTailsAddUpToOne) {
  for (const double a : {0.2, 1.0, 3.5, 23.9, 24.1, 45.0, 1000.0}) {
    double before = 0.0;
    for (double x = 0.01; x < 3.0 * a + 20.0; x *= 1.05) {
      const double lower = D::CdfChi(x, a);
      EXPECT_GE(lower, before - 1e-15) << a << ' ' << x;
      EXPECT_NEAR(lower + D::SigChi(x, a), 1.0, 9e-16);
      EXPECT_NEAR(D::CdfF(x, a, 7.0) + D::SigF(x, a, 7.0), 1.0, 9e-16);
      EXPECT_NEAR(D::CdfT(x, a) + D::CdfT(-x, a), 1.0, 9e-16);
      EXPECT_EQ(D::SigT(x, a), 2.0 * D::CdfT(-x, a));
      before = lower;
    }
  }
}
}  // namespace
