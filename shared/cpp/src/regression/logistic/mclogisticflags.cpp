// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogisticflags.h"

bool compute_estimates = true;
bool compute_variances = true;
bool usePacking = true;
bool display_hessian = false;
