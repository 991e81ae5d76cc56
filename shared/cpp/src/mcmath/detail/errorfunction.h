// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/doubledouble.h"

namespace MCCommonMath {
namespace detail {

/// exp(x^2) erfc(x) for x >= 0, infinity included.
double ScaledErfc(double x);

/// Error function for every x, and its complement.
double Erf(double x);
double Erfc(double x);

/// Both tails of the standard normal distribution.
double NormalLower(double x);
inline double NormalUpper(double x) {
  return NormalLower(-x);
}

/// Inverse of NormalLower for 0 < p < 1.
double NormalQuantile(double p);

}  // namespace detail
}  // namespace MCCommonMath
