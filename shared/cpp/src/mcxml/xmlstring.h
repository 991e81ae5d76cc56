// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/xmlinterface.h"

#include <string>

namespace MCCommonXML {

/// A piece of text between the tags of an element. Ampersands and less-than signs are escaped;
/// everything else is printed as it stands, so that "]]>" and characters below 32, but for tab and
/// line feed, make a document that isn't well-formed, and a carriage return is read as a line
/// feed. The tag after it follows on the same line.
class MC_EXPORT XMLString : public XMLInterface {
public:
  /// A new piece of text, which the caller owns.
  static XMLString* Create(const std::string& text);

  int ToString(std::string& out, ExportFormat& format) const override;
  int ToStream(std::ostream& out, ExportFormat& format, bool utf8) const override;

protected:
  explicit XMLString(const std::string& text) : fText(text) {}

private:
  std::string fText;
};

}  // namespace MCCommonXML
