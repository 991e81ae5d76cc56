// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/xmlinterface.h"

#include <string>

namespace MCCommonXML {

/// An attribute: a name and a value, as name="value". The value is escaped when it is printed, so
/// that a reader of XML gets it back as it is, blanks, tabs and line ends included; the name is
/// printed as it stands. Other characters below 32 aren't escaped: XML has no way to write them,
/// and a document that holds one isn't well-formed.
class MC_EXPORT XMLAttribute : public XMLInterface {
public:
  /// A new attribute, which the caller owns. A number has 15 significant digits and a decimal
  /// point in every locale; note that a bool or an integer makes a number, too.
  static XMLAttribute* Create(const std::string& name, const std::string& value);
  static XMLAttribute* Create(const std::string& name, double value);

  int ToString(std::string& out, ExportFormat& format) const override;
  int ToStream(std::ostream& out, ExportFormat& format, bool utf8) const override;

protected:
  XMLAttribute(const std::string& name, const std::string& value) : fName(name), fValue(value) {}

private:
  std::string fName;
  std::string fValue;
};

}  // namespace MCCommonXML
