// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/lapackpeer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace mctest {

/// Bound for residuals in units of n eps, as LAPACK's own tests have it.
constexpr double kThreshold = 30.0;

/// Orders of the matrices that methods are tried on.
constexpr int kMaxOrder = 60;

/// Work arrays are handed over full of this.
inline Vector Junk(int n) {
  return Vector(static_cast<std::size_t>(std::max(n, 0)), 1e99);
}

/// The estimate is of a solution that was made to grow, so never below the true value, apart from
/// the rounding of both, and not far above it.
inline void ExpectEstimate(double estimate, const Columns& a, double factor) {
  const double truth = ReciprocalCondition(a);
  EXPECT_GE(estimate, 0.99 * truth);
  EXPECT_LE(estimate, factor * truth);
}

/// A determinant in LINPACK's form, to as many digits as the condition leaves.
inline void ExpectDeterminant(const double* det, const Columns& a) {
  const LogDeterminant expected = DeterminantByLapack(a);
  EXPECT_GE(std::fabs(det[0]), 1.0);
  EXPECT_LT(std::fabs(det[0]), 10.0);
  EXPECT_EQ(std::copysign(1.0, det[0]), expected.sign);
  EXPECT_EQ(det[1], std::trunc(det[1]));
  const double eps = std::numeric_limits<double>::epsilon();
  EXPECT_NEAR(std::log10(std::fabs(det[0])) + det[1], expected.log10,
              10.0 * a.Rows() * eps / ReciprocalCondition(a));
}

/// Both residuals of an inverse, in units of n eps |A| |inv(A)|.
inline void ExpectInverse(const Columns& inverse, const Columns& a) {
  const Columns unit = Identity(a.Rows());
  const double scale = Norm1(a) * Norm1(inverse);
  EXPECT_LT(Distance(Product(inverse, a), unit), kThreshold * scale);
  EXPECT_LT(Distance(Product(a, inverse), unit), kThreshold * scale);
}

}  // namespace mctest
