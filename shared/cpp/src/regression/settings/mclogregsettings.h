// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/settings/mcregsettings.h"

/// Describes a multinomial logistic regression: the settings of a linear one, with the categories
/// of the dependent variable and the controls of the iteration. Setters that answer false have
/// refused the value and left the settings as they were; NaN is refused by each.
class MC_EXPORT MCLogRegSettings : public MCRegSettings {
public:
  /// MCConst::MC_MODEL_LOGISTIC.
  int GetModelType() const override;

  /// What the base answers: nothing is checked beyond that.
  MCCommon::MCStatus IsValidSettings() const override;

  /// Writes the base's settings and then these to the display stream.
  void Display() const override;

  /// Number of categories of the dependent, at least 2, and its reference category: a category
  /// from 0 to nCategs - 1, or -1 for the last category with data, or -2 for the first such.
  /// Defaults: 2 categories, reference -1. False for values out of these ranges.
  bool SetDependentRefCat(int ref, int nCategs);
  int GetDependentNCategs() const { return fDependentNCategs; }
  int GetDependentRefCateg() const { return fDependentRefCateg; }

  /// A report goes to the progress listener every this many iterations. Default 1; false below 1.
  bool SetIterationFrequency(int frequency);
  int GetIterationFrequency() const { return fIterationFrequency; }

  /// Log-likelihood convergence criterion, at least 0. At 0, the default, the test never succeeds.
  bool SetLLConCriterion(double criterion);
  double GetLLConCriterion() const { return fLLConCriterion; }

  /// Whether the log-likelihood test takes the absolute change (true) or the relative one (false,
  /// the default).
  void SetLLFuncChange(bool absolute) { fLLFuncChange = absolute; }
  bool GetLLFuncChange() const { return fLLFuncChange; }

  /// Parameter convergence criterion, at least 0. Default 1e-6.
  bool SetParamEstConCriterion(double criterion);
  double GetParamEstConCriterion() const { return fParamEstConCriterion; }

  /// Whether the parameter test takes the absolute change (true) or the relative one (false, the
  /// default).
  void SetParamEstChange(bool absolute) { fParamEstChange = absolute; }
  bool GetParamEstChange() const { return fParamEstChange; }

  /// Most iterations, at least 0; at 0 the first estimates stand. Default 100.
  bool SetMaxIterations(int n);
  int GetMaxIterations() const { return fMaxIterations; }

  /// Most step halvings within one iteration, at least 1. Default 5.
  bool SetMaxStepHalvingValue(int n);
  int GetMaxStepHalvingValue() const { return fMaxStepHalving; }

  /// First iteration at which the separation check runs, at least 0; 0 turns it off. Default 20.
  bool SetStartingIteration(int iteration);
  int GetStartingIteration() const { return fStartingIteration; }

  /// Whether rows are tabulated once into covariate patterns (true, the default) or read again at
  /// every iteration (false).
  void SetUsePatternTabulator(bool use) { fUsePatternTabulator = use; }
  bool GetUsePatternTabulator() const { return fUsePatternTabulator; }

private:
  int fDependentNCategs = 2;
  int fDependentRefCateg = -1;
  double fLLConCriterion = 0.0;
  double fParamEstConCriterion = 1e-6;
  int fMaxIterations = 100;
  int fMaxStepHalving = 5;
  int fStartingIteration = 20;
  bool fLLFuncChange = false;
  bool fParamEstChange = false;
  bool fUsePatternTabulator = true;
  int fIterationFrequency = 1;
};
