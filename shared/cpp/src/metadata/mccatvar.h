// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcvariable.h"

#include <memory>
#include <string>

namespace MCCommonMetadata {

/// A categorical variable.
class MC_EXPORT MCCatVar : public MCVariable {
public:
  /// Of `nCategories` categories, which the encoder meets later: numbers with the level
  /// MC_LEVEL_CAT_NUM, otherwise strings.
  MCCatVar(const std::string& name, const std::string& label, int nCategories, MeasureLevel level,
           VariableRole role, bool ordinal);
  MCCatVar(const MCCatVar& other);
  MCCatVar(MCCatVar&&) = default;
  MCCatVar& operator=(MCCatVar other);
  ~MCCatVar() override = default;

  MeasureLevel GetMeasureLevel() const override { return fLevel; }
  int GetNumberOfCategories() const override { return fNCategories; }
  int UpdateNumberOfCategories() override;
  MCCatVar* Clone() const override { return new MCCatVar(*this); }
  const IMCEncoder* GetEncoder() const override { return fEncoder.get(); }
  IMCEncoder* GetEncoder() override { return fEncoder.get(); }

  /// Constant with one category, invalid with none.
  VarStatus GetVarStatus() override;
  int WriteObjectXML(std::ostream& out, int nTabs) const override;
  int ReadObjectXML(std::ifstream& in) override;
  void Display() const override;

  void SetNumberOfCategories(int nCategories) { fNCategories = nCategories; }
  void SetOrdinalFlag(bool ordinal) { fbOrdinal = ordinal; }
  bool GetOrdinalFlag() const { return fbOrdinal; }

  /// Puts another encoder in place of the variable's, which is deleted, and takes it over from the
  /// caller. The number of its categories, which becomes the variable's: 0 for null, which leaves
  /// the variable without encoder. The encoder that it already has stays.
  int ChangeEncoder(IMCEncoder* encoder);

private:
  bool fbOrdinal;
  int fNCategories;
  MeasureLevel fLevel;
  std::unique_ptr<IMCEncoder> fEncoder;
};

}  // namespace MCCommonMetadata
