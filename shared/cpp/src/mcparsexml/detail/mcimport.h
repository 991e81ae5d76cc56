// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"

namespace MCComXPrsUtil {
namespace detail {

/// A copy of the element with its attributes alone, or with all that is in it, which belongs to the
/// document and stands nowhere in it. References to entities are replaced by what they stand for:
/// the document doesn't declare them. Null if the document can't hold it, which happens for the
/// control characters of XML 1.1. Doesn't recurse.
xercesc::DOMElement* ImportElement(xercesc::DOMDocument& document,
                                   const xercesc::DOMElement& source);
xercesc::DOMElement* ImportTree(xercesc::DOMDocument& document, const xercesc::DOMElement& source);

}  // namespace detail
}  // namespace MCComXPrsUtil
