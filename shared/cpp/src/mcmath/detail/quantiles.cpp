// SPDX-License-Identifier: Apache-2.0
// Inverses of the incomplete ratios. The logarithms of gamma variates and of the odds of beta
// variates have log-concave densities, so the logarithm of each tail is concave in that variable:
// Newton's steps would converge from any start; Halley's take fewer of them, inside a bracket.
// Numerical method of the starts: E. B. Wilson, M. M. Hilferty, PNAS 17 (1931), 684-688; G. W.
// Cran, K. J. Martin, G. E. Thomas, Algorithm AS 109, Applied Statistics 26 (1977), 111-114; D. J.
// Best, D. E. Roberts, Algorithm AS 91, Applied Statistics 24 (1975), 385-388.
#include "mcmath/detail/quantiles.h"

#include "mcmath/detail/errorfunction.h"
#include "mcmath/detail/incompletebeta.h"
#include "mcmath/detail/incompletegamma.h"
#include "mcmath/detail/loggamma.h"
#include "mcmath/detail/uniformtails.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MCCommonMath {
namespace detail {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool IsGiven(double start) {
  return start > 0.0 && start < kInfinity;
}

// What is known of a root from the points that were tried.
class Bracket {
public:
  void Add(double point, bool isBelow) {
    if (isBelow) {
      fLow = std::max(fLow, point);
    } else {
      fHigh = std::min(fHigh, point);
    }
  }

  // `proposed` if it lies inside, otherwise the middle in logarithms. Towards an end that no point
  // has bounded yet the steps grow; they end at 0 or infinity.
  double Inside(double proposed) {
    if (proposed > fLow && proposed < fHigh) return proposed;
    if (fLow > 0.0 && fHigh < kInfinity) return std::sqrt(fLow) * std::sqrt(fHigh);
    const double factor = fFactor;
    fFactor *= fFactor;
    if (fHigh == kInfinity) {
      const double next = std::min(fLow * factor, std::sqrt(fLow) * std::sqrt(kMost));
      return next > fLow ? next : kInfinity;
    }
    const double next = std::max(fHigh / factor, std::sqrt(fHigh) * std::sqrt(kLeast));
    return next < fHigh ? next : 0.0;
  }

private:
  static constexpr double kLeast = std::numeric_limits<double>::denorm_min();
  static constexpr double kMost = std::numeric_limits<double>::max();

  double fLow = 0.0;
  double fHigh = kInfinity;
  double fFactor = 64.0;
};

// A tail, its derivative by the variable u in which it is solved for, and that of the logarithm of
// the derivative's size.
struct TailAt {
  double fValue;
  double fSlope;
  double fBend;
};

// Solves tail(x) = target, of a rising or falling tail, by Halley's steps in u = ln x on the
// logarithm of the tail. Steps end after the first one that follows a step after which at most 1e-8
// of x was to go.
template <class Tail>
double SolveTail(Tail tail, bool isRising, double target, double start) {
  constexpr double kTolerance = 1e-8;
  constexpr double kNear = 2e-3;  // its cube is about what a step leaves
  constexpr int kSteps = 200;
  Bracket bracket;
  double x = start;
  bool isLast = false;
  for (int i = 0; i < kSteps && x > 0.0 && x < kInfinity; ++i) {
    const TailAt at = tail(x);
    if (at.fValue == target) return x;
    bracket.Add(x, (at.fValue < target) == isRising);
    const double rate = at.fSlope / at.fValue;
    const double distance = std::log(target / at.fValue);
    const double newton = distance / rate;
    const double bend = 0.5 * newton * (at.fBend - rate);
    const double step = newton / (1.0 + std::min(1.0, std::max(-0.5, bend)));
    const double proposed = x * std::exp(step);
    if (isLast) return proposed > 0.0 ? proposed : x;
    isLast = std::fabs(distance) <= kNear && std::fabs(step) * bend * bend <= kTolerance;
    x = isLast ? proposed : bracket.Inside(proposed);
  }
  return x;
}

// Where x^a / gamma(a+1) is the tail, at most the quantile.
double GammaSeriesStart(double a, double logLower) {
  return std::exp((logLower + LogGamma(a + 1.0)) / a);
}

double GammaStart(double a, double lower, double upper) {
  const bool isLower = lower <= upper;
  const double series = GammaSeriesStart(a, isLower ? std::log(lower) : std::log1p(-upper));
  if (series == kInfinity) return a;  // ln gamma(a+1) overflows: all of the tail's width is at a
  if (series < 0.1 || a < 0.1) {
    if (isLower || series < 0.1) return series;
    return std::max(0.1, -std::log(upper / a));
  }
  const double z = isLower ? NormalQuantile(lower) : -NormalQuantile(upper);
  const double root = 1.0 - 1.0 / (9.0 * a) + z / (3.0 * std::sqrt(a));
  const double cubic = root > 0.0 ? a * root * root * root : 0.0;
  if (cubic > 2.2 * a + 6.0) {
    // From the first term of the expansion for large x.
    const double constant = -std::log(upper) - LogGamma(a);
    return std::max(a, constant + (a - 1.0) * std::log(cubic));
  }
  return isLower ? std::max(series, cubic) : cubic > 0.0 ? cubic : series;
}

double BetaStartOdds(double a, double b, double lower) {
  const double logBeta = LogGamma(a) + LogGamma(b) - LogGamma(a + b);
  const double series = std::exp((std::log(lower * a) + logBeta) / a);
  if (a <= 1.0 || b <= 1.0) return series < kInfinity ? series : a / b;
  const double z = -NormalQuantile(lower);
  const double r = (z * z - 3.0) / 6.0;
  const double s = 1.0 / (2.0 * a - 1.0);
  const double t = 1.0 / (2.0 * b - 1.0);
  const double h = 2.0 / (s + t);
  const double w =
      z * std::sqrt(std::max(0.0, h + r)) / h - (t - s) * (r + 5.0 / 6.0 - 2.0 / (3.0 * h));
  const double cubic = a / b * std::exp(-2.0 * w);
  const double best = series < kInfinity ? std::max(series, cubic) : cubic;
  return std::isnan(best) ? a / b : best;
}

// For a lower tail of at most 1/2.
double LowerBetaOdds(double a, double b, double lower, double start) {
  const auto tail = [a, b](double odds) {
    const DoubleDouble y = DoubleDouble(1.0) / ExactSum(odds, 1.0);
    const DoubleDouble x = y * odds;
    const Tails tails = IncompleteBeta(a, b, x, y);
    return TailAt{tails.fLower, tails.fSlope, a * y.fHigh - b * x.fHigh};
  };
  return SolveTail(tail, true, lower, IsGiven(start) ? start : BetaStartOdds(a, b, lower));
}

}  // namespace

double GammaQuantile(double a, double lower, double upper, double start) {
  const bool isLower = lower <= upper;
  const auto tail = [a, isLower](double x) {
    const Tails tails = IncompleteGamma(a, x);
    return isLower ? TailAt{tails.fLower, tails.fSlope, a - x}
                   : TailAt{tails.fUpper, -tails.fSlope, a - x};
  };
  return SolveTail(tail, isLower, isLower ? lower : upper,
                   IsGiven(start) ? start : GammaStart(a, lower, upper));
}

double BetaQuantileOdds(double a, double b, double lower, double upper, double start) {
  const double first = std::max(a, kLeastParameter);
  const double second = std::max(b, kLeastParameter);
  return lower <= upper ? LowerBetaOdds(first, second, lower, start)
                        : 1.0 / LowerBetaOdds(second, first, upper, 1.0 / start);
}

}  // namespace detail
}  // namespace MCCommonMath
