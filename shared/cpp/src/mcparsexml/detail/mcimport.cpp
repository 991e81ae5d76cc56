// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/mcimport.h"

#include "mcparsexml/detail/guarded.h"

#include <algorithm>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

namespace MCComXPrsUtil {
namespace detail {

using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNamedNodeMap;
using xercesc::DOMNode;
using xercesc::XMLString;

namespace {

// All that XML 1.1 has beyond 1.0 in texts.
bool HasControls(const XMLCh* text) {
  const auto isControl = [](XMLCh c) { return c < u' ' && c != u'\t' && c != u'\n' && c != u'\r'; };
  return text != nullptr && std::any_of(text, text + XMLString::stringLen(text), isControl);
}

// The serialiser gives up a whole document for one character that XML 1.0 can't hold.
bool IsWritable(const DOMNode& node) {
  if (!XMLString::equals(node.getOwnerDocument()->getXmlVersion(), u"1.1")) return true;
  const DOMNamedNodeMap* attributes = node.getAttributes();
  const XMLSize_t nAttributes = attributes == nullptr ? 0 : attributes->getLength();
  for (XMLSize_t i = 0; i < nAttributes; ++i) {
    if (HasControls(attributes->item(i)->getNodeValue())) return false;
  }
  return !HasControls(node.getNodeValue());
}

DOMNode* ImportAlone(DOMDocument& document, const DOMNode& source) {
  DOMNode* copy = nullptr;
  if (IsWritable(source)) IsDone([&] { copy = document.importNode(&source, false); });
  return copy;
}

bool IsReference(const DOMNode& node) {
  return node.getNodeType() == DOMNode::ENTITY_REFERENCE_NODE;
}

/// Walks through what is in an element, and keeps to where the copy goes on.
class TreeImport {
public:
  TreeImport(DOMDocument& document, const DOMNode& source, DOMNode& copy)
      : fDocument(document), fpEnd(&source), fpNode(source.getFirstChild()), fpParent(&copy) {}

  /// Whether all could be copied.
  bool Run() {
    while (fpNode != nullptr) {
      DOMNode* inside = fpParent;
      if (!IsReference(*fpNode)) {
        inside = ImportAlone(fDocument, *fpNode);
        if (inside == nullptr) return false;
        fpParent->appendChild(inside);  // a new node, which every parent takes
      }
      GoOn(*inside);
    }
    return true;
  }

private:
  void GoOn(DOMNode& inside) {
    if (const DOMNode* child = fpNode->getFirstChild()) {
      fpNode = child;
      fpParent = &inside;
      return;
    }
    while (fpNode != nullptr && fpNode->getNextSibling() == nullptr) Leave();
    if (fpNode != nullptr) fpNode = fpNode->getNextSibling();
  }

  void Leave() {
    fpNode = fpNode->getParentNode();
    if (fpNode == fpEnd) {
      fpNode = nullptr;
    } else if (!IsReference(*fpNode)) {
      fpParent = fpParent->getParentNode();
    }
  }

  DOMDocument& fDocument;
  const DOMNode* fpEnd;
  const DOMNode* fpNode;  // null at the end
  DOMNode* fpParent;      // of its copy
};

}  // namespace

DOMElement* ImportElement(DOMDocument& document, const DOMElement& source) {
  return static_cast<DOMElement*>(ImportAlone(document, source));
}

DOMElement* ImportTree(DOMDocument& document, const DOMElement& source) {
  DOMElement* copy = ImportElement(document, source);
  if (copy == nullptr || TreeImport(document, source, *copy).Run()) return copy;
  copy->release();
  return nullptr;
}

}  // namespace detail
}  // namespace MCComXPrsUtil
