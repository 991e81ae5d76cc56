#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Sets up a Debian 12 machine, builds everything with warnings as errors, and runs all tests.
# Needs apt and a shell, and root or sudo where a package is missing. A second run is incremental.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/setup-debian.sh
mcstat_require g++ cmake ninja-build libgtest-dev libgmock-dev libcli11-dev libcsv-dev libfmt-dev \
  libxerces-c-dev libxml2-utils locales python3 pkg-config

echo "== Building (build/release)"
# A folder of the published PMML schemas, if there is one: documents are then held against them.
cmake --preset release -DMCSTAT_PMML_SCHEMAS="${MCSTAT_PMML_SCHEMAS:-}"
cmake --build --preset release
echo "== Running the tests"
ctest --preset release -j2
