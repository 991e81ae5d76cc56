// SPDX-License-Identifier: Apache-2.0
#include "support/outputof.h"

#include <gtest/gtest.h>

namespace {

TEST(MinimalHost, PrintsBothOfItsModels) {
  // By hand: means 4 and 447/7, slope 346/28, share of the sum of squares (346^2 / 28) / 4502.857.
  // R 4.2.2: glm(c(1,1,0,1,0,0,0) ~ x, family = binomial, control = glm.control(epsilon = 1e-14))
  // with x = 1:7 has the coefficients 4.361418 and -1.250679.
  EXPECT_EQ(mctest::OutputOf(MINIMAL_PROGRAM),
            "parameter 0: 14.4286\nparameter 1: 12.3571\nR square: 0.9495\n"
            "parameter 0:  4.3614\nparameter 1: -1.2507\n");
}

}  // namespace
