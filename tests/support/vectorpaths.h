// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/vectorpath.h"

#include <vector>

namespace mctest {

/// The vector widths that this processor has. Hidden in the shared library, so for programs that
/// are linked statically.
inline std::vector<MCCommonMath::detail::VectorPath> SupportedPaths() {
  using MCCommonMath::detail::VectorPath;
  std::vector<VectorPath> paths;
  for (const VectorPath path : {VectorPath::kSse2, VectorPath::kAvx2, VectorPath::kAvx512}) {
    if (MCCommonMath::detail::IsSupported(path)) paths.push_back(path);
  }
  return paths;
}

}  // namespace mctest
