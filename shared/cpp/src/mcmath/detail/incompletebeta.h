// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/doubledouble.h"
#include "mcmath/detail/uniformtails.h"

namespace MCCommonMath {
namespace detail {

/// Incomplete beta ratios I_x(a, b) and I_y(b, a) for finite a, b > 0 and x, y > 0 with x + y = 1,
/// which are given both, in twice the precision, as neither may be had from the other. Parameters
/// below kLeastParameter count as that.
Tails IncompleteBeta(double a, double b, const DoubleDouble& x, const DoubleDouble& y);

/// The same for an x below 1e-99, given by its logarithm: the first term of the series, x^a / (a
/// B(a, b)), is all of the lower tail unless b is so large that it is P(a, b x). Without the
/// derivative.
Tails IncompleteBetaNearZero(double a, double b, const DoubleDouble& logX);

}  // namespace detail
}  // namespace MCCommonMath
