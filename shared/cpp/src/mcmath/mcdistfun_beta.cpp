// SPDX-License-Identifier: Apache-2.0
// Incomplete beta ratio and the distributions of t and F, which are made of it. Both hand the ratio
// x and 1 - x, each formed without a subtraction.
#include "mcmath/detail/errorfunction.h"
#include "mcmath/detail/incompletebeta.h"
#include "mcmath/detail/quantiles.h"
#include "mcmath/detail/refusal.h"
#include "mcmath/mcdistfun.h"
#include "regression/frame/mcmv.h"

#include <cmath>

namespace MCCommonMath {

namespace {

using detail::DoubleDouble;
using detail::Refuse;

bool IsParameter(double a) {
  return a > 0.0 && std::isfinite(a);
}

// From here on t and the normal variate agree to the last digit wherever their tails are doubles.
constexpr double kNormalDf = 1e25;

// Products within these bounds, their sums and quotients, stay far from both ends of doubles.
constexpr double kTiny = 1e-90;
constexpr double kHuge = 1e90;

bool IsModerate(double x) {
  return x > kTiny && x < kHuge;
}

// Tails of the beta distribution where the odds x/(1-x) are the quotient of two products, each
// given by its factors. Without the derivative.
detail::Tails BetaTailsOfOdds(double a, double b, double above1, double above2, double below) {
  if (IsModerate(above1) && IsModerate(above2) && IsModerate(below)) {
    const DoubleDouble above = detail::ExactProduct(above1, above2);
    const DoubleDouble sum = above + below;
    return detail::IncompleteBeta(a, b, above / sum, DoubleDouble(below) / sum);
  }
  const DoubleDouble logOdds = detail::Log(above1) + detail::Log(above2) - detail::Log(below);
  constexpr double kNearEnd = 230.0;
  if (logOdds.fHigh > kNearEnd) {
    return detail::Swapped(detail::IncompleteBetaNearZero(b, a, -logOdds));
  }
  if (logOdds.fHigh < -kNearEnd) return detail::IncompleteBetaNearZero(a, b, logOdds);
  const DoubleDouble odds(detail::Exp(logOdds));
  const DoubleDouble y = DoubleDouble(1.0) / (odds + 1.0);
  return detail::IncompleteBeta(a, b, odds * y, y);
}

// P(T <= -size) for size > 0.
double LowerTOfSize(double size, double df) {
  constexpr double kPi = 3.141592653589793;
  if (df >= kNormalDf) return detail::NormalUpper(size);
  if (std::isinf(size)) return 0.0;
  if (df == 1.0) return size > 1.0 ? std::atan(1.0 / size) / kPi : 0.5 - std::atan(size) / kPi;
  const detail::Tails tails = BetaTailsOfOdds(0.5, df / 2.0, size, size, df);
  return size > 1.0 ? 0.5 * tails.fUpper : 0.5 - 0.5 * tails.fLower;
}

// Both tails of F. False for arguments out of range.
bool TailsOfF(double f, double d1, double d2, detail::Tails& tails) {
  if (std::isnan(f) || !IsParameter(d1) || !IsParameter(d2)) return false;
  if (f <= 0.0) {
    tails = {0.0, 1.0, 0.0};
  } else if (std::isinf(f)) {
    tails = {1.0, 0.0, 0.0};
  } else {
    tails = BetaTailsOfOdds(d1 / 2.0, d2 / 2.0, d1, f, d2);
  }
  return true;
}

// x a / b, where the quotient may be no normal double.
double TimesQuotient(double x, double a, double b) {
  const double quotient = a / b;
  if (std::isnormal(quotient)) return x * quotient;
  const double root = std::sqrt(a) / std::sqrt(b);
  return x * root * root;
}

double TQuantile(double p, double df) {
  constexpr double kPi = 3.141592653589793;
  if (p == 0.5) return 0.0;
  if (df >= kNormalDf) return detail::NormalQuantile(p);
  const double tail = p < 0.5 ? p : 1.0 - p;
  double size = 0.0;
  if (df == 1.0) {
    size = tail < 0.25 ? 1.0 / std::tan(kPi * tail) : std::tan(kPi * (0.5 - tail));
  } else {
    // From the normal approximation of D. L. Wallace (1959).
    const double z = detail::NormalQuantile(tail) * (8.0 * df + 3.0) / (8.0 * df + 1.0);
    const double odds = detail::BetaQuantileOdds(0.5, df / 2.0, 1.0 - 2.0 * tail, 2.0 * tail,
                                                 std::expm1(z * z / df));
    size = std::sqrt(odds) * std::sqrt(df);
  }
  return p < 0.5 ? -size : size;
}

}  // namespace

double MCDistFun::cdfbet(const double& x, const double& a, const double& b, long& error) {
  error = 0;
  if (!(x >= 0.0 && x <= 1.0) || !IsParameter(a) || !IsParameter(b)) return Refuse(error);
  if (x == 0.0 || x == 1.0) return x;
  return detail::IncompleteBeta(a, b, x, detail::ExactSum(1.0, -x)).fLower;
}

double MCDistFun::betinv(double p, double a, double b) {
  if (!(p >= 0.0 && p <= 1.0) || !IsParameter(a) || !IsParameter(b)) return MCMV::gMissingValue;
  if (p == 0.0 || p == 1.0) return p;
  const double odds = detail::BetaQuantileOdds(a, b, p, 1.0 - p, 0.0);
  return std::isinf(odds) ? 1.0 : odds / (1.0 + odds);
}

double MCDistFun::IdfBeta(double p, double a, double b) {
  return betinv(p, a, b);
}

double MCDistFun::veskcdft(const double& t, const double& df, long& error) {
  error = 0;
  if (!(df > 0.0) || std::isnan(t)) return Refuse(error);
  if (t == 0.0) return 0.5;
  const double tail = LowerTOfSize(std::fabs(t), df);
  return t < 0.0 ? tail : 1.0 - tail;
}

double MCDistFun::CdfT(double t, double df) {
  long error = 0;
  return veskcdft(t, df, error);
}

double MCDistFun::SigT(double t, double df) {
  long error = 0;
  const double tail = veskcdft(-std::fabs(t), df, error);
  return error == 0 ? 2.0 * tail : tail;
}

double MCDistFun::veskidft(const double& p, const double& df, long& error) {
  error = 0;
  if (!(p > 0.0 && p < 1.0) || !(df > 0.0)) return Refuse(error);
  return TQuantile(p, df);
}

double MCDistFun::IdfT(double p, double df) {
  long error = 0;
  return veskidft(p, df, error);
}

double MCDistFun::veskcdff(const double& f, const double& d1, const double& d2, long& error) {
  error = 0;
  detail::Tails tails{};
  return TailsOfF(f, d1, d2, tails) ? tails.fLower : Refuse(error);
}

double MCDistFun::CdfF(double f, double d1, double d2) {
  long error = 0;
  return veskcdff(f, d1, d2, error);
}

double MCDistFun::SigF(double f, double d1, double d2) {
  detail::Tails tails{};
  return TailsOfF(f, d1, d2, tails) ? tails.fUpper : MCMV::gMissingValue;
}

double MCDistFun::veskidff(const double& p, const double& d1, const double& d2, long& error) {
  error = 0;
  if (!(p >= 0.0 && p < 1.0) || !IsParameter(d1) || !IsParameter(d2)) return Refuse(error);
  if (p == 0.0) return 0.0;
  const double odds = detail::BetaQuantileOdds(d1 / 2.0, d2 / 2.0, p, 1.0 - p, 0.0);
  return odds == 0.0 || std::isinf(odds) ? odds : TimesQuotient(odds, d2, d1);
}

double MCDistFun::IdfF(double p, double d1, double d2) {
  long error = 0;
  return veskidff(p, d1, d2, error);
}

}  // namespace MCCommonMath
