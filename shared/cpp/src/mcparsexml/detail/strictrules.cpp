// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/strictrules.h"

#include "mcparsexml/detail/utf.h"

#include <xercesc/sax/SAXParseException.hpp>

namespace MCComXPrsUtil {
namespace detail {

StrictRules::StrictRules(xercesc::XercesDOMParser& parser) : fParser(parser) {
  fSecurity.setEntityExpansionLimit(kMaxExpansions);
  fParser.setSecurityManager(&fSecurity);
  fParser.setErrorHandler(this);
  fParser.setEntityResolver(this);
  Switch(true);
}

StrictRules::~StrictRules() {
  Switch(false);
  fParser.setEntityResolver(nullptr);
  fParser.setErrorHandler(nullptr);
  fParser.setSecurityManager(nullptr);
}

void StrictRules::Switch(bool isStrict) {
  fParser.setDisableDefaultEntityResolution(isStrict);
  fParser.setLoadExternalDTD(!isStrict);
}

void StrictRules::error(const xercesc::SAXParseException& exception) {
  fatalError(exception);
}

void StrictRules::fatalError(const xercesc::SAXParseException& exception) {
  if (!fFirstError.empty()) return;
  fFirstError = "line " + std::to_string(exception.getLineNumber()) + ", column " +
                std::to_string(exception.getColumnNumber()) + ": " +
                FromUTF16(exception.getMessage());
}

// None is resolved, and by default none either.
xercesc::InputSource* StrictRules::resolveEntity(const XMLCh* /*publicId*/,
                                                 const XMLCh* /*systemId*/) {
  return nullptr;
}

}  // namespace detail
}  // namespace MCComXPrsUtil
