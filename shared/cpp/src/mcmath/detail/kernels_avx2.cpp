// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/makekernels.h"

namespace MCCommonMath {
namespace detail {

const VectorKernels kAvx2Kernels = MakeKernels<4>();

}  // namespace detail
}  // namespace MCCommonMath
