// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcvariable.h"

#include "regression/frame/mccomponentdisplay.h"

#include <utility>

namespace MCCommonMetadata {

void MCVariable::SetMissingValueReplacement(const std::string& value) {
  fReplacement = value;
  fbHasReplacement = true;
}

const std::string* MCVariable::GetMissingValueReplacement() const {
  return fbHasReplacement ? &fReplacement : nullptr;
}

void MCVariable::SwapCommon(MCVariable& other) noexcept {
  fName.Swap(other.fName);
  fLabel.swap(other.fLabel);
  std::swap(fRole, other.fRole);
  std::swap(fStorage, other.fStorage);
  fReplacement.swap(other.fReplacement);
  std::swap(fbHasReplacement, other.fbHasReplacement);
}

void MCVariable::DisplayReplacement() const {
  MCComponentDisplay::DisplayS("Missing value replacement", fReplacement);
}

}  // namespace MCCommonMetadata
