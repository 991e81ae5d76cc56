// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "require.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

/// A file in memory that is filled anew for each run.
class MemoryFile {
public:
  MemoryFile() : fHandle(memfd_create("fuzz", 0)) { Require(fHandle >= 0); }

  std::string Name() const { return "/proc/self/fd/" + std::to_string(fHandle); }

  /// Replaces what is in the file. Its name.
  std::string Fill(std::string_view bytes) {
    Require(ftruncate(fHandle, 0) == 0);
    const ssize_t size = static_cast<ssize_t>(bytes.size());
    Require(pwrite(fHandle, bytes.data(), bytes.size(), 0) == size);
    return Name();
  }

private:
  int fHandle;
};
