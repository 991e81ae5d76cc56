// SPDX-License-Identifier: Apache-2.0
// Digamma and trigamma. From kAsymptotic on, the asymptotic series (Abramowitz and Stegun 6.3.18
// and 6.4.12) in 1/x^2; below it, the recurrences psi(x+1) = psi(x) + 1/x and
// psi'(x+1) = psi'(x) - 1/x^2, taken in the direction that adds terms of one sign. Constants from
// tests/data/mcmath/digammaseries.py and the Bernoulli numbers.
#include "mcmath/mcmathfun.h"
#include "regression/frame/mcmv.h"

#include <cmath>
#include <cstddef>

namespace MCCommonMath {

namespace {

constexpr double kAsymptotic = 10.0;

template <std::size_t N>
double Polynomial(const double (&coefficient)[N], double x) {
  double value = 0.0;
  for (std::size_t i = N; i-- > 0;) value = value * x + coefficient[i];
  return value;
}

// For 1 <= x <= 2. With the root r of digamma and h = x - r,
//   psi(x) = h * (sum over k < 3 of 1 / ((r+k)(x+k)) + (psi(x+3) - psi(r+3)) / h),
// where all terms in the brackets are positive and the last is a Taylor series in h, so the
// result keeps its relative accuracy also next to the root. The root is the sum of two doubles:
// h is as good as exact.
double DigammaNearRoot(double x) {
  constexpr double kRoot = 1.4616321449683622;
  constexpr double kRootRest = 9.549995429965697e-17;
  constexpr double kTaylor[] = {
      0.2511094369137853,     -0.03136842633320283,    0.005199069507583636,
      -0.0009648278511769716, 0.00019011692036200793,  -3.885268779191956e-05,
      8.132817500300198e-06,  -1.7309579123061582e-06, 3.7284423726304355e-07,
      -8.102215401916277e-08, 1.7724257358006402e-08,  -3.897086566408483e-09,
      8.602407525790405e-10,  -1.904731766038606e-10,  4.22763297926808e-11,
      -9.401384901709357e-12, 2.093860741422081e-12,   -4.66909069678111e-13,
      1.0421750689409425e-13};
  const double h = (x - kRoot) - kRootRest;
  double slope = Polynomial(kTaylor, h);
  for (int k = 2; k >= 0; --k) slope += 1.0 / ((kRoot + k) * (x + k));
  return h * slope;
}

double DigammaAsymptotic(double x) {
  // B(2k) / (2k), k = 1, 2, ...
  constexpr double kSeries[] = {1.0 / 12.0,   -1.0 / 120.0,     1.0 / 252.0,
                                -1.0 / 240.0, 1.0 / 132.0,      -691.0 / 32760.0,
                                1.0 / 12.0,   -3617.0 / 8160.0, 43867.0 / 14364.0};
  const double t = 1.0 / (x * x);
  return std::log(x) - (0.5 / x + t * Polynomial(kSeries, t));
}

double TrigammaAsymptotic(double x) {
  // B(2k), k = 1, 2, ...
  constexpr double kSeries[] = {1.0 / 6.0,   -1.0 / 30.0,     1.0 / 42.0,
                                -1.0 / 30.0, 5.0 / 66.0,      -691.0 / 2730.0,
                                7.0 / 6.0,   -3617.0 / 510.0, 43867.0 / 798.0};
  const double t = 1.0 / (x * x);
  return 1.0 / x + (0.5 * t + t * Polynomial(kSeries, t) / x);
}

}  // namespace

double MCMathFun::Digamma(double x) {
  if (!(x > 0.0)) return MCMV::gMissingValue;
  if (x >= kAsymptotic) return DigammaAsymptotic(x);
  if (x < 1.0) return DigammaNearRoot(x + 1.0) - 1.0 / x;
  double sum = 0.0;
  while (x > 2.0) {
    x -= 1.0;  // exact
    sum += 1.0 / x;
  }
  return DigammaNearRoot(x) + sum;
}

double MCMathFun::Trigamma(double x) {
  if (!(x > 0.0)) return MCMV::gMissingValue;
  if (x >= kAsymptotic) return TrigammaAsymptotic(x);
  // The smallest terms first. Two divisions, as the square of a small x has few digits.
  const int steps = static_cast<int>(std::ceil(kAsymptotic - x));
  double sum = TrigammaAsymptotic(x + steps);
  for (int k = steps - 1; k >= 0; --k) sum += 1.0 / (x + k) / (x + k);
  return sum;
}

}  // namespace MCCommonMath
