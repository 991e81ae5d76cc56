// SPDX-License-Identifier: Apache-2.0
// Hypergeometric distribution.
#include "mcmath/detail/countingterms.h"
#include "mcmath/detail/doubledouble.h"
#include "mcmath/detail/refusal.h"
#include "mcmath/mcdistfun.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {

namespace {

using detail::DoubleDouble;
using detail::HypergeometricTerm;
using detail::Urn;

// Terms fall off faster than a geometric series soon after the first: what follows such a term
// doesn't change the sum.
constexpr double kNegligible = 0x1p-58;

bool IsCount(double x) {
  return x >= 0.0 && std::floor(x) == x;
}

// The least and the most that can be marked among those drawn.
double Least(const Urn& urn) {
  return std::max(0.0, urn.fDrawn - (urn.fAll - urn.fMarked));
}

double Most(const Urn& urn) {
  return std::min(urn.fMarked, urn.fDrawn);
}

// The term at k + 1 over the one at k. Both products are exact up to N = 9e7.
DoubleDouble RatioUp(double k, const Urn& urn) {
  return detail::ExactProduct(urn.fMarked - k, urn.fDrawn - k) /
         detail::ExactProduct(k + 1.0, urn.fAll - urn.fMarked - urn.fDrawn + k + 1.0);
}

// Terms from k downwards, over the first. In twice the precision: there may be some thousands.
double SumDown(double k, const Urn& urn) {
  DoubleDouble sum = 1.0;
  DoubleDouble term = 1.0;
  double i = k;
  while (i > Least(urn)) {
    i -= 1.0;
    term = term / RatioUp(i, urn);
    sum = sum + term.fHigh;
    if (term.fHigh < kNegligible * sum.fHigh) break;
  }
  return sum.fHigh;
}

double SumUp(double k, const Urn& urn) {
  DoubleDouble sum = 1.0;
  DoubleDouble term = 1.0;
  double i = k;
  while (i < Most(urn)) {
    term = term * RatioUp(i, urn);
    i += 1.0;
    sum = sum + term.fHigh;
    if (term.fHigh < kNegligible * sum.fHigh) break;
  }
  return sum.fHigh;
}

// Sum of the terms at edge -+ 1/2, -+ 3/2, ... where they fall off, for a deviation `sd` of
// thousands: the integral from the edge, by Gauss-Legendre on stretches of one sd, and the first
// terms of the Euler-Maclaurin formula for midpoints.
double SumOfMany(double edge, double direction, double sd, const Urn& urn) {
  constexpr double kNodes[] = {0.09501250983763744, 0.2816035507792589, 0.45801677765722737,
                               0.6178762444026438,  0.755404408355003,  0.8656312023878318,
                               0.9445750230732326,  0.9894009349916499};
  constexpr double kWeights[] = {0.1894506104550685,   0.18260341504492358, 0.16915651939500254,
                                 0.14959598881657674,  0.12462897125553388, 0.09515851168249279,
                                 0.062253523938647894, 0.027152459411754096};
  const auto termAt = [&](double k) {
    return k >= Least(urn) + 1.0 && k <= Most(urn) - 1.0 ? HypergeometricTerm(k, urn) : 0.0;
  };
  double integral = 0.0;
  const double half = 0.5 * sd;
  for (double middle = edge + direction * half;; middle += direction * sd) {
    double stretch = 0.0;
    for (int i = 0; i < 8; ++i) {
      stretch +=
          kWeights[i] * (termAt(middle - half * kNodes[i]) + termAt(middle + half * kNodes[i]));
    }
    integral += half * stretch;
    if (!(half * stretch > 1e-18 * integral)) break;
  }
  // Derivatives by the logarithm of the term, which changes slowly.
  const double rate = std::log(RatioUp(edge - 0.5, urn).fHigh);
  return integral - termAt(edge) * direction * -rate * (1.0 / 24.0 - 7.0 / 5760.0 * rate * rate);
}

double Deviation(const Urn& urn) {
  const double share = urn.fMarked / urn.fAll;
  const double drawn = urn.fDrawn / urn.fAll;
  return std::sqrt(urn.fAll * share * (1.0 - share) * drawn * (1.0 - drawn));
}

// P(K <= k) for a k inside the support, by the tail that k lies in.
double LowerTail(double k, const Urn& urn) {
  constexpr double kMany = 10000.0;
  const double mode = std::floor((urn.fMarked + 1.0) * ((urn.fDrawn + 1.0) / (urn.fAll + 2.0)));
  const double sd = Deviation(urn);
  if (sd > kMany) {
    const double sum = SumOfMany(k + 0.5, k < mode ? -1.0 : 1.0, sd, urn);
    return k < mode ? sum : 1.0 - sum;
  }
  if (k < mode) return std::min(1.0, HypergeometricTerm(k, urn) * SumDown(k, urn));
  return std::max(0.0, 1.0 - HypergeometricTerm(k + 1.0, urn) * SumUp(k + 1.0, urn));
}

}  // namespace

double MCDistFun::CDFHyper(double x, double N, double K, double n, int& error) {
  error = 0;
  constexpr double kMostExact = 0x1p53;
  if (std::isnan(x) || !IsCount(N) || !IsCount(K) || !IsCount(n) || K > N || n > N ||
      N > kMostExact) {
    return detail::Refuse(error);
  }
  const Urn urn{N, K, n};
  if (x < Least(urn)) return 0.0;
  return x >= Most(urn) ? 1.0 : LowerTail(std::floor(x), urn);
}

}  // namespace MCCommonMath
