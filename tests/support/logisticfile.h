// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/logisticproblem.h"

#include <string>
#include <utility>
#include <vector>

namespace mctest {

/// The model and rows of the data set `name` of tests/data/logistic; how such a file is read is
/// told there. Throws std::runtime_error if it can't be read.
LogisticProblem ReadLogisticData(const std::string& name);

/// What a fit of the set must come to.
struct LogisticReference {
  struct Probability {
    std::size_t row;  ///< of the data
    int category;
    long double value;
  };

  double degreesOfFreedom = 0.0;
  double totalWeight = 0.0;
  long double initialLL = 0.0L;
  long double finalLL = 0.0L;
  long double coxSnell = 0.0L;
  long double nagelkerke = 0.0L;
  long double mcFadden = 0.0L;
  std::vector<bool> redundant;         ///< by parameter
  std::vector<long double> estimates;  ///< by parameter, 0 for a redundant one
  std::vector<std::vector<long double>> covariance;
  std::vector<Probability> probabilities;
};

LogisticReference ReadLogisticReference(const std::string& name);

/// The same data with the dependent's codes exchanged so that the reference has the highest. The
/// order of the others, and so that of the parameters, stays.
LogisticProblem WithReferenceLast(LogisticProblem problem);

}  // namespace mctest
