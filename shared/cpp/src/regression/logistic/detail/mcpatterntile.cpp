// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/detail/mcpatterntile.h"

#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcsymblockmatrix.h"
#include "regression/frame/detail/mcnumericcast.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace MCCommon {
namespace detail {

using MCCommonMath::detail::kBandRows;
using MCCommonMath::detail::kLineDoubles;
using MCCommonMath::detail::RowBlock;
using MCCommonMath::detail::RowStart;

namespace {

/// Patterns of more columns are added to the Hessian's own triangles, or to a packed copy of the
/// pattern's part of them.
constexpr std::size_t kMostInBands = 64;

/// Nor are bands kept that no cache would hold. Those of few columns take up to 64 times what their
/// triangles do, which many categories make many gigabytes.
constexpr std::size_t kMostBandDoubles = std::size_t{1} << 20U;

/// Rows of a tile: few keep it in the nearest cache, many amortise the reading and writing of the
/// sums. Multiples of kStride.
std::size_t TileRows(std::size_t nColumns) {
  return nColumns <= kMostInBands ? 64 : 256;
}

/// Instead of a position: the value is made of several.
constexpr int kComputed = -1;

bool IsConstant(const MCPatternColumns& columns, std::size_t column) {
  return columns.fTermBegin[column] == columns.fTermBegin[column + 1];
}

/// Place of the value in a stored row if the column is just that.
int PositionOf(const MCPatternColumns& columns, std::size_t column) {
  const std::size_t begin = columns.fTermBegin[column];
  if (columns.fTermBegin[column + 1] - begin != 1) return kComputed;
  const MCColumnTerm& term = columns.fTerms[begin];
  return term.fPower == 1 && term.fPosition >= 0 ? term.fPosition : kComputed;
}

std::size_t RoundUp(std::size_t n, std::size_t multiple) {
  return (n + multiple - 1) / multiple * multiple;
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
  if (nRows < kFewRows || !HasGoodIndices() || !AreEstimatesOrdinary(estimates)) return false;
  SortColumns();
  Reserve();
  PointToColumns();
  GatherEstimates(estimates);
  return true;
}

bool MCPatternTile::HasGoodIndices() const {
  const std::vector<int>& indices = fpColumns->fIndices;
  if (indices.empty() || indices.front() < 0 || Index(fNColumns - 1) >= fShape.nParams) {
    return false;
  }
  return std::adjacent_find(indices.begin(), indices.end(), std::greater_equal<>()) ==
         indices.end();
}

bool MCPatternTile::AreEstimatesOrdinary(const std::vector<double>& estimates) const {
  if (estimates.size() < NEquations() * fShape.nParams) return false;
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
  fNVarying = 0;
  for (std::size_t c = 0; c < fNColumns; ++c) {
    if (IsConstant(*fpColumns, c)) continue;
    const int position = PositionOf(*fpColumns, c);
    const bool isNext =
        position != kComputed && !fVarying.empty() && fVarying.back().fPosition != kComputed &&
        fVarying.back().fColumn + fVarying.back().fCount == c &&
        position - fVarying.back().fPosition == static_cast<int>(fVarying.back().fCount);
    if (isNext) {
      ++fVarying.back().fCount;
    } else {
      fVarying.push_back({c, fNVarying, 1, position});
    }
    ++fNVarying;
  }
  fNLeading = fVarying.empty() ? fNColumns : fVarying.front().fColumn;
}

void MCPatternTile::Reserve() {
  const std::size_t bandRows = fKernels.bandRows;
  fCapacity = TileRows(fNColumns);
  fStarts.resize(NEquations());
  fCoefficients.resize(fNColumns * NEquations());
  fColumnValues.resize(RoundUp(fNColumns, kLineDoubles));
  fCategories.resize(fCapacity);
  fValues.Grow((fNVarying + 2) * fCapacity);
  fWeights.Grow(fCapacity);
  fPredictors.Grow(fShape.nCategs * fCapacity);
  fProbabilities.Grow(fShape.nCategs * fCapacity);
  fLogLikelihoods.Grow(fCapacity);
  fPanels.Grow(RowBlock::PanelsSize(fKernels.panelColumns, fNColumns, fCapacity));
  fScales.Grow(bandRows * fCapacity);
  fFoldScratch.Grow(kBandRows * fCapacity);
  fScores.Grow(RoundUp(NEquations(), bandRows) * ScoresPitch());
  fHessian.Grow(IsInBands() ? RowStart(NEquations()) * BandsSize() : RowStart(fNColumns));
  fBlock = {fNColumns,      fCapacity,      fPanels.Data(),
            fPanels.Data(), fScales.Data(), fFoldScratch.Data()};
}

bool MCPatternTile::IsInBands() const {
  return fNColumns <= kMostInBands && RowStart(NEquations()) * BandsSize() <= kMostBandDoubles;
}

std::size_t MCPatternTile::ScoresPitch() const {
  return RoundUp(fNColumns, kLineDoubles);
}

std::size_t MCPatternTile::BandStart(std::size_t band) const {
  return fKernels.bandRows * fKernels.bandRows * RowStart(band);
}

std::size_t MCPatternTile::BandsSize() const {
  return BandStart(RoundUp(fNColumns, fKernels.bandRows) / fKernels.bandRows);
}

void MCPatternTile::PointToColumns() {
  double* const ones = ValuesOf(fNVarying);
  double* const zeros = ones + fCapacity;
  std::fill(ones, zeros, 1.0);
  std::fill(zeros, zeros + fCapacity, 0.0);
  if (!HasWeights()) std::fill(fWeights.Data(), fWeights.Data() + fCapacity, 1.0);
  const auto end = fColumnValues.begin() + static_cast<std::ptrdiff_t>(fNColumns);
  std::fill(fColumnValues.begin(), end, ones);
  std::fill(end, fColumnValues.end(), zeros);
  for (const Varying& run : fVarying) {
    for (std::size_t i = 0; i < run.fCount; ++i) {
      fColumnValues[run.fColumn + i] = ValuesOf(run.fPlace + i);
    }
  }
}

// A sum starts from 0.0, and the leading constant columns come first in it.
void MCPatternTile::GatherEstimates(const std::vector<double>& estimates) {
  for (std::size_t j = 0; j < NEquations(); ++j) {
    const double* block = estimates.data() + j * fShape.nParams;
    fStarts[j] = 0.0;
    for (std::size_t c = 0; c < fNLeading; ++c) fStarts[j] += block[Index(c)];
    for (std::size_t c = fNLeading; c < fNColumns; ++c) {
      fCoefficients[(c - fNLeading) * NEquations() + j] = block[Index(c)];
    }
  }
}

std::size_t MCPatternTile::Load(const double* rows, std::size_t count) {
  bool areOrdinary = LoadCategories(rows, count);
  if (HasWeights()) areOrdinary &= LoadWeights(rows, count);
  for (const Varying& run : fVarying) areOrdinary &= LoadColumns(run, rows, count);
  if (areOrdinary && !HasEmptyRow(count)) return count;
  std::size_t row = 0;
  while (row < count && IsOrdinary(row)) ++row;
  return row;
}

// A sum of squares within the limit's square is enough for each value to be within the limit.
bool MCPatternTile::LoadColumns(const Varying& run, const double* rows, std::size_t count) {
  double* values = ValuesOf(run.fPlace);
  const std::size_t stride = fpLayout->fStride;
  if (run.fPosition != kComputed) {
    return fKernels.loadColumns(rows + run.fPosition, stride, count, run.fCount, values,
                                fCapacity) <= kLargest * kLargest;
  }
  double squares = 0.0;
  for (std::size_t r = 0; r < count; ++r) {
    values[r] = StoredValue(*fpColumns, run.fColumn, rows + r * stride);
    squares += values[r] * values[r];
  }
  return squares <= kLargest * kLargest;
}

bool MCPatternTile::LoadWeights(const double* rows, std::size_t count) {
  double* weights = fWeights.Data();
  bool areOrdinary = true;
  for (std::size_t r = 0; r < count; ++r) {
    weights[r] = StoredWeight(*fpLayout, rows + r * fpLayout->fStride);
    areOrdinary &= weights[r] > 0.0 && weights[r] <= kLargest;
  }
  return areOrdinary;
}

bool MCPatternTile::LoadCategories(const double* rows, std::size_t count) {
  const int nCategs = static_cast<int>(fShape.nCategs);
  bool areInRange = true;
  for (std::size_t r = 0; r < count; ++r) {
    fCategories[r] = StoredCategory(*fpLayout, rows + r * fpLayout->fStride);
    areInRange &= fCategories[r] >= 0 && fCategories[r] < nCategs;
  }
  return areInRange;
}

bool MCPatternTile::HasEmptyRow(std::size_t count) const {
  if (HasConstantColumn()) return false;
  std::size_t row = 0;
  while (row < count && !IsEmpty(row)) ++row;
  return row < count;
}

bool MCPatternTile::IsOrdinary(std::size_t row) const {
  if (fCategories[row] < 0 || fCategories[row] >= static_cast<int>(fShape.nCategs)) return false;
  if (!(Weight(row) > 0.0 && Weight(row) <= kLargest)) return false;
  for (std::size_t v = 0; v < fNVarying; ++v) {
    if (!(std::abs(ValuesOf(v)[row]) <= kLargest)) return false;
  }
  return !IsEmpty(row);
}

bool MCPatternTile::IsEmpty(std::size_t row) const {
  if (HasConstantColumn()) return false;
  std::size_t v = 0;
  while (v < fNVarying && ValuesOf(v)[row] == 0.0) ++v;
  return v == fNVarying;
}

void MCPatternTile::ComputeProbabilities(std::size_t count) {
  fCount = count;
  const MCCommonMath::detail::PredictorTerms terms{NEquations(), fStarts.data(),
                                                   fNColumns - fNLeading, fCoefficients.data(),
                                                   fColumnValues.data() + fNLeading};
  for (std::size_t row = 0; row < count; row += kStride) {
    const std::size_t place = row * fShape.nCategs;
    fKernels.predictors(terms, row, fPredictors.Data() + place);
    fKernels.multinomial(fPredictors.Data() + place, NEquations(), fProbabilities.Data() + place,
                         fLogLikelihoods.Data() + row);
    WeightLogLikelihoods(row);
  }
}

/// The logarithms of the reference's probability become log-likelihoods, for one group of rows. The
/// reference has a predictor of 0.0.
void MCPatternTile::WeightLogLikelihoods(std::size_t row) {
  double* predictors = fPredictors.Data() + row * fShape.nCategs;
  std::fill_n(predictors + NEquations() * kStride, kStride, 0.0);
  const int* categories = fCategories.data() + row;
  const double* weights = fWeights.Data() + row;
  double* logLikelihoods = fLogLikelihoods.Data() + row;
  const std::size_t end = std::min(fCount - row, kStride);
  for (std::size_t r = 0; r < end; ++r) {
    const double predictor = predictors[static_cast<std::size_t>(categories[r]) * kStride + r];
    logLikelihoods[r] = weights[r] * predictor + weights[r] * logLikelihoods[r];
  }
}

/// Calls move(element, copy) for the pattern's elements of a triangle and their copies in bands, or
/// in a packed triangle of their own.
template <class Move>
void MCPatternTile::MoveTriangle(std::vector<double>& triangle, double* copy, Move move) const {
  const std::size_t bandRows = fKernels.bandRows;
  for (std::size_t i = 0; i < fNColumns; ++i) {
    const std::size_t band = i / bandRows;
    double* elements = triangle.data() + RowStart(Index(i));
    double* copies =
        copy + (IsInBands() ? BandStart(band) + i % bandRows * (band + 1) * bandRows : RowStart(i));
    for (std::size_t j = 0; j <= i; ++j) move(elements[Index(j)], copies[j]);
  }
}

template <class Move>
void MCPatternTile::MoveSums(const Sums& sums, Move move) {
  for (std::size_t c = 0; c < NEquations(); ++c) {
    double* scores = sums.scores.data() + c * fShape.nParams;
    double* copies = fScores.Data() + c * ScoresPitch();
    for (std::size_t i = 0; i < fNColumns; ++i) move(scores[Index(i)], copies[i]);
  }
  if (!IsInBands()) return;
  double* copy = fHessian.Data();
  for (std::size_t i = 0; i < NEquations(); ++i) {
    for (std::size_t j = 0; j <= i; ++j, copy += BandsSize()) {
      MoveTriangle(BlockOf(sums, i, j), copy, move);
    }
  }
}

void MCPatternTile::Gather(const Sums& sums) {
  MoveSums(sums, [](double& element, double& copy) { copy = element; });
}

void MCPatternTile::Scatter(const Sums& sums) {
  MoveSums(sums, [](double& element, double& copy) { element = copy; });
}

std::vector<double>& MCPatternTile::BlockOf(const Sums& sums, std::size_t i, std::size_t j) {
  return sums.hessian.GetElemSSRef(static_cast<int>(i), static_cast<int>(j)).AsVector();
}

void MCPatternTile::Add(const Sums& sums) {
  fKernels.fillPanels(fBlock, fColumnValues.data(), fCount);
  for (std::size_t c = 0; c < NEquations(); c += fKernels.bandRows) {
    ScaleForScores(c);
    fKernels.addScaledRows(fBlock, fCount, fScales.Data(), fScores.Data() + c * ScoresPitch(),
                           ScoresPitch());
  }
  double* bands = fHessian.Data();
  for (std::size_t i = 0; i < NEquations(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      ScaleForBlock(i, j);
      if (IsInBands()) {
        fKernels.foldBands(fBlock, fCount, bands);
        bands += BandsSize();
      } else {
        AddToTriangle(BlockOf(sums, i, j));
      }
    }
  }
}

/// For the band of categories from `first` on; what lies beyond them gets 0.0. 0.0 - p is -p but
/// for the sign of a zero, which no sum takes up.
void MCPatternTile::ScaleForScores(std::size_t first) {
  const std::size_t bandRows = fKernels.bandRows;
  for (std::size_t c = first; c < first + bandRows; ++c) {
    double* scales = fScales.Data() + (c - first);
    if (c >= NEquations()) {
      for (std::size_t r = 0; r < fCount; ++r) scales[r * bandRows] = 0.0;
      continue;
    }
    for (std::size_t r = 0; r < fCount; ++r) {
      const double observed = fCategories[r] == static_cast<int>(c) ? 1.0 : 0.0;
      scales[r * bandRows] = Weight(r) * (observed - Probabilities(r)[c * kStride]);
    }
  }
}

void MCPatternTile::ScaleForBlock(std::size_t i, std::size_t j) {
  const double shift = i == j ? 1.0 : 0.0;
  for (std::size_t row = 0; row < fCount; row += kStride) {
    const double* p = fProbabilities.Data() + Place(row) + i * kStride;
    const double* q = fProbabilities.Data() + Place(row) + j * kStride;
    const double* weights = fWeights.Data() + row;
    double* scales = fScales.Data() + row;
    for (std::size_t r = 0; r < kStride; ++r) scales[r] = -weights[r] * ((q[r] - shift) * p[r]);
  }
}

void MCPatternTile::AddToTriangle(std::vector<double>& triangle) {
  if (fNColumns == fShape.nParams) {
    fKernels.foldBlock(fBlock, fCount, triangle.data());
    return;
  }
  double* copy = fHessian.Data();
  MoveTriangle(triangle, copy, [](double& element, double& own) { own = element; });
  fKernels.foldBlock(fBlock, fCount, copy);
  MoveTriangle(triangle, copy, [](double& element, double& own) { element = own; });
}

}  // namespace detail
}  // namespace MCCommon
