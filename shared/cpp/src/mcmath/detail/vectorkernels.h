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

/// Two vectors of a symmetric matrix, whose rank-two product u q' + q u' is to be taken from it,
/// and what the result is to be multiplied by. All have an entry for each row of the bands that
/// are worked on, and those of `product` are added to.
struct SymmetricStep {
  const double* u;
  const double* q;
  const double* next;
  double* product;
};

/// A run of plane rotations: of rows top and top - 1, then top - 1 and top - 2, `count` of them.
/// Cosine and sine of each stand in an array of pairs from `first` on.
struct RotationRun {
  std::size_t top;
  std::size_t count;
  std::size_t first;
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

  /// Subtracts u q' + q u' from a symmetric matrix and adds the new matrix times `next` to
  /// `product`, in one walk. The matrix stands in bands: band b holds rows 8b to 8b + 7, each with
  /// its first 8b + 8 columns, behind the bands before it, and its last eight columns hold a full
  /// symmetric block.
  void (*updateBands)(double* bands, std::size_t nBands, const SymmetricStep& step);

  /// Columns of a panel whose rows are rotated or reflected.
  std::size_t vectorColumns;

  /// Applies runs of rotations to the rows of a panel: rows x and, below it, y become c x - s y and
  /// s x + c y.
  void (*rotateRows)(double* panel, const RotationRun* runs, std::size_t nRuns,
                     const double* rotations);

  /// Multiplies a panel of nRows rows from the left by I - v v' and I - u u', the latter first.
  /// `overlap` is u'v.
  void (*reflectRows)(double* panel, std::size_t nRows, const double* u, const double* v,
                      double overlap);
};

extern const VectorKernels kSse2Kernels;
extern const VectorKernels kAvx2Kernels;
extern const VectorKernels kAvx512Kernels;

}  // namespace detail
}  // namespace MCCommonMath
