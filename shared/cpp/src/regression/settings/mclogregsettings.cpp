// SPDX-License-Identifier: Apache-2.0
#include "regression/settings/mclogregsettings.h"

#include "regression/frame/mccomponentdisplay.h"

namespace {

// Written so that a NaN is refused.
template <class T>
bool StoreIfAtLeast(T& member, T value, T least) {
  if (!(value >= least)) return false;
  member = value;
  return true;
}

}  // namespace

int MCLogRegSettings::GetModelType() const {
  return MCConst::MC_MODEL_LOGISTIC;
}

MCCommon::MCStatus MCLogRegSettings::IsValidSettings() const {
  return MCRegSettings::IsValidSettings();
}

bool MCLogRegSettings::SetDependentRefCat(int ref, int nCategs) {
  if (nCategs < 2 || ref < -2 || ref >= nCategs) return false;
  fDependentNCategs = nCategs;
  fDependentRefCateg = ref;
  return true;
}

bool MCLogRegSettings::SetIterationFrequency(int frequency) {
  return StoreIfAtLeast(fIterationFrequency, frequency, 1);
}

bool MCLogRegSettings::SetLLConCriterion(double criterion) {
  return StoreIfAtLeast(fLLConCriterion, criterion, 0.0);
}

bool MCLogRegSettings::SetParamEstConCriterion(double criterion) {
  return StoreIfAtLeast(fParamEstConCriterion, criterion, 0.0);
}

bool MCLogRegSettings::SetMaxIterations(int n) {
  return StoreIfAtLeast(fMaxIterations, n, 0);
}

bool MCLogRegSettings::SetMaxStepHalvingValue(int n) {
  return StoreIfAtLeast(fMaxStepHalving, n, 1);
}

bool MCLogRegSettings::SetStartingIteration(int iteration) {
  return StoreIfAtLeast(fStartingIteration, iteration, 0);
}

void MCLogRegSettings::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCLogRegSettings display start");
  MCRegSettings::Display();
  DisplayI("N of Dependent Categories", fDependentNCategs);
  DisplayI("Dependent Var reference Category", fDependentRefCateg);
  DisplayD("Log-Likelihood Function Convergence Criterion", fLLConCriterion);
  DisplayD("Parameter Estimates Convergence Criterion", fParamEstConCriterion);
  DisplayI("Maximum number of Iteration", fMaxIterations);
  DisplayI("Maximum Step-Halving Allowed", fMaxStepHalving);
  DisplayI("Staring Iteration", fStartingIteration);
  DisplayB("Log-Likelihood Function absolute change", fLLFuncChange);
  DisplayB("Parameter Estimates absolute change", fParamEstChange);
  DisplayI("Show Iteration history frequency", fIterationFrequency);
  DisplayText(1, "MCLogRegSettings display end");
}
