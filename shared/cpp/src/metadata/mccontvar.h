// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mccontencoder.h"
#include "metadata/mcvariable.h"

#include <memory>
#include <string>
#include <vector>

namespace MCCommonMetadata {

/// A continuous variable.
class MC_EXPORT MCContVar : public MCVariable {
public:
  /// Without bins; every finite number lies between minimum and maximum.
  MCContVar(const std::string& name, const std::string& label, VariableRole role);

  /// With `nBins` bins of equal width from `min` to `max` if `binned`, max > min and nBins >= 2;
  /// otherwise without bins, though GetNBins() answers `nBins`.
  MCContVar(const std::string& name, const std::string& label, double min, double max,
            VariableRole role, bool binned, int nBins);

  /// With one bin more than `cutpoints` if `binned` and there are any; otherwise without bins,
  /// though GetNBins() answers their number. Minimum and maximum as in the first form.
  MCContVar(const std::string& name, const std::string& label, const std::vector<double>& cutpoints,
            bool binned, VariableRole role);

  /// The same with minimum and maximum.
  MCContVar(const std::string& name, const std::string& label, double min, double max,
            const std::vector<double>& cutpoints, bool binned, VariableRole role);

  MCContVar(const MCContVar& other);
  MCContVar(MCContVar&&) = default;
  MCContVar& operator=(MCContVar other);
  ~MCContVar() override = default;

  MeasureLevel GetMeasureLevel() const override { return MC_LEVEL_CONTINUOUS; }
  int GetNumberOfCategories() const override;
  int UpdateNumberOfCategories() override { return GetNumberOfCategories(); }
  MCContVar* Clone() const override { return new MCContVar(*this); }
  const IMCEncoder* GetEncoder() const override { return fEncoder.get(); }
  IMCEncoder* GetEncoder() override { return fEncoder.get(); }

  /// Constant where minimum and maximum are equal, invalid where the minimum is larger.
  VarStatus GetVarStatus() override;

  /// The role isn't saved: a variable that is read keeps the one that it had.
  int WriteObjectXML(std::ostream& out, int nTabs) const override;
  int ReadObjectXML(std::ifstream& in) override;
  void Display() const override;

  void SetNBins(int nBins) { fNBins = nBins; }
  void SetMinMax(double min, double max);
  int GetNBins() const { return fNBins; }
  double GetMin() const { return fMin; }
  double GetMax() const { return fMax; }

private:
  double fMin;
  double fMax;
  int fNBins;
  double fMean = MCMV::gMissingValue;
  double fStdDev = MCMV::gMissingValue;
  std::vector<double> fCutpoints;
  std::unique_ptr<MCContEncoder> fEncoder;
};

}  // namespace MCCommonMetadata
