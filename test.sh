#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Sets up a Debian 12 machine, builds everything with warnings as errors, and runs all tests.
# Needs apt and a shell, and root or sudo where a package is missing. A second run is incremental.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/setup-debian.sh
mcstat_require g++ cmake ninja-build libgtest-dev libgmock-dev libcli11-dev libcsv-dev libfmt-dev \
  locales python3 pkg-config

echo "== Building (build/release)"
cmake --preset release
cmake --build --preset release
echo "== Running the tests"
ctest --preset release -j2
