// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace MCCommon {
namespace detail {

/// Number of values that a record must have so that `position` can be read; no record has as many
/// as a negative position asks for. In 64 bits, as positions go up to the largest int.
inline std::int64_t SizeToRead(int position) {
  if (position < 0) return std::numeric_limits<std::int64_t>::max();
  return std::int64_t{position} + 1;
}

/// The same for all of several positions; 0 for none.
inline std::int64_t SizeToRead(const std::vector<int>& positions) {
  std::int64_t size = 0;
  for (const int position : positions) size = std::max(size, SizeToRead(position));
  return size;
}

}  // namespace detail
}  // namespace MCCommon
