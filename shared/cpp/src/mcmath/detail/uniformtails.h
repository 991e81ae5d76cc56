// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/doubledouble.h"

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

/// How many terms of the series below are asked for at most.
constexpr std::size_t kUniformTerms = 46;

/// Tails of a variate whose density by eta is sqrt(n/(2 pi)) exp(-n eta^2/2) c f(eta), f(0) = 1:
/// gamma and beta variates for a suitable eta, by N. M. Temme. `exponent` is -n eta^2/2, `above`
/// the sign of eta; `f` its power series, kUniformTerms coefficients, with a radius of convergence
/// of sqrt(4 pi) at least. For |eta| <= 1 and n >= 12. `slope` is handed on.
///
/// The upper tail is erfc(eta sqrt(n/2))/2 + exp(-n eta^2/2) S(eta) / sqrt(2 pi n), and the series
/// of S has coefficients s with s[k-1] = (k+1)/n s[k+1] + c f[k], which are computed downwards
/// (A. Gil, J. Segura, N. M. Temme 2012, section 2.5).
Tails UniformTails(double n, const DoubleDouble& exponent, bool above,
                   const double (&f)[kUniformTerms], double c, double slope);

/// How many terms make the series above as accurate as doubles are.
std::size_t UniformTermsNeeded(double n, double eta);

}  // namespace detail
}  // namespace MCCommonMath
