// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/uniformtails.h"

#include "mcmath/detail/errorfunction.h"
#include "mcmath/detail/loggamma.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {
namespace detail {

UniformPoint::UniformPoint(double n, const DoubleDouble& exponent, bool isAbove)
    : fN(n),
      fExponent(exponent),
      fbAbove(isAbove),
      fRoot(std::sqrt(-exponent.fHigh)),
      fEta(std::copysign(fRoot * std::sqrt(2.0 / n), isAbove ? 1.0 : -1.0)) {}

std::size_t UniformPoint::TermsNeeded() const {
  // A term of the power series counts sqrt(4 pi)/eta times less than the one before it; through
  // the recurrence, f[2j] reaches the first coefficient times 1 * 3 * ... * (2j+1) / n^j.
  const double size = std::fabs(fEta);
  const std::size_t series = size < 0.02   ? 8
                             : size < 0.1  ? 12
                             : size < 0.25 ? 16
                             : size < 0.5  ? 22
                             : size < 0.75 ? 28
                                           : 36;
  const std::size_t recurrence = fN < 16.0    ? 42
                                 : fN < 50.0  ? 32
                                 : fN < 300.0 ? 22
                                 : fN < 1e4   ? 14
                                              : 8;
  return std::min(kUniformTerms, std::max(series, recurrence) + (size < 0.25 ? 2 : 4));
}

Tails UniformPoint::TailsFor(const double (&f)[kUniformTerms], double c) const {
  constexpr double k2Pi = 6.283185307179586;
  double later = 0.0;  // s[k+1] / c and s[k] / c
  double last = 0.0;
  double sum = 0.0;
  const double reciprocal = 1.0 / fN;
  for (std::size_t k = TermsNeeded() - 1; k >= 1; --k) {
    const double next = static_cast<double>(k + 1) * reciprocal * later + f[k];
    later = last;
    last = next;
    sum = sum * fEta + next;
  }
  const double rest = c * sum / std::sqrt(k2Pi * fN);
  const double scaled = 0.5 * ScaledErfc(fRoot) + (fbAbove ? rest : -rest);
  const double tail = ScaledExp{scaled, fExponent}.Value();
  const double slope = tail / scaled * c * std::sqrt(fN / k2Pi);
  return fbAbove ? FromUpper(tail, slope) : FromLower(tail, slope);
}

}  // namespace detail
}  // namespace MCCommonMath
