// SPDX-License-Identifier: Apache-2.0
#include "documents/pmmlfile.h"

#include "errors.h"
#include "inputfile.h"
#include "statustext.h"
#include "text.h"

#include <fmt/format.h>

namespace mcfit {

void ReadDocument(MCComXPrsUtil::MCPMMLParser& parser, const std::string& path) {
  std::ifstream file = OpenInput(path);
  parser.SetStrict(true);
  const MCCommon::MCStatus status = parser.ParseToDOM(file);
  if (!status.IsError()) return;
  const std::string message = parser.GetXercesMessage();
  throw InputError(fmt::format("{}: {}", Printable(path),
                               message.empty() ? StatusText(status) : Printable(message)));
}

void CheckFields(const MCCommon::MCStatus& status, const std::string& path, const char* dictionary,
                 int nRead) {
  if (!status.IsError()) return;
  throw InputError(fmt::format("{}: field {} of the {}: {}", Printable(path), nRead + 1, dictionary,
                               StatusText(status)));
}

}  // namespace mcfit
