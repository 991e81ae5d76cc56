// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcmv.h"

namespace MCCommonMath {
namespace detail {

/// Error 1 and the missing value, for arguments out of range.
template <class Integer>
double Refuse(Integer& error) {
  error = 1;
  return MCMV::gMissingValue;
}

}  // namespace detail
}  // namespace MCCommonMath
