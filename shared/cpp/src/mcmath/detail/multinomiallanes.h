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

/// Several rows are worked on together if all their predictors are at most this, either way. Then
/// every exponent lies well inside the guards and none need be tested.
constexpr double kOrdinary = 300.0;

/// y = exp(x). For a single row, which may be any: 0 where x lies below the lower guard or is NaN.
/// No x lies above the upper guard.
template <std::size_t W>
[[gnu::always_inline]] inline void TermLanes(typename Lanes<W>::Vec& y,
                                             const typename Lanes<W>::Vec& x) {
  if constexpr (W == 1) {
    if (!(x >= kMinExponent)) {
      y = 0.0;
      return;
    }
  }
  ExpLanes<W>(y, x);
}

/// Linear predictors and probabilities of some rows, of which j has its lanes at j * stride.
struct ProbabilityRows {
  const double* eta;
  std::size_t m;
  std::size_t stride;
  double* probs;
};

/// V vectors of W rows each. They go through each step together: a row alone is a long chain of
/// operations that wait for one another.
template <std::size_t W, std::size_t V>
struct RowVectors {
  using Vec = typename Lanes<W>::Vec;
  Vec v[V];
};

/// Rows whose predictors differ, with largest predictors hi >= -kMaxExponent and shifts c.
template <std::size_t W, std::size_t V>
[[gnu::always_inline]] inline void ShiftedProbabilities(const ProbabilityRows& rows,
                                                        const RowVectors<W, V>& hi,
                                                        const RowVectors<W, V>& c,
                                                        double* logLast) {
  typename Lanes<W>::Vec eta;
  typename Lanes<W>::Vec term;
  RowVectors<W, V> z;
#pragma GCC unroll 4
  for (std::size_t i = 0; i < V; ++i) TermLanes<W>(z.v[i], -hi.v[i]);
  for (std::size_t j = 0; j < rows.m; ++j) {
#pragma GCC unroll 4
    for (std::size_t i = 0; i < V; ++i) {
      LoadLanes<W>(eta, rows.eta + j * rows.stride + i * W);
      TermLanes<W>(term, eta - hi.v[i]);
      z.v[i] += term;
    }
  }
#pragma GCC unroll 4
  for (std::size_t i = 0; i < V; ++i) {
    LogLanes<W>(z.v[i], z.v[i]);
    z.v[i] = (hi.v[i] - c.v[i]) + z.v[i];
  }
  for (std::size_t j = 0; j < rows.m; ++j) {
#pragma GCC unroll 4
    for (std::size_t i = 0; i < V; ++i) {
      LoadLanes<W>(eta, rows.eta + j * rows.stride + i * W);
      TermLanes<W>(term, (eta - c.v[i]) - z.v[i]);
      StoreLanes<W>(rows.probs + j * rows.stride + i * W, term);
    }
  }
#pragma GCC unroll 4
  for (std::size_t i = 0; i < V; ++i) {
    const typename Lanes<W>::Vec last = -c.v[i] - z.v[i];
    TermLanes<W>(term, last);
    StoreLanes<W>(rows.probs + rows.m * rows.stride + i * W, term);
    StoreLanes<W>(logLast + i * W, last);
  }
}

/// Rows whose predictors are all equal and not above kMaxExponent. False, with nothing written, if
/// a sum is too large for a double.
template <std::size_t W, std::size_t V>
[[gnu::always_inline]] inline bool EqualProbabilities(const ProbabilityRows& rows,
                                                      const RowVectors<W, V>& hi, double* logLast) {
  using Vec = typename Lanes<W>::Vec;
  RowVectors<W, V> e;
  RowVectors<W, V> d;
  bool isFinite = true;
#pragma GCC unroll 4
  for (std::size_t i = 0; i < V; ++i) {
    ExpLanes<W>(e.v[i], hi.v[i]);
    d.v[i] = e.v[i] * static_cast<double>(rows.m) + 1.0;
    isFinite = isFinite && HoldsInAllLanes<W>(d.v[i] <= std::numeric_limits<double>::max() + Vec{});
  }
  if (!isFinite) return false;
#pragma GCC unroll 4
  for (std::size_t i = 0; i < V; ++i) {
    const Vec p = e.v[i] / d.v[i];
    double* probs = rows.probs + i * W;
    for (std::size_t j = 0; j < rows.m; ++j) StoreLanes<W>(probs + j * rows.stride, p);
    StoreLanes<W>(probs + rows.m * rows.stride, 1.0 / d.v[i]);
    LogLanes<W>(d.v[i], d.v[i]);
    StoreLanes<W>(logLast + i * W, -d.v[i]);
  }
  return true;
}

/// What the rows of a block have in common.
enum class RowKind { kEqual, kDifferent, kMixed };

/// Finds the largest predictor of each row. kMixed also if a row isn't ordinary. The upper limit is
/// tested predictor by predictor: a NaN may be missing from both the largest and the smallest.
template <std::size_t W, std::size_t V>
[[gnu::always_inline]] inline RowKind Classify(const ProbabilityRows& rows, RowVectors<W, V>& hi) {
  using Vec = typename Lanes<W>::Vec;
  const Vec most = kOrdinary + Vec{};
  auto isOrdinary = Vec{} == Vec{};
  auto isEqual = isOrdinary;
  auto isDifferent = isOrdinary;
#pragma GCC unroll 4
  for (std::size_t i = 0; i < V; ++i) {
    Vec eta;
    LoadLanes<W>(eta, rows.eta + i * W);
    isOrdinary &= eta <= most;
    hi.v[i] = eta;
    Vec lo = eta;
    for (std::size_t j = 1; j < rows.m; ++j) {
      LoadLanes<W>(eta, rows.eta + j * rows.stride + i * W);
      isOrdinary &= eta <= most;
      hi.v[i] = eta > hi.v[i] ? eta : hi.v[i];
      lo = eta < lo ? eta : lo;
    }
    isOrdinary &= lo >= -most;
    isEqual &= hi.v[i] == lo;
    isDifferent &= hi.v[i] > lo;
  }
  if (!HoldsInAllLanes<W>(isOrdinary)) return RowKind::kMixed;
  if (HoldsInAllLanes<W>(isEqual)) return RowKind::kEqual;
  return HoldsInAllLanes<W>(isDifferent) ? RowKind::kDifferent : RowKind::kMixed;
}

/// All rows together, if they are of one kind. False, with nothing written, if they aren't.
template <std::size_t W>
[[gnu::always_inline]] inline bool ComputeTogether(const ProbabilityRows& rows, double* logLast) {
  constexpr std::size_t kVectors = kProbabilityRows / W;
  RowVectors<W, kVectors> hi;
  switch (Classify<W, kVectors>(rows, hi)) {
    case RowKind::kEqual:
      return EqualProbabilities<W, kVectors>(rows, hi, logLast);
    case RowKind::kDifferent:
      ShiftedProbabilities<W, kVectors>(rows, hi, RowVectors<W, kVectors>{}, logLast);
      return true;
    case RowKind::kMixed:
      break;
  }
  return false;
}

/// The kernel: eight rows together where they are alike and ordinary, else row by row.
template <std::size_t W>
void MultinomialRows(const double* eta, std::size_t m, double* probs, double* logLast) {
  const ProbabilityRows rows{eta, m, kProbabilityRows, probs};
  if (m > 0 && ComputeTogether<W>(rows, logLast)) return;
  for (std::size_t r = 0; r < kProbabilityRows; ++r) {
    logLast[r] =
        MCCommonMath::detail::MultinomialProbabilities(eta + r, m, kProbabilityRows, probs + r);
  }
}

}  // namespace
