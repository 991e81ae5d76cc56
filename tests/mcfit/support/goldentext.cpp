// SPDX-License-Identifier: Apache-2.0
#include "mcfit/support/goldentext.h"

#include <fstream>
#include <iterator>
#include <regex>

std::string Golden(const std::string& name) {
  std::ifstream file(std::string(MCSTAT_TEST_DATA) + "/mcfit/" + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string WithoutTimestamp(const std::string& document) {
  return std::regex_replace(document, std::regex("<Timestamp>[^<]*</Timestamp>"), "<Timestamp/>");
}

std::string Replaced(std::string text, const std::string& find, const std::string& replacement) {
  for (std::size_t at = text.find(find); at != std::string::npos;
       at = text.find(find, at + replacement.size())) {
    text.replace(at, find.size(), replacement);
  }
  return text;
}
