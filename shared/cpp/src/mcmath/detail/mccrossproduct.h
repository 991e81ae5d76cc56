// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpath.h"

#include <cstddef>
#include <vector>

namespace MCCommonMath {
namespace detail {

/// Adds w x x' to the packed lower triangle of n rows: S(i, j) += (w x[i]) x[j] for j <= i, where
/// S(i, j) lies at i(i+1)/2 + j. Rows with x[i] = 0 are skipped whole; a NaN is not 0.
/// `triangle`: n(n+1)/2 entries; `x`: n entries, which must not overlap it. n^2/2 multiply-adds.
void AddRankOne(double* triangle, std::size_t n, const double* x, double w);

/// Accumulates the cross-products of many rows in a packed triangle, with the bits that one
/// rank-one update per row in the order given leaves there, several times faster: dense rows are
/// gathered in a block and folded in together, a tile of the triangle at a time in registers,
/// each element seeing the same multiplications and additions in the same order.
/// The target is up to date only after Flush(). Others may read or write its elements between a
/// Flush() and the next row added, and must not resize it while this object lives.
///
///     MCCrossProduct accumulator(n, matrix.AsVector());
///     while (rows remain) accumulator.AddRow(row, weight);
///     accumulator.Flush();
class MCCrossProduct {
public:
  /// `triangle` is borrowed for the life of this object: n(n+1)/2 packed entries, n >= 0. `path`
  /// must be one that the processor supports.
  MCCrossProduct(int n, std::vector<double>& triangle, VectorPath path = WidestVectorPath());

  MCCrossProduct(const MCCrossProduct&) = delete;
  MCCrossProduct& operator=(const MCCrossProduct&) = delete;

  /// Adds the row `x` of n entries with weight `w`, as AddRankOne() does. False, and nothing
  /// added, unless w > 0. The first row allocates the block; if that throws, nothing is added.
  bool AddRow(const double* x, double w);

  /// The same for a row given by its non-zero entries: x[idx[a]] = val[a] for a < m and 0
  /// elsewhere. `idx`: m ascending distinct positions within 0..n-1. The bits are those of AddRow()
  /// with the row written out; the cost is m^2/2 scattered additions. Rows keep their order
  /// whichever way they are added, but a change from AddRow() to this one folds the block. The
  /// first row that isn't finite allocates n doubles; if that throws, nothing is added.
  bool AddSparseRow(int m, const int* idx, const double* val, double w);

  /// Whether rows of `nonZeros` entries out of n are cheaper by AddSparseRow().
  static bool IsSparse(int n, int nonZeros);

  /// Folds the rows held back into the target.
  void Flush();

  /// Whether rows are held back, so that the target is not up to date.
  bool HasPending() const { return fNPending > 0; }

private:
  void AllocateBlock();
  bool StageRow(const double* x, double w);
  void AddPlainRow(const double* x, double w);
  void AddWrittenOut(int m, const int* idx, const double* val, double w);
  void CheckTarget();
  void FoldBlock();

  RowBlock fBlock;
  std::vector<double>& fTriangle;
  const VectorKernels& fKernels;
  std::vector<double> fStorage;
  std::size_t fNPending = 0;
  std::vector<double> fWrittenOut;
  bool fbTargetChecked = false;
  bool fbTargetMindsZeros = false;
};

}  // namespace detail
}  // namespace MCCommonMath
