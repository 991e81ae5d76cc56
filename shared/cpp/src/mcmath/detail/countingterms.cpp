// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/countingterms.h"

#include "mcmath/detail/doubledouble.h"
#include "mcmath/detail/loggamma.h"

#include <cmath>

namespace MCCommonMath {
namespace detail {

namespace {

constexpr double k2Pi = 6.283185307179586;

// The number exp(fExponent) / sqrt(fSquare).
struct PoissonTerm {
  double fSquare;
  DoubleDouble fExponent;
};

// The Poisson probability mean^count exp(-mean) / count!; count is 0 or at least 1.
PoissonTerm Term(double count, const DoubleDouble& mean) {
  if (count == 0.0) return {1.0, -mean};
  return {k2Pi * count, Deviance(count, mean) - StirlingRemainder(count)};
}

PoissonTerm operator*(const PoissonTerm& a, const PoissonTerm& b) {
  return {a.fSquare * b.fSquare, a.fExponent + b.fExponent};
}

// base^n, whose logarithm may be below all doubles.
double Power(const DoubleDouble& base, double n) {
  const DoubleDouble logarithm = Log(base);
  return logarithm.fHigh * n < kMachineMinExp ? 0.0 : Exp(logarithm * n);
}

}  // namespace

double BinomialTerm(double k, double n, double p) {
  const DoubleDouble q = ExactSum(1.0, -p);
  if (k == 0.0) return Power(q, n);
  if (k == n) return Power(p, n);
  const double rest = n - k;
  const double correction = StirlingRemainder(n) - StirlingRemainder(k) - StirlingRemainder(rest);
  const DoubleDouble exponent =
      Deviance(k, ExactProduct(n, p)) + Deviance(rest, q * n) + correction;
  const ScaledExp term{std::sqrt(n / rest / k / k2Pi), exponent};
  return term.Value();
}

double HypergeometricTerm(double k, const Urn& urn) {
  const double plain = urn.fAll - urn.fMarked;
  const double rest = urn.fAll - urn.fDrawn;
  const DoubleDouble drawnShare = DoubleDouble(urn.fDrawn) / urn.fAll;
  const DoubleDouble restShare = DoubleDouble(rest) / urn.fAll;
  const PoissonTerm cells =
      Term(k, drawnShare * urn.fMarked) * Term(urn.fMarked - k, restShare * urn.fMarked) *
      Term(urn.fDrawn - k, drawnShare * plain) * Term(rest - (urn.fMarked - k), restShare * plain);
  const PoissonTerm margins = Term(urn.fMarked, urn.fMarked) * Term(plain, plain) *
                              Term(urn.fDrawn, urn.fDrawn) * Term(rest, rest);
  const PoissonTerm all = Term(urn.fAll, urn.fAll);
  const ScaledExp term{std::sqrt(margins.fSquare / (cells.fSquare * all.fSquare)),
                       cells.fExponent + all.fExponent - margins.fExponent};
  return term.Value();
}

}  // namespace detail
}  // namespace MCCommonMath
