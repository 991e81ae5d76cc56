// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

// Switches of the process for logistic regressions, for a host that diagnoses a build. They are
// read when the step concerned runs, and nothing guards them: set them while no build runs.

/// Whether a build estimates. Cleared, it ends with the parameters and their redundancy known and
/// every estimate 0.0. Set at the start.
MC_EXPORT extern bool compute_estimates;

/// Read by nothing: kept for hosts that set it. Set at the start.
MC_EXPORT extern bool compute_variances;

/// Whether the keys of row patterns are packed, several indices into one integer. Results don't
/// depend on it, but that patterns may be summed in another order. Set at the start.
MC_EXPORT extern bool usePacking;

/// Whether the optimizer writes its matrices and iterations to the display stream. Clear at the
/// start.
MC_EXPORT extern bool display_hessian;
