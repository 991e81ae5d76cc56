// SPDX-License-Identifier: Apache-2.0
// Incomplete beta ratios. Numerical method: A. R. DiDonato, A. H. Morris, Algorithm 708, ACM TOMS
// 18 (1992), 360-373 (series and continued fraction); for large parameters near the mean a uniform
// expansion after N. M. Temme, The uniform asymptotic expansion of a class of integrals related to
// cumulative distribution functions, SIAM J. Math. Anal. 13 (1982), 239-253. The common factor
// x^a y^b / B(a, b) is made of three densities of gamma variates.
#include "mcmath/detail/incompletebeta.h"

#include "mcmath/detail/incompletegamma.h"
#include "mcmath/detail/loggamma.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace MCCommonMath {
namespace detail {

namespace {

constexpr double kTolerance = 1e-17;
constexpr double kReciprocal2Pi = 0.15915494309189535;

// From here on ab/(a + b) is large.
constexpr double kUniformFrom = 20.0;

// A point with its parameters; a <= b, so that of both tails the lower one belongs to the smaller
// parameter.
struct BetaPoint {
  double fA;
  double fB;
  DoubleDouble fX;
  DoubleDouble fY;
};

// The part of the density that changes with x, for a, b >= 1: exp of this number.
DoubleDouble BetaDeviance(const BetaPoint& p) {
  const DoubleDouble n = ExactSum(p.fA, p.fB);
  return Deviance(p.fA, n * p.fX) + Deviance(p.fB, n * p.fY);
}

// The logarithm of the other part, over that of its leading term.
double BetaCorrection(double a, double b) {
  return StirlingRemainder(a + b) - StirlingRemainder(a) - StirlingRemainder(b);
}

// That of the product of n and x, where it may underflow, but not its logarithm.
ScaledExp DensityOfProduct(double a, const DoubleDouble& n, const DoubleDouble& x) {
  constexpr double kTiny = 1e-280;
  const DoubleDouble product = n * x;
  if (a >= 1.0 || product.fHigh >= kTiny) return GammaDensity(a, product);
  return {a * ReciprocalGamma1p(a), (Log(n) + Log(x)) * a};
}

// A beta density from those of its three gamma variates.
ScaledExp Combined(const ScaledExp& first, const ScaledExp& second, const ScaledExp& both) {
  return {first.fFactor * (second.fFactor / both.fFactor),
          first.fExponent + second.fExponent - both.fExponent};
}

// x^a y^b / B(a, b).
ScaledExp BetaDensity(const BetaPoint& p) {
  if (p.fA >= 1.0) {
    const double harmonic = p.fA * (p.fB / (p.fA + p.fB));
    return {std::sqrt(harmonic * kReciprocal2Pi), BetaDeviance(p) + BetaCorrection(p.fA, p.fB)};
  }
  const DoubleDouble n = ExactSum(p.fA, p.fB);
  return Combined(DensityOfProduct(p.fA, n, p.fX), DensityOfProduct(p.fB, n, p.fY),
                  GammaDensity(n.fHigh, n.fHigh));
}

// I_x(a, b) a / density: 1 + (a+b)/(a+1) x + (a+b)(a+b+1)/((a+1)(a+2)) x^2 + ...
double LowerSeries(double a, double b, double x) {
  double sum = 0.0;
  double term = 1.0;
  for (double n = 0.0; term > kTolerance * sum; n += 1.0) {
    term *= x * (a + b + n) / (a + 1.0 + n);
    sum += term;
  }
  return 1.0 + sum;
}

// I_x(a, b) over its density by a continued fraction, as a sum, for x below the mean.
double LowerFraction(double a, double b, double x, double y) {
  const double distance = a * y - b * x;
  double before = a / (a + 1.0) * (distance + 1.0);
  double ratio = 0.0;
  double term = 1.0;
  double sum = 0.0;
  const double first = before;
  for (double m = 1.0; std::fabs(term) > kTolerance; m += 1.0) {
    const double odd = a + 2.0 * m - 1.0;
    const double w = m * (b - m) * x / odd;
    const double above = (a + m - 1.0) / odd * ((a + b + m - 1.0) * x) * w;
    const double below = m + w + (a + m) / (odd + 2.0) * (distance + 1.0 + m * (1.0 + y));
    const double product = above * (1.0 + ratio);
    ratio = -product / (below * before + product);
    term *= ratio;
    sum += term;
    before = below;
  }
  return (1.0 + sum) / first;
}

// The power series of w / v, where v = (x - p)/(pq), w^2/2 = -ln(1 + qv)/q - ln(1 - pv)/p, p and q
// the shares of a and b; from v v' = w (1 + (q-p) v - pq v^2).
void UniformCoefficients(double p, double q, std::size_t terms, double (&f)[kUniformTerms]) {
  double v[kUniformTerms + 1] = {1.0};       // of v / w
  double square[kUniformTerms + 1] = {1.0};  // of v^2 / w^2
  f[0] = 1.0;
  for (std::size_t k = 1; k < terms; ++k) {
    square[k] = 2.0 / static_cast<double>(k + 2) *
                ((q - p) * v[k - 1] - (k >= 2 ? p * q * square[k - 2] : 0.0));
    double squares = 0.0;
    double products = 0.0;
    for (std::size_t i = 1; i < k; ++i) {
      squares += v[i] * v[k - i];
      products += v[i] * f[k - i];
    }
    v[k] = 0.5 * (square[k] - squares);
    f[k] = -(v[k] + products);
  }
}

Tails OfUpperSide(const BetaPoint& p, double slope) {
  const double x = p.fX.fHigh;
  const double y = p.fY.fHigh;
  const bool isSeries = p.fB <= 2.0;
  return FromUpper(isSeries ? slope / p.fB * LowerSeries(p.fB, p.fA, y)
                            : slope * LowerFraction(p.fB, p.fA, y, x),
                   slope);
}

// For a < 1 and x up to a pivot where b x is about 1. The upper tail, which may be small, is that
// of the pivot and the integral between both, of t^(a-1) (1 - t)^(b-1) with a power series for its
// second factor.
Tails OfSmallParameter(const BetaPoint& p, double pivot, double slope) {
  constexpr double kNotSmall = 0.7;
  const double a = p.fA;
  const double x = p.fX.fHigh;
  const double lower = slope / a * LowerSeries(a, p.fB, x);
  if (lower <= kNotSmall) return FromLower(lower, slope);
  const BetaPoint at{a, p.fB, pivot, ExactSum(1.0, -pivot)};
  const double beyond = OfUpperSide(at, BetaDensity(at).Value()).fUpper;
  const double quotient = x / pivot;
  const double power = std::pow(quotient, a);
  double between = std::expm1(-a * std::log(quotient)) * power / a;
  double term = 1.0;
  double lowerPower = power;
  for (double n = 1.0; std::fabs(term) > kTolerance; n += 1.0) {
    term *= (n - p.fB) * pivot / n;
    lowerPower *= quotient;
    between += term * (1.0 - lowerPower) / (a + n);
  }
  // 1 / B(a, b) times the power of the pivot.
  const double factor = slope / power * std::exp(-p.fB * std::log1p(-x));
  return {std::min(lower, 1.0), std::max(beyond + factor * between, 0.0), slope};
}

// ln(a/n), where the quotient may underflow.
DoubleDouble LogShare(double a, const DoubleDouble& n) {
  constexpr double kTiny = 1e-280;
  const DoubleDouble share = DoubleDouble(a) / n;
  return share.fHigh >= kTiny ? Log(share) : Log(a) - Log(n);
}

// For large a and b not too far from the mean; false elsewhere.
bool TryUniform(const BetaPoint& p, Tails& tails) {
  const double n = p.fA + p.fB;
  const double harmonic = p.fA * (p.fB / n);
  if (harmonic < kUniformFrom) return false;
  const DoubleDouble exponent = BetaDeviance(p);
  if (exponent.fHigh <= -0.4 * harmonic) return false;
  const bool isAbove = (ExactSum(p.fA, p.fB) * p.fX).fHigh > p.fA;
  const UniformPoint point(harmonic, exponent, isAbove);
  double f[kUniformTerms];
  UniformCoefficients(p.fA / n, p.fB / n, point.TermsNeeded(), f);
  tails = point.TailsFor(f, std::exp(BetaCorrection(p.fA, p.fB)));
  return true;
}

Tails OfOrdered(const BetaPoint& p) {
  Tails tails{};
  if (TryUniform(p, tails)) return tails;
  const double a = p.fA;
  const double b = p.fB;
  const double x = p.fX.fHigh;
  const double slope = BetaDensity(p).Value();
  // Without a density the sums below would end too late.
  if (slope == 0.0) return b * x > a * p.fY.fHigh ? FromUpper(0.0, 0.0) : FromLower(0.0, 0.0);
  if (a >= 1.0) {
    if (b * x > a * p.fY.fHigh) return OfUpperSide(p, slope);
    return FromLower(slope / a * LowerSeries(a, b, x), slope);
  }
  const double pivot = b <= 2.0 ? 0.5 : 1.0 / b;
  return x > pivot ? OfUpperSide(p, slope) : OfSmallParameter(p, pivot, slope);
}

// x^a / (a B(a, b)): the density at the mean, with its powers of x and y taken off again.
double FirstTerm(double a, double b, const DoubleDouble& logX) {
  const double smaller = std::min(a, b);
  const double larger = std::max(a, b);
  const DoubleDouble n = ExactSum(a, b);
  ScaledExp value = smaller >= 1.0
                        ? ScaledExp{std::sqrt(smaller * (larger / n.fHigh) * kReciprocal2Pi),
                                    BetaCorrection(smaller, larger)}
                        : Combined(GammaDensity(smaller, smaller), GammaDensity(larger, larger),
                                   GammaDensity(n.fHigh, n.fHigh));
  value.fFactor /= a;
  value.fExponent = value.fExponent + (logX - LogShare(a, n)) * a - LogShare(b, n) * b;
  return value.Value();
}

}  // namespace

Tails IncompleteBeta(double a, double b, const DoubleDouble& x, const DoubleDouble& y) {
  // Where a + b would overflow, both tails are those of a quarter of each.
  constexpr double kMost = 4e307;
  const double scale = std::max(a, b) > kMost ? 0.25 : 1.0;
  const double first = std::max(a * scale, kLeastParameter);
  const double second = std::max(b * scale, kLeastParameter);
  if (first <= second) return OfOrdered({first, second, x, y});
  return Swapped(OfOrdered({second, first, y, x}));
}

Tails IncompleteBetaNearZero(double first, double second, const DoubleDouble& logX) {
  constexpr double kNothing = -45.0;
  const double a = std::max(first, kLeastParameter);
  const double b = std::max(second, kLeastParameter);
  const DoubleDouble logMean = logX + Log(b);
  if (logMean.fHigh - std::log(a + 1.0) > kNothing) return IncompleteGamma(a, Exp(logMean));
  constexpr double kMost = 1e300;  // beyond it the exponent overflows
  return FromLower(a > kMost ? 0.0 : FirstTerm(a, b, logX), 0.0);
}

}  // namespace detail
}  // namespace MCCommonMath
