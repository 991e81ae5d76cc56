// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/doubledouble.h"

#include <algorithm>
#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// Both tails of a distribution at a point, and the derivative of the lower one by the logarithm of
/// the point (by the logarithm of its odds, for a beta variate).
struct Tails {
  double fLower;
  double fUpper;
  double fSlope;
};

/// Both tails from the one that was computed, which rounding may have taken beyond 1. A NaN, which
/// would be a fault, stays one.
inline Tails FromLower(double lower, double slope) {
  return {std::min(lower, 1.0), std::max(1.0 - lower, 0.0), slope};
}
inline Tails FromUpper(double upper, double slope) {
  return {std::max(1.0 - upper, 0.0), std::min(upper, 1.0), slope};
}

/// Those of a beta variate from those of 1 less it.
inline Tails Swapped(const Tails& tails) {
  return {tails.fUpper, tails.fLower, tails.fSlope};
}

/// The least parameter that the incomplete ratios tell from smaller ones: their density, which is
/// proportional to it, keeps all its digits.
constexpr double kLeastParameter = 1e-300;

/// The most terms that the series below are asked for.
constexpr std::size_t kUniformTerms = 46;

/// The point of a variate whose density by eta is sqrt(n/(2 pi)) exp(-n eta^2/2) c f(eta), with
/// f(0) = 1: gamma and beta variates for a suitable eta, after N. M. Temme. |eta| <= 1, n >= 12.
class UniformPoint {
public:
  /// `exponent` is -n eta^2/2, `isAbove` whether eta is positive.
  UniformPoint(double n, const DoubleDouble& exponent, bool isAbove);

  /// How many coefficients of f give as many digits as doubles have, if their series converges for
  /// |eta|^2 < 4 pi; at most kUniformTerms.
  std::size_t TermsNeeded() const;

  /// Both tails, from the leading TermsNeeded() coefficients of f.
  ///
  /// The upper tail is erfc(eta sqrt(n/2))/2 + exp(-n eta^2/2) S(eta) / sqrt(2 pi n); the series
  /// of S has coefficients s with s[k-1] = (k+1)/n s[k+1] + c f[k], which are computed downwards
  /// (A. Gil, J. Segura, N. M. Temme 2012, section 2.5).
  Tails TailsFor(const double (&f)[kUniformTerms], double c) const;

private:
  double fN;
  DoubleDouble fExponent;
  bool fbAbove;
  double fRoot;  // |eta| sqrt(n/2)
  double fEta;
};

}  // namespace detail
}  // namespace MCCommonMath
