// SPDX-License-Identifier: Apache-2.0
//
// A host's model, accumulator and data handler, for estimations with a likelihood of its own.
// Compiled twice, as hostplugin.cpp is. Each operation notes its name where it was told to.
#ifdef MCSTAT_FROZEN_INTERFACES
#include "integration/plugin/frozeninterfaces.h"
#else
#include "regression/interface/imcaccumstats.h"
#include "regression/interface/imcdatahandler.h"
#include "regression/interface/imcregmodel.h"
#endif
#include "integration/plugin/pluginexport.h"

#include <cmath>

namespace {

using MCCommon::MCStatus;
using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;

using Names = std::vector<std::string>;

// One parameter, two categories of the dependent.
class PluginModel : public IMCRegModel {
public:
  explicit PluginModel(Names* names) : fNames(names) {}
  ~PluginModel() override { Note("~"); }

  const MCFactorTables* GetFactorTables() const override {
    Note("GetFactorTables");
    return nullptr;
  }
  MCStatus CreateParameters() override { return Answer("CreateParameters"); }
  bool AreParamsCreated() const override { return Note("AreParamsCreated"); }
  bool UpdateXPrimeX(const double* /*row*/, const std::vector<int>& /*indices*/) override {
    return Note("UpdateXPrimeX(indices)");
  }
  bool UpdateXPrimeX(const double* /*row*/) override { return Note("UpdateXPrimeX"); }
  MCStatus IdentifyRedundancy() override { return Answer("IdentifyRedundancy"); }
  bool IsModelBuilt() const override { return Note("IsModelBuilt"); }
  void GetDResiduals(std::vector<double>& /*out*/, const double* /*row*/) override {
    Note("GetDResiduals");
  }
  MCStatus FinishErrors() override { return Answer("FinishErrors"); }
  const MCSymMatrix* GetXPrimeX() const override {
    Note("GetXPrimeX");
    return nullptr;
  }
  const MCSymMatrix* GetHessianGI() const override {
    Note("GetHessianGI");
    return nullptr;
  }
  const std::vector<MCRegrParameter>& GetParameters() const override {
    Note("GetParameters");
    return fParameters;
  }
  const std::vector<MCRegrParameter>& GetBasicParams() const override {
    Note("GetBasicParams");
    return fParameters;
  }
  int GetNParameters() const override { return One("GetNParameters"); }
  int GetNNonRedParams() const override { return One("GetNNonRedParams"); }
  int GetNBasicParameters() const override { return One("GetNBasicParameters"); }
  int GetNBasicNonRed() const override { return One("GetNBasicNonRed"); }
  const std::vector<double>& GetParamEstimates() const override {
    Note("GetParamEstimates");
    return fEstimates;
  }
  const MCBitSet& GetBasicRedundInfo() const override {
    Note("GetBasicRedundInfo");
    return fBits;
  }
  const MCBitSet& GetRedundancyInfo() const override {
    Note("GetRedundancyInfo");
    return fBits;
  }
  int GetDependentNCategs() const override { return 1 + One("GetDependentNCategs"); }
  const std::vector<int>& GetDependCategories() const override {
    Note("GetDependCategories");
    return fCategories;
  }
  const std::vector<int>& GetDepCatLocalInds() const override {
    Note("GetDepCatLocalInds");
    return fCategories;
  }
  void ClearXPrimeXMatrix() override { Note("ClearXPrimeXMatrix"); }
  void ClearHessianGIMatrix() override { Note("ClearHessianGIMatrix"); }
  bool GetParamsForEffect(int /*effect*/, int& /*first*/, int& /*count*/) const override {
    return Note("GetParamsForEffect");
  }
  MCStatus Score(const double* /*row*/, std::vector<double>& /*probabilities*/,
                 int& /*predicted*/) const override {
    return Answer("Score");
  }
  MCStatus UncompressEstimates(const std::vector<double>& /*estimates*/,
                               const MCSymMatrix& /*hessian*/) override {
    return Answer("UncompressEstimates");
  }
  bool ExpandRow(std::vector<double>& /*designRow*/, const double* /*row*/) const override {
    return Note("ExpandRow");
  }
  bool ExpandRow(const double* /*row*/, std::vector<int>& /*indices*/,
                 std::vector<double>& /*values*/) const override {
    return Note("ExpandRow(sparse)");
  }
  bool ExpandAndCompressRow(const double* /*row*/, const std::vector<int>& /*indices*/, int& /*n*/,
                            std::vector<int>& /*outIndices*/,
                            std::vector<double>& /*outValues*/) const override {
    return Note("ExpandAndCompressRow(indices)");
  }
  bool ExpandAndCompressRow(const double* /*row*/, int& /*n*/, std::vector<int>& /*outIndices*/,
                            std::vector<double>& /*outValues*/) const override {
    return Note("ExpandAndCompressRow");
  }
  MCStatus GetStatus() const override { return Answer("GetStatus"); }
  void Display() const override { Note("Display"); }

private:
  bool Note(const char* name) const {
    fNames->push_back(name);
    return true;
  }
  int One(const char* name) const { return Note(name) ? 1 : 0; }
  MCStatus Answer(const char* name) const { return Note(name) ? MCStatus() : MCStatus(303, false); }

  Names* fNames;
  std::vector<MCRegrParameter> fParameters;
  std::vector<double> fEstimates;
  std::vector<int> fCategories;
  MCBitSet fBits;
};

// Log odds of category 0 against category 1, the same for each row.
class PluginAccumStats : public IMCAccumStats {
public:
  PluginAccumStats(Names* names, const std::vector<double>* estimates)
      : fNames(names), fEstimates(estimates) {}
  ~PluginAccumStats() override { Note("~"); }

  void Reset(MCConst::MCEstimationMethod /*method*/, bool /*checkSeparation*/) override {
    Note("Reset");
    fLogLik = 0.0;
    fScores[0] = 0.0;
    fInformation = 0.0;
    fRows = 0;
  }
  bool CheckConstraints() override {
    Note("CheckConstraints");
    return true;
  }
  int UpdateForRow(const std::vector<int>& indices, const std::vector<double>& values, int category,
                   double weight, bool likelihoodOnly) override {
    Note("UpdateForRow");
    if (indices != std::vector<int>{0} || values != std::vector<double>{1.0}) return -1;
    const double p = 1.0 / (1.0 + std::exp(-(*fEstimates)[0]));
    fLogLik += weight * std::log(category == 0 ? p : 1.0 - p);
    ++fRows;
    if (likelihoodOnly) return 0;
    fScores[0] += weight * ((category == 0 ? 1.0 : 0.0) - p);
    fInformation += weight * p * (1.0 - p);
    return 0;
  }
  double GetLL() const override {
    Note("GetLL");
    return fLogLik;
  }
  const std::vector<double>& GetScores() const override {
    Note("GetScores");
    return fScores;
  }
  void GetHessian(MCSymMatrix& hessian) const override {
    Note("GetHessian");
    hessian.SetElem(0, 0, fInformation);
  }
  void GetCounts(int& valid, int& invalid, double& weight) const override {
    Note("GetCounts");
    valid = fRows;
    invalid = 0;
    weight = fRows;
  }
  void GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                              double& minComputed) const override {
    Note("GetMinMaxProbabilities");
    minObserved = maxObserved = minComputed = 0.5;
  }
  double GetStepAdjustmentFactor() const override {
    Note("GetStepAdjustmentFactor");
    return 1.0;
  }
  void Display(bool /*brief*/) const override { Note("Display"); }

private:
  void Note(const char* name) const { fNames->push_back(name); }

  Names* fNames;
  const std::vector<double>* fEstimates;
  double fLogLik = 0.0;
  std::vector<double> fScores{0.0};
  double fInformation = 0.0;
  int fRows = 0;
};

// Four rows, three of them of category 0.
class PluginDataHandler : public IMCDataHandler {
public:
  explicit PluginDataHandler(Names* names) : fNames(names) {}
  ~PluginDataHandler() override { Note("~"); }

  void SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* /*model*/) override {
    Note("SetStatsModel");
    fAccumStats = accumStats;
  }
  void ResetAccumStats(MCConst::MCEstimationMethod method, bool checkSeparation) override {
    Note("ResetAccumStats");
    if (fAccumStats != nullptr) fAccumStats->Reset(method, checkSeparation);
  }
  void CleanStatsModel() override {
    Note("CleanStatsModel");
    fAccumStats = nullptr;
  }
  MCStatus ComputeStatsForOptimizer(bool likelihoodOnly) override {
    Note("ComputeStatsForOptimizer");
    if (fAccumStats == nullptr) return MCStatus(303, false);
    for (const int category : {0, 1, 0, 0}) {
      if (fAccumStats->UpdateForRow({0}, {1.0}, category, 1.0, likelihoodOnly) != 0) {
        return MCStatus(303, false);
      }
    }
    return MCStatus();
  }
  const std::vector<MCStatus>& GetWarnings() const override {
    Note("GetWarnings");
    return fWarnings;
  }
  void Display() const override { Note("Display"); }

private:
  void Note(const char* name) const { fNames->push_back(name); }

  Names* fNames;
  IMCAccumStats* fAccumStats = nullptr;
  std::vector<MCStatus> fWarnings;
};

}  // namespace

PLUGIN_EXPORT void* MakeModel(Names* names) {
  return static_cast<IMCRegModel*>(new PluginModel(names));
}
PLUGIN_EXPORT void* MakeAccumStats(Names* names, const std::vector<double>* estimates) {
  return static_cast<IMCAccumStats*>(new PluginAccumStats(names, estimates));
}
PLUGIN_EXPORT void* MakeDataHandler(Names* names) {
  return static_cast<IMCDataHandler*>(new PluginDataHandler(names));
}
