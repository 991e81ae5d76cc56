#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs clang-tidy over the sources of the library, two at a time.
#   scripts/check-tidy.sh BUILD_FOLDER (which holds compile_commands.json)
set -euo pipefail
cd "$(dirname "$0")/.."
log=$1/clang-tidy.log
if ! find shared/cpp/src -name '*.cpp' -print0 |
  xargs -0 -P 2 -n 4 clang-tidy --quiet -p "$1" >"$log" 2>&1; then
  grep -v ' warnings generated\.$' "$log"
  exit 1
fi
