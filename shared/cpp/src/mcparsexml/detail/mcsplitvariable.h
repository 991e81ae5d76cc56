// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace MCComXPrsUtil {
namespace detail {

/// What a merged document tells of a split variable.
struct MCSplitVariable {
  std::string fName;
  std::string fLabel;
  std::string fOpType;
  std::string fDataType;
  std::vector<std::string> fvValues;
};

}  // namespace detail
}  // namespace MCComXPrsUtil
