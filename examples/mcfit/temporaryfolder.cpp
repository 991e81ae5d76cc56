// SPDX-License-Identifier: Apache-2.0
#include "temporaryfolder.h"

#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace mcfit {

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

void FailInTemporaryFolder(const char* deed) {
  const int error = errno;
  throw InputError(fmt::format("cannot {} in {}: {} (TMPDIR names another folder)", deed,
                               Quoted(TemporaryFolder()), std::strerror(error)));
}

}  // namespace mcfit
