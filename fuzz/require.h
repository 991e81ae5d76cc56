// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>

/// Ends the run where something that must hold doesn't.
inline void Require(bool holds) {
  if (!holds) std::abort();
}
