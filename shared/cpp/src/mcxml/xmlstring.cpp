// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmlstring.h"

#include "mcxml/xmltext.h"
#include "mcxml/xmlutil.h"

namespace MCCommonXML {

XMLString* XMLString::Create(const std::string& text) {
  return new XMLString(text);
}

int XMLString::ToString(std::string& out, ExportFormat& format) const {
  std::string text = fText;
  XMLUtil::ReplaceAll(text, XMLUtil::AMPERSAND, XMLUtil::XML_AMPERSAND);
  XMLUtil::ReplaceAll(text, XMLUtil::LESS_THAN, XMLUtil::XML_LESS_THAN);
  format.SetIsNewParagraph(false);
  format.SetIndentation(false);
  out += text;
  return 0;
}

int XMLString::ToStream(std::ostream& out, ExportFormat& format, bool utf8) const {
  std::string text;
  ToString(text, format);
  return WriteText(out, text, utf8);
}

}  // namespace MCCommonXML
