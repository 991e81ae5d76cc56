// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

namespace MCCommonMath {

/// Exponentials, powers and products that survive overflow and underflow, and the guards of the
/// exponent that all safe arithmetic of the library shares.
class MC_EXPORT MCPower {
public:
  /// Exponents outside these two limits are not passed to exp.
  static constexpr double gMachineMaxExp = 709.0;
  static constexpr double gMachineMinExp = -708.39;
  /// 2^53: up to it every whole number is a double, so that a number is known to be even or odd.
  static constexpr double gMachineMaxInt = 9007199254740992.0;
  /// 2^-52, the distance from 1.0 to the next double.
  static constexpr double gMachineEpsilon = 2.220446049250313e-16;

  /// Whether a and b differ by at most k * gMachineEpsilon, relative to the larger magnitude. Zero
  /// equals zero only, opposite signs are never almost equal, and neither is a NaN or an infinity,
  /// not even to itself.
  static bool AlmostEqual(double a, double b, double k);

  /// Whether x is almost 1/n for an odd (even) whole number n other than 0, of either sign: 1/x
  /// and the nearest whole number pass AlmostEqual with k = tol.
  static bool IsOneOverOddInteger(double x, double tol);
  static bool IsOneOverEvenInteger(double x, double tol);

  /// exp(x). Answers 0; or 1 with out = 0 if x is below gMachineMinExp; or 2 with the missing value
  /// if x is above gMachineMaxExp. A NaN gives NaN and 0.
  static int Exponent(double x, double& out);

  /// a * b as the exponential of a sum of logarithms, so with the relative error of exp at that
  /// sum, up to about 1e-13. Zero in either gives 0; underflow gives 0, overflow the missing value
  /// for either sign of the product.
  static double Multiply(double a, double b);

  /// x to the power y as Exponent(ln|x| y), with a relative error of up to about 1e-13. A negative
  /// x has a power for whole y with |y| <= gMachineMaxInt, and for y that is 1 over an odd whole
  /// number, within tolerance 32 of AlmostEqual, as the odd root. `out` is the missing value
  /// wherever there is none. Answers
  ///   0 a power; 1 underflow, out = 0; 2 overflow, out missing;
  ///   3 overflow of a negative x with odd y > 0, or y = 1/odd > 0, out missing;
  ///   4 x < 0 with any other y, or x is NaN, out missing;
  ///   5 x < 0 and y = 0, out = 1;
  ///   6 x = 0 and y is negative or NaN, out missing;
  ///   7 x = 0 and y = 0, out = 1.
  static int Power(double x, double y, double& out);
};

}  // namespace MCCommonMath
