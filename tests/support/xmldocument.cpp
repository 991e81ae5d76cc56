// SPDX-License-Identifier: Apache-2.0
#include "support/xmldocument.h"

#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace mctest {

namespace {

/// Reads elements, attributes and text; of declarations, comments and document types nothing but
/// the XML declaration.
class Reader {
public:
  explicit Reader(const std::string& text) : fText(text) {}

  XmlNode Document() {
    if (StartsWith("<?xml")) Through("?>");
    SkipBlanks();
    XmlNode root = Element();
    SkipBlanks();
    Require(fAt == fText.size(), "text behind the root");
    return root;
  }

private:
  XmlNode Element() {
    XmlNode node;
    Expect("<");
    node.name = Name();
    for (SkipBlanks(); !StartsWith("/") && !StartsWith(">"); SkipBlanks()) AddAttribute(node);
    if (StartsWith("/")) {
      Expect("/>");
      return node;
    }
    Expect(">");
    while (!StartsWith("</")) {
      if (StartsWith("<")) {
        node.children.push_back(Element());
      } else {
        node.text += Unescaped(Until("<"));
      }
    }
    Expect("</");
    Require(Name() == node.name, "another end tag");
    Expect(">");
    return node;
  }

  void AddAttribute(XmlNode& node) {
    std::string name = Name();
    Require(!node.Has(name), "an attribute that is repeated");
    Expect("=\"");
    std::string value = Until("\"");
    Require(value.find('<') == std::string::npos, "a tag in an attribute");
    for (char& c : value) c = IsBlank(c) ? ' ' : c;
    node.attributes.emplace_back(std::move(name), Unescaped(value));
    Expect("\"");
  }

  std::string Unescaped(const std::string& text) const {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] != '&') {
        plain += text[i];
        continue;
      }
      const std::size_t end = text.find(';', i);
      Require(end != std::string::npos, "an ampersand");
      plain += Character(text.substr(i + 1, end - i - 1));
      i = end;
    }
    return plain;
  }

  char Character(const std::string& reference) const {
    if (reference == "amp") return '&';
    if (reference == "lt") return '<';
    if (reference == "gt") return '>';
    if (reference == "quot") return '"';
    Require(reference.front() == '#', "a reference that isn't known");
    return static_cast<char>(std::stoi(reference.substr(1)));
  }

  std::string Name() {
    const std::size_t end = fText.find_first_of(" \t\r\n/>=", fAt);
    Require(end != std::string::npos && end > fAt, "no name");
    const std::string name = fText.substr(fAt, end - fAt);
    fAt = end;
    return name;
  }

  std::string Until(std::string_view stop) {
    const std::size_t end = fText.find(stop, fAt);
    Require(end != std::string::npos, "the end of the text");
    const std::string passed = fText.substr(fAt, end - fAt);
    fAt = end;
    return passed;
  }

  void Through(std::string_view stop) {
    Until(stop);
    fAt += stop.size();
  }

  void Expect(std::string_view text) {
    Require(StartsWith(text), "something else");
    fAt += text.size();
  }

  void SkipBlanks() {
    while (fAt < fText.size() && IsBlank(fText[fAt])) ++fAt;
  }

  bool StartsWith(std::string_view text) const {
    return fText.compare(fAt, text.size(), text) == 0;
  }
  static bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

  void Require(bool condition, const std::string& fault) const {
    if (!condition) throw std::runtime_error(fault + " at byte " + std::to_string(fAt));
  }

  const std::string& fText;
  std::size_t fAt = 0;
};

}  // namespace

bool XmlNode::Has(const std::string& attribute) const {
  for (const auto& [key, value] : attributes) {
    if (key == attribute) return true;
  }
  return false;
}

std::string XmlNode::operator[](const std::string& attribute) const {
  for (const auto& [key, value] : attributes) {
    if (key == attribute) return value;
  }
  return "";
}

std::vector<const XmlNode*> XmlNode::All(const std::string& child) const {
  std::vector<const XmlNode*> found;
  for (const XmlNode& node : children) {
    if (node.name == child) found.push_back(&node);
  }
  return found;
}

const XmlNode& XmlNode::Only(const std::string& child) const {
  const std::vector<const XmlNode*> found = All(child);
  if (found.size() != 1) throw std::runtime_error("not one child " + child);
  return *found.front();
}

XmlNode ReadXml(const std::string& text) {
  return Reader(text).Document();
}

}  // namespace mctest
