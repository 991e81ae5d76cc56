// SPDX-License-Identifier: Apache-2.0
// Error function and normal distribution.
#include "mcmath/detail/errorfunction.h"
#include "mcmath/mcdistfun.h"
#include "regression/frame/mcmv.h"

#include <cmath>

namespace MCCommonMath {

namespace {

bool IsNormal(double mean, double sd) {
  return std::isfinite(mean) && std::isfinite(sd) && sd > 0.0;
}

}  // namespace

double MCDistFun::derf(double x) {
  return std::isnan(x) ? MCMV::gMissingValue : detail::Erf(x);
}

double MCDistFun::derfc(double x) {
  return std::isnan(x) ? MCMV::gMissingValue : detail::Erfc(x);
}

double MCDistFun::prbnrm(double x) {
  return std::isnan(x) ? MCMV::gMissingValue : detail::NormalLower(x);
}

double MCDistFun::probit(double p) {
  return p > 0.0 && p < 1.0 ? detail::NormalQuantile(p) : MCMV::gMissingValue;
}

double MCDistFun::CdfStdNorm(double x) {
  return prbnrm(x);
}

double MCDistFun::CdfNorm(double x, double mean, double sd) {
  if (!IsNormal(mean, sd)) return MCMV::gMissingValue;
  const double difference = x - mean;
  const bool isOverflow = std::isinf(difference) && !std::isinf(x);
  return prbnrm(isOverflow ? x / sd - mean / sd : difference / sd);
}

double MCDistFun::IdfStdNorm(double p) {
  return probit(p);
}

double MCDistFun::IdfNorm(double p, double mean, double sd) {
  const double z = probit(p);
  return IsNormal(mean, sd) && z != MCMV::gMissingValue ? mean + sd * z : MCMV::gMissingValue;
}

}  // namespace MCCommonMath
