// SPDX-License-Identifier: Apache-2.0
#pragma once

// Numbers of twice the precision of a double, as far as the distribution functions need them: the
// exponents of their common factors, where a relative error of 2^-53 would become one of several
// hundred times that in the result.

#include <cmath>

namespace MCCommonMath {
namespace detail {

/// The unevaluated sum fHigh + fLow, |fLow| at most half a unit of the last place of fHigh.
/// Operations have relative errors of some 2^-102 and follow T. J. Dekker (1971), with the exact
/// rest of a product from a fused multiply-add. Infinities and NaN have no meaningful fLow.
struct DoubleDouble {
  constexpr DoubleDouble(double high = 0.0, double low = 0.0) : fHigh(high), fLow(low) {}

  double fHigh;
  double fLow;
};

/// a + b, for |a| >= |b| or a = 0.
inline DoubleDouble QuickSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

/// a + b, exact.
inline DoubleDouble ExactSum(double a, double b) {
  const double sum = a + b;
  const double other = sum - a;
  return {sum, (a - (sum - other)) + (b - other)};
}

/// a * b, exact but for underflow.
inline DoubleDouble ExactProduct(double a, double b) {
  const double product = a * b;
  return {product, std::fma(a, b, -product)};
}

inline DoubleDouble operator-(const DoubleDouble& a) {
  return {-a.fHigh, -a.fLow};
}

inline DoubleDouble operator+(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble high = ExactSum(a.fHigh, b.fHigh);
  const DoubleDouble low = ExactSum(a.fLow, b.fLow);
  const DoubleDouble sum = QuickSum(high.fHigh, high.fLow + low.fHigh);
  return QuickSum(sum.fHigh, sum.fLow + low.fLow);
}

inline DoubleDouble operator+(const DoubleDouble& a, double b) {
  const DoubleDouble sum = ExactSum(a.fHigh, b);
  return QuickSum(sum.fHigh, sum.fLow + a.fLow);
}

inline DoubleDouble operator-(const DoubleDouble& a, const DoubleDouble& b) {
  return a + -b;
}

inline DoubleDouble operator-(const DoubleDouble& a, double b) {
  return a + -b;
}

inline DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble product = ExactProduct(a.fHigh, b.fHigh);
  return QuickSum(product.fHigh, product.fLow + (a.fHigh * b.fLow + a.fLow * b.fHigh));
}

inline DoubleDouble operator*(const DoubleDouble& a, double b) {
  const DoubleDouble product = ExactProduct(a.fHigh, b);
  return QuickSum(product.fHigh, product.fLow + a.fLow * b);
}

inline DoubleDouble operator/(const DoubleDouble& a, const DoubleDouble& b) {
  const double first = a.fHigh / b.fHigh;
  const double rest = std::fma(-first, b.fHigh, a.fHigh) + (a.fLow - first * b.fLow);
  return QuickSum(first, rest / b.fHigh);
}

inline DoubleDouble operator/(const DoubleDouble& a, double b) {
  const double first = a.fHigh / b;
  return QuickSum(first, (std::fma(-first, b, a.fHigh) + a.fLow) / b);
}

/// ln(x) for finite x >= 0, with an error below 2^-74, and below 2^-67 of the result; -infinity for
/// 0.
DoubleDouble Log(const DoubleDouble& x);

/// ln(1 + x) - x for |x.fHigh| <= 2^-5, with a relative error of some 2^-64.
DoubleDouble Log1pMinus(const DoubleDouble& x);

/// Exponentials of less than this count as 0, so that no result is subnormal.
constexpr double kMachineMinExp = -708.0;

/// exp(x), rounded to a double; 0 below kMachineMinExp.
double Exp(const DoubleDouble& x);

}  // namespace detail
}  // namespace MCCommonMath
