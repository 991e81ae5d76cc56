// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcquerycancel.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/progresslistener.h"
#include "regression/settings/mcmodeleffect.h"

#include <vector>

/// Describes a linear regression: which record positions take which role, the terms of the design
/// and the tolerance of the fit. A host fills it and hands it to the factory; the component keeps
/// a copy, so later changes reach nothing. Base of the settings of other models.
///
/// A position takes one role, for good. Setters that refuse leave the settings as they were.
/// Copies are deep but for what the host owns: the listener, the cancel query, and the variable
/// lists that the model effects are told against. All of these must outlive the component.
class MC_EXPORT MCRegSettings {
public:
  MCRegSettings() = default;
  MCRegSettings(const MCRegSettings&) = default;
  MCRegSettings& operator=(const MCRegSettings&) = default;
  virtual ~MCRegSettings() = default;

  /// MCConst::MC_MODEL_LINEAR.
  virtual int GetModelType() const;

  /// Code 301 without a dependent variable, code 302 without intercept and effects, otherwise OK.
  /// Effects, factor sizes and tolerances are not looked at.
  virtual MCCommon::MCStatus IsValidSettings() const;

  /// Makes record position `var`, from 0, the dependent variable. False if there is one already,
  /// if var is negative or if it has a role. Where memory runs out the answer is false too, but
  /// the dependent stays set and all roles are forgotten.
  virtual bool SetDependent(int var);

  /// Adds record position `var` as a covariate. Answers the new number of covariates, or -1 if
  /// var is negative or has a role, or memory runs out.
  virtual int AddCovariate(int var);

  /// Appends a copy of the effect; the copy keeps pointing to the same variable list. False if
  /// memory runs out.
  virtual bool AddModelEffect(const MCModelEffect& effect);

  /// Writes the settings to the display stream.
  virtual void Display() const;

  /// Adds record position `var` as a factor of `size` categories, coded 0 to size - 1. Answers the
  /// new number of factors, or -1 if var is negative or has a role, size is below 1 or memory runs
  /// out.
  int AddFactor(int var, int size);

  /// Make record position `var` the regression weight or the frequency weight. False, as for
  /// SetDependent(), if var is negative or has a role, or memory runs out. A second weight
  /// replaces the first, whose position keeps its role and so stays barred.
  bool SetRegrWeightVar(int var);
  bool SetFrequencyWeightVar(int var);

  /// Record position of the dependent, -1 (the default) while there is none.
  int GetDependent() const { return fDependent; }

  /// Record positions of the factors and, in the same order, their numbers of categories; record
  /// positions of the covariates. In the order added.
  const std::vector<int>& GetFactors() const { return fFactors; }
  const std::vector<int>& GetFactorSizes() const { return fFactorSizes; }
  const std::vector<int>& GetCovariates() const { return fCovariates; }

  /// Record positions of the weights, -1 (the default) for none.
  int GetFrequencyWeightVar() const { return fFreqWeightVar; }
  int GetRegrWeightVar() const { return fRegrWeightVar; }

  /// Whether the design has an intercept. Default true.
  bool GetInterceptUse() const { return fInterceptUse; }
  void SetInterceptUse(bool use) { fInterceptUse = use; }

  /// Singularity tolerance: column k is redundant where its pivot is at most tolerance * scale[k].
  /// Default 1e-12. Any value is stored.
  double GetTolerance() const { return fTolerance; }
  void SetTolerance(double tolerance) { fTolerance = tolerance; }

  /// The terms of the design, in the order added.
  const std::vector<MCModelEffect>& GetModelEffects() const { return fModelEffects; }
  int GetNModelEffects() const { return static_cast<int>(fModelEffects.size()); }

  /// Confidence level, kept for the host. Default 0.95. A level outside 0 <= level < 1, and NaN,
  /// are dropped silently.
  double GetConfidenceLevel() const { return fConfidence; }
  void SetConfidenceLevel(double level);

  /// Degrees of freedom that the host imposes; not positive (the default is -1) means that they
  /// are computed. A value that isn't above 0, and NaN, are dropped silently.
  double GetDF() const { return fDF; }
  void SetDF(double df);

  /// Kept for the host and never acted upon. The defaults are the enumerators of value 0.
  MCConst::MCTestType GetTestType() const { return fTestType; }
  void SetTestType(MCConst::MCTestType type) { fTestType = type; }
  MCConst::MCPAdjustMethod GetPAdjustment() const { return fPAdjustment; }
  void SetPAdjustment(MCConst::MCPAdjustMethod method) { fPAdjustment = method; }
  MCConst::MCCovbType GetCovbType() const { return fCovbType; }
  void SetCovbType(MCConst::MCCovbType type) { fCovbType = type; }

  /// Receiver of progress reports and the host's cancel query: borrowed, null by default.
  ProgressListener* GetProgressListener() const { return fpProgressListener; }
  void SetProgressListener(ProgressListener* listener) { fpProgressListener = listener; }
  MCQueryCancel* GetCancelPointer() const { return fpCancel; }
  void SetCancelPointer(MCQueryCancel* query) { fpCancel = query; }

  /// Role of each record position, as far as the last one that took a role.
  const std::vector<MCConst::MCVariableType>& GetVariableTypes() const { return fVariableTypes; }

private:
  bool HasNoRole(int var) const;
  void MarkRole(int var, MCConst::MCVariableType role);
  bool StoreAndMark(int& member, int var, MCConst::MCVariableType role);

  int fDependent = -1;
  std::vector<int> fFactors;
  std::vector<int> fFactorSizes;
  std::vector<int> fCovariates;
  int fFreqWeightVar = -1;
  int fRegrWeightVar = -1;
  bool fInterceptUse = true;
  double fTolerance = 1e-12;
  std::vector<MCModelEffect> fModelEffects;
  double fConfidence = 0.95;
  double fDF = -1.0;
  MCConst::MCTestType fTestType = MCConst::MC_TEST_WALD;
  MCConst::MCPAdjustMethod fPAdjustment = MCConst::MC_PADJ_NONE;
  ProgressListener* fpProgressListener = nullptr;
  MCQueryCancel* fpCancel = nullptr;
  std::vector<MCConst::MCVariableType> fVariableTypes;
  MCConst::MCCovbType fCovbType = MCConst::MC_COVB_MODEL;
};
