// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmmodel.h"

#include "mcmath/detail/mccrossproduct.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

using MCCommon::MCStatus;
using MCCommonMath::MCSymMatrix;
using MCCommonMath::detail::MCCrossProduct;

MCGLMModel::MCGLMModel(const MCRegSettings& settings, MCCancelInfo& cancelInfo)
    : fSettings(&settings), fCancelInfo(&cancelInfo), fModelEffects(&settings.GetModelEffects()) {}

MCGLMModel::~MCGLMModel() = default;

MCStatus MCGLMModel::Fail(long code) {
  fStatus = MCStatus(code, false);
  return fStatus;
}

MCStatus MCGLMModel::FailForSize(long limit) {
  fStatus = MCStatus(MCCommon::MCS_TOO_LARGE, false);
  fStatus.SetDiscreteDatum(0, GetNParameters());
  fStatus.SetDiscreteDatum(1, limit);
  return fStatus;
}

void MCGLMModel::SetOffsets(const std::vector<int>& factors, const std::vector<int>& covariates,
                            int freqWeight, int regrWeight, int dependent) {
  fFactorOffsets = factors;
  fCovariateOffsets = covariates;
  fFreqWeightOffset = freqWeight;
  fRegrWeightOffset = regrWeight;
  fDependentOffset = dependent;

  const std::vector<int>& variables = fSettings->GetCovariates();
  const int largest = variables.empty() ? 0 : *std::max_element(variables.begin(), variables.end());
  fCovariateLookup.assign(static_cast<std::size_t>(largest) + 1, -1);
  for (std::size_t i = 0; i < variables.size() && i < covariates.size(); ++i) {
    fCovariateLookup[static_cast<std::size_t>(variables[i])] = covariates[i];
  }
  if (fParamsCreated) CompileColumns();
}

MCStatus MCGLMModel::CreateParameters(MCFactorTables* factorTables) {
  if (fStatus.IsError() || fParamsCreated) return fStatus;
  if (factorTables == nullptr) return Fail(MCCommon::MCS_NOT_PROCESSED);
  fFactorTables = factorTables;
  const bool hasBegun = ListParameters();
  if (fParameters.size() > kMaxParameters) return FailForSize(kMaxParameters);
  if (!hasBegun || IsListCutShort()) {
    ClearParameters();
    return Fail(MCCommon::MCS_CANCELLED);
  }
  return PrepareRows();
}

void MCGLMModel::ClearParameters() {
  fParameters.clear();
  fFirstParamIndices.clear();
  fNEffectParams.clear();
}

// False if a cancel left out the intercept: then all effects are out of step with the tables.
bool MCGLMModel::ListParameters() {
  ClearParameters();
  const bool intercept = fSettings->GetInterceptUse() && !fCancelInfo->WillCancel();
  if (intercept) fParameters.emplace_back();
  const int shift = intercept ? 1 : 0;
  for (int e = 0; e < fSettings->GetNModelEffects() && !fCancelInfo->WillCancel(); ++e) {
    ListEffectParameters((*fModelEffects)[static_cast<std::size_t>(e)], e, e + shift);
  }
  return intercept == fSettings->GetInterceptUse();
}

void MCGLMModel::ListEffectParameters(const MCModelEffect& effect, int index, int tableEffect) {
  MCRegrParameter parameter;
  parameter.SetupFromEffect(effect, index, 0);
  const int n = fFactorTables->GetNEffectParameters(tableEffect);
  fFirstParamIndices.push_back(GetNParameters());
  fNEffectParams.push_back(n);
  if (n == 1 && parameter.GetNFactors() == 0) {
    fParameters.push_back(parameter);
    return;
  }
  for (int i = 0; i < n; ++i) {
    fFactorTables->GetParameterFactorValues(parameter.GetCategories(), tableEffect, i);
    fParameters.push_back(parameter);
  }
}

// The tables have numbered all effects, but a cancel leaves some out of the list. Should the
// cancel query then change its mind, rows would select parameters that aren't there.
bool MCGLMModel::IsListCutShort() const {
  std::int64_t numbered = 0;
  for (int e = 0; e < fFactorTables->GetNModelEffects(); ++e) {
    numbered += fFactorTables->GetNEffectParameters(e);
  }
  return GetNParameters() < numbered;
}

MCStatus MCGLMModel::PrepareRows() {
  const int nRows = GetNParameters() + 1;
  std::unique_ptr<MCSymMatrix> matrix(new (std::nothrow) MCSymMatrix(nRows));
  if (matrix == nullptr || !matrix->IsValidMatrix()) return FailForSize(0);
  CompileColumns();
  fDesignRow.assign(static_cast<std::size_t>(nRows), 0.0);
  fRowColumns.assign(fDesignRow.size(), 0);
  fRowValues.assign(fDesignRow.size(), 0.0);
  const int nNonZero = std::min(fFactorTables->GetNModelEffects() + 1, nRows);
  fbSparseRows = MCCrossProduct::IsSparse(nRows, nNonZero);
  fHeldRows.assign(fbSparseRows ? 0 : kMostHeld * fDesignRow.size(), 0.0);
  fHeldWeights.assign(kMostHeld, 0.0);
  fpPendingRows = std::make_unique<MCCrossProduct>(nRows, matrix->AsVector());
  fZPrimeZ = std::move(matrix);
  fParamsCreated = true;
  return fStatus;
}

void MCGLMModel::CompileColumns() {
  fTerms.clear();
  fTermBegin.assign(1, 0);
  for (const MCRegrParameter& parameter : fParameters) {
    const std::vector<int>& covariates = parameter.GetCovariates();
    for (std::size_t i = 0; i < covariates.size(); ++i) {
      fTerms.push_back(
          {CovariatePosition(covariates[i]), parameter.GetCovariateMultiplicities()[i]});
    }
    fTermBegin.push_back(fTerms.size());
  }
  fbReadsRow = fFactorTables->GetNFactors() > 0 || !fTerms.empty();
  CompileFixedRow();
}

// Without factors in the effects the column of an effect is its number, whatever the row.
void MCGLMModel::CompileFixedRow() {
  const std::vector<int>& localEffects = fFactorTables->GetLocalEffectIndices();
  fbFixedColumns = localEffects.size() == fParameters.size() &&
                   std::all_of(localEffects.begin(), localEffects.end(),
                               [](int localEffect) { return localEffect < 0; });
  fRuns.clear();
  fFormedColumns.clear();
  if (!fbFixedColumns) return;
  for (std::size_t column = 0; column < fParameters.size(); ++column) {
    if (!IsPlainCopy(column)) {
      fFormedColumns.push_back(column);
      continue;
    }
    const std::size_t position = static_cast<std::size_t>(fTerms[fTermBegin[column]].fPosition);
    if (!fRuns.empty() && fRuns.back().fColumn + fRuns.back().fCount == column &&
        fRuns.back().fPosition + fRuns.back().fCount == position) {
      ++fRuns.back().fCount;
    } else {
      fRuns.push_back({column, position, 1});
    }
  }
}

bool MCGLMModel::IsPlainCopy(std::size_t column) const {
  const std::size_t first = fTermBegin[column];
  return fTermBegin[column + 1] == first + 1 && fTerms[first].fPosition >= 0 &&
         fTerms[first].fPower == 1;
}

void MCGLMModel::SetDepMeanAndTotalW(double mean, double totalW) {
  TakeHeldRows();  // they came under the mean of before
  fDepMean = mean;
  fTotalWeight = totalW;
}

bool MCGLMModel::GetParamsForEffect(int effect, int& first, int& count) const {
  const bool intercept = fSettings->GetInterceptUse();
  if (intercept && effect == 0) {
    first = 0;
    count = 1;
    return true;
  }
  const std::int64_t index = std::int64_t{effect} - (intercept ? 1 : 0);
  if (index < 0 || index >= static_cast<std::int64_t>(fFirstParamIndices.size())) return false;
  first = fFirstParamIndices[static_cast<std::size_t>(index)];
  count = fNEffectParams[static_cast<std::size_t>(index)];
  return true;
}

const MCSymMatrix* MCGLMModel::GetZPrimeZ() const {
  if (fpPendingRows != nullptr) fpPendingRows->Flush();
  return fZPrimeZ.get();
}

void MCGLMModel::ClearZPrimeZMatrix() {
  fpPendingRows.reset();
  fZPrimeZ.reset();
}

void MCGLMModel::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCGLMModel display start");
  DisplayIV("Covariate offsets:", fCovariateOffsets);
  DisplayB("Factor Tables pointer is non-zero", fFactorTables != nullptr);
  DisplayIV("Vector of first parameter indices", fFirstParamIndices);
  DisplayIV("Vector of numbers of parameters for each effect", fNEffectParams);
  const MCSymMatrix* matrix = GetZPrimeZ();
  if (matrix != nullptr) {
    DisplayText(2, "ZPrimeZMatrix:");
    matrix->Display();
  } else {
    DisplayText(1, "ZPrimeZMatrix pointer is 0");
  }
  DisplayI("Records added to matrix", fRecordsAdded);
  DisplayText(1, "Redundancy indicators");
  fRedundancy.Display();
  DisplayDV("Parameter estimates", fParamEstimates, false);
  DisplayD("MultipleRSquare", fMultipleRSquare);
  DisplayD("RootMeanSquareError", fRootMeanSquareError);
  DisplayText(1, "MCGLMModel display end");
}
