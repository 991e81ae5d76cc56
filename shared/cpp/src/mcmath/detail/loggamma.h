// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/doubledouble.h"

namespace MCCommonMath {
namespace detail {

/// ln gamma(x) - ((x - 1/2) ln x - x + ln(2 pi)/2) for x > 0.
double StirlingRemainder(double x);

/// ln gamma(x) for x > 0, infinity included.
double LogGamma(double x);

/// ln gamma(1 + x) for -0.5 <= x <= 2; its relative accuracy holds at the zeros 0 and 1.
double LogGamma1p(double x);

/// 1 / gamma(1 + x) for 0 <= x <= 1.
double ReciprocalGamma1p(double x);

/// The number fFactor * exp(fExponent).
struct ScaledExp {
  /// 0 where the number is below exp(-708), so that no result is subnormal.
  double Value() const;

  double fFactor;
  DoubleDouble fExponent;
};

/// m^a exp(-m) / gamma(a) for a > 0 and m > 0, the density of ln X for a gamma variate X. From
/// a = 1 on its exponent is the deviance a ln(m/a) - (m - a) of C. Loader, Fast and accurate
/// computation of binomial probabilities (2000), less the remainder of Stirling's formula.
ScaledExp GammaDensity(double a, const DoubleDouble& m);

/// a ln(m/a) - (m - a), at most 0, for a > 0 and m > 0.
DoubleDouble Deviance(double a, const DoubleDouble& m);

}  // namespace detail
}  // namespace MCCommonMath
