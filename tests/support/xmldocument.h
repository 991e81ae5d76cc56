// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace mctest {

/// An element of an XML document, as a reader of XML sees it: references are replaced.
struct XmlNode {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<XmlNode> children;
  std::string text;  // all text between the tags, without that of the children

  /// Whether there is an attribute of that name, and its value, "" without one.
  bool Has(const std::string& attribute) const;
  std::string operator[](const std::string& attribute) const;

  /// All children of that name; the only one, which the document must have.
  std::vector<const XmlNode*> All(const std::string& child) const;
  const XmlNode& Only(const std::string& child) const;
};

/// The root of a document. Throws std::runtime_error for a text that isn't well-formed.
XmlNode ReadXml(const std::string& text);

}  // namespace mctest
