// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mccomponentdisplay.h"
#include "regression/settings/mcregsettings.h"

#include <string>

namespace MCCommon {
namespace detail {

/// Writes a component of the class `name` to the display stream: settings, and driver and results
/// unless null.
template <class Algorithm, class OutputStats>
void DisplayComponent(const std::string& name, const MCRegSettings& settings,
                      const Algorithm* algorithm, const OutputStats* outputStats) {
  using namespace MCComponentDisplay;
  DisplayText(1, name + " display start");
  DisplayText(1, "fCompSettings");
  settings.Display();
  if (algorithm != nullptr) {
    DisplayText(1, "fpAlgorithm");
    algorithm->Display();
  }
  if (outputStats != nullptr) {
    DisplayText(1, "fpOutputStats");
    outputStats->Display();
  }
  DisplayText(1, name + " display end");
}

}  // namespace detail
}  // namespace MCCommon
