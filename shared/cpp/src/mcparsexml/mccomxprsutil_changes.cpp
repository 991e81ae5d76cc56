// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/guarded.h"
#include "mcparsexml/detail/mcimport.h"
#include "mcparsexml/mccomxprsutil.h"
#include "mcxml/xmltext.h"
#include "metadata/detail/pmmlwords.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMElement;
namespace PMMLWord = MCCommonMetadata::detail::PMMLWord;

// Xerces hangs an element below itself if asked to, and loses one that is to take its own place.
bool IsChild(const DOMElement& parent, const DOMElement& child) {
  return child.getParentNode() == &parent;
}

}  // namespace

bool SetAttribute(DOMElement& element, const char* name, const char* value) {
  return detail::IsDone(
      [&] { element.setAttribute(detail::ToXMLCh(name).c_str(), detail::ToXMLCh(value).c_str()); });
}

bool SetAttribute(DOMElement& element, const char* name, double value) {
  return SetAttribute(element, name, MCCommonXML::Format(value, false, nullptr).c_str());
}

DOMElement* CreateElement(DOMDocument& document, const char* name) {
  DOMElement* element = nullptr;
  detail::IsDone([&] { element = document.createElement(detail::ToXMLCh(name).c_str()); });
  return element;
}

DOMElement* CreateExtension(DOMDocument& document, const char* name) {
  DOMElement* element = CreateElement(document, PMMLWord::kExtension);
  if (element == nullptr) return nullptr;
  if (SetAttribute(*element, PMMLWord::kExtender, PMMLWord::kVendorDomain) &&
      SetAttribute(*element, PMMLWord::kName, name)) {
    return element;
  }
  detail::ReleasePiece(*element);
  return nullptr;
}

bool InsertElement(DOMElement& parent, DOMElement* child, DOMElement* before) {
  if (child == nullptr || child == &parent) return false;
  if (child == before) return IsChild(parent, *child);
  return detail::IsDone([&] { parent.insertBefore(child, before); });
}

bool ReplaceElement(DOMElement& parent, DOMElement* newChild, DOMElement* oldChild) {
  if (newChild == nullptr || newChild == &parent || oldChild == nullptr) return false;
  if (newChild == oldChild) return IsChild(parent, *oldChild);
  return detail::IsDone([&] { parent.replaceChild(newChild, oldChild); });
}

}  // namespace MCComXPrsUtil
