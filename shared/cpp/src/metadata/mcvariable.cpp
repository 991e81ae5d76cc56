// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcvariable.h"

#include "regression/frame/mccomponentdisplay.h"

namespace MCCommonMetadata {

void MCVariable::SetMissingValueReplacement(const std::string& value) {
  fReplacement = value;
  fbHasReplacement = true;
}

const std::string* MCVariable::GetMissingValueReplacement() const {
  return fbHasReplacement ? &fReplacement : nullptr;
}

void MCVariable::DisplayReplacement() const {
  MCComponentDisplay::DisplayS("Missing value replacement", fReplacement);
}

}  // namespace MCCommonMetadata
