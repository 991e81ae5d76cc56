// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/countingterms.h"

#include <cmath>

namespace MCCommonMath {
namespace detail {

ScaledExp PoissonTerm(double count, const DoubleDouble& mean) {
  if (count == 0.0) return {1.0, -mean};
  return {1.0 / std::sqrt(6.283185307179586 * count),
          Deviance(count, mean) - StirlingRemainder(count)};
}

ScaledExp operator*(const ScaledExp& a, const ScaledExp& b) {
  return {a.fFactor * b.fFactor, a.fExponent + b.fExponent};
}

ScaledExp operator/(const ScaledExp& a, const ScaledExp& b) {
  return {a.fFactor / b.fFactor, a.fExponent - b.fExponent};
}

double BinomialTerm(double k, double n, double p) {
  const DoubleDouble successes = ExactProduct(n, p);
  const DoubleDouble failures = ExactSum(1.0, -p) * n;
  return (PoissonTerm(k, successes) * PoissonTerm(n - k, failures) / PoissonTerm(n, n)).Value();
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
