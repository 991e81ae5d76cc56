// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/uniformtails.h"

namespace MCCommonMath {
namespace detail {

/// Incomplete gamma ratios P(a, x) and Q(a, x) for finite a > 0 and x > 0. Parameters below
/// kLeastParameter count as that.
Tails IncompleteGamma(double a, double x);

}  // namespace detail
}  // namespace MCCommonMath
