// SPDX-License-Identifier: Apache-2.0
#include "rowfile.h"

#include "temporaryfolder.h"

#include <cstdlib>
#include <unistd.h>

namespace mcfit {

namespace {

// The library reads the rows several times, row by row: a large buffer doubles its speed.
constexpr std::size_t kBufferSize = std::size_t{256} << 10U;

constexpr char kWrite[] = "write the temporary row file";

}  // namespace

RowFile::RowFile() : fBuffer(kBufferSize) {
  std::string path = TemporaryFolder() + "/mcfit-rows-XXXXXX";
  const int descriptor = mkstemp(path.data());
  if (descriptor < 0) FailInTemporaryFolder("make the temporary row file");
  unlink(path.c_str());
  fFile.reset(fdopen(descriptor, "w+b"));
  if (!fFile) {
    close(descriptor);
    FailInTemporaryFolder("open the temporary row file");
  }
  std::setvbuf(fFile.get(), fBuffer.data(), _IOFBF, fBuffer.size());
}

void RowFile::Append(const std::vector<double>& row) {
  if (std::fwrite(row.data(), sizeof(double), row.size(), fFile.get()) != row.size()) {
    FailInTemporaryFolder(kWrite);
  }
}

std::FILE* RowFile::Rewind() {
  if (std::fflush(fFile.get()) != 0) FailInTemporaryFolder(kWrite);
  std::rewind(fFile.get());
  return fFile.get();
}

}  // namespace mcfit
