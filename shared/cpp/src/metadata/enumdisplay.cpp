// SPDX-License-Identifier: Apache-2.0
#include "metadata/enumdisplay.h"

#include "regression/frame/mccomponentdisplay.h"

#include <cstddef>
#include <utility>

namespace MCCommonMetadata {

namespace {

template <std::size_t N>
void DisplayWord(std::string name, int value, const char* const (&words)[N],
                 const std::string& otherwise = " = unrecognized") {
  const bool isKnown = value >= 0 && value < static_cast<int>(N);
  name += isKnown ? words[value] : otherwise;
  MCComponentDisplay::DisplayText(1, name);
}

}  // namespace

void Display(std::string name, VarStatus value) {
  DisplayWord(std::move(name), value, {" = OK", " = Constant", " = Invalid"});
}

void Display(std::string name, WRoundingOption value) {
  DisplayWord(std::move(name), value,
              {" = Truncate to smaller int", " = Round to closest int", " = As is - no change"});
}

// The last word has always lacked its first letter.
void Display(std::string name, EncoderType value) {
  DisplayWord(
      std::move(name), value,
      {" = Unknown", " = Binning of numeric values", " = Categorical with numeric category values",
       " = Categorical with string category values", " = ounding for frequency weights"},
      " = Encoder type " + std::to_string(static_cast<int>(value)));
}

void Display(std::string name, MeasureLevel value) {
  DisplayWord(std::move(name), value,
              {" = Unknown measure level", " = Continuous", " = Numeric Categorical",
               " = String Categorical", " = Frequency weight"});
}

void Display(std::string name, VariableRole value) {
  DisplayWord(std::move(name), value,
              {" = Undefined variable role", " = Target", " = Target Response",
               " = Frequency weight", " = Input", " = Possible Input", " = Unused variable"});
}

void Display(std::string name, VariableStorage value) {
  DisplayWord(std::move(name), value,
              {" = Undefined variable storage", " = Integer", " = Real", " = String", " = Date",
               " = Time", " = Timestamp"});
}

}  // namespace MCCommonMetadata
