// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"

namespace MCCommonMath {
namespace detail {

double Dot(const double* x, const double* y, std::size_t n) {
  return SumInLanes(n, [x, y](std::size_t i) { return x[i] * y[i]; });
}

}  // namespace detail
}  // namespace MCCommonMath
