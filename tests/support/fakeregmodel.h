// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/interface/imcregmodel.h"

#include <functional>
#include <vector>

namespace mctest {

/// A model for tests of what feeds one: it notes the rows that it gets, and knows the categories of
/// the dependent that it is told. Of a row it makes as many entries as there are indices, of value
/// 1.0 but for the first, which is the row's value at `fValueAt`. Everything else does nothing.
class FakeRegModel : public IMCRegModel {
public:
  struct Row {
    std::vector<double> fValues;
    std::vector<int> fIndices;
    bool operator==(const Row& other) const {
      return fValues == other.fValues && fIndices == other.fIndices;
    }
  };

  std::vector<int> fDependCategories;
  std::vector<int> fDepCatLocalInds;
  std::vector<MCRegrParameter> fParameters;
  int fRowSize = 0;  ///< values of each row that it is given
  int fValueAt = 0;

  /// Rows of UpdateXPrimeX(); number fRefuseAt, from 1, is refused.
  std::vector<Row> fDesignRows;
  int fRefuseAt = 0;

  /// Rows of ExpandAndCompressRow().
  mutable std::vector<Row> fExpandedRows;

  /// Indices that the form without them finds; its answer is whether there are any.
  std::vector<int> fFoundIndices;

  /// Called at each row, if set.
  std::function<void()> fOnRow;

  bool UpdateXPrimeX(const double* row, const std::vector<int>& indices) override {
    if (fOnRow) fOnRow();
    fDesignRows.push_back({{row, row + fRowSize}, indices});
    return static_cast<int>(fDesignRows.size()) != fRefuseAt;
  }
  bool ExpandAndCompressRow(const double* row, const std::vector<int>& indices, int& n,
                            std::vector<int>& outIndices,
                            std::vector<double>& outValues) const override {
    if (fOnRow) fOnRow();
    fExpandedRows.push_back({{row, row + fRowSize}, indices});
    n = static_cast<int>(indices.size());
    outIndices = indices;
    outValues.assign(indices.size(), 1.0);
    if (n > 0) outValues[0] = row[fValueAt];
    return n > 0;
  }
  bool ExpandAndCompressRow(const double* row, int& n, std::vector<int>& outIndices,
                            std::vector<double>& outValues) const override {
    return ExpandAndCompressRow(row, fFoundIndices, n, outIndices, outValues);
  }
  const std::vector<int>& GetDependCategories() const override { return fDependCategories; }
  const std::vector<int>& GetDepCatLocalInds() const override { return fDepCatLocalInds; }
  const std::vector<MCRegrParameter>& GetBasicParams() const override { return fParameters; }

  const MCFactorTables* GetFactorTables() const override { return nullptr; }
  MCCommon::MCStatus CreateParameters() override { return {}; }
  bool AreParamsCreated() const override { return true; }
  bool UpdateXPrimeX(const double*) override { return false; }
  MCCommon::MCStatus IdentifyRedundancy() override { return {}; }
  bool IsModelBuilt() const override { return false; }
  void GetDResiduals(std::vector<double>&, const double*) override {}
  MCCommon::MCStatus FinishErrors() override { return {}; }
  const MCCommonMath::MCSymMatrix* GetXPrimeX() const override { return nullptr; }
  const MCCommonMath::MCSymMatrix* GetHessianGI() const override { return nullptr; }
  const std::vector<MCRegrParameter>& GetParameters() const override { return fParameters; }
  int GetNParameters() const override { return 0; }
  int GetNNonRedParams() const override { return 0; }
  int GetNBasicParameters() const override { return 0; }
  int GetNBasicNonRed() const override { return 0; }
  const std::vector<double>& GetParamEstimates() const override { return fNoEstimates; }
  const MCCommonMath::MCBitSet& GetBasicRedundInfo() const override { return fNoBits; }
  const MCCommonMath::MCBitSet& GetRedundancyInfo() const override { return fNoBits; }
  int GetDependentNCategs() const override { return static_cast<int>(fDependCategories.size()); }
  void ClearXPrimeXMatrix() override {}
  void ClearHessianGIMatrix() override {}
  bool GetParamsForEffect(int, int&, int&) const override { return false; }
  MCCommon::MCStatus Score(const double*, std::vector<double>&, int&) const override { return {}; }
  MCCommon::MCStatus UncompressEstimates(const std::vector<double>&,
                                         const MCCommonMath::MCSymMatrix&) override {
    return {};
  }
  bool ExpandRow(std::vector<double>&, const double*) const override { return false; }
  bool ExpandRow(const double*, std::vector<int>&, std::vector<double>&) const override {
    return false;
  }
  MCCommon::MCStatus GetStatus() const override { return {}; }
  void Display() const override {}

private:
  std::vector<double> fNoEstimates;
  MCCommonMath::MCBitSet fNoBits;
};

}  // namespace mctest
