// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <utility>
#include <vector>

namespace mcfit {

/// How many cases of each observed category a logistic fit predicts as each category. Categories
/// are numbered from 0.
class Classification {
public:
  explicit Classification(int categories) : fTotals(static_cast<std::size_t>(categories), 0.0) {}

  void Add(int observed, int predicted, double cases);

  int Categories() const { return static_cast<int>(fTotals.size()); }
  double Cases(int observed, int predicted) const;

  /// Cases of an observed category, and of all.
  double Cases(int observed) const { return fTotals[static_cast<std::size_t>(observed)]; }
  double Cases() const;

  /// Cases that are predicted right.
  double Correct() const;

private:
  std::vector<double> fTotals;                      // by observed category
  std::map<std::pair<int, int>, double> fNonEmpty;  // most cells are empty where there are many
};

}  // namespace mcfit
