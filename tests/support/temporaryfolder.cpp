// SPDX-License-Identifier: Apache-2.0
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace mctest {

TemporaryFolder::TemporaryFolder() : fPath("/tmp/mcstat-test-XXXXXX") {
  if (mkdtemp(fPath.data()) == nullptr) throw std::runtime_error("no temporary folder");
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(fPath, ignored);
}

std::string TemporaryFolder::Write(const std::string& name, std::string_view text) const {
  std::ofstream(Path(name), std::ios::binary) << text;
  return Path(name);
}

std::string TemporaryFolder::Read(const std::string& name) const {
  std::ifstream file(Path(name), std::ios::binary);
  EXPECT_TRUE(file.is_open()) << Path(name);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

bool TemporaryFolder::Has(const std::string& name) const {
  return std::filesystem::exists(Path(name));
}

}  // namespace mctest
