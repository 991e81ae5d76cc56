// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interrupt.h"
#include "progressline.h"
#include "regression/frame/progresslistener.h"

#include <exception>
#include <string>

namespace mcfit {

/// Follows the iterations of a logistic fit: prints a line for each as it ends, so that one sees
/// how a long fit goes, and tells on the progress line which one is under way.
class IterationHistory : public InterruptQuery, public ProgressListener {
public:
  /// `head` is printed before the first line. `progress` is borrowed. `tellsIteration`: whether
  /// the progress line is this object's during the iterations.
  IterationHistory(std::string head, int digits, ProgressLine& progress, bool tellsIteration)
      : fHead(std::move(head)),
        fDigits(digits),
        fProgress(progress),
        fbTellsIteration(tellsIteration) {}

  bool ReportProgress(ProgressReport* report) override;

  /// Asked before each row and each pattern of rows, so that it can look after the progress line.
  bool WillCancel() override;

  /// Leaves the progress line to others from now on, and throws what stopped the printing, as
  /// nothing may be thrown through the library.
  void Finish();

private:
  void Print(ProgressReport& report);

  std::string fHead;
  int fDigits;
  ProgressLine& fProgress;
  bool fbTellsIteration;
  int fNextIteration = 0;  // 0 before the first report
  std::exception_ptr fFailure;
};

}  // namespace mcfit
