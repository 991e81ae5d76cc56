// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {
using MCCommonMath::detail::Dot;

// The eight lanes, one scalar operation after the other.
double PlainDot(const double* x, const double* y, std::size_t n) {
  double lane[8] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
  for (std::size_t i = 0; i < n; ++i) {
    const volatile double product = x[i] * y[i];
    lane[i % 8] = lane[i % 8] + product;
  }
  const double even = (lane[0] + lane[4]) + (lane[2] + lane[6]);
  const double odd = (lane[1] + lane[5]) + (lane[3] + lane[7]);
  return even + odd;
}

TEST(Dot, KeepsItsOrderAtEveryLengthAndAlignment) {
  std::mt19937 random(31);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  std::vector<double> x(1100);
  std::vector<double> y(1100);
  for (double& value : x)
    value = uniform(random) * std::ldexp(1.0, static_cast<int>(random() % 60));
  for (double& value : y) value = uniform(random);
  for (std::size_t n = 0; n <= 1030; n = n < 70 ? n + 1 : n + 97) {
    for (std::size_t start = 0; start < 9; ++start) {
      EXPECT_EQ(Dot(x.data() + start, y.data() + 8 - start, n),
                PlainDot(x.data() + start, y.data() + 8 - start, n))
          << n << ' ' << start;
    }
  }
}

TEST(Dot, HasNoNegativeZero) {
  const std::vector<double> x(9, -0.0);
  const std::vector<double> y(9, 1.0);
  for (std::size_t n = 0; n <= 9; ++n) {
    EXPECT_FALSE(std::signbit(Dot(x.data(), y.data(), n))) << n;
  }
}

TEST(Dot, LetsNaNAndInfinitiesThrough) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (std::size_t place = 0; place < 20; ++place) {
    std::vector<double> x(20, 1.0);
    const std::vector<double> y(20, 1.0);
    x[place] = kInfinity;
    EXPECT_EQ(Dot(x.data(), y.data(), 20), kInfinity);
    x[(place + 1) % 20] = -kInfinity;
    EXPECT_TRUE(std::isnan(Dot(x.data(), y.data(), 20)));
  }
}
}  // namespace
