// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcroundencoder.h"
#include "metadata/mcvariable.h"

#include <string>

namespace MCCommonMetadata {

/// A frequency weight. Its role is fixed, and no value replaces a missing one.
class MC_EXPORT MCWeightVar : public MCVariable {
public:
  MCWeightVar(const std::string& name, const std::string& label, WRoundingOption option);
  MCWeightVar(const MCWeightVar& other) = default;
  MCWeightVar(MCWeightVar&&) = default;
  MCWeightVar& operator=(MCWeightVar other);
  ~MCWeightVar() override = default;

  MeasureLevel GetMeasureLevel() const override { return MC_LEVEL_WEIGHT; }
  int GetNumberOfCategories() const override { return 0; }
  void SetVariableRole(VariableRole) override {}
  int UpdateNumberOfCategories() override { return 0; }
  void SetMissingValueReplacement(const std::string&) override {}
  MCWeightVar* Clone() const override { return new MCWeightVar(*this); }
  const IMCEncoder* GetEncoder() const override { return &fEncoder; }
  IMCEncoder* GetEncoder() override { return &fEncoder; }
  VarStatus GetVarStatus() override { return MC_VAR_OK; }
  int WriteObjectXML(std::ostream& out, int nTabs) const override;
  int ReadObjectXML(std::ifstream& in) override;
  void Display() const override;

private:
  MCRoundEncoder fEncoder;
};

}  // namespace MCCommonMetadata
