// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmmodel.h"

#include "mcmath/detail/mccrossproduct.h"
#include "regression/design/detail/mcdesigncolumns.h"
#include "regression/design/detail/mcparameterlist.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

using MCCommon::MCStatus;
using MCCommon::detail::MCDesignColumns;
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

  fCovariateLookup =
      MCCommon::detail::MakeCovariateLookup(fSettings->GetCovariates(), covariates, 1);
  if (fParamsCreated) CompileColumns();
}

MCStatus MCGLMModel::CreateParameters(MCFactorTables* factorTables) {
  if (fStatus.IsError() || fParamsCreated) return fStatus;
  if (factorTables == nullptr) return Fail(MCCommon::MCS_NOT_PROCESSED);
  fFactorTables = factorTables;
  const bool isComplete = ListParameters();
  if (fParameters.size() > kMaxParameters) return FailForSize(kMaxParameters);
  if (!isComplete) {
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

// False if a cancel cut the list short.
bool MCGLMModel::ListParameters() {
  constexpr int kNoTarget = -1;
  MCCommon::detail::MCParameterList list;
  const bool isComplete = MCCommon::detail::ListParameters(
      fSettings->GetInterceptUse(), *fModelEffects, *fFactorTables, *fCancelInfo, kNoTarget, list);
  fParameters.swap(list.fParameters);
  fFirstParamIndices.swap(list.fFirstParamIndices);
  fNEffectParams.swap(list.fNEffectParams);
  return isComplete;
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
  fpColumns = std::make_unique<MCDesignColumns>(fParameters, fCovariateLookup);
  fbReadsRow = fFactorTables->GetNFactors() > 0 || fpColumns->HasTerms();
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
    if (!fpColumns->IsPlainCopy(column)) {
      fFormedColumns.push_back(column);
      continue;
    }
    const auto position = static_cast<std::size_t>(fpColumns->Begin(column)->fPosition);
    if (!fRuns.empty() && fRuns.back().fColumn + fRuns.back().fCount == column &&
        fRuns.back().fPosition + fRuns.back().fCount == position) {
      ++fRuns.back().fCount;
    } else {
      fRuns.push_back({column, position, 1});
    }
  }
}

void MCGLMModel::SetDepMeanAndTotalW(double mean, double totalW) {
  TakeHeldRows();  // they came under the mean of before
  const double factor = MatrixFactor();
  fDepMean = mean;
  fTotalWeight = totalW;
  fUnitWeight = 1.0 / totalW;
  if (std::isnormal(fUnitWeight)) {
    fUnitWeight = std::copysign(std::ldexp(1.0, std::ilogb(fUnitWeight)), fUnitWeight);
  }
  if (fpPendingRows == nullptr) return;
  fpPendingRows->Flush();
  fZPrimeZ->MultiplyByNumber(factor / MatrixFactor());  // rows so far keep their weights
}

// What the sums must be multiplied by to have the weights that are told.
double MCGLMModel::MatrixFactor() const {
  return std::isnormal(fUnitWeight) ? 1.0 / fTotalWeight / fUnitWeight : 1.0;
}

bool MCGLMModel::GetParamsForEffect(int effect, int& first, int& count) const {
  return MCCommon::detail::FindEffectParams(fSettings->GetInterceptUse(), fFirstParamIndices,
                                            fNEffectParams, effect, first, count);
}

const MCSymMatrix* MCGLMModel::GetZPrimeZ() const {
  if (fpPendingRows == nullptr) return fZPrimeZ.get();
  fpPendingRows->Flush();
  if (fpShownMatrix == nullptr) fpShownMatrix = std::make_unique<MCSymMatrix>();
  *fpShownMatrix = *fZPrimeZ;
  fpShownMatrix->MultiplyByNumber(MatrixFactor());
  return fpShownMatrix.get();
}

void MCGLMModel::ClearZPrimeZMatrix() {
  fpPendingRows.reset();
  fZPrimeZ.reset();
  fpShownMatrix.reset();
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
