// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// Doubles of a cache line.
constexpr std::size_t kLineDoubles = 8;

/// Rows of a triangle that are worked on together.
constexpr std::size_t kBandRows = 16;

/// A block of pairs of rows of n entries, whose outer products wait to be added to a triangle of n
/// rows. Both halves are stored in panels of a few columns, panel q holding columns q*width to
/// q*width + width - 1 of all rows, row after row. Columns beyond n are zero. Between panels lies
/// a cache line of nothing, as panels a power of two apart would compete for the same places in a
/// cache.
struct RowBlock {
  std::size_t nColumns;
  std::size_t capacity;
  /// The two halves, which may be one; `capacity` weights; room for kBandRows * capacity doubles.
  double* leftPanels;
  double* rightPanels;
  double* weights;
  double* scratch;

  // Always inline: an instance of its own, made for a wide processor, could serve all callers.
  [[gnu::always_inline]] static constexpr std::size_t PanelStride(std::size_t width,
                                                                  std::size_t capacity) {
    return width * capacity + kLineDoubles;
  }

  /// Doubles that one half takes.
  [[gnu::always_inline]] static constexpr std::size_t PanelsSize(std::size_t width,
                                                                 std::size_t nColumns,
                                                                 std::size_t capacity) {
    return (nColumns + width - 1) / width * PanelStride(width, capacity);
  }
};

/// Rows of a Cholesky factor that are worked on together.
constexpr std::size_t kDotRows = 4;

/// Rows whose probabilities are computed together.
constexpr std::size_t kProbabilityRows = 8;

/// What the linear predictors of many rows are made of: predictor j of row r is starts[j] plus
/// coefficients[c * m + j] * columns[c][r], added by ascending c.
struct PredictorTerms {
  std::size_t m;
  const double* starts;
  std::size_t nColumns;
  const double* coefficients;
  const double* const* columns;
};

/// What is written once and compiled for each vector width.
struct VectorKernels {
  /// Width of the panels.
  std::size_t panelColumns;

  /// Writes a row at `slot` of one half of a block. False if an entry times w isn't finite.
  bool (*stageRow)(const RowBlock& block, double* panels, std::size_t slot, const double* x,
                   double w);

  /// Adds the first `count` outer products of a block to a packed lower triangle, one after the
  /// other: element (i, j), j <= i, receives (weight * left[i]) * right[j], each product rounded
  /// and then added. About count n^2/2 multiply-adds.
  void (*foldBlock)(const RowBlock& block, std::size_t count, double* triangle);

  /// Adds factors[i] * x[j] to element j of row i, for nRows rows of `width` elements that stand
  /// one after the other. `width` is a multiple of kLineDoubles.
  void (*addOuter)(double* rows, std::size_t nRows, const double* factors, const double* x,
                   std::size_t width);

  /// Dot products of n elements of kDotRows rows and one other, each as detail::Dot adds it.
  void (*dotRows)(const double* const* rows, const double* other, std::size_t n, double* dots);

  /// Probabilities of m + 1 categories for kProbabilityRows rows, each row with the bits of
  /// MultinomialProbabilities. Row r has its linear predictors at eta[j * kProbabilityRows + r],
  /// j < m, and gets its probabilities at probs[j * kProbabilityRows + r], j <= m, that of the
  /// reference last, and the logarithm of the latter at logLast[r]. `probs` may be eta. About
  /// 2m + 2 exponentials and a logarithm for each row.
  void (*multinomial)(const double* eta, std::size_t m, double* probs, double* logLast);

  /// Linear predictors of the kProbabilityRows rows from `row` on, in the layout of `multinomial`.
  void (*predictors)(const PredictorTerms& terms, std::size_t row, double* eta);

  /// Turns nColumns neighbouring entries of `count` rows, which lie `stride` apart, into columns,
  /// which lie `pitch` apart. Answers the sum of their squares, in any order.
  double (*loadColumns)(const double* rows, std::size_t stride, std::size_t count,
                        std::size_t nColumns, double* columns, std::size_t pitch);

  /// Writes rows 0 to count - 1 of the left half of a block from its columns. Both are taken in
  /// whole vectors: there are readable columns and rows up to the next multiple of kLineDoubles.
  void (*fillPanels)(const RowBlock& block, const double* const* columns, std::size_t count);

  /// Rows of a band, see foldBands.
  std::size_t bandRows;

  /// The same as foldBlock, to a triangle stored in bands: band b holds rows b * bandRows up to
  /// (b + 1) * bandRows - 1, each with its first (b + 1) * bandRows columns, beginning behind the
  /// bands before it. What lies right of the diagonal or below the last row means nothing.
  void (*foldBands)(const RowBlock& block, std::size_t count, double* bands);

  /// Adds factors[k * bandRows + r] * x[j], x being row k < count of the right half of a block, to
  /// target[r * pitch + j], one row after the other. Takes whole vectors of columns.
  void (*addScaledRows)(const RowBlock& block, std::size_t count, const double* factors,
                        double* target, std::size_t pitch);
};

extern const VectorKernels kSse2Kernels;
extern const VectorKernels kAvx2Kernels;
extern const VectorKernels kAvx512Kernels;

}  // namespace detail
}  // namespace MCCommonMath
