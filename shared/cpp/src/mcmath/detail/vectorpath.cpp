// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/vectorpath.h"

#include "mcmath/detail/vectorkernels.h"

#include <atomic>

namespace MCCommonMath {
namespace detail {

bool IsSupported(VectorPath path) {
  switch (path) {
    case VectorPath::kAvx512:
      return __builtin_cpu_supports("avx512f") != 0;
    case VectorPath::kAvx2:
      return __builtin_cpu_supports("avx2") != 0;
    case VectorPath::kSse2:
      break;
  }
  return true;
}

namespace {

std::atomic<VectorPath>& Widest() {
  static std::atomic<VectorPath> widest(IsSupported(VectorPath::kAvx512) ? VectorPath::kAvx512
                                        : IsSupported(VectorPath::kAvx2) ? VectorPath::kAvx2
                                                                         : VectorPath::kSse2);
  return widest;
}

}  // namespace

VectorPath WidestVectorPath() {
  return Widest().load(std::memory_order_relaxed);
}

void SetWidestVectorPath(VectorPath path) {
  Widest().store(path, std::memory_order_relaxed);
}

const VectorKernels& KernelsOf(VectorPath path) {
  switch (path) {
    case VectorPath::kAvx512:
      return kAvx512Kernels;
    case VectorPath::kAvx2:
      return kAvx2Kernels;
    case VectorPath::kSse2:
      break;
  }
  return kSse2Kernels;
}

}  // namespace detail
}  // namespace MCCommonMath
