// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcmultinomial.h"

#include "mcmath/detail/multinomiallanes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MCCommonMath {
namespace detail {

namespace {

/// The first m probabilities.
void FillOthers(const ProbabilityRows& row, double probability) {
  for (std::size_t j = 0; j < row.m; ++j) row.probs[j * row.stride] = probability;
}

double ReferenceIsCertain(const ProbabilityRows& row) {
  FillOthers(row, 0.0);
  row.probs[row.m * row.stride] = 1.0;
  return 0.0;
}

/// What is subtracted from the exponents; whole numbers, but too large for an int.
double Shift(double hi, double lo) {
  const double c = std::trunc(hi - kMaxExponent);
  if (hi > kMaxExponent) return c;
  return lo >= kMinExponent ? 0.0 : std::max(c, std::trunc(lo - kMinExponent));
}

double OfDifferent(const ProbabilityRows& row, double hi, double lo) {
  if (-hi > kMaxExponent) return ReferenceIsCertain(row);
  double logLast = 0.0;
  ShiftedProbabilities<1, 1>(row, {{hi}}, {{Shift(hi, lo)}}, &logLast);
  return logLast;
}

double OfEqual(const ProbabilityRows& row, double hi) {
  if (hi < kMinExponent) return ReferenceIsCertain(row);
  double logLast = 0.0;
  if (hi <= kMaxExponent && EqualProbabilities<1, 1>(row, {{hi}}, &logLast)) return logLast;
  const double m = static_cast<double>(row.m);
  FillOthers(row, 1.0 / m);
  row.probs[row.m * row.stride] = 0.0;
  LogLanes<1>(logLast, m);
  return -hi - logLast;
}

double OfNothingThatCompares(const ProbabilityRows& row) {
  FillOthers(row, 0.0);
  row.probs[row.m * row.stride] = 0.0;
  row.probs[0] = 1.0;
  return 0.0;
}

}  // namespace

double MultinomialProbabilities(const double* eta, std::size_t m, std::size_t stride,
                                double* probs) {
  const ProbabilityRows row{eta, m, stride, probs};
  if (m == 0) return ReferenceIsCertain(row);
  double hi = std::numeric_limits<double>::lowest();
  double lo = std::numeric_limits<double>::max();
  for (std::size_t j = 0; j < m; ++j) {
    if (eta[j * stride] > hi) hi = eta[j * stride];
    if (eta[j * stride] < lo) lo = eta[j * stride];
  }
  if (hi > lo) return OfDifferent(row, hi, lo);
  if (hi == lo) return OfEqual(row, hi);
  return OfNothingThatCompares(row);
}

}  // namespace detail
}  // namespace MCCommonMath
