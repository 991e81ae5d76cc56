// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/ruledparser.h"

#include "mcparsexml/detail/documentdepth.h"
#include "mcparsexml/detail/utf.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/XMLEntityDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

namespace MCComXPrsUtil {
namespace detail {

RuledParser::RuledParser() {
  fSecurity.setEntityExpansionLimit(kMaxExpansions);
}

void RuledParser::Prepare(bool isStrict) {
  // Otherwise the parser would keep every document that it ever read.
  resetDocumentPool();
  fbStrict = isStrict;
  fNLevels = 0;
  fRules.fFirstError.clear();
  setSecurityManager(isStrict ? &fSecurity : nullptr);
  setErrorHandler(isStrict ? &fRules : nullptr);
  setEntityResolver(isStrict ? &fRules : nullptr);
  setDisableDefaultEntityResolution(isStrict);
  setLoadExternalDTD(!isStrict);
}

void RuledParser::Rules::fatalError(const xercesc::SAXParseException& exception) {
  if (!fFirstError.empty()) return;
  if (exception.getLineNumber() > 0) {
    fFirstError = "line " + std::to_string(exception.getLineNumber()) + ", column " +
                  std::to_string(exception.getColumnNumber()) + ": ";
  }
  fFirstError += FromUTF16(exception.getMessage());
}

void RuledParser::Refuse(const XMLCh* reason) {
  const xercesc::SAXParseException refusal(reason, *getScanner()->getLocator());
  fRules.fatalError(refusal);
  throw refusal;
}

template <class Step>
void RuledParser::RefuseIfThrown(const Step& step) {
  try {
    step();
  } catch (const xercesc::DOMException& exception) {
    Refuse(exception.getMessage());
  }
}

void RuledParser::XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone,
                          const XMLCh* actualEncoding) {
  RefuseIfThrown([&] { XercesDOMParser::XMLDecl(version, encoding, standalone, actualEncoding); });
}

void RuledParser::doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* publicId,
                              const XMLCh* systemId, bool hasInternal, bool hasExternal) {
  RefuseIfThrown(
      [&] { XercesDOMParser::doctypeDecl(root, publicId, systemId, hasInternal, hasExternal); });
}

void RuledParser::Enter() {
  if (++fNLevels > kMaxDepth) Refuse(u"elements of an entity are nested too deep");
}

void RuledParser::Leave() {
  if (fNLevels > 0) --fNLevels;
}

void RuledParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                               const XMLCh* prefix,
                               const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                               XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  if (fNLevels > 0) Enter();
  XercesDOMParser::startElement(declaration, urlId, prefix, attributes, attributeCount, isEmpty,
                                isRoot);
}

void RuledParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                             bool isRoot, const XMLCh* prefix) {
  Leave();
  XercesDOMParser::endElement(declaration, urlId, isRoot, prefix);
}

void RuledParser::startEntityReference(const xercesc::XMLEntityDecl& declaration) {
  Enter();
  XercesDOMParser::startEntityReference(declaration);
}

void RuledParser::endEntityReference(const xercesc::XMLEntityDecl& declaration) {
  Leave();
  XercesDOMParser::endEntityReference(declaration);
}

void RuledParser::entityDecl(const xercesc::DTDEntityDecl& declaration, bool isParameter,
                             bool isIgnored) {
  if (fbStrict && isParameter) Refuse(u"parameter entities are not accepted");
  XercesDOMParser::entityDecl(declaration, isParameter, isIgnored);
}

void RuledParser::attDef(const xercesc::DTDElementDecl& element,
                         const xercesc::DTDAttDef& declaration, bool isIgnored) {
  const auto kind = declaration.getDefaultType();
  if (fbStrict && (kind == xercesc::XMLAttDef::Default || kind == xercesc::XMLAttDef::Fixed)) {
    Refuse(u"default values of attributes are not accepted");
  }
  XercesDOMParser::attDef(element, declaration, isIgnored);
}

}  // namespace detail
}  // namespace MCComXPrsUtil
