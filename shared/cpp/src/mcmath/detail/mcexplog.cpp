// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcexplog.h"

#include "mcmath/detail/explog.h"
#include "mcmath/mcpower.h"

#include <cmath>
#include <limits>

namespace MCCommonMath {
namespace detail {

double Exp(double x) {
  constexpr double kVanishes = -746.0;  // below half the smallest double
  if (std::isnan(x)) return x;
  if (x > MCPower::gMachineMaxExp) return std::exp(x);
  if (x < kVanishes) return 0.0;
  const bool isSmall = x < MCPower::gMachineMinExp;
  double y = isSmall ? 0.5 * x : x;
  ExpLanes<1>(y, y);
  return isSmall ? y * y : y;
}

double Log(double x) {
  constexpr double kScaleBits = 54.0;
  if (!(x > 0.0) || std::isinf(x)) return std::log(x);
  const bool isSmall = x < std::numeric_limits<double>::min();
  double y = isSmall ? x * 0x1p54 : x;
  LogLanes<1>(y, y);
  return isSmall ? y - kScaleBits * (kLn2High + kLn2Low) : y;
}

}  // namespace detail
}  // namespace MCCommonMath
