// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"

#include <string>

namespace mcfit {

/// The attribute in UTF-8; empty if there is none.
std::string TextAttribute(const xercesc::DOMElement& element, const char* name);

}  // namespace mcfit
