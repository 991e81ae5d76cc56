// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/imcencoder.h"
#include "metadata/mcmissingvalues.h"
#include "regression/frame/mcmv.h"

#include <string>
#include <vector>

namespace MCCommonMetadata {

/// What the encoders of scale values and of weights share: there are no codes, so a value is
/// encoded by itself, strings are missing, and labels of values aren't kept.
class MC_EXPORT MCScaleEncoder : public IMCEncoder {
public:
  using IMCEncoder::EncodeConst;

  double Encode(double value) override { return EncodeConst(value); }
  double Encode(const std::string&) override { return MCMV::gMissingValue; }
  double EncodeConst(const std::string&) const override { return MCMV::gMissingValue; }
  bool IsMissing(double value) const override { return fMissing.IsMissing(value); }
  bool IsMissing(const std::string&) const override { return true; }
  std::string Decode(int) const override { return ""; }
  double DecodeNum(int) const override { return MCMV::gMissingValue; }
  void SetValueLabels(const std::vector<std::string>&) override {}
  void SetValueLabel(int, const std::string&) override {}
  bool AddDiscreteUserMissing(const std::string&, const std::string&) override { return false; }
  bool AddDiscreteUserMissing(double value, const std::string& label) override;
  bool SetMissingInterval(double low, double high) override;
  const std::vector<std::string>* GetValueLabels() const override { return nullptr; }
  const std::vector<double>* GetDiscreteMissValues() const override;
  const std::vector<std::string>* GetDiscreteMissValuesStr() const override { return nullptr; }
  const std::vector<std::string>* GetMissValueLabels() const override;
  bool GetMissingInterval(double& low, double& high) const override;

protected:
  MCMissingValues fMissing;
};

}  // namespace MCCommonMetadata
