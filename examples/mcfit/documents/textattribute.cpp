// SPDX-License-Identifier: Apache-2.0
#include "documents/textattribute.h"

#include "mcparsexml/mccomxprsutil.h"

namespace mcfit {

std::string TextAttribute(const xercesc::DOMElement& element, const char* name) {
  return MCComXPrsUtil::ToUTF8(MCComXPrsUtil::GetAttribute(element, name));
}

}  // namespace mcfit
