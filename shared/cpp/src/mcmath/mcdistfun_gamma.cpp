// SPDX-License-Identifier: Apache-2.0
// Log gamma, incomplete gamma ratio and the chi-square distribution.
#include "mcmath/detail/doubledouble.h"
#include "mcmath/detail/errorfunction.h"
#include "mcmath/detail/incompletegamma.h"
#include "mcmath/detail/loggamma.h"
#include "mcmath/detail/quantiles.h"
#include "mcmath/detail/refusal.h"
#include "mcmath/mcdistfun.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MCCommonMath {

namespace {

using detail::NormalLower;
using detail::Refuse;

// Normal approximation to P(a, x) of Peizer and Pratt, for a >= 1/2.
double PeizerPratt(double x, double a) {
  constexpr double kNothing = 0x1p-60;
  const double q = (a - 0.5) / x;
  if (q > 2.0) return 0.0;  // a is large here
  double s = std::sqrt(1.0 / x);
  if (q <= kNothing) {
    s = std::sqrt(2.0 / x);
  } else if (q != 1.0) {
    // q ln q + 1 - q is a deviance, which doesn't cancel for q near 1.
    const double deviance = -detail::Deviance(q, 1.0).fHigh;
    s = std::sqrt(2.0 * deviance / x) / std::fabs(1.0 - q);
  }
  return NormalLower(-(a - x + (0.022 / a - 1.0 / 3.0)) * s);
}

// The deviate of Wilson and Hilferty, of which P(a, x) is the lower tail and Q(a, x) the upper one.
double WilsonHilferty(double x, double a) {
  const double s = 3.0 * std::sqrt(a);
  if (x == a) return 1.0 / s;
  return (1.0 / (9.0 * a) + std::expm1(std::log(x / a) / 3.0)) * s;
}

bool IsApproximated(double x, double a) {
  constexpr double kLastLogGamma = 2.559983e305;  // beyond it ln gamma overflows
  constexpr double kLargeX = 9.4011e76;           // 4 ln x = 709
  if (a > kLastLogGamma) return true;
  if (x <= 1.0 || a >= x) return x / (a + 1.0) == 1.0;
  return x >= kLargeX;
}

double Approximation(double x, double a, bool upper) {
  if (!upper && a >= 0.5) return PeizerPratt(x, a);
  const double z = WilsonHilferty(x, a);
  return NormalLower(upper ? -z : z);
}

double ChiSquareTail(double x, double df, bool upper) {
  long error = 0;
  // The least double has no half.
  const double a = df > 0.0 ? std::max(df / 2.0, std::numeric_limits<double>::min()) : df;
  return MCDistFun::gammad(x / 2.0, a, upper, error);
}

double ChiSquareQuantile(double p, double df, double start, long& error) {
  error = 0;
  if (!(p >= 0.0 && p < 1.0) || !(df > 0.0) || !std::isfinite(df) || std::isnan(start)) {
    return Refuse(error);
  }
  if (p == 0.0) return 0.0;
  return 2.0 * detail::GammaQuantile(df / 2.0, p, 1.0 - p, start / 2.0);
}

// ln gamma(x + 1) without what Stirling's formula has in x ln x - x: the part of a factorial that
// deviances leave over.
double FactorialRest(double x) {
  constexpr double kHalfLog2Pi = 0.91893853320467274;
  if (x < 1.0) return detail::LogGamma1p(x) + (x > 0.0 ? x - x * std::log(x) : 0.0);
  return kHalfLog2Pi + 0.5 * std::log(x) + detail::StirlingRemainder(x);
}

}  // namespace

double MCDistFun::dnlgam(double x) {
  return x > 0.0 ? detail::LogGamma(x) : MCMV::gMissingValue;
}

double MCDistFun::veskdnlgam(double x) {
  return dnlgam(x);
}

double MCDistFun::cbtaux(double x) {
  return x > 0.0 ? detail::StirlingRemainder(x) : MCMV::gMissingValue;
}

double MCDistFun::dnlbnc(const double& n, const double& k, long& error) {
  error = 0;
  if (!(k >= 0.0 && k <= n) || !std::isfinite(n)) return Refuse(error);
  const double rest = n - k;
  if (k == 0.0 || rest == 0.0) return 0.0;
  const double share = k / n;
  const double logShare = std::isnormal(share) ? std::log(share) : std::log(k) - std::log(n);
  const double main = -k * logShare - rest * std::log1p(-share);
  return main + (FactorialRest(n) - FactorialRest(k) - FactorialRest(rest));
}

double MCDistFun::gammad(const double& x, const double& a, bool upper, long& error) {
  error = 0;
  if (!(a > 0.0) || std::isnan(x)) return Refuse(error);
  if (x <= 0.0) return upper ? 1.0 : 0.0;
  if (std::isinf(x)) return upper ? 0.0 : 1.0;
  if (std::isinf(a)) return upper ? 1.0 : 0.0;
  if (a == 1.0) return upper ? detail::Exp(-x) : -std::expm1(-x);
  if (IsApproximated(x, a)) return Approximation(x, a, upper);
  const detail::Tails tails = detail::IncompleteGamma(a, x);
  return upper ? tails.fUpper : tails.fLower;
}

double MCDistFun::CdfChi(double x, double df) {
  return ChiSquareTail(x, df, false);
}

double MCDistFun::SigChi(double x, double df) {
  return ChiSquareTail(x, df, true);
}

double MCDistFun::veskidfchi(const double& p, const double& df, long& error) {
  return ChiSquareQuantile(p, df, 0.0, error);
}

double MCDistFun::idfchb(const double& p, const double& df, const double& start, long& error) {
  return ChiSquareQuantile(p, df, start, error);
}

double MCDistFun::IdfChi(double p, double df) {
  long error = 0;
  return veskidfchi(p, df, error);
}

}  // namespace MCCommonMath
