// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <string>

namespace MCCommonXML {

/// A text in the code set of the process's locale, converted to UTF-8. Under the C locale, which a
/// process has that never called setlocale(), that code set is ASCII. A text that isn't valid in
/// the code set ENDS THE PROCESS, as does a code set that can't be converted from: a host whose
/// texts aren't ASCII sets its locale first, or hands over UTF-8 and writes it unconverted.
MC_EXPORT std::string MbToUTF8(const std::string& text);

}  // namespace MCCommonXML
