// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/regressiondesign.h"
#include "support/rowsource.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace mctest {

/// Two groups by three categories, the last of them the reference. With an intercept and the group
/// the model is saturated, so that all of it has a closed form: with n[g][t] the count and
/// l[g][t] = log(n[g][t] / n[g][2]), the intercept of category t is l[1][t], the effect of group 0
/// l[0][t] - l[1][t], and that of group 1 is redundant. The covariance of l[g][t] and l[g][s] is
/// 1 / n[g][2], plus 1 / n[g][t] where t = s.
class ContingencyTable {
public:
  static constexpr int kPerBlock = 3;     // intercept and two groups
  static constexpr int kNParameters = 6;  // for two categories beside the reference

  /// Rows of category, group and count, the count being a frequency weight.
  static Rows WeightedRows() {
    Rows rows;
    for (int g = 0; g < 2; ++g) {
      for (int t = 0; t < 3; ++t) rows.push_back({1.0 * t, 1.0 * g, Count(g, t)});
    }
    return rows;
  }

  /// The same with as many rows as cases, each of count 1.
  static Rows RepeatedRows() {
    Rows rows;
    for (const std::vector<double>& row : WeightedRows()) {
      for (int n = 0; n < static_cast<int>(row[2]); ++n) rows.push_back({row[0], row[1], 1.0});
    }
    return rows;
  }

  static LogisticDesign Design() {
    return LogisticDesign(0, {{1, 2}}, {}).Categories(3).FrequencyWeight(2).Effect({1});
  }

  static std::vector<double> Estimates() {
    std::vector<double> estimates;
    for (int t = 0; t < 2; ++t) {
      estimates.insert(estimates.end(), {LogOdds(1, t), LogOdds(0, t) - LogOdds(1, t), 0.0});
    }
    return estimates;
  }

  /// Of parameters i and j.
  static double Covariance(int i, int j) {
    const int column = i % kPerBlock;
    const int other = j % kPerBlock;
    if (column == 2 || other == 2) return 0.0;
    const double ofOne = OddsCovariance(1, i / kPerBlock, j / kPerBlock);
    if (column != other) return -ofOne;
    return column == 0 ? ofOne : ofOne + OddsCovariance(0, i / kPerBlock, j / kPerBlock);
  }

  /// Log-likelihoods of the model, and of the intercepts alone.
  static double LogLik() {
    double sum = 0.0;
    for (int g = 0; g < 2; ++g) {
      for (int t = 0; t < 3; ++t) sum += Count(g, t) * std::log(Probability(g, t));
    }
    return sum;
  }
  static double InitialLogLik() {
    double sum = 0.0;
    for (int t = 0; t < 3; ++t) {
      const double count = Count(0, t) + Count(1, t);
      sum += count * std::log(count / Total());
    }
    return sum;
  }

  static double Probability(int g, int t) {
    return Count(g, t) / (Count(g, 0) + Count(g, 1) + Count(g, 2));
  }

  static double Count(int g, int t) {
    constexpr double kCounts[2][3] = {{7, 5, 9}, {4, 10, 6}};
    return kCounts[g][t];
  }
  static double Total() { return 41.0; }

private:
  static double LogOdds(int g, int t) { return std::log(Count(g, t) / Count(g, 2)); }
  static double OddsCovariance(int g, int t, int s) {
    return 1.0 / Count(g, 2) + (t == s ? 1.0 / Count(g, t) : 0.0);
  }
};

}  // namespace mctest
