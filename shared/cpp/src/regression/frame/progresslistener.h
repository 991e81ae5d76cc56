// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/progressreport.h"

/// A host's receiver of progress reports. The host owns it; it must outlive the component whose
/// settings name it, and is called on the thread that runs the build.
class MC_EXPORT ProgressListener {
public:
  virtual ~ProgressListener() = default;

  /// Receives a report, which lives only during the call. The answer is ignored.
  virtual bool ReportProgress(ProgressReport* report) = 0;
};
