// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/countingterms.h"

#include <cmath>

namespace MCCommonMath {
namespace detail {

namespace {

constexpr double k2Pi = 6.283185307179586;

}  // namespace

ScaledExp PoissonTerm(double count, const DoubleDouble& mean) {
  if (count == 0.0) return {1.0, -mean};
  return {1.0 / std::sqrt(k2Pi * count), Deviance(count, mean) - StirlingRemainder(count)};
}

ScaledExp operator*(const ScaledExp& a, const ScaledExp& b) {
  return {a.fFactor * b.fFactor, a.fExponent + b.fExponent};
}

ScaledExp operator/(const ScaledExp& a, const ScaledExp& b) {
  return {a.fFactor / b.fFactor, a.fExponent - b.fExponent};
}

double BinomialTerm(double k, double n, double p) {
  const DoubleDouble q = ExactSum(1.0, -p);
  if (k == 0.0) return Exp(Log(q) * n);
  if (k == n) return Exp(Log(p) * n);
  const double rest = n - k;
  const double correction = StirlingRemainder(n) - StirlingRemainder(k) - StirlingRemainder(rest);
  return ScaledExp{std::sqrt(n / (k2Pi * k * rest)),
                   Deviance(k, ExactProduct(n, p)) + Deviance(rest, q * n) + correction}
      .Value();
}

double HypergeometricTerm(double k, const Urn& urn) {
  const double plain = urn.fAll - urn.fMarked;
  const DoubleDouble drawnShare = DoubleDouble(urn.fDrawn) / urn.fAll;
  const DoubleDouble leftShare = DoubleDouble(urn.fAll - urn.fDrawn) / urn.fAll;
  const double left = urn.fMarked - k;
  const double plainDrawn = urn.fDrawn - k;
  const double plainLeft = plain - plainDrawn;
  const ScaledExp cells =
      PoissonTerm(k, drawnShare * urn.fMarked) * PoissonTerm(left, leftShare * urn.fMarked) *
      PoissonTerm(plainDrawn, drawnShare * plain) * PoissonTerm(plainLeft, leftShare * plain);
  const ScaledExp margins = PoissonTerm(urn.fMarked, urn.fMarked) * PoissonTerm(plain, plain) *
                            PoissonTerm(urn.fDrawn, urn.fDrawn) *
                            PoissonTerm(urn.fAll - urn.fDrawn, urn.fAll - urn.fDrawn) /
                            PoissonTerm(urn.fAll, urn.fAll);
  return (cells / margins).Value();
}

}  // namespace detail
}  // namespace MCCommonMath
