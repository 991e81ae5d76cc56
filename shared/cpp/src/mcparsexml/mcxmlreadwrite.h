// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"

#include <iosfwd>
#include <memory>
#include <string>

/// Reading, editing and merging XML documents through Xerces. Nothing that Xerces throws leaves
/// these classes and functions: it becomes a status, false or null.
namespace MCComXPrsUtil {

namespace detail {
class DocumentParser;
}

/// Reads a document into a DOM and writes a DOM to a file. While an object lives, Xerces is up:
/// each starts it at construction and stops it at its end, which Xerces counts, so that objects of
/// this kind and a host's own use of Xerces come and go in any order.
///
///     MCXMLReadWrite document;
///     document.SetStrict(true);  // a document from a stranger
///     if (document.ParseToDOM(file).IsError()) Complain(document.GetXercesMessage());
///
/// Documents are read as Xerces does by default, which is for documents that one trusts: external
/// entities and document types are fetched from wherever the document says, files of this machine
/// included, entities expand without a limit, and a document that is not well-formed is read up to
/// its first error with success. SetStrict() is for all others (docs/security.md).
class MC_EXPORT MCXMLReadWrite {
public:
  /// Starts Xerces. Where it can't be started, GetInitStatus() is error 103, and that is then the
  /// answer of every operation.
  MCXMLReadWrite();

  /// Releases the document and stops Xerces, if it was started here. Whatever was taken from the
  /// document must be gone.
  ~MCXMLReadWrite();

  MCXMLReadWrite(const MCXMLReadWrite&) = delete;
  MCXMLReadWrite& operator=(const MCXMLReadWrite&) = delete;

  /// Whether Xerces is up: OK or error 103.
  MCCommon::MCStatus GetInitStatus() const { return fInitStatus; }

  /// The document of the last parse, until the next one or the end of this object. Null before the
  /// first and after one that failed.
  xercesc::DOMDocument* GetDocument();
  const xercesc::DOMDocument* GetDocument() const;

  /// What Xerces said at the last failure, in UTF-8; empty if the last ParseToDOM() or
  /// WriteFromDOM() was a success, or failed without a text. Of a document that the strict setting
  /// refuses: "line L, column C: text", both counted from 1.
  std::string GetXercesMessage() const { return fXercesMessage; }

  /// Whether ParseToDOM() reads strictly from now on; off at the start. Then a document that is not
  /// well-formed is error 104, with a message that names the line and column of its first error. So
  /// is one that refers to an external entity, expands its own entities more than 100 times,
  /// declares parameter entities or gives attributes default values. An external document type is
  /// not fetched: what it would declare is missing.
  void SetStrict(bool isStrict) { fbStrict = isStrict; }
  bool IsStrict() const { return fbStrict; }

  /// Reads a document from a file, named as Xerces takes it: a path in the local encoding, or a
  /// URL. Releases the document before. Error 103 if no parser can be made, 104 if the file can't
  /// be read or Xerces gives up on it, each with GetXercesMessage() where there is a text; no
  /// document is held then.
  MCCommon::MCStatus ParseToDOM(const std::string& fileName);

  /// The same from a stream, from where it stands to its end. `stream` is used during the call
  /// only.
  MCCommon::MCStatus ParseToDOM(std::istream& stream);

  /// Writes `document`, or the own one if that is null, to a file (a path in the local encoding) in
  /// UTF-8, its white space as it stands. Without any document GetInitStatus() is the answer and no
  /// file is made. Error 118 if it can't be written, or if its elements stand more than 10,000
  /// deep.
  MCCommon::MCStatus WriteFromDOM(const std::string& fileName,
                                  const xercesc::DOMDocument* document) const;

private:
  MCCommon::MCStatus ParseToDOM(const char* fileName, std::istream* stream);

  MCCommon::MCStatus fInitStatus;
  std::unique_ptr<detail::DocumentParser> fpParser;
  mutable std::string fXercesMessage;
  xercesc::DOMDocument* fpDocument = nullptr;
  bool fbStrict = false;
};

}  // namespace MCComXPrsUtil
