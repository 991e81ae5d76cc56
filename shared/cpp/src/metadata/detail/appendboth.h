// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace MCCommonMetadata {
namespace detail {

/// Appends a value and its label to lists of equal length, or, if memory runs out, neither.
template <class Value>
void AppendBoth(std::vector<Value>& values, const Value& value, std::vector<std::string>& labels,
                const std::string& label) {
  values.push_back(value);
  try {
    labels.push_back(label);
  } catch (...) {
    values.pop_back();
    throw;
  }
}

}  // namespace detail
}  // namespace MCCommonMetadata
