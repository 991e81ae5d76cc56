// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcparametertransform.h"

#include <algorithm>

namespace MCCommonMath {
namespace detail {

namespace {

bool IsConsistent(std::size_t n, const std::vector<double>& shift, const std::vector<double>& scale,
                  int nBlocks, int nIntercepts) {
  if (nBlocks < 1 || nIntercepts < 0 || (nIntercepts > 1 && nBlocks > 1)) return false;
  const std::size_t p = scale.size();
  if (shift.size() != p || static_cast<std::size_t>(nIntercepts) > p) return false;
  if (n != static_cast<std::size_t>(nBlocks) * p) return false;
  return std::find(scale.begin(), scale.end(), 0.0) == scale.end();
}

}  // namespace

bool ParameterTransform::Setup(std::size_t n, const std::vector<double>& shift,
                               const std::vector<double>& scale, int nBlocks, int nIntercepts,
                               bool negateShift, bool reciprocal) {
  if (!IsConsistent(n, shift, scale, nBlocks, nIntercepts)) return false;
  const std::size_t p = scale.size();
  fA.assign(p, 1.0);
  fB.assign(p, 0.0);
  for (std::size_t i = static_cast<std::size_t>(nIntercepts); i < p; ++i) {
    fA[i] = reciprocal ? 1.0 / scale[i] : scale[i];
    fB[i] = reciprocal ? shift[i] : -shift[i] / scale[i];
    if (negateShift) fB[i] = -fB[i];
  }
  return true;
}

}  // namespace detail
}  // namespace MCCommonMath
