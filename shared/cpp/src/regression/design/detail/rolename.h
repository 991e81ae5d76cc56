// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcconst.h"

namespace MCCommon {
namespace detail {

/// A role in words for the display. How the frequency weight is written differs from class to
/// class: `freqWeight`.
inline const char* RoleName(MCConst::MCVariableType role, const char* freqWeight) {
  switch (role) {
    case MCConst::MC_VAR_FREQ_WEIGHT:
      return freqWeight;
    case MCConst::MC_VAR_REGR_WEIGHT:
      return "Regression Weight";
    case MCConst::MC_VAR_FACTOR:
      return "Factor";
    case MCConst::MC_VAR_COVARIATE:
      return "Covariate";
    case MCConst::MC_VAR_DEPENDENT:
      return "Dependent";
    default:
      return "Unspecified";
  }
}

}  // namespace detail
}  // namespace MCCommon
