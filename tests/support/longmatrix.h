// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <cstdint>
#include <random>
#include <vector>

namespace mctest {

/// A full matrix of long doubles with the plainest possible arithmetic: what packed storage,
/// strides and shared loops are compared with.
class LongMatrix {
public:
  LongMatrix(int nRows, int nCols)
      : fNRows(nRows), fNCols(nCols), fElements(static_cast<std::size_t>(nRows * nCols), 0.0L) {}

  /// All elements, both triangles.
  explicit LongMatrix(const MCCommonMath::MCSymMatrix& matrix);
  explicit LongMatrix(const MCCommonMath::MCRectMatrix& matrix);
  /// One column.
  explicit LongMatrix(const std::vector<double>& column);

  int Rows() const { return fNRows; }
  int Cols() const { return fNCols; }
  long double& At(int i, int j) { return fElements[static_cast<std::size_t>(i * fNCols + j)]; }
  long double At(int i, int j) const { return fElements[static_cast<std::size_t>(i * fNCols + j)]; }

  LongMatrix Transposed() const;
  /// Every element replaced by its magnitude.
  LongMatrix Magnitudes() const;
  /// The elements above the diagonal set to 0.
  LongMatrix LowerTriangle() const;
  /// `nRows` by `nCols` elements from (row, col) on.
  LongMatrix Part(int row, int col, int nRows, int nCols) const;

private:
  int fNRows;
  int fNCols;
  std::vector<long double> fElements;
};

LongMatrix operator*(const LongMatrix& a, const LongMatrix& b);
LongMatrix operator+(const LongMatrix& a, const LongMatrix& b);

/// The start plus the product of a chain of matrices, and how far a computation in double may be
/// from it.
///
/// A sum of m rounded products is off by at most about (m + 1) eps times the sum of their
/// magnitudes. Along a chain the inner lengths add up, and two more roundings come from an addition
/// onto the start; so each element has the bound (sum of inner lengths + chain length + 2) * eps *
/// (the same chain over magnitudes).
struct Reference {
  LongMatrix value;
  LongMatrix bound;
};
Reference Chain(const std::vector<LongMatrix>& factors);
Reference Chain(const LongMatrix& start, const std::vector<LongMatrix>& factors);

/// Compare shape and each element.
void ExpectWithin(const MCCommonMath::MCSymMatrix& got, const Reference& want);
void ExpectWithin(const MCCommonMath::MCRectMatrix& got, const Reference& want);
void ExpectWithin(const std::vector<double>& got, const Reference& want);
void ExpectWithin(double got, const Reference& want);

/// Equal shape, and elements equal bit by bit.
void ExpectSameBits(const std::vector<double>& got, const std::vector<double>& want);
void ExpectSameBits(double got, double want);

/// Numbers between -1 and 1 that depend on nothing but the seed; about one in eight is 0.
class Numbers {
public:
  explicit Numbers(std::uint64_t seed) : fGenerator(seed) {}
  double Next();
  std::vector<double> Vector(int n);
  MCCommonMath::MCSymMatrix Sym(int n);
  MCCommonMath::MCRectMatrix Rect(int nRows, int nCols);

private:
  std::mt19937_64 fGenerator;
};

}  // namespace mctest
