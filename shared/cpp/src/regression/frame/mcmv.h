// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <limits>

/// The missing value.
namespace MCMV {

/// The most negative finite double, bit pattern 0xFFEFFFFFFFFFFFFF. A value is missing exactly
/// when it equals this one: no tolerance applies, and a NaN is not missing. Results that were
/// not computed hold it too.
inline constexpr double gMissingValue = std::numeric_limits<double>::lowest();

}  // namespace MCMV
