// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/xmlinterface.h"

#include <string>

namespace MCCommonXML {

/// The document type, printed together with the XML declaration before it. Name and system
/// identifier are printed as they stand.
class MC_EXPORT XMLDocType : public XMLInterface {
public:
  /// A new document type, which the caller owns. `id` is kept for whoever makes it and not used.
  static XMLDocType* Create(const std::string& name, const std::string& systemId, long id);

  /// Appends a line to the internal subset, as it stands. The subset's new length, in characters.
  int AddExtension(const std::string& text);

  int ToString(std::string& out, ExportFormat& format) const override;
  int ToStream(std::ostream& out, ExportFormat& format, bool utf8) const override;

protected:
  XMLDocType(const std::string& name, const std::string& systemId, long id)
      : fName(name), fSystemId(systemId), fId(id) {}

private:
  std::string fName;
  std::string fSystemId;
  std::string fExtension;
  [[maybe_unused]] long fId;
};

}  // namespace MCCommonXML
