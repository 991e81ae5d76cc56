// SPDX-License-Identifier: Apache-2.0
#include "inputfile.h"

#include "errors.h"
#include "interrupt.h"
#include "text.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace mcfit {

namespace {

[[noreturn]] void FailToOpen(const std::string& path) {
  const int error = errno;
  StopIfInterrupted();  // a named pipe may have kept us waiting for its other end
  throw InputError(fmt::format("cannot open {}: {}", Quoted(path), std::strerror(error)));
}

}  // namespace

std::ifstream OpenInput(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  // A folder can be opened, but not looked at.
  if (!file || (file.peek(), file.bad())) FailToOpen(path);
  file.clear();  // an empty file is at its end now
  return file;
}

// Not by opening it: of a named pipe, that would take the other end away.
void RequireReadable(const std::string& path) {
  if (access(path.c_str(), R_OK) != 0) FailToOpen(path);
}

}  // namespace mcfit
