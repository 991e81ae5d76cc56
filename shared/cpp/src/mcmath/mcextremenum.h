// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

namespace MCCommonMath {

/// Roots of sums whose terms may lie beyond the range of doubles.
class MC_EXPORT MCExtremeNum {
public:
  /// out = sqrt(a^2 b + c^2 d), where b or d may be negative, without overflow of the squares: an
  /// infinity comes out only where the root, or that of a term alone, is beyond all doubles. Terms
  /// of opposite sign that are both beyond cancel to 0; a NaN in a or c gives NaN. False, with
  /// `out` untouched, if the sum is negative, if both b and d are, or if either is NaN.
  static bool SumSqRoot(double a, double b, double c, double d, double& out);
};

}  // namespace MCCommonMath
