// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcpower.h"

#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {

namespace {

bool IsWhole(double y) {
  return std::fabs(y) <= MCPower::gMachineMaxInt && y == std::trunc(y);
}

// Remainder 0 or 1 of a whole number.
double Parity(double n) {
  return std::fabs(std::fmod(n, 2.0));
}

bool IsOneOverInteger(double x, double tol, double parity) {
  const double n = std::round(1.0 / x);
  return n != 0.0 && std::isfinite(n) && Parity(n) == parity &&
         MCPower::AlmostEqual(1.0 / x, n, tol);
}

int PowerOfZero(double y, double& out) {
  if (y > 0.0) {
    out = 0.0;
    return 0;
  }
  if (y == 0.0) {
    out = 1.0;
    return 7;
  }
  return 6;
}

int PowerOfNegative(double x, double y, double& out) {
  constexpr double kRootTolerance = 32.0;
  if (y == 0.0) {
    out = 1.0;
    return 5;
  }
  const bool whole = IsWhole(y);
  if (whole && Parity(y) == 0.0) return MCPower::Exponent(std::log(-x) * y, out);
  if (!whole && !MCPower::IsOneOverOddInteger(y, kRootTolerance)) return 4;
  const int status = MCPower::Exponent(std::log(-x) * y, out);
  // The missing value has no negative: out stays what it is.
  if (status == 2) return y > 0.0 ? 3 : 2;
  out = -out;
  return status;
}

}  // namespace

bool MCPower::AlmostEqual(double a, double b, double k) {
  if (a == 0.0) return b == 0.0;
  if (b == 0.0 || (a < 0.0) != (b < 0.0)) return false;
  const double difference = std::fabs(std::fabs(a) - std::fabs(b));
  return difference / std::max(std::fabs(a), std::fabs(b)) <= k * gMachineEpsilon;
}

bool MCPower::IsOneOverOddInteger(double x, double tol) {
  return IsOneOverInteger(x, tol, 1.0);
}

bool MCPower::IsOneOverEvenInteger(double x, double tol) {
  return IsOneOverInteger(x, tol, 0.0);
}

int MCPower::Exponent(double x, double& out) {
  if (x < gMachineMinExp) {
    out = 0.0;
    return 1;
  }
  if (x > gMachineMaxExp) {
    out = MCMV::gMissingValue;
    return 2;
  }
  out = std::exp(x);
  return 0;
}

double MCPower::Multiply(double a, double b) {
  if (a == 0.0 || b == 0.0) return 0.0;
  double product = 0.0;
  const int status = Exponent(std::log(std::fabs(a)) + std::log(std::fabs(b)), product);
  return status == 0 && (a < 0.0) != (b < 0.0) ? -product : product;
}

int MCPower::Power(double x, double y, double& out) {
  out = MCMV::gMissingValue;
  if (x == 0.0) return PowerOfZero(y, out);
  if (x < 0.0) return PowerOfNegative(x, y, out);
  if (!(x > 0.0)) return 4;
  if (y == 0.0) {
    out = 1.0;
    return 0;
  }
  return Exponent(std::log(x) * y, out);
}

}  // namespace MCCommonMath
