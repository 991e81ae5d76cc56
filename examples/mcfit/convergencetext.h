// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/logistic/mcconvergence.h"

#include <string>

namespace mcfit {

/// How the estimation ended, in one sentence.
std::string StoppingText(const MCConvergence& convergence);

/// What the user must know before the estimates are used, and what to try; empty if all is well.
std::string ConvergenceWarning(const MCConvergence& convergence);

}  // namespace mcfit
