// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/uniformtails.h"

#include "mcmath/detail/errorfunction.h"
#include "mcmath/detail/loggamma.h"

#include <cmath>

namespace MCCommonMath {
namespace detail {

std::size_t UniformTermsNeeded(double n, double eta) {
  // A term of the power series counts 3.5 times less than the one before it; through the
  // recurrence, f[2j] reaches the first coefficient times 1 * 3 * ... * (2j+1) / n^j.
  const double bySeries = 39.0 / std::log(3.5 / eta);
  const double byRecurrence = n < 16.0 ? 40.0 : n < 50.0 ? 32.0 : n < 300.0 ? 20.0 : 14.0;
  return static_cast<std::size_t>(6.0 + (bySeries > byRecurrence ? bySeries : byRecurrence));
}

Tails UniformTails(double n, const DoubleDouble& exponent, bool above,
                   const double (&f)[kUniformTerms], double c, double slope) {
  const double root = std::sqrt(-exponent.fHigh);
  const double size = root * std::sqrt(2.0 / n);
  const double eta = above ? size : -size;
  double later = 0.0;  // s[k+1] / c and s[k] / c
  double last = 0.0;
  double sum = 0.0;
  for (std::size_t k = UniformTermsNeeded(n, size) - 1; k >= 1; --k) {
    const double next = static_cast<double>(k + 1) / n * later + f[k];
    later = last;
    last = next;
    sum = sum * eta + next;
  }
  const double rest = c * sum / std::sqrt(6.283185307179586 * n);
  const double main = 0.5 * ScaledErfc(root);
  const double tail = ScaledExp{above ? main + rest : main - rest, exponent}.Value();
  return above ? Tails{1.0 - tail, tail, slope} : Tails{tail, 1.0 - tail, slope};
}

}  // namespace detail
}  // namespace MCCommonMath
