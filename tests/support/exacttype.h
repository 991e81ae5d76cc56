// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <type_traits>

namespace mctest {

/// Whether the operation has exactly the type F.
template <class F, class G>
constexpr bool Is(G /*operation*/) {
  return std::is_same_v<F, G>;
}

}  // namespace mctest
