// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/detail/mcnumericcast.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(CountUp, CountsByOneAndStaysAtTheLargestInt) {
  int count = 0;
  MCCommon::detail::CountUp(count);
  EXPECT_EQ(count, 1);
  count = std::numeric_limits<int>::max() - 1;
  MCCommon::detail::CountUp(count);
  EXPECT_EQ(count, std::numeric_limits<int>::max());
  MCCommon::detail::CountUp(count);
  EXPECT_EQ(count, std::numeric_limits<int>::max());
}

}  // namespace
