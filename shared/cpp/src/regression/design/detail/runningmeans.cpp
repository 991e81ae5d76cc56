// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/runningmeans.h"

#include <cmath>
#include <limits>

using MCCommonMath::detail::VectorPath;

namespace {

// The one loop, compiled into each of the functions below for its vector width.
[[gnu::always_inline]] inline void Update(const double* __restrict values, double* __restrict means,
                                          std::size_t n, double total, double weight) {
  // Twice the epsilon first: twice a mean could overflow, and a huge mean would vanish.
  constexpr double kTwoEpsilon = 2.0 * std::numeric_limits<double>::epsilon();
  for (std::size_t i = 0; i < n; ++i) {
    const double mean = means[i];
    const double moved = (values[i] - mean) / total * weight + mean;
    // A named condition: the compiler does not vectorise it within the expression.
    const bool vanished = std::fabs(moved) < kTwoEpsilon * std::fabs(mean);
    means[i] = vanished ? 0.0 : moved;
  }
}

[[gnu::target("avx512f")]] void UpdateAvx512(const double* values, double* means, std::size_t n,
                                             double total, double weight) {
  Update(values, means, n, total, weight);
}

[[gnu::target("avx2")]] void UpdateAvx2(const double* values, double* means, std::size_t n,
                                        double total, double weight) {
  Update(values, means, n, total, weight);
}

}  // namespace

namespace MCCommon {
namespace detail {

void UpdateRunningMeans(const double* values, double* means, std::size_t n, double total,
                        double weight, VectorPath path) {
  switch (path) {
    case VectorPath::kAvx512:
      return UpdateAvx512(values, means, n, total, weight);
    case VectorPath::kAvx2:
      return UpdateAvx2(values, means, n, total, weight);
    case VectorPath::kSse2:
      break;
  }
  Update(values, means, n, total, weight);
}

}  // namespace detail
}  // namespace MCCommon
