// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/mcimport.h"

#include "mcparsexml/detail/guarded.h"

#include <algorithm>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

namespace MCComXPrsUtil {
namespace detail {

using xercesc::DOMAttr;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNamedNodeMap;
using xercesc::DOMNode;
using xercesc::XMLString;

namespace {

// All that texts of XML 1.1 have beyond those of 1.0, and what neither has.
bool HasControls(const XMLCh* text) {
  const auto isControl = [](XMLCh c) {
    return (c < u' ' && c != u'\t' && c != u'\n' && c != u'\r') || c >= 0xFFFE;
  };
  return text != nullptr && std::any_of(text, text + XMLString::stringLen(text), isControl);
}

// The serialiser gives up a whole document for one of them.
bool IsWritable(const DOMNode& node) {
  if (!XMLString::equals(node.getOwnerDocument()->getXmlVersion(), u"1.1")) return true;
  const DOMNamedNodeMap* attributes = node.getAttributes();
  const XMLSize_t nAttributes = attributes == nullptr ? 0 : attributes->getLength();
  for (XMLSize_t i = 0; i < nAttributes; ++i) {
    if (HasControls(attributes->item(i)->getNodeValue())) return false;
  }
  return !HasControls(node.getNodeValue());
}

// An import passes over attributes that stand in the DTD alone.
void AddDefaults(const DOMNode& source, DOMNode& copy) {
  const DOMNamedNodeMap* attributes = source.getAttributes();
  const XMLSize_t nAttributes = attributes == nullptr ? 0 : attributes->getLength();
  for (XMLSize_t i = 0; i < nAttributes; ++i) {
    const auto* attribute = static_cast<const DOMAttr*>(attributes->item(i));
    if (attribute->getSpecified()) continue;
    static_cast<DOMElement&>(copy).setAttribute(attribute->getName(), attribute->getValue());
  }
}

DOMNode* ImportAlone(DOMDocument& document, const DOMNode& source) {
  if (!IsWritable(source)) return nullptr;
  DOMNode* copy = nullptr;
  const bool isImported = IsDone([&] {
    copy = document.importNode(&source, false);
    AddDefaults(source, *copy);
  });
  return isImported ? copy : nullptr;
}

bool IsReference(const DOMNode& node) {
  return node.getNodeType() == DOMNode::ENTITY_REFERENCE_NODE;
}

/// Copies what is in an element. A copy takes its place when all in it is copied: Xerces walks up
/// from each place to see that a tree doesn't come to hold itself.
class TreeImport {
public:
  TreeImport(DOMDocument& document, const DOMNode& source, DOMNode& copy)
      : fDocument(document), fSource(source), fvOpen{&copy} {}

  /// Whether all could be copied.
  bool Run() {
    const DOMNode* node = fSource.getFirstChild();
    while (node != nullptr && Open(*node)) node = Next(node);
    while (fvOpen.size() > 1) Close();
    return node == nullptr;
  }

private:
  // What is in a reference goes where the reference would.
  bool Open(const DOMNode& node) {
    DOMNode* copy = IsReference(node) ? fvOpen.back() : ImportAlone(fDocument, node);
    if (copy != nullptr) fvOpen.push_back(copy);
    return copy != nullptr;
  }

  void Close() {
    DOMNode* copy = fvOpen.back();
    fvOpen.pop_back();
    if (copy != fvOpen.back()) fvOpen.back()->appendChild(copy);  // new, and so it can't be refused
  }

  const DOMNode* Next(const DOMNode* node) {
    if (const DOMNode* child = node->getFirstChild()) return child;
    for (Close(); node->getNextSibling() == nullptr; Close()) {
      node = node->getParentNode();
      if (node == &fSource) return nullptr;
    }
    return node->getNextSibling();
  }

  DOMDocument& fDocument;
  const DOMNode& fSource;
  std::vector<DOMNode*> fvOpen;  // whose content is being copied, innermost last
};

}  // namespace

DOMElement* ImportElement(DOMDocument& document, const DOMElement& source) {
  return static_cast<DOMElement*>(ImportAlone(document, source));
}

DOMElement* ImportTree(DOMDocument& document, const DOMElement& source) {
  DOMElement* copy = ImportElement(document, source);
  if (copy == nullptr || TreeImport(document, source, *copy).Run()) return copy;
  ReleasePiece(*copy);
  return nullptr;
}

void ReleasePiece(DOMElement& piece) {
  IsDone([&piece] { piece.release(); });
}

bool IsWritableText(const std::string& text) {
  const std::u16string units = ToXMLCh(text.c_str());
  const bool isWhole = units.empty() == text.empty() && text.find('\0') == std::string::npos;
  return isWhole && !HasControls(units.c_str());
}

}  // namespace detail
}  // namespace MCComXPrsUtil
