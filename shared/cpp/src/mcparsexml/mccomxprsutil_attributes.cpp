// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/number.h"
#include "mcparsexml/detail/utf.h"
#include "mcparsexml/mccomxprsutil.h"

#include <cstddef>
#include <string>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

/// The name of an attribute for Xerces. Those of a document's vocabulary are short and ASCII, and
/// asked for thousands of times: they are converted without an allocation.
class AttributeName {
public:
  explicit AttributeName(const char* name) {
    std::size_t length = 0;
    for (; name != nullptr && IsAscii(name[length]) && length < kLongestShort; ++length) {
      fShort[length] = static_cast<XMLCh>(name[length]);
    }
    const bool isWhole = name == nullptr || name[length] == 0;
    fShort[isWhole ? length : 0] = 0;
    if (!isWhole) fLong = detail::ToXMLCh(name);
  }

  const XMLCh* Get() const { return fLong.empty() ? fShort : fLong.c_str(); }

private:
  static constexpr std::size_t kLongestShort = 31;
  static bool IsAscii(char c) { return c != 0 && static_cast<unsigned char>(c) < 0x80; }

  XMLCh fShort[kLongestShort + 1];
  std::u16string fLong;
};

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
  const xercesc::DOMAttr* attribute = element.getAttributeNode(AttributeName(name).Get());
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
