// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/exportformat.h"
#include "regression/frame/mcexport.h"

#include <ostream>
#include <string>

namespace MCCommonXML {

/// A node of a document tree: an element, an attribute, a piece of text or a document type. Nodes
/// are made by the static Create() of their classes and print themselves; WriteTree() prints a
/// whole document.
class MC_EXPORT XMLInterface {
public:
  XMLInterface() = default;
  XMLInterface(const XMLInterface&) = delete;
  XMLInterface& operator=(const XMLInterface&) = delete;
  virtual ~XMLInterface() = default;

  /// Appends the node's text to `out`. 0.
  virtual int ToString(std::string& out, ExportFormat& format) const = 0;

  /// Writes the same to a stream, piece by piece and converted to UTF-8 with `utf8` (see
  /// MbToUTF8()). Errors are the stream's. 0.
  virtual int ToStream(std::ostream& out, ExportFormat& format, bool utf8) const = 0;
};

}  // namespace MCCommonXML
