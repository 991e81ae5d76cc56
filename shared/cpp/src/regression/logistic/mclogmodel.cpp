// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogmodel.h"

#include "mcmath/detail/mccrossproduct.h"
#include "regression/design/detail/mcdesigncolumns.h"
#include "regression/design/detail/mcparameterlist.h"
#include "regression/frame/mccomponentdisplay.h"

#include <utility>

using MCCommon::MCStatus;
using MCCommon::detail::MCDesignColumns;
using MCCommonMath::MCSymMatrix;

MCLogModel::MCLogModel(const MCLogRegSettings& settings, MCCancelInfo& cancelInfo)
    : fSettings(&settings),
      fModelEffects(&settings.GetModelEffects()),
      fNModelEffects(CountModelEffects()),
      fCancelInfo(&cancelInfo) {}

MCLogModel::MCLogModel(const MCLogModel& other)
    : IMCRegModel(other),
      fSettings(other.fSettings),
      fPatternCovariateOffsets(other.fPatternCovariateOffsets),
      fPatternCovariateLookup(other.fPatternCovariateLookup),
      fPatternFreqOffset(other.fPatternFreqOffset),
      fPatternRegrOffset(other.fPatternRegrOffset),
      fPatternDepOffset(other.fPatternDepOffset),
      fPatternRowSize(other.fPatternRowSize),
      fRowSize(other.fRowSize),
      fFactorOffsets(other.fFactorOffsets),
      fCovariateOffsets(other.fCovariateOffsets),
      fCovariateLookup(other.fCovariateLookup),
      fFreqWeightOffset(other.fFreqWeightOffset),
      fRegrWeightOffset(other.fRegrWeightOffset),
      fDependentOffset(other.fDependentOffset),
      fDependCategories(other.fDependCategories),
      fDepCatLocalInds(other.fDepCatLocalInds),
      fDependCatCounts(other.fDependCatCounts),
      fDependCatNCases(other.fDependCatNCases),
      fModelEffects(other.fModelEffects),
      fNModelEffects(other.fNModelEffects),
      fFactorTables(other.fFactorTables),
      fRecordsAdded(other.fRecordsAdded),
      fBasicRedundancy(other.fBasicRedundancy),
      fRedundancy(other.fRedundancy),
      fParameters(other.fParameters),
      fBasicParams(other.fBasicParams),
      fNBasic(other.fNBasic),
      fNBasicNonRed(other.fNBasicNonRed),
      fNNonRed(other.fNNonRed),
      fBasicNonRedIndices(other.fBasicNonRedIndices),
      fParamEstimates(other.fParamEstimates),
      fBasicDesignRow(other.fBasicDesignRow),
      fPredProbs(other.fPredProbs),
      fTotalWeight(other.fTotalWeight),
      fSampleSize(other.fSampleSize),
      fNonZeroWeightRows(other.fNonZeroWeightRows),
      fFirstParamIndices(other.fFirstParamIndices),
      fNEffectParams(other.fNEffectParams),
      fCancelInfo(other.fCancelInfo),
      fStatus(other.fStatus) {
  if (other.HasDesign()) CompileColumns();
}

MCLogModel::~MCLogModel() = default;

int MCLogModel::CountModelEffects() const {
  return fSettings->GetNModelEffects() + (fSettings->GetInterceptUse() ? 1 : 0);
}

MCStatus MCLogModel::Fail(long code) {
  fStatus = MCStatus(code, false);
  return fStatus;
}

MCStatus MCLogModel::FailForSize(std::int64_t nParameters, long limit) {
  fStatus = MCStatus(MCCommon::MCS_TOO_LARGE, false);
  fStatus.SetDiscreteDatum(0, nParameters);
  fStatus.SetDiscreteDatum(1, limit);
  return fStatus;
}

void MCLogModel::SetOffsets(const std::vector<int>& factors, const std::vector<int>& covariates,
                            int freqWeight, int regrWeight, int dependent) {
  fFactorOffsets = factors;
  fCovariateOffsets = covariates;
  fCovariateLookup = MakeLookup(covariates);
  fFreqWeightOffset = freqWeight;
  fRegrWeightOffset = regrWeight;
  fDependentOffset = dependent;
  fRowSize = static_cast<int>(factors.size() + covariates.size()) + 2;
  if (HasDesign()) CompileColumns();
}

void MCLogModel::SetPatternOffsets(const std::vector<int>& covariates, int freqWeight,
                                   int regrWeight, int dependent) {
  fPatternCovariateOffsets = covariates;
  fPatternCovariateLookup = MakeLookup(covariates);
  fPatternFreqOffset = freqWeight;
  fPatternRegrOffset = regrWeight;
  fPatternDepOffset = dependent;
  fPatternRowSize = static_cast<int>(covariates.size()) + 2;
  if (HasDesign()) CompileColumns();
}

std::vector<int> MCLogModel::MakeLookup(const std::vector<int>& positions) const {
  return MCCommon::detail::MakeCovariateLookup(fSettings->GetCovariates(), positions,
                                               fSettings->GetVariableTypes().size() + 1);
}

void MCLogModel::CompileColumns() {
  auto recordColumns = std::make_unique<MCDesignColumns>(fBasicParams, fCovariateLookup);
  fpPatternColumns = std::make_unique<MCDesignColumns>(fBasicParams, fPatternCovariateLookup);
  fpRecordColumns = std::move(recordColumns);
}

void MCLogModel::SetTotalWeight(double sampleSize, double totalWeight) {
  fSampleSize = sampleSize;
  fTotalWeight = totalWeight;
}

int MCLogModel::GetDependentRefCateg() const {
  return fDependCategories.size() < 2 ? 0 : fDependCategories.back();
}

bool MCLogModel::GetParamsForEffect(int effect, int& first, int& count) const {
  return MCCommon::detail::FindEffectParams(fSettings->GetInterceptUse(), fFirstParamIndices,
                                            fNEffectParams, effect, first, count);
}

const MCSymMatrix* MCLogModel::GetXPrimeX() const {
  if (fpPendingRows != nullptr) fpPendingRows->Flush();
  return fXPrimeX.get();
}

void MCLogModel::ClearXPrimeXMatrix() {
  fpPendingRows.reset();
  fXPrimeX.reset();
}

void MCLogModel::ClearHessianGIMatrix() {
  fHessianGI.reset();
}
