// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/number.h"
#include "mcparsexml/detail/utf.h"
#include "mcparsexml/mccomxprsutil.h"

#include <cstddef>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

/// Appends the numbers of `text` to `list`. False, somewhere on the way, if a word is none.
bool AppendDoubles(const XMLCh* text, std::vector<double>& list) {
  const auto skip = [](const XMLCh* from, bool isSpace) {
    while (*from != 0 && detail::IsSpace(*from) == isSpace) ++from;
    return from;
  };
  for (text = skip(text, true); *text != 0; text = skip(text, true)) {
    const XMLCh* end = skip(text, false);
    double value = 0.0;
    if (!detail::ParseDouble({text, static_cast<std::size_t>(end - text)}, value)) return false;
    list.push_back(value);
    text = end;
  }
  return true;
}

}  // namespace

const XMLCh* GetAttribute(const DOMElement& element, const char* name) {
  const xercesc::DOMAttr* attribute = element.getAttributeNode(detail::ToXMLCh(name).c_str());
  return attribute != nullptr ? attribute->getValue() : nullptr;
}

const XMLCh* GetAttribute(const DOMNode& node, const char* name) {
  const DOMElement* element = AsElement(node, nullptr);
  return element != nullptr ? GetAttribute(*element, name) : nullptr;
}

int GetDoubleAttribute(const DOMElement& element, const char* name, double& value) {
  const XMLCh* text = GetAttribute(element, name);
  if (text == nullptr) return -1;
  return detail::ParseDouble(text, value) ? 0 : 1;
}

int GetIntAttribute(const DOMElement& element, const char* name, int sign, int& value) {
  const XMLCh* text = GetAttribute(element, name);
  if (text == nullptr) return -1;
  if (!detail::ParseInt(text, value)) return 1;
  if (value > 0 || sign < 0) return 0;
  return sign == 0 && value == 0 ? 0 : 1;
}

bool AssembleDoublesList(const DOMElement& element, std::vector<double>& list) {
  const DOMNode* child = element.getFirstChild();
  if (child == nullptr) {
    list.clear();
    return true;
  }
  if (child->getNextSibling() != nullptr || child->getNodeType() != DOMNode::TEXT_NODE)
    return false;
  list.clear();
  const bool areNumbers = AppendDoubles(child->getNodeValue(), list);
  if (!areNumbers) list.clear();
  return areNumbers;
}

}  // namespace MCComXPrsUtil
