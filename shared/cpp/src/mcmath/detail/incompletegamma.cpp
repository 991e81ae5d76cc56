// SPDX-License-Identifier: Apache-2.0
// Incomplete gamma ratios. Numerical method: W. Gautschi, A computational procedure for incomplete
// gamma functions, ACM TOMS 5 (1979), 466-481 (series and continued fraction); N. M. Temme, The
// asymptotic expansion of the incomplete gamma functions, SIAM J. Math. Anal. 10 (1979), 757-766,
// as computed by A. Gil, J. Segura, N. M. Temme, Efficient and accurate algorithms for the
// computation and inversion of the incomplete gamma function ratios, SIAM J. Sci. Comput. 34
// (2012), A2965-A2981. The common factor x^a exp(-x) / gamma(a) has an exponent of twice the
// precision.
#include "mcmath/detail/incompletegamma.h"

#include "mcmath/detail/loggamma.h"
#include "mcmath/detail/uniformtails.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {
namespace detail {

namespace {

constexpr double kTolerance = 1e-17;

// From here on the uniform expansion serves near the mean.
constexpr double kUniformFrom = 12.0;

// Up to here the upper tail of a small parameter is computed from what the series lacks to 1.
constexpr double kSmall = 0.8;

// Coefficients of eta / (lambda - 1) as a power series in eta, eta^2/2 = lambda - 1 - ln lambda,
// from tests/data/mcmath/distfunseries.py.
constexpr double kUniform[] = {1.0,
                               -0.3333333333333333,
                               0.08333333333333333,
                               -0.014814814814814815,
                               0.0011574074074074073,
                               0.0003527336860670194,
                               -0.0001787551440329218,
                               3.919263178522438e-05,
                               -2.185448510679992e-06,
                               -1.85406221071516e-06,
                               8.296711340953087e-07,
                               -1.7665952736826078e-07,
                               6.707853543401498e-09,
                               1.0261809784240309e-08,
                               -4.382036018453353e-09,
                               9.14769958223679e-10,
                               -2.5514193994946248e-11,
                               -5.830772132550426e-11,
                               2.4361948020667415e-11,
                               -5.0276692801141755e-12,
                               1.1004392031956135e-13,
                               3.371763262400985e-13,
                               -1.392388722418162e-13,
                               2.8534893807047445e-14,
                               -5.139111834242572e-16,
                               -1.9752288294349442e-15,
                               8.099521156704561e-16,
                               -1.6522531216398162e-16,
                               2.5305430097478883e-18,
                               1.1686939738559576e-17,
                               -4.770037049820485e-18,
                               9.699126059056237e-19,
                               -1.2932565538038175e-20,
                               -6.969230253185693e-20,
                               2.835145432176937e-20,
                               -5.7509821590070474e-21,
                               6.792953783488915e-23,
                               4.182125426111336e-22,
                               -1.6971539620047604e-22,
                               3.43621593839432e-23,
                               -3.643995779628021e-25,
                               -2.522535663578434e-24,
                               1.0217275578876767e-24,
                               -2.0656189282895155e-25,
                               1.987728212387035e-27,
                               1.5280113092999194e-26};

// 1 + x/(a+1) + x^2/((a+1)(a+2)) + ...
double LowerSeries(double a, double x) {
  double sum = 0.0;
  double term = 1.0;
  for (double n = a + 1.0; term > kTolerance; n += 1.0) {
    term *= x / n;
    sum += term;
  }
  return 1.0 + sum;
}

// Q(a, x) over its density: the continued fraction as a sum.
double UpperFraction(double a, double x) {
  double p = 0.0;
  double q = (x - 1.0 - a) * (x + 1.0 - a);
  double r = 4.0 * (x + 1.0 - a);
  double s = 1.0 - a;
  double ratio = 0.0;
  double term = 1.0;
  double sum = 0.0;
  while (std::fabs(term) > kTolerance) {
    p += s;
    q += r;
    r += 8.0;
    s += 2.0;
    const double product = p * (1.0 + ratio);
    ratio = product / (q - product);
    term *= ratio;
    sum += term;
  }
  return (1.0 + sum) / (x + 1.0 - a);
}

// Q(a, x) for a <= 1 and x <= kSmall, where it may be small: 1 - P by its alternating series, with
// x^a / gamma(1+a) - 1 from its logarithm.
double UpperOfSmall(double a, double x) {
  double sum = 0.0;
  double power = 1.0;
  for (double n = 1.0; std::fabs(power) > kTolerance; n += 1.0) {
    power *= -x / n;
    sum -= power / (a + n);
  }
  const double logarithm = a * std::log(x) - LogGamma1p(a);
  const double excess = std::expm1(logarithm);
  return a * (1.0 + excess) * sum - excess;
}

}  // namespace

Tails IncompleteGamma(double parameter, double x) {
  const double a = std::max(parameter, kLeastParameter);
  if (a >= kUniformFrom && x > 0.31 * a && x < 2.35 * a) {
    return UniformPoint(a, Deviance(a, x), x > a)
        .TailsFor(kUniform, std::exp(-StirlingRemainder(a)));
  }
  const double slope = GammaDensity(a, x).Value();
  if (x <= a || x <= kSmall) {
    Tails tails = FromLower(slope / a * LowerSeries(a, x), slope);
    if (a <= 1.0 && x <= kSmall) tails.fUpper = UpperOfSmall(a, x);
    return tails;
  }
  return FromUpper(slope * UpperFraction(a, x), slope);
}

}  // namespace detail
}  // namespace MCCommonMath
