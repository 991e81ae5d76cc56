// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// What stands behind "mcfit" on a command line.
using Arguments = std::vector<std::string>;

inline Arguments operator+(Arguments left, const Arguments& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// The folder of the data sets of the examples.
inline const std::string kData = std::string(MCSTAT_SOURCE_DIR) + "/examples/data/";
