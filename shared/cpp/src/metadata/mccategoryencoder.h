// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/imcencoder.h"

#include <string>
#include <vector>

namespace MCCommonMetadata {

/// What the encoders of categories share: how many codes they gave, and the labels of these.
class MC_EXPORT MCCategoryEncoder : public IMCEncoder {
public:
  void SetValueLabels(const std::vector<std::string>& labels) override { fLabels = labels; }
  void SetValueLabel(int code, const std::string& label) override;
  const std::vector<std::string>* GetValueLabels() const override { return &fLabels; }

protected:
  /// Most codes for which room is made beforehand: a capacity is a hint, which may be anything.
  static constexpr int kMostReserved = 65536;

  bool IsCode(int code) const { return code >= 0 && code <= fLastCode; }

  int fLastCode = -1;
  std::vector<std::string> fLabels;
};

}  // namespace MCCommonMetadata
