// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcsymmatrix.h"

#include <gtest/gtest.h>

#include <vector>

namespace mctest {

/// As many values, each equal to the bit; else the first that isn't.
testing::AssertionResult SameBits(const std::vector<double>& expected,
                                  const std::vector<double>& actual);

/// The same, but that all NaN are one: which of several came out of a sum, and with what sign and
/// payload, is the choice of compiler and processor.
testing::AssertionResult SameBitsOrNaN(const std::vector<double>& expected,
                                       const std::vector<double>& actual);

/// Of the packed entries.
testing::AssertionResult SameBits(const MCCommonMath::MCSymMatrix& expected,
                                  const MCCommonMath::MCSymMatrix& actual);
testing::AssertionResult SameBitsOrNaN(const MCCommonMath::MCSymMatrix& expected,
                                       const MCCommonMath::MCSymMatrix& actual);

}  // namespace mctest
