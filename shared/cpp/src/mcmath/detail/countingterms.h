// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/doubledouble.h"
#include "mcmath/detail/loggamma.h"

namespace MCCommonMath {
namespace detail {

/// mean^count exp(-mean) / count!, a Poisson probability, for count >= 0 and mean >= 0, mean = 0
/// only with count = 0; count is 0 or at least 1. The probabilities of tables are products and
/// quotients of such numbers, whose exponents nearly cancel (C. Loader, Fast and accurate
/// computation of binomial probabilities, 2000).
ScaledExp PoissonTerm(double count, const DoubleDouble& mean);

/// The product, and the quotient, of two such numbers.
ScaledExp operator*(const ScaledExp& a, const ScaledExp& b);
ScaledExp operator/(const ScaledExp& a, const ScaledExp& b);

/// Probability of k successes in n trials, for whole 0 <= k <= n and 0 < p < 1. The product of the
/// Poisson probabilities of k and n - k over that of n.
double BinomialTerm(double k, double n, double p);

/// How N objects, of which K are marked, are drawn from: n of them without replacement.
struct Urn {
  double fAll;
  double fMarked;
  double fDrawn;
};

/// Probability that k of the objects drawn are marked, where no cell of the table is negative and
/// 0 < n < N. Between whole numbers, where each cell is at least 1, the function runs smoothly.
double HypergeometricTerm(double k, const Urn& urn);

}  // namespace detail
}  // namespace MCCommonMath
