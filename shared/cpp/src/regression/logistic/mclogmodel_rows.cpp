// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"
#include "regression/design/detail/mcdesigncolumns.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/logistic/detail/mcpatterncolumns.h"
#include "regression/logistic/mclogmodel.h"

#include <algorithm>

using MCCommon::detail::MCPatternColumns;

double MCLogModel::ComputeDesignRowValue2(const double* row, const MCRegrParameter& parameter,
                                          bool pattern) const {
  return MCCommon::detail::ParameterValue(row, parameter,
                                          pattern ? fPatternCovariateLookup : fCovariateLookup);
}

// The basic parameter of each model effect, borrowed from the tables; null unless all are found,
// and listed. Tables that were numbered after the list was made may answer others.
const std::vector<int>* MCLogModel::FindIndices(const double* row) const {
  if (!HasDesign() || row == nullptr) return nullptr;
  bool found = false;
  const std::vector<int>& indices = fFactorTables->GetRowParameterIndices(row, found);
  if (!found || static_cast<int>(indices.size()) != fNModelEffects) return nullptr;
  const bool isListed = std::all_of(indices.begin(), indices.end(),
                                    [this](int index) { return index >= 0 && index < fNBasic; });
  return isListed ? &indices : nullptr;
}

bool MCLogModel::ExpandRow(std::vector<double>& designRow, const double* row) const {
  if (static_cast<std::int64_t>(designRow.size()) < fNBasic || fCancelInfo->WillCancel()) {
    return false;
  }
  const std::vector<int>* indices = FindIndices(row);
  if (indices == nullptr) return false;
  std::fill(designRow.begin(), designRow.end(), 0.0);
  for (const int index : *indices) {
    const auto column = static_cast<std::size_t>(index);
    designRow[column] = fpRecordColumns->Value(row, column);
  }
  return true;
}

bool MCLogModel::ExpandRow(const double* row, std::vector<int>& indices,
                           std::vector<double>& values) const {
  if (fCancelInfo->WillCancel()) return false;
  const std::vector<int>* found = FindIndices(row);
  if (found == nullptr) return false;
  indices = *found;
  values.resize(indices.size());
  std::transform(indices.begin(), indices.end(), values.begin(), [this, row](int index) {
    return fpRecordColumns->Value(row, static_cast<std::size_t>(index));
  });
  return true;
}

// Index among the non-redundant basic parameters; negative for a redundant one, for one out of
// range, and as long as redundancy isn't known.
int MCLogModel::CompressedIndex(int basic) const {
  const auto i = static_cast<std::size_t>(basic);  // a negative one is beyond any size
  return i < fBasicNonRedIndices.size() ? fBasicNonRedIndices[i] : -1;
}

bool MCLogModel::ExpandAndCompressRow(const double* row, const std::vector<int>& indices, int& n,
                                      std::vector<int>& outIndices,
                                      std::vector<double>& outValues) const {
  outIndices.clear();
  outValues.clear();
  n = 0;
  if (row == nullptr) return true;
  const std::size_t nEffects = std::min(indices.size(), NModelEffects());
  for (std::size_t e = 0; e < nEffects; ++e) {
    const int compressed = CompressedIndex(indices[e]);
    if (compressed < 0) continue;
    const double value = fpPatternColumns->Value(row, static_cast<std::size_t>(indices[e]));
    if (value == 0.0) continue;
    outIndices.push_back(compressed);
    outValues.push_back(value);
    ++n;
  }
  return true;
}

bool MCLogModel::ExpandAndCompressRow(const double* row, int& n, std::vector<int>& outIndices,
                                      std::vector<double>& outValues) const {
  outIndices.clear();
  outValues.clear();
  n = 0;
  const std::vector<int>* indices = FindIndices(row);
  if (indices == nullptr) return false;
  outIndices.reserve(NModelEffects());
  outValues.reserve(NModelEffects());
  return ExpandAndCompressRow(row, *indices, n, outIndices, outValues);
}

void MCLogModel::DescribePattern(const std::vector<int>& indices, MCPatternColumns& columns) const {
  columns.fIndices.clear();
  columns.fTerms.clear();
  columns.fTermBegin.assign(1, 0);
  const std::size_t nEffects = std::min(indices.size(), NModelEffects());
  for (std::size_t e = 0; e < nEffects; ++e) {
    const int compressed = CompressedIndex(indices[e]);
    if (compressed < 0) continue;
    const auto column = static_cast<std::size_t>(indices[e]);
    columns.fIndices.push_back(compressed);
    columns.fTerms.insert(columns.fTerms.end(), fpPatternColumns->Begin(column),
                          fpPatternColumns->End(column));
    columns.fTermBegin.push_back(columns.fTerms.size());
  }
}

bool MCLogModel::IsTakingRows(const double* row) const {
  return fParamsCreated && fXPrimeX != nullptr && !fModelBuilt && row != nullptr &&
         !fCancelInfo->WillCancel();
}

double MCLogModel::PatternWeight(const double* row) const {
  double weight = fPatternFreqOffset >= 0 ? row[fPatternFreqOffset] : 1.0;
  if (fPatternRegrOffset >= 0) weight *= row[fPatternRegrOffset];
  return weight;
}

// False if the row can't be gathered with others: a column that isn't there or out of order, or a
// value that makes a product infinite or NaN.
bool MCLogModel::FillEffectValues(const double* row, const std::vector<int>& indices,
                                  double weight) {
  bool isAscending = true;
  double notFinite = 0.0;
  int last = -1;
  for (std::size_t e = 0; e < fEffectValues.size(); ++e) {
    const int index = indices[e];
    const bool isListed = index >= 0 && index < fNBasic;
    const double value =
        isListed ? fpPatternColumns->Value(row, static_cast<std::size_t>(index)) : 0.0;
    fEffectValues[e] = value;
    notFinite += weight * value * 0.0;
    isAscending = isAscending && isListed && index > last;
    last = index;
  }
  return isAscending && notFinite == 0.0;
}

// To a row without its zeros, a zero that meets an infinity counts; to a gathered one it doesn't.
// Hence the plain update for what can't be gathered. All else has the same bits on either way.
void MCLogModel::AddEffectValues(const std::vector<int>& indices, double weight) {
  if (fbSparseRows) {
    fpPendingRows->AddSparseRow(fNModelEffects, indices.data(), fEffectValues.data(), weight);
    return;
  }
  std::fill(fFullRow.begin(), fFullRow.end(), 0.0);
  for (std::size_t e = 0; e < fEffectValues.size(); ++e) {
    fFullRow[static_cast<std::size_t>(indices[e])] = fEffectValues[e];
  }
  fpPendingRows->AddRow(fFullRow.data(), weight);
}

bool MCLogModel::UpdateXPrimeX(const double* row, const std::vector<int>& indices) {
  if (!IsTakingRows(row) || indices.size() < fEffectValues.size()) return false;
  const double weight = PatternWeight(row);
  if (FillEffectValues(row, indices, weight)) {
    AddEffectValues(indices, weight);
  } else {
    fpPendingRows->Flush();
    fXPrimeX->UpdateXXSparse(fNModelEffects, indices, fEffectValues, weight);
  }
  MCCommon::detail::CountUp(fRecordsAdded);
  return true;
}

bool MCLogModel::UpdateXPrimeX(const double* row) {
  if (!IsTakingRows(row)) return false;
  const std::vector<int>* indices = FindIndices(row);
  return indices != nullptr && UpdateXPrimeX(row, *indices);
}
