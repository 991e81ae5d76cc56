// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace mctest {

/// A file of the given bytes, open for reading while it lives, and deleted then.
class TextFile {
public:
  explicit TextFile(const std::string& text)
      : fName(testing::TempDir() + "mcstat_" +
              testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "_" +
              testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt") {
    std::ofstream(fName, std::ios::binary) << text;
    fStream.open(fName, std::ios::binary);
  }
  ~TextFile() { std::remove(fName.c_str()); }
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  std::ifstream& Stream() { return fStream; }

  /// What has not been read yet.
  std::string Rest() {
    fStream.clear();
    return {std::istreambuf_iterator<char>(fStream), std::istreambuf_iterator<char>()};
  }

private:
  std::string fName;
  std::ifstream fStream;
};

}  // namespace mctest
