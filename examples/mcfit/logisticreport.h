// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "logisticmodel.h"

#include <string>

namespace mcfit {

/// What is known before the fit: rows, and how often each category occurs in those that are used.
std::string LogisticHead(const Dataset& data, int digits);

/// The report from behind the iterations on: how they ended, one table of parameters for each
/// category but the reference, the tests of effects, the figures of fit, and how the rows are
/// classified.
std::string LogisticReport(const LogisticModel& model, const ReportStyle& style);

}  // namespace mcfit
