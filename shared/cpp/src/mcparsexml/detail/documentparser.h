// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/detail/ruledparser.h"
#include "regression/frame/mcstatus.h"

#include <iosfwd>
#include <memory>
#include <string>

namespace MCComXPrsUtil {
namespace detail {

/// Starts Xerces in its default locale: OK or error 103. After OK it must be stopped by
/// XMLPlatformUtils::Terminate(), which Xerces counts; after an error it must not.
MCCommon::MCStatus StartXerces();

/// A parser of Xerces with what a read of ours needs around it: plain or strict, every exception
/// caught. MCXMLReadWrite makes one for each read, MCPMMLParser one for its life. Xerces must be up
/// while it lives.
class DocumentParser {
public:
  /// Makes a parser with Xerces's defaults: OK, or error 103 with `parser` null.
  static MCCommon::MCStatus Create(std::unique_ptr<DocumentParser>& parser);

  /// Reads a document from the stream, or from the file if `stream` is null. OK, or error 104 if
  /// Xerces gives up on it or makes no document, with Xerces's text, if there is one, in `message`,
  /// in UTF-8 (otherwise empty). `isStrict` says how it is read, for this document alone: see
  /// MCXMLReadWrite::SetStrict(). The document before is released. After a parse in which memory
  /// ran out all further ones are error 104.
  MCCommon::MCStatus Parse(const char* fileName, std::istream* stream, bool isStrict,
                           std::string& message);

  /// The document of the last parse, owned by the parser until the next one; null if that failed.
  xercesc::DOMDocument* GetDocument() const { return fpDocument; }

private:
  DocumentParser() = default;

  RuledParser fParser;
  xercesc::DOMDocument* fpDocument = nullptr;
};

}  // namespace detail
}  // namespace MCComXPrsUtil
