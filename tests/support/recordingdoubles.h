// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcquerycancel.h"
#include "regression/frame/progresslistener.h"
#include "regression/frame/progressreportvect.h"
#include "regression/interface/imcaccumstats.h"
#include "regression/interface/imcdatahandler.h"
#include "regression/interface/imcregmodel.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

/// Doubles of everything around an iterative estimation. All write into one log, so that a test
/// can compare the whole order of calls, polls and reports.
namespace mctest {

/// The calls in the order in which they came, one word each.
class CallLog {
public:
  /// Writes the word down, then lets fOnCall, if there is one, interfere.
  void Note(const std::string& word);

  /// All words with a space between.
  std::string Text() const;
  std::size_t Count(const std::string& word) const;

  std::vector<std::string> fWords;
  std::function<void()> fOnCall;
};

/// A model that has two counts and nothing else.
class CountedModel : public IMCRegModel {
public:
  CountedModel(int nNonRedundant, int nCategs) : fNNonRedundant(nNonRedundant), fNCategs(nCategs) {}

  int GetNNonRedParams() const override { return fNNonRedundant; }
  int GetDependentNCategs() const override { return fNCategs; }

  const MCFactorTables* GetFactorTables() const override { return nullptr; }
  MCCommon::MCStatus CreateParameters() override { return {}; }
  bool AreParamsCreated() const override { return true; }
  bool UpdateXPrimeX(const double* /*row*/, const std::vector<int>& /*indices*/) override {
    return false;
  }
  bool UpdateXPrimeX(const double* /*row*/) override { return false; }
  MCCommon::MCStatus IdentifyRedundancy() override { return {}; }
  bool IsModelBuilt() const override { return false; }
  void GetDResiduals(std::vector<double>& /*out*/, const double* /*row*/) override {}
  MCCommon::MCStatus FinishErrors() override { return {}; }
  const MCCommonMath::MCSymMatrix* GetXPrimeX() const override { return nullptr; }
  const MCCommonMath::MCSymMatrix* GetHessianGI() const override { return nullptr; }
  const std::vector<MCRegrParameter>& GetParameters() const override { return fParameters; }
  const std::vector<MCRegrParameter>& GetBasicParams() const override { return fParameters; }
  int GetNParameters() const override { return 0; }
  int GetNBasicParameters() const override { return 0; }
  int GetNBasicNonRed() const override { return 0; }
  const std::vector<double>& GetParamEstimates() const override { return fEstimates; }
  const MCCommonMath::MCBitSet& GetBasicRedundInfo() const override { return fRedundancy; }
  const MCCommonMath::MCBitSet& GetRedundancyInfo() const override { return fRedundancy; }
  const std::vector<int>& GetDependCategories() const override { return fCategories; }
  const std::vector<int>& GetDepCatLocalInds() const override { return fCategories; }
  void ClearXPrimeXMatrix() override {}
  void ClearHessianGIMatrix() override {}
  bool GetParamsForEffect(int /*effect*/, int& /*first*/, int& /*count*/) const override {
    return false;
  }
  MCCommon::MCStatus Score(const double* /*row*/, std::vector<double>& /*probabilities*/,
                           int& /*predicted*/) const override {
    return {};
  }
  MCCommon::MCStatus UncompressEstimates(const std::vector<double>& /*estimates*/,
                                         const MCCommonMath::MCSymMatrix& /*hessian*/) override {
    return {};
  }
  bool ExpandRow(std::vector<double>& /*designRow*/, const double* /*row*/) const override {
    return false;
  }
  bool ExpandRow(const double* /*row*/, std::vector<int>& /*indices*/,
                 std::vector<double>& /*values*/) const override {
    return false;
  }
  bool ExpandAndCompressRow(const double* /*row*/, const std::vector<int>& /*indices*/, int& /*n*/,
                            std::vector<int>& /*outIndices*/,
                            std::vector<double>& /*outValues*/) const override {
    return false;
  }
  bool ExpandAndCompressRow(const double* /*row*/, int& /*n*/, std::vector<int>& /*outIndices*/,
                            std::vector<double>& /*outValues*/) const override {
    return false;
  }
  MCCommon::MCStatus GetStatus() const override { return {}; }
  void Display() const override {}

private:
  int fNNonRedundant;
  int fNCategs;
  std::vector<MCRegrParameter> fParameters;
  std::vector<double> fEstimates;
  std::vector<int> fCategories;
  MCCommonMath::MCBitSet fRedundancy;
};

/// What the passes of a run give. Where a list is too short its last entry stands for all further
/// passes.
struct PassScript {
  struct Extremes {
    double fMinObserved;
    double fMaxObserved;
    double fMinComputed;
  };

  /// Log-likelihoods of the passes for the likelihood alone, and of the full passes.
  std::vector<double> fTrialLL{-1.0};
  std::vector<double> fFullLL{-1.0};
  /// Of the full passes: scores, packed Hessian, extremes of the probabilities.
  std::vector<std::vector<double>> fScores{{1.0}};
  std::vector<std::vector<double>> fHessians{{1.0}};
  std::vector<Extremes> fExtremes{{0.5, 0.5, 0.5}};
  /// Answers by the number of the pass, of either kind, from 0; OK where there is none.
  std::map<int, MCCommon::MCStatus> fStatuses;
  double fWeight = 0.0;
  double fStepAdjustmentFactor = 1.0;
};

/// Words: ResetF and ResetN by method, ResetH for hybrid, with "+" behind for the check of
/// separation; LL, Scores, Hessian, Counts, Extremes, Factor, Display.
class RecordingAccumStats : public IMCAccumStats {
public:
  explicit RecordingAccumStats(CallLog& log) : fLog(log) {}

  /// Makes the sums those of the script's next pass of that kind, and answers its status.
  MCCommon::MCStatus RunPass(bool likelihoodOnly);

  void Reset(MCConst::MCEstimationMethod method, bool checkSeparation) override;
  bool CheckConstraints() override { return true; }
  int UpdateForRow(const std::vector<int>& indices, const std::vector<double>& values, int category,
                   double weight, bool likelihoodOnly) override;
  double GetLL() const override;
  const std::vector<double>& GetScores() const override;
  void GetHessian(MCCommonMath::MCSymMatrix& hessian) const override;
  void GetCounts(int& valid, int& invalid, double& weight) const override;
  void GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                              double& minComputed) const override;
  double GetStepAdjustmentFactor() const override;
  void Display(bool brief) const override;

  PassScript fScript;

private:
  CallLog& fLog;
  int fNPasses = 0;
  std::size_t fNTrials = 0;
  std::size_t fNFull = 0;
  double fLogLik = 0.0;
};

/// Words: Set, Clean, Trial and Full for the passes; a reset is passed on to the accumulator.
class RecordingDataHandler : public IMCDataHandler {
public:
  RecordingDataHandler(CallLog& log, RecordingAccumStats& accumStats)
      : fLog(log), fAccumStats(accumStats) {}

  void SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) override;
  void ResetAccumStats(MCConst::MCEstimationMethod method, bool checkSeparation) override;
  void CleanStatsModel() override;
  MCCommon::MCStatus ComputeStatsForOptimizer(bool likelihoodOnly) override;
  const std::vector<MCCommon::MCStatus>& GetWarnings() const override { return fWarnings; }
  void Display() const override {}

  /// What SetStatsModel() was given.
  const IMCAccumStats* fpGivenStats = nullptr;
  const IMCRegModel* fpGivenModel = nullptr;
  /// Called before each pass, if there is one.
  std::function<void(bool likelihoodOnly)> fOnPass;

private:
  CallLog& fLog;
  RecordingAccumStats& fAccumStats;
  std::vector<MCCommon::MCStatus> fWarnings;
};

/// Word: "?". Says yes at the poll fYesAt, counted from 1, or from it on.
class RecordingCancel : public MCQueryCancel {
public:
  explicit RecordingCancel(CallLog& log) : fLog(log) {}

  bool IsCancel() override;
  bool WillCancel() override;

  int fYesAt = 0;
  bool fbOnce = false;
  /// A yes from now on.
  bool fbYes = false;

private:
  CallLog& fLog;
  int fNPolls = 0;
};

/// Word: Report. Keeps what the reports said.
class RecordingListener : public ProgressListener {
public:
  struct Entry {
    int fIteration;
    int fHalvings;
    double fLogLik;
    double fSeconds;
    std::vector<double> fEstimates;
  };

  explicit RecordingListener(CallLog& log) : fLog(log) {}

  bool ReportProgress(ProgressReport* report) override;

  std::vector<int> Iterations() const;

  std::vector<Entry> fEntries;

private:
  CallLog& fLog;
};

}  // namespace mctest
