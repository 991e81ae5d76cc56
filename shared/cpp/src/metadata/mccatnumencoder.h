// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mccategoryencoder.h"
#include "metadata/mcmissingvalues.h"

#include <map>
#include <string>
#include <vector>

namespace MCCommonMetadata {

/// Encodes categories that are numbers. A NaN is no category: it gets -1.0 and no code.
class MC_EXPORT MCCatNumEncoder : public MCCategoryEncoder {
public:
  /// No categories yet; `capacity` is a hint at how many there will be, and may be anything.
  explicit MCCatNumEncoder(int capacity);

  /// Encodes each value in order, so that codes follow the list and a repeated value keeps its
  /// first code.
  explicit MCCatNumEncoder(const std::vector<double>& values);

  // There is no move: what it leaves behind would have codes without categories.
  MCCatNumEncoder(const MCCatNumEncoder& other) = default;
  MCCatNumEncoder& operator=(MCCatNumEncoder other);
  ~MCCatNumEncoder() override = default;

  EncoderType GetEncoderType() const override { return MC_ENC_CAT_NUM; }
  int GetNumberOfCategories() const override { return static_cast<int>(fCodes.size()); }
  double Encode(double value) override;
  double EncodeConst(double value) const override;
  double Encode(const std::string&) override { return -1.0; }
  double EncodeConst(const std::string&) const override { return -1.0; }
  bool IsMissing(double value) const override { return fMissing.IsMissing(value); }
  bool IsMissing(const std::string&) const override { return true; }

  /// The category with 15 significant digits and a decimal point in every locale.
  std::string Decode(int code) const override;
  double DecodeNum(int code) const override;
  MCCatNumEncoder* Clone() const override { return new MCCatNumEncoder(*this); }
  bool AddDiscreteUserMissing(const std::string&, const std::string&) override { return false; }
  bool AddDiscreteUserMissing(double value, const std::string& label) override;
  bool SetMissingInterval(double low, double high) override;
  const std::vector<double>* GetDiscreteMissValues() const override;
  const std::vector<std::string>* GetDiscreteMissValuesStr() const override { return nullptr; }
  const std::vector<std::string>* GetMissValueLabels() const override;
  bool GetMissingInterval(double& low, double& high) const override;

  /// The save format keeps 15 digits: categories that are equal at these, or not finite, collapse
  /// when they are read back, and the codes after them move down against their labels.
  int WriteObjectXML(std::ostream& out, int nTabs) const override;
  int ReadObjectXML(std::ifstream& in) override;
  void Display() const override;

private:
  std::map<double, int> fCodes;
  std::vector<double> fValues;
  MCMissingValues fMissing;
};

}  // namespace MCCommonMetadata
