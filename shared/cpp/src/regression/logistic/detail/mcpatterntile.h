// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/aligned.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpath.h"
#include "regression/logistic/detail/mcpatterncolumns.h"

#include <cstddef>
#include <vector>

namespace MCCommonMath {
class MCSymBlockMatrix;
}

namespace MCCommon {
namespace detail {

/// Value of a column for a stored row.
double StoredValue(const MCPatternColumns& columns, std::size_t column, const double* row);

/// Weight and category of a stored row.
double StoredWeight(const MCPatternLayout& layout, const double* row);
int StoredCategory(const MCPatternLayout& layout, const double* row);

/// Some tens of stored rows of one pattern, taken through a multinomial logit together: a row to
/// each lane of a vector up to the probabilities, then tiles of the sums in registers while the
/// rows run through them in order. Every number has the bits that it gets where the rows come one
/// by one, each as its entries that aren't 0.0.
///
/// Here zeros aren't left out, which does no harm, as no sum is ever -0.0: each starts from 0.0,
/// and a sum of two numbers is -0.0 only if both are. So a product with a zero changes nothing
/// when it is added, unless it is NaN, and it isn't as long as all factors are finite. Rows that
/// don't promise that are left to the caller: values, weights and estimates must not exceed
/// kLargest in magnitude, and then no product of estimate and value, or of weight, two values and
/// probabilities, overflows. Nor are rows taken that the definition refuses.
///
///     if (tile.Begin(columns, layout, shape, estimates, nRows)) {
///       tile.Gather(sums);  // not for the likelihood alone
///       ... count = tile.Load(rows, n); tile.ComputeProbabilities(count); tile.Add(sums); ...
///       tile.Scatter(sums);
///     }
class MCPatternTile {
public:
  /// Largest magnitude of an ordinary value, weight or estimate.
  static constexpr double kLargest = 1e75;

  /// Patterns of fewer rows aren't worth the gathering.
  static constexpr std::size_t kFewRows = 4;

  struct Shape {
    std::size_t nParams;
    std::size_t nCategs;
  };

  MCPatternTile();

  /// Prepares for nRows rows of a pattern, with shape.nParams estimates of each category but the
  /// last. False if they can't be taken together, or aren't worth it. Both structures are borrowed
  /// until the next call. Allocates only for a pattern that is wider than all before.
  bool Begin(const MCPatternColumns& columns, const MCPatternLayout& layout, const Shape& shape,
             const std::vector<double>& estimates, std::size_t nRows);

  /// Rows that are loaded at most.
  std::size_t Capacity() const { return fCapacity; }

  /// Loads `count` rows, at most Capacity(), and answers how many of them come before the first
  /// one that isn't ordinary: only these may be taken further.
  std::size_t Load(const double* rows, std::size_t count);

  /// Computes the probabilities of the first `count` loaded rows, which are the rows that all
  /// operations below mean.
  void ComputeProbabilities(std::size_t count);

  std::size_t Count() const { return fCount; }
  double Weight(std::size_t row) const { return fWeights.Data()[row]; }
  int Category(std::size_t row) const { return fCategories[row]; }
  double LogLikelihood(std::size_t row) const { return fLogLikelihoods.Data()[row]; }
  /// Probability c of the row stands at c * kStride.
  static constexpr std::size_t kStride = MCCommonMath::detail::kProbabilityRows;
  const double* Probabilities(std::size_t row) const { return fProbabilities.Data() + Place(row); }

  /// Scores, shape.nParams entries for each category but the last, and the Hessian.
  struct Sums {
    std::vector<double>& scores;
    MCCommonMath::MCSymBlockMatrix& hessian;
  };

  /// Fetches the pattern's entries of the sums, to which Add() adds the rows, and puts them back.
  void Gather(const Sums& sums);
  void Add(const Sums& sums);
  void Scatter(const Sums& sums);

private:
  using Buffer = MCCommonMath::detail::LineBuffer;

  /// Columns whose value isn't the same in all rows: one that is computed, if the position is
  /// negative, or `fCount` that stand side by side in a stored row from the position on. Their
  /// values are kept from `fPlace` on.
  struct Varying {
    std::size_t fColumn;
    std::size_t fPlace;
    std::size_t fCount;
    int fPosition;
  };

  /// Where a row's predictors and probabilities begin: they stand in groups of kStride rows,
  /// category by category in each.
  std::size_t Place(std::size_t row) const {
    return row / kStride * kStride * fShape.nCategs + row % kStride;
  }
  std::size_t NEquations() const { return fShape.nCategs - 1; }
  double* ValuesOf(std::size_t place) { return fValues.Data() + place * fCapacity; }
  const double* ValuesOf(std::size_t place) const { return fValues.Data() + place * fCapacity; }
  std::size_t Index(std::size_t column) const {
    return static_cast<std::size_t>(fpColumns->fIndices[column]);
  }
  bool HasWeights() const {
    return fpLayout->fFreqWeightOffset >= 0 || fpLayout->fRegrWeightOffset >= 0;
  }
  bool HasConstantColumn() const { return fNVarying < fNColumns; }

  bool HasGoodIndices() const;
  bool AreEstimatesOrdinary(const std::vector<double>& estimates) const;
  void SortColumns();
  void Reserve();
  void PointToColumns();
  void GatherEstimates(const std::vector<double>& estimates);

  bool LoadColumns(const Varying& columns, const double* rows, std::size_t count);
  bool LoadWeights(const double* rows, std::size_t count);
  bool LoadCategories(const double* rows, std::size_t count);
  bool HasEmptyRow(std::size_t count) const;
  bool IsOrdinary(std::size_t row) const;
  bool IsEmpty(std::size_t row) const;

  void WeightLogLikelihoods(std::size_t row);

  // The pattern's part of the Hessian is gathered in bands, as the kernel takes it, unless it is
  // large.
  bool IsInBands() const;
  std::size_t BandStart(std::size_t band) const;
  std::size_t BandsSize() const;
  std::size_t ScoresPitch() const;
  static std::vector<double>& BlockOf(const Sums& sums, std::size_t i, std::size_t j);
  template <class Move>
  void MoveTriangle(std::vector<double>& triangle, double* copy, Move move) const;
  template <class Move>
  void MoveSums(const Sums& sums, Move move);

  void ScaleForScores(std::size_t first);
  void ScaleForBlock(std::size_t i, std::size_t j);
  void AddToTriangle(std::vector<double>& triangle);

  const MCCommonMath::detail::VectorKernels& fKernels;
  const MCPatternColumns* fpColumns = nullptr;
  const MCPatternLayout* fpLayout = nullptr;
  Shape fShape{};
  std::size_t fNColumns = 0;
  std::size_t fNVarying = 0;
  std::size_t fNLeading = 0;
  std::size_t fCapacity = 0;
  std::size_t fCount = 0;
  std::vector<Varying> fVarying;

  // Leading constant columns give every row the same start of its predictors.
  std::vector<double> fStarts;
  std::vector<double> fCoefficients;

  // Columns of fCapacity rows each: those that vary, one of ones and one of zeros; and where each
  // design column has its values, filled up with zeros to whole vectors.
  Buffer fValues;
  std::vector<const double*> fColumnValues;
  Buffer fWeights;
  std::vector<int> fCategories;
  Buffer fPredictors;
  Buffer fProbabilities;
  Buffer fLogLikelihoods;

  Buffer fPanels;
  Buffer fScales;
  Buffer fFoldScratch;
  MCCommonMath::detail::RowBlock fBlock{};
  Buffer fScores;
  Buffer fHessian;
};

}  // namespace detail
}  // namespace MCCommon
