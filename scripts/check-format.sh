#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Fails if a C++ file of the tree, or of the folder given, is not formatted as .clang-format says.
set -euo pipefail
cd "${1:-$(dirname "$0")/..}"
find shared tests benchmarks examples fuzz -name build -prune -o \
  \( -name '*.h' -o -name '*.cpp' \) -print0 2>/dev/null |
  xargs -0 clang-format --dry-run --Werror
