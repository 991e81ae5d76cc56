// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace mctest {

/// What a command writes to its standard output; it must succeed. It runs without LOCPATH: the leak
/// detector minds what the C library makes of the locales of the tests.
inline std::string OutputOf(const std::string& command) {
  std::FILE* pipe = popen(("unset LOCPATH; " + command).c_str(), "r");
  EXPECT_NE(pipe, nullptr);
  std::string out;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) out += static_cast<char>(c);
  EXPECT_EQ(pclose(pipe), 0);
  return out;
}

}  // namespace mctest
