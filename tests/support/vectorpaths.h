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

/// While it lives, `path` counts as the widest.
class NarrowedVectorPath {
public:
  explicit NarrowedVectorPath(MCCommonMath::detail::VectorPath path)
      : fWidest(MCCommonMath::detail::WidestVectorPath()) {
    MCCommonMath::detail::SetWidestVectorPath(path);
  }
  ~NarrowedVectorPath() { MCCommonMath::detail::SetWidestVectorPath(fWidest); }
  NarrowedVectorPath(const NarrowedVectorPath&) = delete;
  NarrowedVectorPath& operator=(const NarrowedVectorPath&) = delete;

private:
  MCCommonMath::detail::VectorPath fWidest;
};

}  // namespace mctest
