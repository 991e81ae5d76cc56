// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"

#include "mcparsexml/detail/utf.h"
#include "metadata/detail/pmmlwords.h"

#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;
namespace PMMLWord = MCCommonMetadata::detail::PMMLWord;

template <class Unit>
bool Equals(const Unit* x, const char* s) {
  constexpr Unit kNothing[] = {0};
  if (x == nullptr) x = kNothing;
  if (s == nullptr) s = "";
  const Unit* unit = x;
  const char* byte = s;
  for (; *unit < 0x80 && *unit == static_cast<unsigned char>(*byte); ++unit, ++byte) {
    if (*unit == 0) return true;
  }
  // Names and most words are ASCII, and need no conversion to differ.
  return *unit >= 0x80 && detail::FromUTF16(x) == s;
}

template <class Unit>
int Find(const Unit* x, const std::vector<std::string>& list) {
  int index = 0;
  for (const std::string& entry : list) {
    if (Equals(x, entry.c_str())) return index;
    ++index;
  }
  return -1;
}

template <class Unit>
int Find(const Unit* x, const std::pair<unsigned int, const char*>* table) {
  for (int index = 0; table[index].second != nullptr; ++index) {
    if (Equals(x, table[index].second)) return index;
  }
  return -1;
}

/// `node` or the first sibling after it that is such an element.
DOMElement* FirstFrom(DOMNode* node, const char* name) {
  for (; node != nullptr; node = node->getNextSibling()) {
    if (DOMElement* element = AsElement(*node, name)) return element;
  }
  return nullptr;
}

/// `element` or the first "Extension" after it that is ours and of that name.
DOMElement* FirstOwnFrom(DOMElement* element, const char* name) {
  for (; element != nullptr; element = GetNextSiblingElmt(*element, PMMLWord::kExtension)) {
    const XMLCh* extender = GetAttribute(*element, PMMLWord::kExtender);
    if (!XStrEqualsUTF8Str(extender, PMMLWord::kVendorDomain)) continue;
    if (name == nullptr) return element;
    if (XStrEqualsUTF8Str(GetAttribute(*element, PMMLWord::kName), name)) return element;
  }
  return nullptr;
}

}  // namespace

std::vector<unsigned short> ToUTF16(const char* text) {
  const std::u16string converted = detail::ToXMLCh(text);
  std::vector<unsigned short> units(converted.begin(), converted.end());
  units.push_back(0);
  return units;
}

std::string ToUTF8(const unsigned short* text) {
  return detail::FromUTF16(text);
}

std::string ToUTF8(const XMLCh* text) {
  return detail::FromUTF16(text);
}

bool XStrEqualsUTF8Str(const unsigned short* x, const char* s) {
  return Equals(x, s);
}

bool XStrEqualsUTF8Str(const XMLCh* x, const char* s) {
  return Equals(x, s);
}

int FindXStrInList(const unsigned short* x, const std::vector<std::string>& list) {
  return Find(x, list);
}

int FindXStrInList(const XMLCh* x, const std::vector<std::string>& list) {
  return Find(x, list);
}

int FindXStrInList(const unsigned short* x, const std::pair<unsigned int, const char*>* table) {
  return Find(x, table);
}

int FindXStrInList(const XMLCh* x, const std::pair<unsigned int, const char*>* table) {
  return Find(x, table);
}

bool TagNameEquals(const DOMElement& element, const char* name) {
  return Equals(element.getTagName(), name);
}

const DOMElement* AsElement(const DOMNode& node, const char* name) {
  if (node.getNodeType() != DOMNode::ELEMENT_NODE) return nullptr;
  const auto& element = static_cast<const DOMElement&>(node);
  return name == nullptr || TagNameEquals(element, name) ? &element : nullptr;
}

DOMElement* AsElement(DOMNode& node, const char* name) {
  const DOMNode& constNode = node;
  return const_cast<DOMElement*>(AsElement(constNode, name));
}

DOMElement* GetFirstChildElmt(const DOMNode& node, const char* name) {
  return FirstFrom(node.getFirstChild(), name);
}

DOMElement* GetNextSiblingElmt(const DOMNode& node, const char* name) {
  return FirstFrom(node.getNextSibling(), name);
}

DOMElement* GetFirstChildElmt(const DOMNode& node,
                              const std::pair<unsigned int, const char*>* table,
                              unsigned long& index) {
  for (index = 0; table[index].second != nullptr; ++index) {
    if (DOMElement* element = GetFirstChildElmt(node, table[index].second)) return element;
  }
  index = 0;
  return nullptr;
}

DOMElement* GetFirstChildExtension(const DOMNode& node, const char* name) {
  return FirstOwnFrom(GetFirstChildElmt(node, PMMLWord::kExtension), name);
}

DOMElement* GetNextSiblingExtension(const DOMNode& node, const char* name) {
  return FirstOwnFrom(GetNextSiblingElmt(node, PMMLWord::kExtension), name);
}

}  // namespace MCComXPrsUtil
