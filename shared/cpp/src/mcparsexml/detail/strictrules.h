// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/EntityResolver.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/util/SecurityManager.hpp>

namespace MCComXPrsUtil {
namespace detail {

/// How often a document that is read strictly may expand its entities: it grows by no more than
/// this factor. Documents of statistics use none.
inline constexpr int kMaxExpansions = 100;

/// Puts a parser under the strict setting while it lives, and takes note of why a document is
/// refused.
class StrictRules : private xercesc::ErrorHandler, private xercesc::EntityResolver {
public:
  explicit StrictRules(xercesc::XercesDOMParser& parser);
  ~StrictRules() override;
  StrictRules(const StrictRules&) = delete;
  StrictRules& operator=(const StrictRules&) = delete;

  /// "line L, column C: text" of the first error, in UTF-8; empty if there was none.
  const std::string& FirstError() const { return fFirstError; }

private:
  void Switch(bool isStrict);

  void warning(const xercesc::SAXParseException&) override {}
  void error(const xercesc::SAXParseException& exception) override;
  void fatalError(const xercesc::SAXParseException& exception) override;
  void resetErrors() override {}

  xercesc::InputSource* resolveEntity(const XMLCh* publicId, const XMLCh* systemId) override;

  xercesc::XercesDOMParser& fParser;
  xercesc::SecurityManager fSecurity;
  std::string fFirstError;
};

}  // namespace detail
}  // namespace MCComXPrsUtil
