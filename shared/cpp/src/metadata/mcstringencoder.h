// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mccategoryencoder.h"
#include "regression/frame/mcmv.h"

#include <map>
#include <string>
#include <vector>

namespace MCCommonMetadata {

/// Encodes categories that are strings, compared byte by byte. Every number is missing to it, and
/// it knows no interval of missing values.
class MC_EXPORT MCStringEncoder : public MCCategoryEncoder {
public:
  /// No categories yet; `capacity` is a hint at how many there will be, and may be anything.
  explicit MCStringEncoder(int capacity);

  /// Encodes each value in order, so that codes follow the list and a repeated value keeps its
  /// first code.
  explicit MCStringEncoder(const std::vector<std::string>& values);

  // There is no move: what it leaves behind would have codes without categories.
  MCStringEncoder(const MCStringEncoder& other);
  MCStringEncoder& operator=(MCStringEncoder other);
  ~MCStringEncoder() override = default;

  EncoderType GetEncoderType() const override { return MC_ENC_STRING; }
  int GetNumberOfCategories() const override { return fLastCode + 1; }
  double Encode(double) override { return -1.0; }
  double EncodeConst(double) const override { return -1.0; }
  double Encode(const std::string& value) override;
  double EncodeConst(const std::string& value) const override;
  bool IsMissing(double) const override { return true; }
  bool IsMissing(const std::string& value) const override;
  std::string Decode(int code) const override;
  double DecodeNum(int) const override { return MCMV::gMissingValue; }
  MCStringEncoder* Clone() const override { return new MCStringEncoder(*this); }
  bool AddDiscreteUserMissing(const std::string& value, const std::string& label) override;
  bool AddDiscreteUserMissing(double, const std::string&) override { return false; }
  bool SetMissingInterval(double, double) override { return false; }
  const std::vector<double>* GetDiscreteMissValues() const override { return nullptr; }
  const std::vector<std::string>* GetDiscreteMissValuesStr() const override;
  const std::vector<std::string>* GetMissValueLabels() const override { return &fMissLabels; }
  bool GetMissingInterval(double& low, double& high) const override;
  int WriteObjectXML(std::ostream& out, int nTabs) const override;

  /// Where a file repeats a category its first code stands, and that of the repetition has no
  /// category.
  int ReadObjectXML(std::ifstream& in) override;
  void Display() const override;

  /// Makes the list of categories anew from the codes.
  void CreateLinks();

private:
  std::map<std::string, int> fCodes;
  std::vector<const std::string*> fLinks;  // by code, into fCodes
  std::vector<std::string> fDiscreteMiss;
  std::vector<std::string> fMissLabels;
};

}  // namespace MCCommonMetadata
