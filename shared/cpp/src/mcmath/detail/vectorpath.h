// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace MCCommonMath {
namespace detail {

/// The vector widths for which kernels exist: 2, 4 and 8 doubles. Every path gives the same bits.
enum class VectorPath { kSse2, kAvx2, kAvx512 };

/// Whether this processor, and the system below it, can run `path`.
bool IsSupported(VectorPath path);

/// The widest supported path, for all that doesn't choose its own.
VectorPath WidestVectorPath();

/// What WidestVectorPath() answers from now on, which must be supported. Tests compare whole fits
/// by it; objects that are made already keep their path.
void SetWidestVectorPath(VectorPath path);

struct VectorKernels;

/// The kernels of `path`, which must be supported.
const VectorKernels& KernelsOf(VectorPath path);

}  // namespace detail
}  // namespace MCCommonMath
