// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

std::string OutputOf(const char* program) {
  std::FILE* pipe = popen(program, "r");
  EXPECT_NE(pipe, nullptr);
  std::string out;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) out += static_cast<char>(c);
  EXPECT_EQ(pclose(pipe), 0);
  return out;
}

TEST(MinimalHost, PrintsTheTableOfItsModel) {
  // By hand: means 3 and 6.02, slope 19.9 / 10, residual sum of squares 0.107 of 39.708.
  EXPECT_EQ(OutputOf(MINIMAL_PROGRAM),
            "parameter 0:  0.0500\nparameter 1:  1.9900\nR square: 0.9973\n");
}

}  // namespace
