// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <limits>

namespace MCCommon {
namespace detail {

/// `x` truncated toward zero. A value that no int can hold, and NaN, give the smallest int, as
/// the x86-64 instruction does; in C++ that conversion would be undefined.
inline int TruncateToInt(double x) {
  constexpr double kBelow = -2147483649.0;
  constexpr double kAbove = 2147483648.0;
  if (x > kBelow && x < kAbove) return static_cast<int>(x);
  return std::numeric_limits<int>::min();
}

/// Level of a category code: the code rounded by adding a half and truncating toward zero, less
/// the lowest category. In 64 bits, as the difference of two ints may not fit one.
inline std::int64_t CategoryLevel(double code, int lowestCategory) {
  return static_cast<std::int64_t>(TruncateToInt(code + 0.5)) - lowestCategory;
}

/// Adds one to a count of rows, which stays at the largest int: a source may hold more rows.
inline void CountUp(int& count) {
  if (count < std::numeric_limits<int>::max()) ++count;
}

}  // namespace detail
}  // namespace MCCommon
