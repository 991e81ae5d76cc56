// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmlobj.h"

#include "mcxml/xmlattribute.h"
#include "mcxml/xmltext.h"
#include "mcxml/xmlutil.h"

#include <memory>

namespace MCCommonXML {

namespace {

template <class Value>
std::string AttributeText(std::string_view name, const Value& value) {
  const std::unique_ptr<XMLAttribute> attribute(XMLAttribute::Create(std::string(name), value));
  std::string text;
  ExportFormat format;
  attribute->ToString(text, format);
  return text;
}

// A line with its end in front.
template <class... Pieces>
int WriteLine(std::ostream& out, int nTabs, const Pieces&... pieces) {
  std::string line(XMLUtil::ROWSEP);
  line += XMLUtil::GetTabs(nTabs);
  ((line += pieces), ...);
  return Write(out, line);
}

}  // namespace

int XMLObj::StartObj(std::ostream& out) const {
  return WriteLine(out, fNTabs, XMLUtil::BEGIN_ELEMENT, OBJECT, XMLUtil::SPACE, NAME,
                   XMLUtil::EQUAL, XMLUtil::QUOTE, fName, XMLUtil::QUOTE, XMLUtil::END_ELEMENT);
}

int XMLObj::EndObj(std::ostream& out) const {
  return WriteLine(out, fNTabs, XMLUtil::BEGIN_ELEMENT, XMLUtil::BEGIN_END_ELEMENT, OBJECT,
                   XMLUtil::END_ELEMENT);
}

template <class Value>
int XMLObj::WriteValue(std::ostream& out, std::string_view element, const Value& value) const {
  return WriteLine(out, fNTabs + 1, XMLUtil::BEGIN_ELEMENT, element, XMLUtil::SPACE,
                   AttributeText(VALUE, value), XMLUtil::BEGIN_END_ELEMENT, XMLUtil::END_ELEMENT);
}

int XMLObj::WriteSubElement(std::ostream& out, unsigned int value) const {
  return WriteValue(out, INT, static_cast<double>(value));
}

int XMLObj::WriteSubElement(std::ostream& out, int value) const {
  return WriteValue(out, INT, static_cast<double>(value));
}

int XMLObj::WriteSubElement(std::ostream& out, long value) const {
  return WriteValue(out, LONG, static_cast<double>(value));
}

int XMLObj::WriteSubElement(std::ostream& out, bool value) const {
  return WriteValue(out, INT, value ? 1.0 : 0.0);
}

int XMLObj::WriteSubElement(std::ostream& out, double value) const {
  if (value == MV::gMissingValue) return WriteValue(out, DOUBLE, std::string(MISSING));
  return WriteValue(out, DOUBLE, value);
}

int XMLObj::WriteSubElement(std::ostream& out, const std::string& value) const {
  return WriteValue(out, STRING, value);
}

int XMLObj::WriteSubElement(std::ostream& out, const char* value) const {
  return WriteSubElement(out, std::string(value));
}

int StartRoot(std::ostream& out, const std::string& copyright) {
  std::string text(XMLUtil::BEGIN_ELEMENT);
  text.append(XMLObj::ROOT).append(XMLUtil::SPACE);
  text.append(AttributeText(XMLObj::COPYRIGHT, copyright)).append(XMLUtil::END_ELEMENT);
  return Write(out, text);
}

int WriteHeader(std::ostream& out, const std::string& copyright) {
  return StartRoot(out, copyright);
}

int EndRoot(std::ostream& out) {
  return WriteLine(out, 0, XMLUtil::BEGIN_ELEMENT, XMLUtil::BEGIN_END_ELEMENT, XMLObj::ROOT,
                   XMLUtil::END_ELEMENT);
}

int EndHeader(std::ostream& out) {
  return EndRoot(out);
}

}  // namespace MCCommonXML
