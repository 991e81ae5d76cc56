// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/record.h"

#include <algorithm>
#include <vector>

namespace mctest {

/// A record of the given values.
inline MCCommon::Record MakeRecord(const std::vector<double>& values) {
  MCCommon::Record record(static_cast<int>(values.size()));
  std::copy(values.begin(), values.end(), record.GetAll());
  return record;
}

}  // namespace mctest
