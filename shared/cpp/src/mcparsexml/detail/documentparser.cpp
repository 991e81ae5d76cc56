// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/documentparser.h"

#include "mcparsexml/detail/guarded.h"
#include "mcparsexml/mcxinputsource.h"

#include <xercesc/util/PlatformUtils.hpp>

namespace MCComXPrsUtil {
namespace detail {

MCCommon::MCStatus StartXerces() {
  if (IsDone([] { xercesc::XMLPlatformUtils::Initialize(); })) return {};
  return {MCCommon::MCS_XML_INIT, false};
}

MCCommon::MCStatus DocumentParser::Create(std::unique_ptr<DocumentParser>& parser) {
  parser.reset();
  if (IsDone([&] { parser.reset(new DocumentParser); })) return {};
  return {MCCommon::MCS_XML_INIT, false};
}

MCCommon::MCStatus DocumentParser::Parse(const char* fileName, std::istream* stream, bool isStrict,
                                         std::string& message) {
  message.clear();
  fpDocument = nullptr;
  const auto parse = [&] {
    fParser.Prepare(isStrict);
    if (stream == nullptr) {
      fParser.parse(fileName);
    } else {
      fParser.parse(MCXInputSource(*stream));
    }
  };
  const bool isRead = IsDone(parse, &message);
  if (!fParser.FirstError().empty()) {
    message = fParser.FirstError();
  } else if (isRead) {
    fpDocument = fParser.getDocument();
  }
  if (fpDocument == nullptr) return {MCCommon::MCS_XML_PARSE, false};
  return {};
}

}  // namespace detail
}  // namespace MCComXPrsUtil
