// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// Probabilities of m + 1 categories from the linear predictors of all but the last, which is the
/// reference with predictor 0. Predictor j stands at eta[j * stride], j < m, probability j at
/// probs[j * stride], j <= m; `probs` may be eta. Answers the log probability of the reference.
///
/// With hi and lo the largest and smallest predictor, a shift c keeps exponents inside the guards
/// of MCPower: s = exp(-hi) + sum of exp(eta_j - hi) by ascending j, z = (hi - c) + ln s, and the
/// probabilities are exp((eta_j - c) - z) and exp(-c - z). If all predictors are equal, they are
/// e/(m e + 1) and 1/(m e + 1), with e = exp(hi). MCSparseVector::ComputeProbabilities tells what
/// holds at and beyond the guards.
double MultinomialProbabilities(const double* eta, std::size_t m, std::size_t stride,
                                double* probs);

}  // namespace detail
}  // namespace MCCommonMath
