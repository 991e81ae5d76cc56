#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Fails if the tests, run in a build with coverage, left more than 3% of the library's lines out.
#   scripts/check-coverage.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."
gcovr --root . --filter 'shared/cpp/src/' --object-directory "$1" --fail-under-line 97 \
  --txt "$1/coverage.txt" "$1" || {
  cat "$1/coverage.txt"
  exit 1
}
tail -n 4 "$1/coverage.txt"
