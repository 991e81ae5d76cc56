// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace MCCommonMath {
namespace detail {

/// Probability of k successes in n trials, for whole 0 <= k <= n and 0 < p < 1. With Poisson
/// probabilities it is that of k times that of n - k over that of n, whose exponents are deviances
/// (C. Loader, Fast and accurate computation of binomial probabilities, 2000).
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
