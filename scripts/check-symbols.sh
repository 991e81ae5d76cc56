#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Compares what a build of libmcstat exports with the committed list: hosts link and subclass
# these, so a symbol that goes or changes breaks them. With --update the list is written anew.
#   scripts/check-symbols.sh LIBRARY [--update]
set -euo pipefail
cd "$(dirname "$0")/.."
list=cmake/symbols.txt
exported() {
  nm -DC --defined-only "$1" | cut -d' ' -f3- | sed 's/@@.*//' | grep -v '^MCSTAT_' | LC_ALL=C sort -u
}
if [ "${2:-}" = --update ]; then
  exported "$1" >"$list"
  exit
fi
if ! diff -u "$list" <(exported "$1"); then
  echo "The exported symbols differ from $list (- gone, + new)."
  echo "If that is meant: scripts/check-symbols.sh LIBRARY --update, and think of the SONAME."
  exit 1
fi
