// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/SecurityManager.hpp>

namespace MCComXPrsUtil {
namespace detail {

/// How often a document that is read strictly may expand its entities: it grows by no more than
/// this factor. Documents of statistics use none.
inline constexpr int kMaxExpansions = 100;

/// A parser of Xerces that reads as Xerces does by default, or strictly as
/// MCXMLReadWrite::SetStrict() tells, and keeps the first error's text. Xerces bounds how often
/// entities expand in the content. What else lets a short document grow is refused here: parameter
/// entities and default values of attributes. Refused without the strict setting, too, is what
/// Xerces copies by recursion, an entity with elements nested beyond kMaxDepth, and what the
/// scanner lets through and the DOM doesn't: a version 1.9, a document type of a name like "a:b:c".
class RuledParser : public xercesc::XercesDOMParser {
public:
  RuledParser();

  /// Readies it for the next parse. Throws what Xerces throws.
  void Prepare(bool isStrict);

  /// "line L, column C: text" of the first error, in UTF-8, or the text alone where there is no
  /// line, as in a file that can't be opened. Empty if there was none; of a
  /// reading that isn't strict, only those that end it count.
  const std::string& FirstError() const { return fRules.fFirstError; }

private:
  /// Resolves no entity, which is what its base does.
  struct Rules : xercesc::HandlerBase {
    void error(const xercesc::SAXParseException& exception) override { fatalError(exception); }
    void fatalError(const xercesc::SAXParseException& exception) override;

    std::string fFirstError;
  };

  [[noreturn]] void Refuse(const XMLCh* reason);
  /// Refuses, with the place, what the DOM throws at.
  template <class Step>
  void RefuseIfThrown(const Step& step);
  void Enter();
  void Leave();

  void XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone,
               const XMLCh* actualEncoding) override;
  void doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* publicId,
                   const XMLCh* systemId, bool hasInternal, bool hasExternal) override;
  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                    const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId, bool isRoot,
                  const XMLCh* prefix) override;
  void startEntityReference(const xercesc::XMLEntityDecl& declaration) override;
  void endEntityReference(const xercesc::XMLEntityDecl& declaration) override;
  void entityDecl(const xercesc::DTDEntityDecl& declaration, bool isParameter,
                  bool isIgnored) override;
  void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& declaration,
              bool isIgnored) override;

  xercesc::SecurityManager fSecurity;
  Rules fRules;
  bool fbStrict = false;
  int fNLevels = 0;  // references and elements that are open inside the outermost reference
};

}  // namespace detail
}  // namespace MCComXPrsUtil
