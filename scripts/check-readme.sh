#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The program in README.md is examples/minimal/minimal.cpp to the letter, and prints what README.md
# says that it prints.
#   scripts/check-readme.sh PROGRAM (the compiled example)
set -euo pipefail
cd "$(dirname "$0")/.."
block() { awk '/^```cpp$/ { on = 1; next } /^```$/ { exit } on' README.md; }
output() { awk '/^```$/ { on = 1; next } on && /^    / { sub(/^    /, ""); print; next } on && NF { exit }' README.md; }
diff -u <(sed 1d examples/minimal/minimal.cpp) <(block)
diff -u <("$1") <(output)
