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

sanitizers=-fsanitize=address,undefined,float-cast-overflow
compile() { c++ -std=c++17 "$sanitizers" -fno-sanitize-recover=all -x c++ - -o "$scratch/canary"; }
compile <<<'int main(int n, char**) { int* a = new int[4](); int v = a[n + 3]; delete[] a; return v; }'
must_fail "a read past the end, by the address sanitizer" "$scratch/canary"
compile <<<'int main(int n, char**) { return 2147483647 + n > 0 ? 0 : 0; }'
must_fail "a signed overflow, by the undefined behaviour sanitizer" "$scratch/canary"
compile <<<'int main(int n, char**) { double d = 1e300 * n; return static_cast<int>(d) > 0 ? 0 : 0; }'
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

copy_tree
library=build/release/shared/cpp/src/libmcstat.so
echo 'MCGone::Vanished()' >>"$scratch/tree/cmake/symbols.txt"
must_fail "a symbol that is gone" \
  "$scratch/tree/scripts/check-symbols.sh" "$PWD/$library"

must_fail "a status that nobody looks at" c++ -std=c++17 -Werror -fsyntax-only -Ishared/cpp/src \
  -x c++ - <<<'#include "regression/interface/imcregcomponent.h"
void f(IMCRegComponent& c, MCCommon::MultiPassRecordIter& s) { c.BuildModel(s); }'
