// SPDX-License-Identifier: Apache-2.0
#include "iterationhistory.h"

#include "outputfile.h"
#include "reporttext.h"

#include <fmt/format.h>

#include <algorithm>

namespace mcfit {

bool IterationHistory::ReportProgress(ProgressReport* report) {
  try {
    if (!fFailure) Print(*report);
  } catch (...) {
    fFailure = std::current_exception();
  }
  return true;
}

void IterationHistory::Print(ProgressReport& report) {
  // Room for a sign, a point and an exponent beside the digits.
  const int width = std::max(14, fDigits + 7);
  std::string text;
  if (fNextIteration == 0) {
    text =
        fmt::format("{}\nIteration  {:>{}}  Halvings  Seconds\n", fHead, "Log-likelihood", width);
  }
  const int iteration = report.DiscreteMeasure("iterNum");
  const NumberText number(fDigits);
  text += fmt::format("{:>9}  {:>{}}  {:>8}  {:>7.2f}\n", iteration,
                      number(Defined(report.ScaleMeasure("loglik"))), width,
                      report.DiscreteMeasure("stepHalving"), report.ScaleMeasure("time"));
  fNextIteration = iteration + 1;
  // Results and progress may go to the same terminal.
  fProgress.Erase();
  PrintResults(text);
}

bool IterationHistory::WillCancel() {
  if (fbTellsIteration && fNextIteration > 0 && fProgress.IsDue()) {
    fProgress.Show(fmt::format("fitting: iteration {}", fNextIteration));
  }
  return InterruptQuery::WillCancel();
}

void IterationHistory::Finish() {
  fbTellsIteration = false;
  if (fFailure) std::rethrow_exception(fFailure);
}

}  // namespace mcfit
