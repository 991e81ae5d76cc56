// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"

#include <string>

namespace MCComXPrsUtil {
namespace detail {

/// A copy of the element with its attributes alone, or with all that is in it, which belongs to the
/// document and stands nowhere in it. References to entities are replaced by what they stand for,
/// and attributes that have their value from a DTD are told: the document declares neither. Null if
/// the document can't hold it, which happens for the control characters of XML 1.1. Doesn't
/// recurse.
xercesc::DOMElement* ImportElement(xercesc::DOMDocument& document,
                                   const xercesc::DOMElement& source);
xercesc::DOMElement* ImportTree(xercesc::DOMDocument& document, const xercesc::DOMElement& source);

/// Lets go of an element that stands nowhere in its document. Where memory runs out even for that
/// it stays with the document until that goes.
void ReleasePiece(xercesc::DOMElement& piece);

/// Whether a document in XML 1.0 can hold the text: UTF-8 without control characters.
bool IsWritableText(const std::string& text);

}  // namespace detail
}  // namespace MCComXPrsUtil
