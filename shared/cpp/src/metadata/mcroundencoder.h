// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcscaleencoder.h"

namespace MCCommonMetadata {

/// What becomes of the fraction of a frequency weight. Holds any int; one without a name leaves
/// weights as they are.
enum WRoundingOption : int {
  MC_ROUND_TRUNCATE = 0,  ///< rounded down
  MC_ROUND_NEAREST = 1,   ///< rounded to the nearest
  MC_ROUND_AS_IS = 2      ///< kept
};

/// Encodes frequency weights by themselves, rounded as told. A weight that isn't above 0 is
/// missing, before as after it is rounded; a NaN isn't.
class MC_EXPORT MCRoundEncoder : public MCScaleEncoder {
public:
  /// Keeps fractions.
  MCRoundEncoder() = default;
  explicit MCRoundEncoder(WRoundingOption option) : fOption(option) {}

  EncoderType GetEncoderType() const override { return MC_ENC_ROUND; }
  int GetNumberOfCategories() const override { return 0; }
  using MCScaleEncoder::EncodeConst;
  double EncodeConst(double value) const override;
  using MCScaleEncoder::IsMissing;
  bool IsMissing(double value) const override;
  MCRoundEncoder* Clone() const override { return new MCRoundEncoder(*this); }
  int WriteObjectXML(std::ostream& out, int nTabs) const override;
  int ReadObjectXML(std::ifstream& in) override;
  void Display() const override;

private:
  double Rounded(double value) const;

  WRoundingOption fOption = MC_ROUND_AS_IS;
};

}  // namespace MCCommonMetadata
