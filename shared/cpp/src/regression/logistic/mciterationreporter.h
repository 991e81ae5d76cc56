// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/progressreportvect.h"

#include <string>
#include <vector>

/// The report that an iterative estimation sends to the host's ProgressListener. Its measures are
/// looked up by exact name:
///
///     DiscreteMeasure  "iterNum"      iterations so far, 0 for the initial estimates
///                      "stepHalving"  step halvings of that iteration
///     ScaleMeasure     "loglik"       log-likelihood; the missing value while it isn't known
///                      "time"         seconds of processor time since the estimation began
///     VectorMeasure    "paramEstim"   the estimates of the non-redundant parameters
///
/// An unknown name gives 0, 0.0 or null.
class MC_EXPORT MCIterationReporter : public ProgressReportVect {
public:
  int DiscreteMeasure(const std::string& name) override;
  double ScaleMeasure(const std::string& name) override;

  /// Borrowed from the estimation, whose next step changes it.
  const std::vector<double>* VectorMeasure(const std::string& name) override;

  /// All measures become 0, 0.0 and null.
  virtual void Reset();

  /// Writes the measures to the display stream. The log-likelihood goes by the label "Pseudo -2
  /// log-likelihood", but is shown as it is.
  virtual void Display() const;

  /// Sets all measures. `estimates` is borrowed until the next SetInfo() or Reset(), and may be
  /// null.
  void SetInfo(const std::vector<double>* estimates, int iteration, int halvings, double logLik,
               double seconds);

private:
  const std::vector<double>* fpEstimates = nullptr;
  int fIterNum = 0;
  int fStepHalving = 0;
  double fLogLik = 0.0;
  double fElapsed = 0.0;
};
