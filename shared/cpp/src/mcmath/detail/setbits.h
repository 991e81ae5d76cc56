// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcbitset.h"

#include <vector>

namespace MCCommonMath {
namespace detail {

/// Positions below `limit` whose bits are set, in ascending order.
inline std::vector<int> SetBits(const MCBitSet& bits, int limit) {
  std::vector<int> set;
  for (int i = 0; i < limit; ++i) {
    if (bits.IsIn(i)) set.push_back(i);
  }
  return set;
}

}  // namespace detail
}  // namespace MCCommonMath
