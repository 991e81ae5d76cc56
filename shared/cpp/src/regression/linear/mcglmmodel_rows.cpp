// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"
#include "regression/design/detail/mcdesigncolumns.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/linear/mcglmmodel.h"

#include <algorithm>

double MCGLMModel::ComputeDesignRowValue2(const double* row,
                                          const MCRegrParameter& parameter) const {
  return MCCommon::detail::ParameterValue(row, parameter, fCovariateLookup);
}

double MCGLMModel::ComputeDesignRowValue(const double* row,
                                         const MCRegrParameter& parameter) const {
  return HasCategories(row, parameter) ? ComputeDesignRowValue2(row, parameter) : 0.0;
}

bool MCGLMModel::HasCategories(const double* row, const MCRegrParameter& parameter) const {
  const std::vector<int>& variables = fSettings->GetFactors();
  const std::vector<int>& categories = parameter.GetCategories();
  for (std::size_t i = 0; i < parameter.GetFactors().size(); ++i) {
    const auto found = std::find(variables.begin(), variables.end(), parameter.GetFactors()[i]);
    const auto factor = static_cast<std::size_t>(found - variables.begin());
    if (factor >= fFactorOffsets.size() || i >= categories.size()) return false;
    const int position = found == variables.end() ? -1 : fFactorOffsets[factor];
    if (position < 0) return false;
    const double code = row[position];
    if (MCCommon::detail::TruncateToInt(0.5 + code) != categories[i]) return false;
  }
  return true;
}

double MCGLMModel::Dependent(const double* row) const {
  return fDependentOffset < 0 ? MCMV::gMissingValue : row[fDependentOffset];
}

double MCGLMModel::RowWeight(const double* row, double weightOfOne) const {
  double weight = weightOfOne;
  if (fFreqWeightOffset >= 0) weight *= row[fFreqWeightOffset];
  if (fRegrWeightOffset >= 0) weight *= row[fRegrWeightOffset];
  return weight;
}

// Calls take(column, value) for the column of each model effect, in ascending order. Tables that
// were numbered after the list was made may answer columns that it doesn't have, or not ascending;
// those are passed over.
template <class Take>
bool MCGLMModel::SelectColumns(const double* row, Take take) const {
  bool found = false;
  int last = -1;
  for (const int column : fFactorTables->GetRowParameterIndices(row, found)) {
    if (column <= last || column >= GetNParameters()) continue;
    last = column;
    const auto position = static_cast<std::size_t>(column);
    take(position, fpColumns->Value(row, position));
  }
  return found;
}

void MCGLMModel::FillFixedRow(const double* row) const {
  for (const Run& run : fRuns) {
    std::copy_n(row + run.fPosition, run.fCount,
                fDesignRow.begin() + static_cast<std::ptrdiff_t>(run.fColumn));
  }
  for (const std::size_t column : fFormedColumns)
    fDesignRow[column] = fpColumns->Value(row, column);
}

// Leaves the row in fRowColumns and fRowValues if rows are sparse, otherwise in fDesignRow, whose
// last entry, of the dependent, is left alone.
bool MCGLMModel::ExpandScratch(const double* row) const {
  if (fbSparseRows) {
    fNRowColumns = 0;
    return SelectColumns(row, [this](std::size_t column, double value) {
      fRowColumns[fNRowColumns] = static_cast<int>(column);
      fRowValues[fNRowColumns] = value;
      ++fNRowColumns;
    });
  }
  if (fbFixedColumns) {
    FillFixedRow(row);
    return true;
  }
  std::fill(fDesignRow.begin(), fDesignRow.end() - 1, 0.0);
  return SelectColumns(row,
                       [this](std::size_t column, double value) { fDesignRow[column] = value; });
}

bool MCGLMModel::ExpandRow(std::vector<double>& designRow, const double* row) const {
  if (!fParamsCreated || !IsReadable(row)) return false;
  if (!designRow.empty()) std::fill(designRow.begin(), designRow.end() - 1, 0.0);
  const bool found = SelectColumns(row, [&designRow](std::size_t column, double value) {
    if (column < designRow.size()) designRow[column] = value;
  });
  if (designRow.size() > fParameters.size() && row != nullptr) {
    designRow[fParameters.size()] = Dependent(row);
  }
  return found;
}

bool MCGLMModel::UpdateZPrimeZ(const double* row) {
  if (fpPendingRows == nullptr || row == nullptr) return false;
  ExpandScratch(row);
  const double weight = RowWeight(row, fUnitWeight);
  if (fbSparseRows) {
    fRowColumns[fNRowColumns] = GetNParameters();
    fRowValues[fNRowColumns] = Dependent(row);
    fpPendingRows->AddSparseRow(static_cast<int>(fNRowColumns) + 1, fRowColumns.data(),
                                fRowValues.data(), weight);
  } else {
    fDesignRow.back() = Dependent(row);
    fpPendingRows->AddRow(fDesignRow.data(), weight);
  }
  MCCommon::detail::CountUp(fRecordsAdded);
  return true;
}

// The sum over all columns in order, of the row last expanded. A column of 0.0 adds nothing to it
// unless its estimate is infinite or NaN.
double MCGLMModel::PredictScratch() const {
  double sum = 0.0;
  if (!fbSparseRows) {
    for (std::size_t j = 0; j < fParamEstimates.size(); ++j)
      sum += fDesignRow[j] * fParamEstimates[j];
  } else if (fbFiniteEstimates) {
    for (std::size_t k = 0; k < fNRowColumns; ++k) {
      sum += fRowValues[k] * fParamEstimates[static_cast<std::size_t>(fRowColumns[k])];
    }
  } else {
    std::size_t k = 0;
    for (std::size_t j = 0; j < fParamEstimates.size(); ++j) {
      const bool isSelected = k < fNRowColumns && static_cast<std::size_t>(fRowColumns[k]) == j;
      sum += (isSelected ? fRowValues[k++] : 0.0) * fParamEstimates[j];
    }
  }
  return sum;
}

double MCGLMModel::TakeResidual(const double* row, double& weight) {
  TakeHeldRows();
  ExpandScratch(row);
  const double dependent = Dependent(row);
  const double prediction = PredictScratch();
  weight = RowWeight(row, 1.0 / fTotalWeight);
  TakePrediction(prediction, dependent, weight);
  return dependent - prediction;
}

void MCGLMModel::TakePrediction(double prediction, double dependent, double weight) {
  const double residual = dependent - prediction;
  fSumSquaredResiduals += weight * (residual * residual);
  const double deviation = fSettings->GetInterceptUse() ? dependent - fDepMean : dependent;
  fSumSquaredTotal += weight * (deviation * deviation);
  if (weight != 0.0) MCCommon::detail::CountUp(fNonZeroWeightRows);
}

void MCGLMModel::HoldRow(const double* row) {
  ExpandScratch(row);
  fDesignRow.back() = Dependent(row);
  std::copy(fDesignRow.begin(), fDesignRow.end(),
            fHeldRows.begin() + static_cast<std::ptrdiff_t>(fNHeld * fDesignRow.size()));
  fHeldWeights[fNHeld] = RowWeight(row, 1.0 / fTotalWeight);
  if (++fNHeld == kMostHeld) TakeHeldRows();
}

// Row by row in their order, as if none had waited.
void MCGLMModel::TakeHeldRows() {
  if (fNHeld == 0) return;
  double predictions[kMostHeld] = {};
  PredictHeldRows(predictions);
  for (std::size_t k = 0; k < fNHeld; ++k) {
    const double dependent = fHeldRows[(k + 1) * fDesignRow.size() - 1];
    TakePrediction(predictions[k], dependent, fHeldWeights[k]);
  }
  fNHeld = 0;
}

// Each sum has the order of PredictScratch(). All rows are summed, also those that aren't held now.
void MCGLMModel::PredictHeldRows(double* predictions) const {
  const std::size_t size = fDesignRow.size();
  const double* const rows = fHeldRows.data();
  double sums[kMostHeld] = {};
  for (std::size_t j = 0; j < fParamEstimates.size(); ++j) {
    const double estimate = fParamEstimates[j];
    for (std::size_t k = 0; k < kMostHeld; ++k) sums[k] += rows[k * size + j] * estimate;
  }
  std::copy(sums, sums + kMostHeld, predictions);
}

void MCGLMModel::AddResidual(const double* row) {
  if (fCancelInfo->WillCancel() || !fModelBuilt || row == nullptr) return;
  if (!fbSparseRows) {
    HoldRow(row);
    return;
  }
  double weight = 0.0;
  TakeResidual(row, weight);
}

void MCGLMModel::GetDResiduals(std::vector<double>& out, const double* row) {
  if (fCancelInfo->WillCancel() || !fModelBuilt || row == nullptr) return;
  double weight = 0.0;
  const double residual = TakeResidual(row, weight);
  const std::size_t n = std::min(out.size(), fParameters.size());
  if (!fbSparseRows) {
    for (std::size_t j = 0; j < n; ++j) out[j] = residual * fDesignRow[j] * weight;
    return;
  }
  std::fill_n(out.begin(), n, residual * 0.0 * weight);
  for (std::size_t k = 0; k < fNRowColumns; ++k) {
    const auto j = static_cast<std::size_t>(fRowColumns[k]);
    if (j < n) out[j] = residual * fRowValues[k] * weight;
  }
}

double MCGLMModel::Score(const double* row) const {
  if (!fModelBuilt || !IsReadable(row) || !ExpandScratch(row)) return MCMV::gMissingValue;
  return PredictScratch();
}
