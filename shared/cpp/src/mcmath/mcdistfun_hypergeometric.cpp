// SPDX-License-Identifier: Apache-2.0
// Hypergeometric distribution.
#include "mcmath/detail/countingterms.h"
#include "mcmath/detail/doubledouble.h"
#include "mcmath/detail/refusal.h"
#include "mcmath/mcdistfun.h"
#include "mcmath/mcpower.h"

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

// The same urn with the other objects marked: of those drawn, the others are counted.
Urn Reversed(const Urn& urn) {
  return {urn.fAll, urn.fAll - urn.fMarked, urn.fDrawn};
}

// The term at k - 1 over the one at k. Both products are exact up to N = 9e7.
DoubleDouble RatioDown(double k, const Urn& urn) {
  return detail::ExactProduct(k, urn.fAll - urn.fMarked - urn.fDrawn + k) /
         detail::ExactProduct(urn.fMarked - k + 1.0, urn.fDrawn - k + 1.0);
}

// Terms from k downwards, over the first. In twice the precision: there may be some thousands.
double SumDown(double k, const Urn& urn) {
  DoubleDouble sum = 1.0;
  DoubleDouble term = 1.0;
  double i = k;
  const double least = Least(urn);
  while (i > least) {
    term = term * RatioDown(i, urn);
    i -= 1.0;
    sum = sum + term.fHigh;
    if (term.fHigh < kNegligible * sum.fHigh) break;
  }
  return sum.fHigh;
}

// Sum of the terms from k downwards, below the mode, for a deviation `sd` of thousands: the
// integral from the edge at k + 1/2, by Gauss-Legendre on stretches of one sd, and the first terms
// of the Euler-Maclaurin formula for midpoints.
double SumOfMany(double k, double sd, const Urn& urn) {
  constexpr double kNodes[] = {0.09501250983763744, 0.2816035507792589, 0.45801677765722737,
                               0.6178762444026438,  0.755404408355003,  0.8656312023878318,
                               0.9445750230732326,  0.9894009349916499};
  constexpr double kWeights[] = {0.1894506104550685,   0.18260341504492358, 0.16915651939500254,
                                 0.14959598881657674,  0.12462897125553388, 0.09515851168249279,
                                 0.062253523938647894, 0.027152459411754096};
  const double least = Least(urn) + 1.0;
  const double most = Most(urn) - 1.0;
  const auto termAt = [&](double x) {
    return x >= least && x <= most ? HypergeometricTerm(x, urn) : 0.0;
  };
  const double edge = k + 0.5;
  double integral = 0.0;
  const double half = 0.5 * sd;
  for (double middle = edge - half;; middle -= sd) {
    double stretch = 0.0;
    for (int i = 0; i < 8; ++i) {
      stretch +=
          kWeights[i] * (termAt(middle - half * kNodes[i]) + termAt(middle + half * kNodes[i]));
    }
    integral += half * stretch;
    if (!(half * stretch > 1e-18 * integral)) break;
  }
  // Derivatives by the logarithm of the term, which changes slowly.
  const double rate = -std::log(RatioDown(k + 1.0, urn).fHigh);
  return integral - termAt(edge) * rate * (1.0 / 24.0 - 7.0 / 5760.0 * rate * rate);
}

double Deviation(const Urn& urn) {
  const double share = urn.fMarked / urn.fAll;
  const double drawn = urn.fDrawn / urn.fAll;
  return std::sqrt(urn.fAll * share * (1.0 - share) * drawn * (1.0 - drawn));
}

// P(K <= k) for a k below the mode.
double TailBelow(double k, const Urn& urn) {
  constexpr double kMany = 10000.0;
  const double sd = Deviation(urn);
  const double sum =
      sd > kMany ? SumOfMany(k, sd, urn) : HypergeometricTerm(k, urn) * SumDown(k, urn);
  return std::min(sum, 1.0);
}

// P(K <= k) for a k inside the support, by the tail that k lies in.
double LowerTail(double k, const Urn& urn) {
  const double mode = std::floor((urn.fMarked + 1.0) * ((urn.fDrawn + 1.0) / (urn.fAll + 2.0)));
  return k < mode ? TailBelow(k, urn) : 1.0 - TailBelow(urn.fDrawn - k - 1.0, Reversed(urn));
}

}  // namespace

double MCDistFun::CDFHyper(double x, double N, double K, double n, int& error) {
  error = 0;
  if (std::isnan(x) || !IsCount(N) || !IsCount(K) || !IsCount(n) || K > N || n > N ||
      N > MCPower::gMachineMaxInt) {
    return detail::Refuse(error);
  }
  const Urn urn{N, K, n};
  if (x < Least(urn)) return 0.0;
  return x >= Most(urn) ? 1.0 : LowerTail(std::floor(x), urn);
}

}  // namespace MCCommonMath
