// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcxmlreadwrite.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <xercesc/dom/DOM.hpp>

namespace mctest {

/// A document read from a text, by default as it stands.
class ParsedDocument {
public:
  explicit ParsedDocument(const std::string& text, bool isStrict = false) {
    fReader.SetStrict(isStrict);
    std::istringstream stream(text);
    fStatus = fReader.ParseToDOM(stream);
  }

  MCComXPrsUtil::MCXMLReadWrite& Reader() { return fReader; }
  long Code() const { return fStatus.GetErrorCode(); }
  std::string Message() const { return fReader.GetXercesMessage(); }
  xercesc::DOMDocument& Document() { return *fReader.GetDocument(); }
  xercesc::DOMElement& Root() { return *fReader.GetDocument()->getDocumentElement(); }

  /// All text inside the root; "no root" without one.
  std::string Text() {
    xercesc::DOMDocument* document = fReader.GetDocument();
    if (document == nullptr || document->getDocumentElement() == nullptr) return "no root";
    return MCComXPrsUtil::ToUTF8(document->getDocumentElement()->getTextContent());
  }

private:
  MCComXPrsUtil::MCXMLReadWrite fReader;
  MCCommon::MCStatus fStatus;
};

/// `text` so many times.
inline std::string Repeat(const std::string& text, std::size_t n) {
  std::string all;
  all.reserve(text.size() * n);
  for (; n > 0; --n) all += text;
  return all;
}

/// The tags of the element's children: "a b".
inline std::string ChildTags(const xercesc::DOMElement& element) {
  std::string tags;
  const auto* child = MCComXPrsUtil::GetFirstChildElmt(element, nullptr);
  for (; child != nullptr; child = MCComXPrsUtil::GetNextSiblingElmt(*child, nullptr)) {
    if (!tags.empty()) tags += " ";
    tags += MCComXPrsUtil::ToUTF8(child->getTagName());
  }
  return tags;
}

}  // namespace mctest
