// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/densedesign.h"

#include <vector>

namespace mctest {

/// What a linear regression must come to, worked out the long way.
struct DenseFit {
  Vector estimates;             ///< one for each column, 0 for a redundant one
  std::vector<bool> redundant;  ///< a column that depends on those before it
  Matrix inverse;               ///< of X'WX over the other columns; zero rows and columns elsewhere
  long double rSquare = 0.0L;
  long double rmse = 0.0L;
  long double totalWeight = 0.0L;      ///< sum of frequency weights
  long double totalRegrWeight = 0.0L;  ///< sum of products of both weights
  double condition = 1.0;              ///< of X'WX over the other columns, its diagonal scaled to 1
};

/// Fits a problem on its explicit design matrix: every column written out, redundant columns found
/// by the rank of the columns so far, the normal equations of the others solved by Gauss
/// elimination with full pivoting, all in long double. Shares no code with the library.
DenseFit FitDense(const LinearProblem& problem);

}  // namespace mctest
