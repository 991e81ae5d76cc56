// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/runningmeans.h"
#include "support/samebits.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using MCCommonMath::detail::VectorPath;

std::vector<double> Values(std::size_t n, unsigned seed) {
  std::mt19937 engine(seed);
  const double odd[] = {0.0,
                        -0.0,
                        std::numeric_limits<double>::infinity(),
                        std::numeric_limits<double>::quiet_NaN(),
                        -1.7e308,
                        1.0};
  std::vector<double> values;
  for (std::size_t i = 0; i < n; ++i) {
    const auto bits = static_cast<unsigned>(engine());
    values.push_back(bits % 8 < 6 ? std::ldexp(bits - 2e9, static_cast<int>(bits % 60) - 60)
                                  : odd[bits / 8 % 6]);
  }
  return values;
}

TEST(RunningMeans, AreTheSameToTheBitAtEveryVectorWidth) {
  for (const VectorPath path : mctest::SupportedPaths()) {
    for (std::size_t n = 0; n <= 70; ++n) {
      std::vector<double> means(n, 0.0);
      std::vector<double> expected(n, 0.0);
      double total = 0.0;
      for (unsigned r = 0; r < 20; ++r) {
        const std::vector<double> values = Values(n, 1000 * r + static_cast<unsigned>(n));
        const double weight = 0.1 + r;
        total += weight;
        MCCommon::detail::UpdateRunningMeans(values.data(), means.data(), n, total, weight, path);
        for (std::size_t i = 0; i < n; ++i) {
          // One operation a statement, so that none can be regrouped or fused.
          const volatile double difference = values[i] - expected[i];
          const volatile double share = difference / total;
          const volatile double step = share * weight;
          const double moved = step + expected[i];
          const double bound = 0x1p-51 * std::fabs(expected[i]);
          expected[i] = std::fabs(moved) < bound ? 0.0 : moved;
        }
        ASSERT_TRUE(mctest::SameBitsOrNaN(expected, means)) << "n " << n << " row " << r;
      }
    }
  }
}

}  // namespace
