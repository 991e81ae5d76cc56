// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

namespace MCCommonMath {
namespace detail {

/// A product that can't overflow, as LINPACK writes determinants: number[0] * 10^number[1] with
/// 1 <= |number[0]| < 10, or number[0] = 0. A product that isn't finite keeps exponent and all.
class DecimalProduct {
public:
  /// `number`: 2 entries of the caller, set to 1.
  explicit DecimalProduct(double* number) : fNumber(number) {
    fNumber[0] = 1.0;
    fNumber[1] = 0.0;
  }

  void Multiply(double factor) {
    fNumber[0] *= Normalised(factor);
    fNumber[0] = Normalised(fNumber[0]);
  }

private:
  /// The digits of x, its power of ten going to the exponent.
  double Normalised(double x) {
    if (x == 0.0 || !std::isfinite(x)) return x;
    for (; std::fabs(x) < 1.0; x *= 10.0) fNumber[1] -= 1.0;
    for (; std::fabs(x) >= 10.0; x /= 10.0) fNumber[1] += 1.0;
    return x;
  }

  double* fNumber;
};

}  // namespace detail
}  // namespace MCCommonMath
