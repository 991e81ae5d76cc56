// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmlattribute.h"

#include "mcxml/xmltext.h"
#include "mcxml/xmlutil.h"

#include <algorithm>

namespace MCCommonXML {

namespace {

// Whether nothing in the value can need escaping, as in most. A blank may.
bool IsPlain(const std::string& value) {
  return std::none_of(value.begin(), value.end(), [](char c) {
    return c == '&' || c == '<' || c == '>' || c == '"' || c == ' ' || (c >= '\t' && c <= '\r');
  });
}

// The ampersand first, and nothing that a later step could mistake for its own: each inserts
// references, in which only the ampersand occurs.
std::string Escaped(std::string value) {
  XMLUtil::ReplaceAll(value, XMLUtil::AMPERSAND, XMLUtil::XML_AMPERSAND);
  XMLUtil::ReplaceAll(value, XMLUtil::LESS_THAN, XMLUtil::XML_LESS_THAN);
  XMLUtil::ReplaceAll(value, XMLUtil::GREATER_THAN, XMLUtil::XML_GREATER_THAN);
  XMLUtil::ReplaceAll(value, XMLUtil::QUOTE, XMLUtil::XML_QUOTE);
  XMLUtil::ReplaceAll(value, "\t", XMLUtil::XML_CHARREF_TAB);
  XMLUtil::ReplaceAll(value, "\n", XMLUtil::XML_CHARREF_NL);
  XMLUtil::ReplaceAll(value, "\r", XMLUtil::XML_CHARREF_CR);
  XMLUtil::ReplaceAll(value, "  ", XMLUtil::XML_SP_CHARREF_SP);
  if (!value.empty() && value.front() == ' ') value.replace(0, 1, XMLUtil::XML_CHARREF_SP);
  if (!value.empty() && value.back() == ' ') {
    value.replace(value.size() - 1, 1, XMLUtil::XML_CHARREF_SP);
  }
  return value;
}

}  // namespace

XMLAttribute* XMLAttribute::Create(const std::string& name, const std::string& value) {
  return new XMLAttribute(name, value);
}

XMLAttribute* XMLAttribute::Create(const std::string& name, double value) {
  return new XMLAttribute(name, ReplaceSep(value, nullptr));
}

int XMLAttribute::ToString(std::string& out, ExportFormat&) const {
  out += fName;
  out += XMLUtil::EQUAL;
  out += XMLUtil::QUOTE;
  if (IsPlain(fValue)) {
    out += fValue;
  } else {
    out += Escaped(fValue);
  }
  out += XMLUtil::QUOTE;
  return 0;
}

int XMLAttribute::ToStream(std::ostream& out, ExportFormat& format, bool utf8) const {
  std::string text;
  ToString(text, format);
  return WriteText(out, text, utf8);
}

}  // namespace MCCommonXML
