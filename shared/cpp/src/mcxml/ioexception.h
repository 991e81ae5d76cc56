// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <stdexcept>

namespace MCCommonMetadata {

/// Thrown, by value, where an object can't be read from a save file. The object is valid then, but
/// holds what was read so far.
class MC_EXPORT IOException : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

}  // namespace MCCommonMetadata
