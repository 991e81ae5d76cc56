// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/interface/imcaccumstats.h"

#include <utility>
#include <vector>

namespace mctest {

/// An accumulator that keeps the rows that it gets, and refuses one where it is told to.
class RowRecorder : public IMCAccumStats {
public:
  struct Row {
    std::vector<int> fIndices;
    std::vector<double> fValues;
    int fCategory;
    double fWeight;
    bool fbLikelihoodOnly;
    bool operator==(const Row& other) const {
      return fIndices == other.fIndices && fValues == other.fValues &&
             fCategory == other.fCategory && fWeight == other.fWeight &&
             fbLikelihoodOnly == other.fbLikelihoodOnly;
    }
  };

  std::vector<Row> fRows;
  int fRefuseAt = 0;  ///< number of the row, from 1, that gets fRefusal for an answer
  int fRefusal = -1;
  std::vector<std::pair<MCConst::MCEstimationMethod, bool>> fResets;

  void Reset(MCConst::MCEstimationMethod method, bool checkSeparation) override {
    fResets.emplace_back(method, checkSeparation);
  }
  int UpdateForRow(const std::vector<int>& indices, const std::vector<double>& values, int category,
                   double weight, bool likelihoodOnly) override {
    fRows.push_back({indices, values, category, weight, likelihoodOnly});
    return static_cast<int>(fRows.size()) == fRefuseAt ? fRefusal : 0;
  }

  bool CheckConstraints() override { return true; }
  double GetLL() const override { return 0.0; }
  const std::vector<double>& GetScores() const override { return fNoScores; }
  void GetHessian(MCCommonMath::MCSymMatrix&) const override {}
  void GetCounts(int&, int&, double&) const override {}
  void GetMinMaxProbabilities(double&, double&, double&) const override {}
  double GetStepAdjustmentFactor() const override { return 1.0; }
  void Display(bool) const override {}

private:
  std::vector<double> fNoScores;
};

}  // namespace mctest
