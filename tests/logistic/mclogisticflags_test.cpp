// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogisticflags.h"

#include <gtest/gtest.h>

namespace {

TEST(LogisticFlags, StartAsDocumented) {
  EXPECT_TRUE(compute_estimates);
  EXPECT_TRUE(compute_variances);
  EXPECT_TRUE(usePacking);
  EXPECT_FALSE(display_hessian);
  static_assert(sizeof(compute_estimates) == 1);
}

}  // namespace
