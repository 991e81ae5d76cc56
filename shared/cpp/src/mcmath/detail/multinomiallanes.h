// SPDX-License-Identifier: Apache-2.0
#pragma once

// Multinomial probabilities of W rows at a time, a row to a lane. mcmultinomial.h has the formulas.

#include "mcmath/detail/explog.h"
#include "mcmath/detail/mcmultinomial.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/mcpower.h"

#include <limits>

namespace {

using MCCommonMath::detail::kProbabilityRows;

constexpr double kMaxExponent = MCCommonMath::MCPower::gMachineMaxExp;
constexpr double kMinExponent = MCCommonMath::MCPower::gMachineMinExp;

/// Whether a comparison of lanes holds in each of them.
template <std::size_t W, class Mask>
[[gnu::always_inline]] inline bool HoldsInAllLanes(const Mask& mask) {
  if constexpr (W == 1) {
    return mask;
  } else {
    auto all = mask[0];
    for (std::size_t lane = 1; lane < W; ++lane) all &= mask[lane];
    return all != 0;
  }
}

/// y = exp(x), or 0 where x lies below the lower guard or is NaN. No x lies above the upper guard.
template <std::size_t W>
[[gnu::always_inline]] inline void GuardedExpLanes(typename Lanes<W>::Vec& y,
                                                   const typename Lanes<W>::Vec& x) {
  typename Lanes<W>::Vec zero{};
  typename Lanes<W>::Vec lowest;
  FillLanes<W>(lowest, kMinExponent);
  const auto isInside = x >= lowest;
  ExpLanes<W>(y, isInside ? x : lowest);
  y = isInside ? y : zero;
}

/// Linear predictors and probabilities of W rows, of which j has its lanes at j * stride.
struct ProbabilityRows {
  const double* eta;
  std::size_t m;
  std::size_t stride;
  double* probs;
};

/// Rows whose predictors differ, with largest predictors hi >= -kMaxExponent and shifts c.
template <std::size_t W>
[[gnu::always_inline]] inline void ShiftedProbabilities(const ProbabilityRows& rows,
                                                        const typename Lanes<W>::Vec& hi,
                                                        const typename Lanes<W>::Vec& c,
                                                        double* logLast) {
  using Vec = typename Lanes<W>::Vec;
  Vec sum;
  Vec eta;
  Vec term;
  GuardedExpLanes<W>(sum, -hi);
  for (std::size_t j = 0; j < rows.m; ++j) {
    LoadLanes<W>(eta, rows.eta + j * rows.stride);
    GuardedExpLanes<W>(term, eta - hi);
    sum += term;
  }
  LogLanes<W>(sum, sum);
  const Vec z = (hi - c) + sum;
  for (std::size_t j = 0; j < rows.m; ++j) {
    LoadLanes<W>(eta, rows.eta + j * rows.stride);
    GuardedExpLanes<W>(term, (eta - c) - z);
    StoreLanes<W>(rows.probs + j * rows.stride, term);
  }
  const Vec last = -c - z;
  GuardedExpLanes<W>(term, last);
  StoreLanes<W>(rows.probs + rows.m * rows.stride, term);
  StoreLanes<W>(logLast, last);
}

/// Rows whose predictors are all the same, inside the guards. False, with nothing written, if a
/// sum is too large for a double.
template <std::size_t W>
[[gnu::always_inline]] inline bool EqualProbabilities(const ProbabilityRows& rows,
                                                      const typename Lanes<W>::Vec& hi,
                                                      double* logLast) {
  using Vec = typename Lanes<W>::Vec;
  Vec e;
  ExpLanes<W>(e, hi);
  const Vec d = e * static_cast<double>(rows.m) + 1.0;
  if (!HoldsInAllLanes<W>(d <= std::numeric_limits<double>::max() + Vec{})) return false;
  const Vec p = e / d;
  for (std::size_t j = 0; j < rows.m; ++j) StoreLanes<W>(rows.probs + j * rows.stride, p);
  StoreLanes<W>(rows.probs + rows.m * rows.stride, 1.0 / d);
  Vec logarithm;
  LogLanes<W>(logarithm, d);
  StoreLanes<W>(logLast, -logarithm);
  return true;
}

/// False, with nothing written, unless all rows are ordinary and of the same kind.
template <std::size_t W>
[[gnu::always_inline]] inline bool OrdinaryProbabilities(const ProbabilityRows& rows,
                                                         double* logLast) {
  using Vec = typename Lanes<W>::Vec;
  Vec hi;
  LoadLanes<W>(hi, rows.eta);
  Vec lo = hi;
  for (std::size_t j = 1; j < rows.m; ++j) {
    Vec eta;
    LoadLanes<W>(eta, rows.eta + j * rows.stride);
    hi = eta > hi ? eta : hi;
    lo = eta < lo ? eta : lo;
  }
  if (!HoldsInAllLanes<W>((lo >= kMinExponent + Vec{}) & (hi <= kMaxExponent + Vec{})))
    return false;
  if (HoldsInAllLanes<W>(hi == lo)) return EqualProbabilities<W>(rows, hi, logLast);
  if (!HoldsInAllLanes<W>(hi > lo)) return false;
  ShiftedProbabilities<W>(rows, hi, Vec{}, logLast);
  return true;
}

/// The kernel: W rows at a time where they are ordinary, else row by row.
template <std::size_t W>
void MultinomialRows(const double* eta, std::size_t m, double* probs, double* logLast) {
  for (std::size_t from = 0; from < kProbabilityRows; from += W) {
    const ProbabilityRows rows{eta + from, m, kProbabilityRows, probs + from};
    if (m > 0 && OrdinaryProbabilities<W>(rows, logLast + from)) continue;
    for (std::size_t r = from; r < from + W; ++r) {
      logLast[r] =
          MCCommonMath::detail::MultinomialProbabilities(eta + r, m, kProbabilityRows, probs + r);
    }
  }
}

}  // namespace
