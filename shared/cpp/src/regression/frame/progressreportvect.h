// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/progressreport.h"

#include <string>
#include <vector>

/// A report that also has measures which are vectors.
class MC_EXPORT ProgressReportVect : public ProgressReport {
public:
  /// The vector measure `name`, or null. It is the report's and lives no longer than it.
  virtual const std::vector<double>* VectorMeasure(const std::string& name) = 0;
};
