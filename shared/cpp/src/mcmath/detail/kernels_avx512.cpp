// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/makekernels.h"

namespace MCCommonMath {
namespace detail {

const VectorKernels kAvx512Kernels = MakeKernels<8>();

}  // namespace detail
}  // namespace MCCommonMath
