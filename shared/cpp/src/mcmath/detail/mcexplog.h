// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace MCCommonMath {
namespace detail {

/// Exponential and natural logarithm with the same bits on every processor and with every C
/// library, whose own ones take other instructions where there are others. Infinities, NaN and
/// zeros are as those take them. Errors are below 1 unit of the last place where argument and
/// result are normal, and at most 2 units of what is left of one that is subnormal. For single
/// values: rows of them take the lanes.
double Exp(double x);
double Log(double x);

}  // namespace detail
}  // namespace MCCommonMath
