#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# package_test.sh WAY BUILD FOLDER: builds the consumer beside this script in one of the ways that
# a host may take the library in, inside FOLDER, and runs it.
set -euo pipefail
way=$1
build=$2
folder=$3
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
prefix=$folder/prefix

run_consumer() {
  "$1" | tee "$folder/$way.out"
  grep -q 'y = 1 + 2 x' "$folder/$way.out"
}

build_consumer() { # further arguments go to CMake
  rm -rf "${folder:?}/$way"
  cmake -S "$here/consumer" -B "$folder/$way" -G Ninja -DCMAKE_BUILD_TYPE=Debug "$@"
  cmake --build "$folder/$way" -- -j2
  run_consumer "$folder/$way/consumer"
}

case $way in
  install)
    rm -rf "$prefix"
    cmake --install "$build" --prefix "$prefix"
    # Nothing that the library hides is installed, and no header needs what isn't.
    if find "$prefix/include" -path '*detail*' | grep . ||
      grep -rn '#include ".*detail/' "$prefix/include"; then
      exit 1
    fi
    ;;
  find_package) build_consumer -DCMAKE_PREFIX_PATH="$prefix" ;;
  too_new_version)
    rm -rf "${folder:?}/$way"
    if cmake -S "$here/consumer" -B "$folder/$way" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
      -DMCSTAT_WANTED=99.0; then
      echo "version 99.0 was not refused"
      exit 1
    fi
    ;;
  pkg_config)
    found=$(find "$prefix" -name mcstat.pc -printf '%h\n')
    read -ra flags < <(PKG_CONFIG_PATH=$found pkg-config --cflags --libs mcstat)
    c++ -std=c++17 "$here/consumer/consumer.cpp" "${flags[@]}" \
      -Wl,-rpath,"$(dirname "$found")" -o "$folder/consumer_by_pkg_config"
    run_consumer "$folder/consumer_by_pkg_config"
    ;;
  subproject) build_consumer -DMCSTAT_SUBPROJECT="$root" ;;
  *)
    echo "unknown way '$way'" >&2
    exit 2
    ;;
esac
