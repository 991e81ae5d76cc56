// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mcstatus.h"

#include <gtest/gtest.h>

namespace {
using MCCommon::MCStatus;

TEST(MCStatus, AFreshStatusIsOkAndDiffersFromAWarningOfCodeZero) {
  const MCStatus fresh;
  EXPECT_TRUE(fresh.IsOK());
  EXPECT_EQ(fresh.GetErrorCode(), 0);
  const MCStatus warning(0, true);
  EXPECT_FALSE(warning.IsOK());
  EXPECT_TRUE(warning.IsWarning());
  EXPECT_FALSE(fresh == warning);
}
}  // namespace
