// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/vectorkernels.h"

#include <cstdint>
#include <vector>

namespace MCCommonMath {
namespace detail {

/// The first cache line that begins at or after `from`.
inline double* StartOfLine(double* from) {
  constexpr std::uintptr_t kLineBytes = kLineDoubles * sizeof(double);
  const std::uintptr_t beyond = reinterpret_cast<std::uintptr_t>(from) % kLineBytes;
  return beyond == 0 ? from : from + (kLineBytes - beyond) / sizeof(double);
}

/// Doubles that begin at a cache line.
class LineBuffer {
public:
  /// Makes room for n doubles; what they were is lost if that needs memory.
  void Grow(std::size_t n) {
    if (fStorage.size() < n + kLineDoubles) fStorage.assign(n + kLineDoubles, 0.0);
    fData = StartOfLine(fStorage.data());
  }

  double* Data() { return fData; }
  const double* Data() const { return fData; }

private:
  std::vector<double> fStorage;
  double* fData = nullptr;
};

}  // namespace detail
}  // namespace MCCommonMath
