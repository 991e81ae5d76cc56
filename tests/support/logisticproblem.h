// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/linearproblem.h"

namespace mctest {

/// A multinomial logistic regression in plain data.
struct LogisticProblem : LinearProblem {
  int categories = 2;  ///< of the dependent, seen or not
  int reference = -1;  ///< a category, or -1 for the last one seen, -2 for the first
};

}  // namespace mctest
