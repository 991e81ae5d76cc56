// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

namespace mctest {

/// One model effect, as the host would add it: factors in order, each with its wish to nest, then
/// covariates, one entry for each power.
struct EffectTerms {
  std::vector<std::pair<int, bool>> factors;
  std::vector<int> covariates;
};

/// A linear regression in plain data: positions in the rows, effects, rows.
struct LinearProblem {
  int dependent = 0;
  std::vector<int> factors;
  std::vector<int> factorSizes;
  std::vector<int> covariates;
  int freqWeight = -1;
  int regrWeight = -1;
  bool intercept = true;
  std::vector<EffectTerms> effects;
  std::vector<std::vector<double>> rows;
};

}  // namespace mctest
