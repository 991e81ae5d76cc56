// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/vectorkernels.h"

#include <cstdint>

namespace MCCommonMath {
namespace detail {

/// The first cache line that begins at or after `from`.
inline double* StartOfLine(double* from) {
  constexpr std::uintptr_t kLineBytes = kLineDoubles * sizeof(double);
  const std::uintptr_t beyond = reinterpret_cast<std::uintptr_t>(from) % kLineBytes;
  return beyond == 0 ? from : from + (kLineBytes - beyond) / sizeof(double);
}

}  // namespace detail
}  // namespace MCCommonMath
