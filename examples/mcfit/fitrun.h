// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fitrequest.h"
#include "regressionkind.h"

namespace mcfit {

/// Throws InputError for a request that no data could satisfy.
void CheckFit(const FitRequest& request, const RegressionKind& kind);

/// Fits a regression to a CSV file, prints its report and, as the request has it, writes the model
/// as PMML and scores a second file. Throws InputError, ModelError and Interrupted; files that it
/// didn't finish don't appear.
void RunFit(const FitRequest& request, RegressionKind& kind);

}  // namespace mcfit
