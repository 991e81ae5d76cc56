// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcbinningencoder.h"
#include "metadata/mcscaleencoder.h"

#include <memory>
#include <vector>

namespace MCCommonMetadata {

/// Encodes scale values by themselves, and may hold how a host that wants bins sorts them.
class MC_EXPORT MCContEncoder : public MCScaleEncoder {
public:
  /// Without bins.
  MCContEncoder() = default;

  /// With the bins of MCBinningEncoder.
  MCContEncoder(double low, double high, int nBins);
  explicit MCContEncoder(const std::vector<double>& cutpoints);

  MCContEncoder(const MCContEncoder& other);
  MCContEncoder(MCContEncoder&&) = default;
  MCContEncoder& operator=(MCContEncoder other);
  ~MCContEncoder() override = default;

  EncoderType GetEncoderType() const override { return MC_ENC_BINNING; }
  int GetNumberOfCategories() const override;
  using MCScaleEncoder::EncodeConst;
  double EncodeConst(double value) const override;
  MCContEncoder* Clone() const override { return new MCContEncoder(*this); }

  /// How values are sorted into bins, owned by this object; null without bins.
  const MCBinningEncoder* GetBinningEncoder() const { return fBinning.get(); }
  MCBinningEncoder* GetBinningEncoder() { return fBinning.get(); }

  /// The bins are saved by their number alone: an encoder that was read back has no binning.
  int WriteObjectXML(std::ostream& out, int nTabs) const override;
  int ReadObjectXML(std::ifstream& in) override;
  void Display() const override;

private:
  int fNBins = 0;
  std::unique_ptr<MCBinningEncoder> fBinning;
};

}  // namespace MCCommonMetadata
