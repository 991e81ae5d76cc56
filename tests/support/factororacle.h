// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcfactortables.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace mctest {

/// A design as the factor tables are told it. Positions are positions in a row; negative is none.
struct FactorDesign {
  std::vector<int> factors;
  std::vector<int> sizes;
  int weightVar = -1;
  int regrWeightVar = -1;
  int dependentVar = -1;
  int nDepCategories = 0;
  int lowestCategory = 0;
  std::vector<std::vector<int>> effects;
  std::vector<int> covariates;
};

/// Tables that were told the design.
std::unique_ptr<MCFactorTables> TablesOf(const FactorDesign& design);

/// Tabulates rows and numbers parameters the plain and slow way: maps from lists of levels, and
/// sums in long double.
class FactorOracle {
public:
  using Counts = std::vector<std::pair<double, double>>;

  explicit FactorOracle(const FactorDesign& design);

  /// False where a row is not counted as a whole.
  bool Add(const std::vector<double>& row);

  /// To be called when all rows are added; the number of parameters.
  int Number();

  /// Global parameter index per model effect, -1 for a combination not seen.
  std::vector<int> Indices(const std::vector<double>& row) const;

  /// The levels of parameter `local` of an effect.
  std::vector<int> Levels(int effect, int local) const;

  /// The effect with the smallest share of seen cells among those that could be, -1 for none.
  int IncompleteEffect() const;

  std::vector<Counts> fCounts;
  Counts fDepCounts;
  std::vector<int> fOffsets;      ///< per model effect
  std::vector<int> fNParameters;  ///< per model effect
  long double fTotalWeight = 0;
  long double fTotalRegrWeight = 0;
  double fSampleSize = 0;
  /// Sum of weight times value over sum of weight: of use where all weights are positive.
  std::vector<long double> Means() const;

private:
  long long Level(double code) const;
  std::vector<int> EffectLevels(const std::vector<int>& effect,
                                const std::vector<double>& row) const;

  FactorDesign fDesign;
  std::vector<std::map<std::vector<int>, int>> fCells;
  std::vector<long double> fSums;
};

}  // namespace mctest
