// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <memory>
#include <vector>

namespace mcfit {

/// A temporary file of rows of doubles, in the format of MCCommon::BinaryRecordIterator. It stands
/// in the TemporaryFolder() and is unlinked as soon as it is open, so that
/// nothing is left behind however the program ends. Failures throw InputError.
class RowFile {
public:
  RowFile();

  /// Adds a row at the end.
  void Append(const std::vector<double>& row);

  /// Ends the writing. The stream stands at the first row; it is the file's and lives as long.
  std::FILE* Rewind();

private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::vector<char> fBuffer;  // of the stream, which is closed first
  std::unique_ptr<std::FILE, Closer> fFile;
};

}  // namespace mcfit
