// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmldoctype.h"

#include "mcxml/xmltext.h"
#include "mcxml/xmlutil.h"

namespace MCCommonXML {

XMLDocType* XMLDocType::Create(const std::string& name, const std::string& systemId, long id) {
  return new XMLDocType(name, systemId, id);
}

int XMLDocType::AddExtension(const std::string& text) {
  fExtension += XMLUtil::ROWSEP;
  fExtension += text;
  return static_cast<int>(fExtension.size());
}

int XMLDocType::ToString(std::string& out, ExportFormat&) const {
  const auto add = [&out](const auto&... pieces) { ((out += pieces), ...); };
  add(XMLUtil::FIRST_LINE, XMLUtil::ROWSEP);
  add(XMLUtil::BEGIN_ELEMENT, XMLUtil::BEGIN_PREPROCESSOR, "DOCTYPE");
  add(XMLUtil::SPACE, fName, XMLUtil::SPACE, "SYSTEM");
  add(XMLUtil::SPACE, XMLUtil::QUOTE, fSystemId, XMLUtil::QUOTE);
  if (!fExtension.empty()) add(XMLUtil::ROWSEP, "[", fExtension, XMLUtil::ROWSEP, "]");
  add(XMLUtil::END_ELEMENT, XMLUtil::ROWSEP);
  return 0;
}

int XMLDocType::ToStream(std::ostream& out, ExportFormat& format, bool utf8) const {
  std::string text;
  ToString(text, format);
  return WriteText(out, text, utf8);
}

}  // namespace MCCommonXML
