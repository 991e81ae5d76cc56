// SPDX-License-Identifier: Apache-2.0
#include "rowfile.h"

#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace mcfit {

namespace {

// The library reads the rows several times, row by row: a large buffer doubles its speed.
constexpr std::size_t kBufferSize = std::size_t{256} << 10U;

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

}  // namespace

RowFile::RowFile() : fFolder(TemporaryFolder()), fBuffer(kBufferSize) {
  std::string path = fFolder + "/mcfit-rows-XXXXXX";
  const int descriptor = mkstemp(path.data());
  if (descriptor < 0) Fail("make");
  unlink(path.c_str());
  fFile.reset(fdopen(descriptor, "w+b"));
  if (!fFile) {
    close(descriptor);
    Fail("open");
  }
  std::setvbuf(fFile.get(), fBuffer.data(), _IOFBF, fBuffer.size());
}

void RowFile::Append(const std::vector<double>& row) {
  if (std::fwrite(row.data(), sizeof(double), row.size(), fFile.get()) != row.size()) Fail("write");
}

std::FILE* RowFile::Rewind() {
  if (std::fflush(fFile.get()) != 0) Fail("write");
  std::rewind(fFile.get());
  return fFile.get();
}

void RowFile::Fail(const char* what) const {
  throw InputError(
      fmt::format("cannot {} the temporary row file in {}: {} (TMPDIR names another folder)", what,
                  Quoted(fFolder), std::strerror(errno)));
}

}  // namespace mcfit
