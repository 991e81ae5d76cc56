// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace mctest {

/// The fields of each line of a file below tests/data but the first, which names them. A file
/// without further lines fails the test.
inline std::vector<std::vector<std::string>> CsvRows(const std::string& path) {
  std::ifstream file(std::string(MCSTAT_TEST_DATA) + "/" + path);
  std::vector<std::vector<std::string>> rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::istringstream fields(line);
    rows.emplace_back();
    for (std::string field; std::getline(fields, field, ',');) rows.back().push_back(field);
  }
  EXPECT_FALSE(rows.empty()) << path;
  return rows;
}

}  // namespace mctest
