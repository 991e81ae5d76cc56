// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/densedesign.h"
#include "support/logisticproblem.h"

#include <vector>

namespace mctest {

/// What a multinomial logistic regression must come to, worked out the long way. Parameters stand
/// in blocks of all columns, one block for each category but the reference.
struct LogisticOracle {
  bool converged = false;
  std::vector<int> categories;    ///< those that occur, ascending, the reference last
  std::vector<bool> redundant;    ///< by column: depends on those before it
  Vector estimates;               ///< 0 for a redundant column
  Matrix covariance;              ///< over all parameters; zero rows where redundant
  Matrix probabilities;           ///< by row that takes part, in the order of `categories`
  std::vector<std::size_t> rows;  ///< the rows of the problem that take part
  long double initialLL = 0.0L;   ///< intercepts at the observed log odds, all else 0
  long double finalLL = 0.0L;
  long double coxSnell = 0.0L;
  long double nagelkerke = 0.0L;
  long double mcFadden = 0.0L;
  long double totalFrequency = 0.0L;  ///< sum of the frequency weights
  double condition = 1.0;             ///< of the information matrix, its diagonal scaled to 1
};

/// Fits a problem on its explicit design matrix by damped Newton steps, all in long double, with a
/// Cholesky factor of the scaled information matrix. Shares no code with the library.
LogisticOracle FitLogistic(const LogisticProblem& problem);

}  // namespace mctest
