// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mciterationreporter.h"

#include "regression/frame/mccomponentdisplay.h"

int MCIterationReporter::DiscreteMeasure(const std::string& name) {
  if (name == "iterNum") return fIterNum;
  return name == "stepHalving" ? fStepHalving : 0;
}

double MCIterationReporter::ScaleMeasure(const std::string& name) {
  if (name == "loglik") return fLogLik;
  return name == "time" ? fElapsed : 0.0;
}

const std::vector<double>* MCIterationReporter::VectorMeasure(const std::string& name) {
  return name == "paramEstim" ? fpEstimates : nullptr;
}

void MCIterationReporter::Reset() {
  SetInfo(nullptr, 0, 0, 0.0, 0.0);
}

void MCIterationReporter::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCIterationReporter display start");
  DisplayI("Iteration number", fIterNum);
  DisplayI("Number of step halving", fStepHalving);
  DisplayD("Pseudo -2 log-likelihood", fLogLik);
  DisplayD("Elapsed time in sec", fElapsed);
  if (fpEstimates != nullptr) {
    DisplayDV("Parameter estimates", *fpEstimates, false);
  } else {
    DisplayText(1, "Parameter estimates pointer is 0");
  }
  DisplayText(1, "MCIterationReporter display end");
}

void MCIterationReporter::SetInfo(const std::vector<double>* estimates, int iteration, int halvings,
                                  double logLik, double seconds) {
  fpEstimates = estimates;
  fIterNum = iteration;
  fStepHalving = halvings;
  fLogLik = logLik;
  fElapsed = seconds;
}
