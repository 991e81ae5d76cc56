// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/makekernels.h"

namespace MCCommonMath {
namespace detail {

const VectorKernels kSse2Kernels = MakeKernels<2>();

}  // namespace detail
}  // namespace MCCommonMath
