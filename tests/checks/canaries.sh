#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Proves that each gate of .ci/run can fail: every canary breaks one rule on purpose, on a copy or
# in a program of its own, and must be caught.
set -euo pipefail
cd "$(dirname "$0")/../.."
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

must_fail() { # WHAT COMMAND...
  local what=$1
  shift
  if "$@" >"$scratch/log" 2>&1; then
    echo "Not caught: $what"
    cat "$scratch/log"
    exit 1
  fi
  echo "caught: $what"
}

must_pass() { # the same without the canary, so that the canary alone is what is caught
  if ! "$@" >"$scratch/log" 2>&1; then
    echo "Fails without a canary: $*"
    cat "$scratch/log"
    exit 1
  fi
}

sanitizers=-fsanitize=address,undefined,float-cast-overflow
compile() {
  cat >"$scratch/canary.cpp"
  c++ -std=c++17 "$scratch/canary.cpp" -o "$scratch/plain"
  must_pass "$scratch/plain"
  c++ -std=c++17 "$sanitizers" -fno-sanitize-recover=all "$scratch/canary.cpp" -o "$scratch/canary"
}
compile <<'CODE'
int main(int n, char**) { int* a = new int[4](); volatile int v = a[n + 3]; delete[] a; return v * 0; }
CODE
must_fail "a read past the end, by the address sanitizer" "$scratch/canary"
compile <<'CODE'
int main() { volatile int v = 2147483647; v = v + 1; return 0; }
CODE
must_fail "a signed overflow, by the undefined behaviour sanitizer" "$scratch/canary"
compile <<'CODE'
int main() { volatile double d = 1e300; volatile int v = static_cast<int>(d); return v * 0; }
CODE
must_fail "a double that no int holds, by the undefined behaviour sanitizer" "$scratch/canary"
# The flags of the preset are those proved above.
grep -q '"MCSTAT_SANITIZE": "address,undefined,float-cast-overflow"' CMakePresets.json
grep -q 'no-sanitize-recover=all' cmake/mcstatoptions.cmake
grep -q -- '-fsanitize=address,undefined,float-cast-overflow' build/instrumented/build.ninja

copy_tree() {
  rm -rf "$scratch/tree"
  mkdir -p "$scratch/tree"
  cp -r shared cmake scripts .clang-format "$scratch/tree"
}
copy_tree
must_pass scripts/check-format.sh "$scratch/tree"
must_pass scripts/check-floors.py "$scratch/tree"
frame=$scratch/tree/shared/cpp/src/regression/frame
printf 'int  f( ){return 1 ;}\n' >"$frame/canary.cpp"
must_fail "a badly formatted file" scripts/check-format.sh "$scratch/tree"

copy_tree
echo '#include "regression/settings/mcregsettings.h"' >"$frame/canary.h"
must_fail "an include that goes up a floor" scripts/check-floors.py "$scratch/tree"
echo '#include "mcmath/mcmath.h"' >"$frame/canary.h"
must_fail "an umbrella header used inside" scripts/check-floors.py "$scratch/tree"
echo '#include "nowhere/nothing.h"' >"$frame/canary.h"
must_fail "an include not written from the root" scripts/check-floors.py "$scratch/tree"
rm "$frame/canary.h"
echo 'regression/component -> mcmath' >>"$scratch/tree/cmake/floors.txt"
must_fail "an edge that is listed and not used" scripts/check-floors.py "$scratch/tree"

library=build/release/shared/cpp/src/libmcstat.so
copy_tree
must_pass "$scratch/tree/scripts/check-symbols.sh" "$PWD/$library"
echo 'MCGone::Vanished()' >>"$scratch/tree/cmake/symbols.txt"
must_fail "a symbol that is gone" \
  "$scratch/tree/scripts/check-symbols.sh" "$PWD/$library"

must_fail "a status that nobody looks at" c++ -std=c++17 -Werror -fsyntax-only -Ishared/cpp/src \
  -x c++ - <<<'#include "regression/interface/imcregcomponent.h"
void f(IMCRegComponent& c, MCCommon::MultiPassRecordIter& s) { c.BuildModel(s); }'
