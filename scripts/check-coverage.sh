#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds with the coverage preset, runs the tests and fails below 97% of the library's lines.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset coverage
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j2 --output-on-failure
gcovr --root . --filter 'shared/cpp/src/' --object-directory build/coverage \
  --exclude-unreachable-branches --exclude-throw-branches \
  --fail-under-line 97 --txt build/coverage/coverage.txt
tail -n 4 build/coverage/coverage.txt
