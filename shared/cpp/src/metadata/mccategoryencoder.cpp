// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccategoryencoder.h"

#include <cstddef>

namespace MCCommonMetadata {

void MCCategoryEncoder::SetValueLabel(int code, const std::string& label) {
  const auto nCodes = static_cast<std::size_t>(GetNumberOfCategories());
  if (fLabels.size() < nCodes) fLabels.resize(nCodes);
  if (IsCode(code)) fLabels[static_cast<std::size_t>(code)] = label;
}

}  // namespace MCCommonMetadata
