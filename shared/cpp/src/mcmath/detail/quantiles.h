// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace MCCommonMath {
namespace detail {

/// The x with P(a, x) = lower, where lower + upper = 1, both of them > 0; 0 by underflow. `start`
/// is where the search begins, or anything else but a positive finite number for none.
double GammaQuantile(double a, double lower, double upper, double start);

/// The odds x/(1-x) of the x with I_x(a, b) = lower, where lower + upper = 1, both of them > 0.
/// May be 0 or infinite by underflow or overflow. `start` as above.
double BetaQuantileOdds(double a, double b, double lower, double upper, double start);

}  // namespace detail
}  // namespace MCCommonMath
