// SPDX-License-Identifier: Apache-2.0
// Binomial distribution.
#include "mcmath/detail/countingterms.h"
#include "mcmath/detail/doubledouble.h"
#include "mcmath/detail/errorfunction.h"
#include "mcmath/detail/incompletebeta.h"
#include "mcmath/detail/refusal.h"
#include "mcmath/mcdistfun.h"
#include "mcmath/mcpower.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {

namespace {

using detail::DoubleDouble;
using detail::Refuse;

bool IsBinomial(double n, double p) {
  return n >= 1.0 && std::isfinite(n) && std::floor(n) == n && p >= 0.0 && p <= 1.0;
}

// The terms from k downwards over the first one, for k up to the mode; they end where one no longer
// changes the sum. `odds` are those of a failure, which count in each term once more, so that their
// rounding error would add up.
double SumDown(double k, double n, const DoubleDouble& odds) {
  double sum = 1.0;
  double term = 1.0;
  double i = k;
  while (i > 0.0) {
    term *= i / (n - i + 1.0);
    term = term * odds.fHigh + term * odds.fLow;
    if (sum + term == sum) break;
    sum += term;
    i -= 1.0;
  }
  return sum;
}

// P(K <= k) by the terms on that side of the mode that k lies on, the largest first. Upwards they
// are those of the failures downwards.
double SumOfTerms(double k, double n, double p) {
  const DoubleDouble q = detail::ExactSum(1.0, -p);
  if (k < std::floor((n + 1.0) * p)) {
    return std::min(detail::BinomialTerm(k, n, p) * SumDown(k, n, q / p), 1.0);
  }
  const double upper =
      detail::BinomialTerm(k + 1.0, n, p) * SumDown(n - k - 1.0, n, DoubleDouble(p) / q);
  return std::max(1.0 - upper, 0.0);
}

// P(K <= k) for whole 0 <= k < n and 0 < p < 1.
double LowerTail(double k, double n, double p) {
  constexpr double kLongSum = 100.0;
  if (k == 0.0) return detail::BinomialTerm(0.0, n, p);
  // Beyond gMachineMaxInt counts are no longer one apart.
  if (n * p * (1.0 - p) <= kLongSum && n <= MCPower::gMachineMaxInt) return SumOfTerms(k, n, p);
  return detail::IncompleteBeta(n - k, k + 1.0, detail::ExactSum(1.0, -p), p).fLower;
}

double Distribution(double k, double n, double p) {
  if (k < 0.0) return 0.0;
  if (k >= n || p == 0.0) return 1.0;
  return p == 1.0 ? 0.0 : LowerTail(std::floor(k), n, p);
}

// A count near the quantile: normal, with the skewness of the distribution (E. A. Cornish, R. A.
// Fisher 1938).
double QuantileStart(double q, double n, double p) {
  const double sd = std::sqrt(n * p * (1.0 - p));
  const double z = q < 1.0 ? detail::NormalQuantile(q) : 8.0;
  const double start = n * p + sd * z + (1.0 - 2.0 * p) * (z * z - 1.0) / 6.0;
  return std::min(n, std::max(0.0, std::floor(start)));
}

// The least k <= n with P(K <= k) >= q: steps that double until it is enclosed, then halves.
double Quantile(double q, double n, double p) {
  double high = QuantileStart(q, n, p);
  double low = high - 1.0;
  for (double step = 1.0; Distribution(high, n, p) < q; step *= 2.0) {
    low = high;
    high = std::min(n, high + step);
  }
  for (double step = 1.0; low >= 0.0 && Distribution(low, n, p) >= q; step *= 2.0) {
    high = low;
    low = std::max(-1.0, low - step);
  }
  while (high - low > 1.0) {
    const double middle = std::floor(low + (high - low) / 2.0);
    if (middle <= low || middle >= high) break;
    (Distribution(middle, n, p) >= q ? high : low) = middle;
  }
  return high;
}

}  // namespace

double MCDistFun::CdfBin(const double& k, const double& n, const double& p, long& error) {
  error = 0;
  return IsBinomial(n, p) && !std::isnan(k) ? Distribution(k, n, p) : Refuse(error);
}

double MCDistFun::PdfBin(const double& k, const double& n, const double& p, long& error) {
  error = 0;
  if (!IsBinomial(n, p) || !(std::floor(k) == k)) return Refuse(error);
  if (k < 0.0 || k > n) return 0.0;
  if (p == 0.0 || p == 1.0) return k == (p == 0.0 ? 0.0 : n) ? 1.0 : 0.0;
  return detail::BinomialTerm(k, n, p);
}

double MCDistFun::IdfBin(const double& q, const double& n, const double& p, long& error) {
  error = 0;
  if (!IsBinomial(n, p) || !(q >= 0.0 && q <= 1.0)) return Refuse(error);
  return q == 0.0 || p == 0.0 ? 0.0 : Quantile(q, n, p);
}

}  // namespace MCCommonMath
