// SPDX-License-Identifier: Apache-2.0
#include "mcxml/writetree.h"

#include "mcxml/xmltext.h"
#include "mcxml/xmlutil.h"

#include <string>

namespace MCCommonXML {

namespace {

int WriteDocument(std::ostream& out, const XMLDocType* docType, const XMLElement* root, bool format,
                  bool utf8) {
  ExportFormat layout;
  layout.SetFormat(format);
  if (docType != nullptr) {
    docType->ToStream(out, layout, utf8);
  } else {
    WriteText(out, std::string(XMLUtil::FIRST_LINE).append(XMLUtil::ROWSEP), utf8);
  }
  if (root != nullptr) root->ToStream(out, layout, utf8);
  return 0;
}

}  // namespace

int WriteTree(std::ostream& out, const XMLDocType* docType, const XMLElement* root, bool format) {
  return WriteDocument(out, docType, root, format, false);
}

int WriteTreeUTF8(std::ostream& out, const XMLDocType* docType, const XMLElement* root,
                  bool format) {
  return WriteDocument(out, docType, root, format, true);
}

}  // namespace MCCommonXML
