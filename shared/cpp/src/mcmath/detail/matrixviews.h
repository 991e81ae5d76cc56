// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/columnoperations.h"

#include <algorithm>

namespace MCCommonMath {
namespace detail {

// The storage schemes of Linpack, so that each method is written once. Rows and columns count from
// 0 here; At(i, j) is the place of an element, and those below it in its column follow. T is
// double, or const double where a method only reads.

/// Column-major with a leading dimension. As a general matrix and as an upper triangle nothing
/// outside a band is left out.
template <class T>
struct FullColumns {
  T* a;
  Index lda;
  Index n;

  T* At(Index i, Index j) const { return a + (j * lda + i); }
  /// First row stored of column j of the upper triangle, last row of column j of the lower one.
  Index FirstRow(Index) const { return 0; }
  Index LastRow(Index) const { return n - 1; }
  /// Last column in which row i of the matrix given can be other than 0.
  Index LastColumn(Index) const { return n - 1; }
  /// First row of column j of the matrix given that can be other than 0.
  Index FirstGiven(Index) const { return 0; }
};

/// The upper triangle by columns, without gaps.
template <class T>
struct PackedColumns {
  T* ap;
  Index n;

  T* At(Index i, Index j) const { return ap + (j * (j + 1) / 2 + i); }
  Index FirstRow(Index) const { return 0; }
  Index LastColumn(Index) const { return n - 1; }
};

/// A general band with room for `lower` more diagonals above, which elimination fills in.
template <class T>
struct BandColumns {
  T* abd;
  Index lda;
  Index n;
  Index lower;
  Index upper;

  T* At(Index i, Index j) const { return abd + (j * lda + (i - j + lower + upper)); }
  Index FirstRow(Index j) const { return std::max<Index>(0, j - lower - upper); }
  Index LastRow(Index j) const { return std::min(n - 1, j + lower); }
  Index LastColumn(Index i) const { return std::min(n - 1, i + upper); }
  Index FirstGiven(Index j) const { return std::max<Index>(0, j - upper); }
};

/// The upper half of a symmetric band.
template <class T>
struct SymmetricBandColumns {
  T* abd;
  Index lda;
  Index n;
  Index beside;

  T* At(Index i, Index j) const { return abd + (j * lda + (i - j + beside)); }
  Index FirstRow(Index j) const { return std::max<Index>(0, j - beside); }
  Index LastColumn(Index i) const { return std::min(n - 1, i + beside); }
};

}  // namespace detail
}  // namespace MCCommonMath
