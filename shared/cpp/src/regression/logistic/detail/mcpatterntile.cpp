// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/detail/mcpatterntile.h"

#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcsymblockmatrix.h"
#include "regression/frame/detail/mcnumericcast.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace MCCommon {
namespace detail {

using MCCommonMath::detail::kBandRows;
using MCCommonMath::detail::RowBlock;
using MCCommonMath::detail::RowStart;
using MCCommonMath::detail::SumInLanes;

namespace {

/// Rows of a tile: few keep it in the nearest cache, many amortise the reading and writing of the
/// sums. Multiples of a group.
std::size_t TileRows(std::size_t nColumns) {
  if (nColumns <= 24) return 64;
  return nColumns <= 48 ? 128 : 256;
}

/// Instead of a position: the value is made of several.
constexpr int kProduct = -1;

bool IsConstant(const MCPatternColumns& columns, std::size_t column) {
  return columns.fTermBegin[column] == columns.fTermBegin[column + 1];
}

/// Place of the value in a stored row if the column is just that.
int PositionOf(const MCPatternColumns& columns, std::size_t column) {
  const std::size_t begin = columns.fTermBegin[column];
  if (columns.fTermBegin[column + 1] - begin != 1) return kProduct;
  return columns.fTerms[begin].fPower == 1 ? columns.fTerms[begin].fPosition : kProduct;
}

/// Sum of magnitudes: none of them is larger, and it is NaN if one of them is.
double Magnitudes(const double* x, std::size_t n) {
  return SumInLanes(n, [x](std::size_t i) { return std::abs(x[i]); });
}

}  // namespace

double StoredValue(const MCPatternColumns& columns, std::size_t column, const double* row) {
  const MCColumnTerm* terms = columns.fTerms.data();
  return ColumnValue(row, terms + columns.fTermBegin[column],
                     terms + columns.fTermBegin[column + 1]);
}

double StoredWeight(const MCPatternLayout& layout, const double* row) {
  double weight = 1.0;
  if (layout.fFreqWeightOffset >= 0) weight = row[layout.fFreqWeightOffset];
  if (layout.fRegrWeightOffset >= 0) weight *= row[layout.fRegrWeightOffset];
  return weight;
}

int StoredCategory(const MCPatternLayout& layout, const double* row) {
  return TruncateToInt(row[layout.fDependentOffset] + 0.5);
}

MCPatternTile::MCPatternTile()
    : fKernels(MCCommonMath::detail::KernelsOf(MCCommonMath::detail::WidestVectorPath())) {}

bool MCPatternTile::Begin(const MCPatternColumns& columns, const MCPatternLayout& layout,
                          const Shape& shape, const std::vector<double>& estimates,
                          std::size_t nRows) {
  fpColumns = &columns;
  fpLayout = &layout;
  fShape = shape;
  fNColumns = columns.NColumns();
  if (nRows < kFewRows || !HasGoodIndices()) return false;
  if (estimates.size() < NEquations() * shape.nParams) return false;
  if (!AreEstimatesOrdinary(estimates)) return false;
  SortColumns();
  Reserve();
  GatherEstimates(estimates);
  return true;
}

bool MCPatternTile::HasGoodIndices() const {
  const std::vector<int>& indices = fpColumns->fIndices;
  if (indices.empty() || indices.front() < 0 || Index(fNColumns - 1) >= fShape.nParams)
    return false;
  return std::adjacent_find(indices.begin(), indices.end(), std::greater_equal<>()) ==
         indices.end();
}

bool MCPatternTile::AreEstimatesOrdinary(const std::vector<double>& estimates) const {
  for (std::size_t j = 0; j < NEquations(); ++j) {
    const double* block = estimates.data() + j * fShape.nParams;
    for (std::size_t c = 0; c < fNColumns; ++c) {
      if (!(std::abs(block[Index(c)]) <= kLargest)) return false;
    }
  }
  return true;
}

void MCPatternTile::SortColumns() {
  fVarying.clear();
  for (std::size_t c = 0; c < fNColumns; ++c) {
    if (!IsConstant(*fpColumns, c)) fVarying.push_back({c, PositionOf(*fpColumns, c)});
  }
}

void MCPatternTile::Reserve() {
  fCapacity = TileRows(fNColumns);
  fStarts.resize(NEquations());
  fCoefficients.resize(fNColumns * NEquations());
  fTermColumns.resize(fNColumns);
  fCategories.resize(std::max(fCategories.size(), fCapacity));
  fValues.Grow((fVarying.size() + 1) * fCapacity);
  fWeights.Grow(fCapacity);
  fPredictors.Grow(fShape.nCategs * fCapacity);
  fProbabilities.Grow(fShape.nCategs * fCapacity);
  fLogLikelihoods.Grow(fCapacity);
  fScales.Grow(fCapacity);
  fPanels.Grow(RowBlock::PanelsSize(fKernels.panelColumns, fNColumns, fCapacity));
  fFoldScratch.Grow(kBandRows * fCapacity);
  const std::size_t widest = std::max(RowStart(fNColumns), fNColumns + fKernels.panelColumns);
  fSums.Grow(widest);
  fBlock = {fNColumns,      fCapacity,      fPanels.Data(),
            fPanels.Data(), fScales.Data(), fFoldScratch.Data()};
  fSlotsBegun = 0;
}

// A sum starts from 0.0, and the leading constant columns come first in it.
void MCPatternTile::GatherEstimates(const std::vector<double>& estimates) {
  const std::size_t leading = fVarying.empty() ? fNColumns : fVarying.front().fColumn;
  double* ones = ValuesOf(fVarying.size());
  std::fill(ones, ones + fCapacity, 1.0);
  std::fill(fTermColumns.begin(), fTermColumns.end(), ones);
  for (std::size_t v = 0; v < fVarying.size(); ++v) {
    fTermColumns[fVarying[v].fColumn - leading] = ValuesOf(v);
  }
  fTermColumns.resize(fNColumns - leading);
  for (std::size_t j = 0; j < NEquations(); ++j) {
    const double* block = estimates.data() + j * fShape.nParams;
    fStarts[j] = 0.0;
    for (std::size_t c = 0; c < leading; ++c) fStarts[j] += block[Index(c)];
    for (std::size_t c = leading; c < fNColumns; ++c) {
      fCoefficients[(c - leading) * NEquations() + j] = block[Index(c)];
    }
  }
}

std::size_t MCPatternTile::Load(const double* rows, std::size_t count) {
  for (std::size_t v = 0; v < fVarying.size(); ++v) {
    LoadColumn(fVarying[v], ValuesOf(v), rows, count);
  }
  LoadWeights(rows, count);
  if (LoadCategories(rows, count) && AreOrdinary(count)) return count;
  std::size_t row = 0;
  while (row < count && IsOrdinary(row)) ++row;
  return row;
}

void MCPatternTile::LoadColumn(const Varying& column, double* values, const double* rows,
                               std::size_t count) {
  const std::size_t stride = fpLayout->fStride;
  if (column.fPosition >= 0) {
    const double* from = rows + column.fPosition;
    for (std::size_t r = 0; r < count; ++r) values[r] = from[r * stride];
  } else {
    for (std::size_t r = 0; r < count; ++r) {
      values[r] = StoredValue(*fpColumns, column.fColumn, rows + r * stride);
    }
  }
}

void MCPatternTile::LoadWeights(const double* rows, std::size_t count) {
  double* weights = fWeights.Data();
  for (std::size_t r = 0; r < count; ++r) {
    weights[r] = StoredWeight(*fpLayout, rows + r * fpLayout->fStride);
  }
}

bool MCPatternTile::LoadCategories(const double* rows, std::size_t count) {
  const int nCategs = static_cast<int>(fShape.nCategs);
  bool areInRange = true;
  for (std::size_t r = 0; r < count; ++r) {
    const int category = StoredCategory(*fpLayout, rows + r * fpLayout->fStride);
    fCategories[r] = category;
    areInRange &= category >= 0 && category < nCategs;
  }
  return areInRange;
}

/// The test of all rows together may fail where each passes.
bool MCPatternTile::AreOrdinary(std::size_t count) const {
  for (std::size_t v = 0; v < fVarying.size(); ++v) {
    if (!(Magnitudes(ValuesOf(v), count) <= kLargest)) return false;
  }
  const double* weights = fWeights.Data();
  if (!(Magnitudes(weights, count) <= kLargest)) return false;
  if (std::any_of(weights, weights + count, [](double w) { return w <= 0.0; })) return false;
  if (fVarying.size() < fNColumns) return true;
  for (std::size_t r = 0; r < count; ++r) {
    if (IsEmpty(r)) return false;
  }
  return true;
}

bool MCPatternTile::IsOrdinary(std::size_t row) const {
  const int category = fCategories[row];
  if (category < 0 || category >= static_cast<int>(fShape.nCategs)) return false;
  if (!(Weight(row) > 0.0 && Weight(row) <= kLargest)) return false;
  for (std::size_t v = 0; v < fVarying.size(); ++v) {
    if (!(std::abs(ValuesOf(v)[row]) <= kLargest)) return false;
  }
  return !IsEmpty(row);
}

bool MCPatternTile::IsEmpty(std::size_t row) const {
  if (fVarying.size() < fNColumns) return false;
  std::size_t v = 0;
  while (v < fNColumns && ValuesOf(v)[row] == 0.0) ++v;
  return v == fNColumns;
}

void MCPatternTile::ComputeProbabilities(std::size_t count) {
  fCount = count;
  const MCCommonMath::detail::PredictorTerms terms{
      NEquations(), fStarts.data(), fTermColumns.size(), fCoefficients.data(), fTermColumns.data()};
  for (std::size_t row = 0; row < count; row += kStride) {
    double* predictors = fPredictors.Data() + row * fShape.nCategs;
    fKernels.predictors(terms, row, predictors);
    fKernels.multinomial(predictors, NEquations(), fProbabilities.Data() + row * fShape.nCategs,
                         fLogLikelihoods.Data() + row);
  }
  for (std::size_t r = 0; r < count; ++r) {
    const std::size_t category = static_cast<std::size_t>(fCategories[r]);
    const double predictor =
        category < NEquations() ? fPredictors.Data()[Place(r) + category * kStride] : 0.0;
    double& logLikelihood = fLogLikelihoods.Data()[r];
    logLikelihood = Weight(r) * predictor + Weight(r) * logLikelihood;
  }
}

void MCPatternTile::AddScores(std::vector<double>& scores) {
  FillPanels();
  double* sums = fSums.Data();
  for (std::size_t c = 0; c < NEquations(); ++c) {
    double* part = scores.data() + c * fShape.nParams;
    ScaleForScores(c);
    for (std::size_t i = 0; i < fNColumns; ++i) sums[i] = part[Index(i)];
    fKernels.addScaledRows(fBlock, fCount, fScales.Data(), sums);
    for (std::size_t i = 0; i < fNColumns; ++i) part[Index(i)] = sums[i];
  }
}

void MCPatternTile::FillPanels() {
  for (; fSlotsBegun < fCount; ++fSlotsBegun) BeginSlot(fSlotsBegun);
  const std::size_t width = fKernels.panelColumns;
  for (std::size_t v = 0; v < fVarying.size(); ++v) {
    const double* values = ValuesOf(v);
    double* entries = PanelColumn(fVarying[v].fColumn);
    for (std::size_t r = 0; r < fCount; ++r) entries[r * width] = values[r];
  }
}

void MCPatternTile::BeginSlot(std::size_t slot) {
  const std::size_t width = fKernels.panelColumns;
  for (std::size_t c = 0; c < (fNColumns + width - 1) / width * width; ++c) {
    PanelColumn(c)[slot * width] = c < fNColumns ? 1.0 : 0.0;
  }
}

double* MCPatternTile::PanelColumn(std::size_t column) {
  const std::size_t width = fKernels.panelColumns;
  return fPanels.Data() + column / width * RowBlock::PanelStride(width, fCapacity) + column % width;
}

void MCPatternTile::ScaleForScores(std::size_t category) {
  for (std::size_t r = 0; r < fCount; ++r) {
    const double p = Probabilities(r)[category * kStride];
    const bool isObserved = fCategories[r] == static_cast<int>(category);
    fScales.Data()[r] = Weight(r) * (isObserved ? 1.0 - p : -p);
  }
}

void MCPatternTile::ScaleForBlock(std::size_t i, std::size_t j) {
  for (std::size_t r = 0; r < fCount; ++r) {
    const double p = Probabilities(r)[i * kStride];
    const double q = i == j ? p - 1.0 : Probabilities(r)[j * kStride];
    fScales.Data()[r] = -Weight(r) * (q * p);
  }
}

void MCPatternTile::AddOuterProducts(MCCommonMath::MCSymBlockMatrix& hessian) {
  for (std::size_t i = 0; i < NEquations(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      ScaleForBlock(i, j);
      AddToBlock(hessian.GetElemSSRef(static_cast<int>(i), static_cast<int>(j)).AsVector());
    }
  }
}

/// The pattern's own rows and columns of the triangle, or all of it where they are all.
void MCPatternTile::AddToBlock(std::vector<double>& triangle) {
  if (fNColumns == fShape.nParams) {
    fKernels.foldBlock(fBlock, fCount, triangle.data());
    return;
  }
  double* tile = fSums.Data();
  for (std::size_t i = 0; i < fNColumns; ++i) {
    const double* row = triangle.data() + RowStart(Index(i));
    for (std::size_t j = 0; j <= i; ++j) *tile++ = row[Index(j)];
  }
  fKernels.foldBlock(fBlock, fCount, fSums.Data());
  tile = fSums.Data();
  for (std::size_t i = 0; i < fNColumns; ++i) {
    double* row = triangle.data() + RowStart(Index(i));
    for (std::size_t j = 0; j <= i; ++j) row[Index(j)] = *tile++;
  }
}

}  // namespace detail
}  // namespace MCCommon
