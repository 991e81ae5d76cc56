// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcextremenum.h"

#include <cmath>

namespace MCCommonMath {

namespace {

double RootOfSum(double p, double q) {
  constexpr double kRoot2 = 1.4142135623730951;
  // Also where both are 0 or infinite and have no ratio.
  if (p == q) return p * kRoot2;
  // A NaN on either side fails the comparison and reaches the ratio, which std::max could drop.
  const double larger = p > q ? p : q;
  const double ratio = (p > q ? q : p) / larger;
  return larger * std::sqrt(1.0 + ratio * ratio);
}

bool RootOfDifference(double larger, double smaller, double& out) {
  if (smaller > larger) return false;
  if (smaller == larger) {
    out = 0.0;
    return true;
  }
  const double ratio = smaller / larger;
  out = larger * std::sqrt(1.0 - ratio * ratio);
  return true;
}

}  // namespace

bool MCExtremeNum::SumSqRoot(double a, double b, double c, double d, double& out) {
  const double p = std::sqrt(std::fabs(b)) * std::fabs(a);
  const double q = std::sqrt(std::fabs(d)) * std::fabs(c);
  if (b >= 0.0 && d >= 0.0) {
    out = RootOfSum(p, q);
    return true;
  }
  if (b < 0.0 && d >= 0.0) return RootOfDifference(q, p, out);
  if (b >= 0.0 && d < 0.0) return RootOfDifference(p, q, out);
  return false;
}

}  // namespace MCCommonMath
