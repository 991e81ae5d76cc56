// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace mctest {

/// A folder of its own for one test, removed with all that is in it.
class TemporaryFolder {
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Path of a file in the folder.
  std::string Path(const std::string& name) const { return fPath + "/" + name; }

  /// Writes a file into the folder and answers its path.
  std::string Write(const std::string& name, std::string_view text) const;

  /// The text of a file in the folder; the test fails if there is none.
  std::string Read(const std::string& name) const;

  /// Whether the folder has such a file.
  bool Has(const std::string& name) const;

private:
  std::string fPath;
};

}  // namespace mctest
