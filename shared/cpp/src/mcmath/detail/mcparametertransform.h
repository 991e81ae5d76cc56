// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

namespace MCCommonMath {
namespace detail {

/// The linear map between the parameters of differently scaled predictors, one block of it. It
/// serves the parameter vector and its covariance matrix alike. With k intercepts in front, a
/// vector t goes to t', where
///   t'[i] = t[i] / A[i] for i >= k, and t'[l] = t[l] + sum over i >= k of B[i] t[i] for l < k.
struct ParameterTransform {
  std::vector<double> fA;  ///< p divisors; 1.0 for intercepts
  std::vector<double> fB;  ///< p shares of the slopes in each intercept; 0.0 for intercepts

  /// Builds the map for `n` parameters in all. False, with the map unchanged, unless
  /// n = nBlocks * p with p entries in shift and in scale, nBlocks >= 1, 0 <= nIntercepts <= p, at
  /// most one intercept where there are several blocks, and no scale of 0.
  bool Setup(std::size_t n, const std::vector<double>& shift, const std::vector<double>& scale,
             int nBlocks, int nIntercepts, bool negateShift, bool reciprocal);
};

}  // namespace detail
}  // namespace MCCommonMath
