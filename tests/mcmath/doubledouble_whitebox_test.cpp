// SPDX-License-Identifier: Apache-2.0
// Numbers of twice the precision against those of four times the precision of float: 113 bits, so
// that every sum and product of two doubles of near size is exact.
#include "mcmath/detail/doubledouble.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {
using MCCommonMath::detail::DoubleDouble;
namespace detail = MCCommonMath::detail;
__extension__ typedef __float128 Quad;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kLn2 = 0.6931471805599453;

Quad Of(const DoubleDouble& x) {
  return static_cast<Quad>(x.fHigh) + static_cast<Quad>(x.fLow);
}

// |actual - expected| over |expected|.
double Error(const DoubleDouble& actual, Quad expected) {
  const double size = std::fabs(static_cast<double>(expected));
  return std::fabs(static_cast<double>(Of(actual) - expected)) / (size > 0.0 ? size : 1.0);
}

// ln x by 2 artanh((m-1)/(m+1)), x = 2^k m.
Quad Series(Quad m) {
  const Quad y = (m - 1) / (m + 1);
  Quad power = y;
  Quad sum = 0;
  for (int i = 0; i < 80; ++i) {
    sum += power / (2 * i + 1);
    power *= y * y;
  }
  return 2 * sum;
}

Quad LogOf(const DoubleDouble& x) {
  int k = 0;
  std::frexp(x.fHigh, &k);
  const Quad m = static_cast<Quad>(std::ldexp(x.fHigh, -k)) + std::ldexp(x.fLow, -k);
  return k * Series(2) + Series(m);
}

// ln(1+x) - x for |x| <= 2^-5 by its power series.
Quad Log1pMinusOf(Quad x) {
  Quad sum = 0;
  Quad power = -x;
  for (int i = 2; i < 40; ++i) {
    power *= -x;
    sum -= power / i;
  }
  return sum;
}

// Doubles of both signs whose sizes spread over 2^-spread to 2^spread.
class Draw {
public:
  double Size(double spread) {
    std::uniform_real_distribution<double> exponent(-spread, spread);
    return std::exp2(exponent(fGenerator));
  }
  double Signed(double spread) {
    const double size = Size(spread);
    return fGenerator() % 2 == 0 ? size : -size;
  }
  DoubleDouble Pair(double spread) {
    const double high = Signed(spread);
    return detail::QuickSum(high, high * 0x1p-54 * (Size(1.0) - 1.0));
  }

private:
  std::mt19937_64 fGenerator{20240607};
};
constexpr int kDraws = 20000;

void ExpectNormalized(const DoubleDouble& x) {
  EXPECT_EQ(x.fHigh + x.fLow, x.fHigh);
}
}  // namespace

TEST(DoubleDouble, SumsAndProductsOfTwoDoublesAreExact) {
  Draw draw;
  for (int i = 0; i < kDraws; ++i) {
    const double a = draw.Signed(20.0);
    const double b = draw.Signed(20.0);
    const Quad sum = static_cast<Quad>(a) + b;
    ASSERT_EQ(Error(detail::ExactSum(a, b), sum), 0.0);
    ASSERT_EQ(Error(detail::ExactProduct(a, b), static_cast<Quad>(a) * b), 0.0);
    const bool isOrdered = std::fabs(a) >= std::fabs(b);
    ASSERT_EQ(Error(isOrdered ? detail::QuickSum(a, b) : detail::QuickSum(b, a), sum), 0.0);
  }
}

TEST(DoubleDouble, KeepsTwiceThePrecisionThroughArithmetic) {
  constexpr double kPrecision = 0x1p-100;
  Draw draw;
  for (int i = 0; i < kDraws; ++i) {
    const DoubleDouble a = draw.Pair(30.0);
    const DoubleDouble b = draw.Pair(30.0);
    const double c = draw.Signed(30.0);
    const double scale = std::fabs(a.fHigh) + std::fabs(b.fHigh);
    // A sum may cancel: its error is one of the operands.
    ASSERT_LE(std::fabs(static_cast<double>(Of(a + b) - (Of(a) + Of(b)))), kPrecision * scale);
    ASSERT_LE(std::fabs(static_cast<double>(Of(a - b) - (Of(a) - Of(b)))), kPrecision * scale);
    ASSERT_LE(std::fabs(static_cast<double>(Of(a + c) - (Of(a) + c))),
              kPrecision * (std::fabs(a.fHigh) + std::fabs(c)));
    ASSERT_LE(std::fabs(static_cast<double>(Of(a - c) - (Of(a) - c))),
              kPrecision * (std::fabs(a.fHigh) + std::fabs(c)));
    ASSERT_LE(Error(a * b, Of(a) * Of(b)), kPrecision);
    ASSERT_LE(Error(a * c, Of(a) * c), kPrecision);
    ASSERT_LE(Error(a / b, Of(a) / Of(b)), kPrecision);
    ASSERT_LE(Error(a / c, Of(a) / c), kPrecision);
    ASSERT_EQ(Error(-a, -Of(a)), 0.0);
    ExpectNormalized(a + b);
    ExpectNormalized(a * b);
    ExpectNormalized(a / b);
  }
}

TEST(DoubleDouble, LogarithmIsRightOverTheWholeRange) {
  Draw draw;
  for (int i = 0; i < kDraws; ++i) {
    // Every entry of the table, all exponents, and the neighbourhood of 1.
    const double spread = i % 3 == 0 ? 1020.0 : i % 3 == 1 ? 1.0 : 0x1p-20;
    const double high = draw.Size(spread);
    const DoubleDouble x = detail::QuickSum(high, high * 0x1p-54 * (draw.Size(1.0) - 1.0));
    const Quad expected = LogOf(x);
    const DoubleDouble actual = detail::Log(x);
    ASSERT_LE(std::fabs(static_cast<double>(Of(actual) - expected)), 0x1p-74) << high;
    ASSERT_LE(Error(actual, expected), 0x1p-67) << high;
  }
}

TEST(DoubleDouble, LogarithmOfSubnormalNumbersAndOfNothing) {
  EXPECT_LE(Error(detail::Log(0x1p-1074), -1074 * Series(2)), 0x1p-67);
  EXPECT_LE(Error(detail::Log(0x3p-1060), LogOf(3.0) - 1060 * Series(2)), 0x1p-67);
  EXPECT_LE(Error(detail::Log(0x1p1023), 1023 * Series(2)), 0x1p-67);
  EXPECT_EQ(detail::Log(1.0).fHigh, 0.0);
  EXPECT_EQ(detail::Log(1.0).fLow, 0.0);
  EXPECT_EQ(detail::Log(0.0).fHigh, -kInf);
}

TEST(DoubleDouble, LogarithmLessItsFirstTermDoesNotCancel) {
  Draw draw;
  for (int i = 0; i < kDraws; ++i) {
    const double high = std::copysign(0x1p-35 * draw.Size(30.0), i % 2 == 0 ? 1.0 : -1.0);
    const DoubleDouble x(high, high * 0x1p-55);
    ASSERT_LE(Error(detail::Log1pMinus(x), Log1pMinusOf(Of(x))), 0x1p-62) << high;
  }
}

TEST(DoubleDouble, ExponentialCountsTheLowerPart) {
  // exp(k ln 2) is a power of two when ln 2 is given to twice the precision.
  const Quad ln2 = Series(2);
  for (int k = -1021; k <= 1000; k += 47) {
    const double high = static_cast<double>(k * ln2);
    const DoubleDouble exponent(high, static_cast<double>(k * ln2 - high));
    EXPECT_NEAR(detail::Exp(exponent) / std::ldexp(1.0, k), 1.0, 0x1p-51) << k;
  }
  EXPECT_EQ(detail::Exp(-708.5), 0.0);
  EXPECT_GT(detail::Exp(-708.0), 0.0);
  EXPECT_EQ(detail::Exp(-kInf), 0.0);
  EXPECT_EQ(detail::Exp(0.0), 1.0);
  EXPECT_NEAR(detail::Exp(kLn2), 2.0, 0x1p-51);
}
