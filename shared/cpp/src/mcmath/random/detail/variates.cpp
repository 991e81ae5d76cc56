// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/detail/variates.h"

#include <array>
#include <cstddef>

namespace MCCommonMath {
namespace detail {

double FactorialCorrection(double k) {
  constexpr std::array<double, 10> kFirst = {
      0.081061466795327258,  0.041340695955409294, 0.027677925684998339, 0.020790672103765093,
      0.016644691189821193,  0.013876128823070748, 0.011896709945891771, 0.010411265261972096,
      0.0092554621827127329, 0.0083305634333628712};
  if (k < 10.0) return kFirst[static_cast<std::size_t>(k)];
  const double square = (k + 1.0) * (k + 1.0);
  return (1.0 / 12.0 - (1.0 / 360.0 - 1.0 / 1260.0 / square) / square) / (k + 1.0);
}

namespace {

// (k + 1/2) times the logarithm of f(k) / f(k + 1), as the corrected factorials have it.
double OddsTerm(double n, double p, double k) {
  const double excess = (p * (n + 2.0) - (k + 1.0)) / (1.0 - p);
  return (k + 0.5) * std::log1p(excess / (k + 1.0));
}

}  // namespace

double LogBinomialRatio(double n, double p, double k, double m) {
  return (n + 1.0) * std::log1p((k - m) / (n - k + 1.0)) + OddsTerm(n, p, k) - OddsTerm(n, p, m) +
         FactorialCorrection(m) - FactorialCorrection(k) + FactorialCorrection(n - m) -
         FactorialCorrection(n - k);
}

}  // namespace detail
}  // namespace MCCommonMath
