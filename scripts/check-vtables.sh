#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Compares the order of virtual operations of every public class with the committed list: hosts
# subclass our interfaces, so that order is ABI. With --update the list is written anew.
set -euo pipefail
cd "$(dirname "$0")/.."
list=cmake/vtables.txt
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

slots() {
  printf '#include "%s"\n' mcmath/mcmath.h mcmath/random/random.h mcxml/mcxml.h \
    metadata/metadata.h mcparsexml/mcparsexml.h regression/regression.h >"$scratch/all.cpp"
  c++ -std=c++17 -Ishared/cpp/src -fsyntax-only -fdump-lang-class="$scratch/classes" "$scratch/all.cpp"
  # A slot reads "16    (int (*)(...))Class::Operation"; the class of a block stands in its head.
  awk '/^Vtable for / { class = $3 ~ /^(std|__|xercesc)/ ? "" : $3; slot = 0; next }
       /^Class / { class = "" }
       class != "" && sub(/^[0-9]+ +\(int \(\*\)\(\.\.\.\)\)/, "") && $0 != "0" && !/_ZTI/ {
         printf "%s %02d %s\n", class, slot++, $0 }' "$scratch/classes" | LC_ALL=C sort
}
if [ "${1:-}" = --update ]; then
  slots >"$list"
  exit
fi
if ! diff -u "$list" <(slots); then
  echo "The virtual operations differ from $list. That breaks every host: raise the SONAME number"
  echo "(MCSTAT_SOVERSION) if it is meant, and then: scripts/check-vtables.sh --update"
  exit 1
fi
