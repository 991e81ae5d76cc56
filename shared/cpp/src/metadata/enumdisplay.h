// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/imcencoder.h"
#include "metadata/imcvariable.h"
#include "metadata/mcroundencoder.h"
#include "regression/frame/mcexport.h"

#include <string>

namespace MCCommonMetadata {

/// Write a line to the display stream: the name and what the value means in words, " =
/// unrecognized" for one without a meaning.
MC_EXPORT void Display(std::string name, VarStatus value);
MC_EXPORT void Display(std::string name, WRoundingOption value);
MC_EXPORT void Display(std::string name, EncoderType value);
MC_EXPORT void Display(std::string name, MeasureLevel value);
MC_EXPORT void Display(std::string name, VariableRole value);
MC_EXPORT void Display(std::string name, VariableStorage value);

}  // namespace MCCommonMetadata
