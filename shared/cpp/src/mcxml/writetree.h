// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/xmldoctype.h"
#include "mcxml/xmlelement.h"
#include "regression/frame/mcexport.h"

#include <ostream>

namespace MCCommonXML {

/// Writes a document: the document type or, without one (null), the XML declaration, then the tree
/// below `root`, laid out in lines with `format`. All texts are written as they stand, and the
/// declaration says that they are UTF-8. No line end follows the last tag. 0.
MC_EXPORT int WriteTree(std::ostream& out, const XMLDocType* docType, const XMLElement* root,
                        bool format);

/// The same with all texts converted from the locale's code set to UTF-8. A text that isn't valid
/// in that code set ENDS THE PROCESS; see MbToUTF8().
MC_EXPORT int WriteTreeUTF8(std::ostream& out, const XMLDocType* docType, const XMLElement* root,
                            bool format);

}  // namespace MCCommonXML
