// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mccomponentdisplay.h"

#include <iostream>
#include <locale>
#include <sstream>
#include <string>

namespace mctest {

/// While it lives, display goes into a text; afterwards to the standard output again. Display
/// writes numbers as its stream does, which here has the classic locale whatever that of the
/// process is.
class DisplayCapture {
public:
  DisplayCapture() {
    fStream.imbue(std::locale::classic());
    MCComponentDisplay::SetOutStream(fStream);
  }
  ~DisplayCapture() { MCComponentDisplay::SetOutStream(std::cout); }
  DisplayCapture(const DisplayCapture&) = delete;
  DisplayCapture& operator=(const DisplayCapture&) = delete;

  std::string Text() const { return fStream.str(); }

private:
  std::ostringstream fStream;
};

/// What `show`, any callable without arguments, writes to the display.
template <class Show>
std::string Displayed(Show show) {
  const DisplayCapture capture;
  show();
  return capture.Text();
}

/// What `object.Display()` writes.
template <class T>
std::string DisplayOf(const T& object) {
  return Displayed([&object] { object.Display(); });
}

}  // namespace mctest
