// SPDX-License-Identifier: Apache-2.0
#include "program.h"

int main(int argc, char** argv) {
  return mcfit::RunProgram(argc, argv);
}
