#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Fails if a C++ file of the tree, or of the folder given, is not formatted as .clang-format says.
set -euo pipefail
cd "${1:-$(dirname "$0")/..}"
find . \( -name build -o -name .git \) -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 |
  xargs -0 clang-format --dry-run --Werror
