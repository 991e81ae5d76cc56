// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcexplog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {
using MCCommonMath::detail::Exp;
using MCCommonMath::detail::Log;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// In units of the last place of the exact value, which the 64 bit mantissa of long double gives to
// 0.001 units.
double Units(double value, long double exact) {
  const double magnitude = std::fabs(static_cast<double>(exact));
  const double unit = std::nextafter(magnitude, kInf) - magnitude;
  return static_cast<double>(std::fabs((static_cast<long double>(value) - exact) / unit));
}

TEST(MCExpLog, IsExactWhereTheResultIs) {
  EXPECT_EQ(Exp(0.0), 1.0);
  EXPECT_EQ(Exp(-0.0), 1.0);
  EXPECT_EQ(Log(1.0), 0.0);
  EXPECT_FALSE(std::signbit(Log(1.0)));
}

TEST(MCExpLog, IsWithinAUnitOfTheLastPlaceWhereAllIsNormal) {
  std::mt19937_64 random(20261121);
  std::uniform_real_distribution<double> exponent(-708.0, 709.0);
  for (int i = 0; i < 20000; ++i) {
    const double x = exponent(random);
    EXPECT_LT(Units(Exp(x), std::exp(static_cast<long double>(x))), 1.0) << x;
    const double y = std::exp(x);
    EXPECT_LT(Units(Log(y), std::log(static_cast<long double>(y))), 1.0) << y;
  }
}

TEST(MCExpLog, FadesOutAmongTheSubnormalNumbers) {
  for (double x = -708.2; x > -747.0; x -= 0.125) {
    const long double exact = std::exp(static_cast<long double>(x));
    EXPECT_LE(Units(Exp(x), exact), 2.0) << x;
  }
  EXPECT_GT(Exp(-744.0), 0.0);
  EXPECT_EQ(Exp(-746.5), 0.0);
  for (double x = std::numeric_limits<double>::denorm_min(); x < 1e-307; x *= 3.0) {
    EXPECT_LE(Units(Log(x), std::log(static_cast<long double>(x))), 2.0) << x;
  }
}

TEST(MCExpLog, TakesWhatIsNoNumberAsTheCLibraryDoes) {
  EXPECT_EQ(Exp(kInf), kInf);
  EXPECT_EQ(Exp(710.0), kInf);
  EXPECT_EQ(Exp(-kInf), 0.0);
  EXPECT_TRUE(std::isnan(Exp(kNaN)));
  EXPECT_EQ(Log(kInf), kInf);
  EXPECT_EQ(Log(0.0), -kInf);
  EXPECT_TRUE(std::isnan(Log(-1.0)));
  EXPECT_TRUE(std::isnan(Log(kNaN)));
}

}  // namespace
