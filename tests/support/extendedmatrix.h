// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/matrices.h"
#include "support/splitmix64.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace mctest {

/// A dense matrix in long double (64-bit mantissa) with the plainest algorithms there are: the
/// independent answer beside which the library's own is held.
class ExtendedMatrix {
public:
  ExtendedMatrix(std::size_t rows, std::size_t cols)
      : fRows(rows), fCols(cols), fData(rows * cols) {}

  explicit ExtendedMatrix(const MCCommonMath::MCSymMatrix& S)
      : ExtendedMatrix(static_cast<std::size_t>(S.GetNRows()),
                       static_cast<std::size_t>(S.GetNRows())) {
    Fill([&S](int i, int j) { return S.GetElem(i, j); });
  }

  explicit ExtendedMatrix(const MCCommonMath::MCRectMatrix& R)
      : ExtendedMatrix(static_cast<std::size_t>(R.GetNRows()),
                       static_cast<std::size_t>(R.GetNCols())) {
    Fill([&R](int i, int j) { return R.GetElem(i, j); });
  }

  /// One column.
  explicit ExtendedMatrix(const std::vector<double>& column)
      : fRows(column.size()), fCols(1), fData(column.begin(), column.end()) {}

  std::size_t Rows() const { return fRows; }
  std::size_t Cols() const { return fCols; }
  long double& operator()(std::size_t i, std::size_t j) { return fData[i * fCols + j]; }
  long double operator()(std::size_t i, std::size_t j) const { return fData[i * fCols + j]; }

  ExtendedMatrix Transposed() const {
    ExtendedMatrix result(fCols, fRows);
    for (std::size_t i = 0; i < fRows; ++i) {
      for (std::size_t j = 0; j < fCols; ++j) result(j, i) = (*this)(i, j);
    }
    return result;
  }

  /// Every element replaced by its magnitude.
  ExtendedMatrix Magnitudes() const {
    ExtendedMatrix result(*this);
    for (long double& x : result.fData) x = std::abs(x);
    return result;
  }

  /// The elements above the diagonal set to 0.
  ExtendedMatrix LowerTriangle() const {
    ExtendedMatrix result(*this);
    for (std::size_t i = 0; i < fRows; ++i) {
      for (std::size_t j = i + 1; j < fCols; ++j) result(i, j) = 0;
    }
    return result;
  }

  /// `rows` by `cols` elements from (row, col) on, counted in int as the library does.
  ExtendedMatrix Part(int row, int col, int rows, int cols) const {
    const auto top = static_cast<std::size_t>(row);
    const auto left = static_cast<std::size_t>(col);
    ExtendedMatrix result(static_cast<std::size_t>(rows), static_cast<std::size_t>(cols));
    for (std::size_t i = 0; i < result.fRows; ++i) {
      for (std::size_t j = 0; j < result.fCols; ++j) result(i, j) = (*this)(top + i, left + j);
    }
    return result;
  }

  ExtendedMatrix operator+(const ExtendedMatrix& other) const {
    EXPECT_EQ(fRows, other.fRows);
    EXPECT_EQ(fCols, other.fCols);
    ExtendedMatrix result(*this);
    for (std::size_t k = 0; k < fData.size(); ++k) result.fData[k] += other.fData[k];
    return result;
  }

  ExtendedMatrix operator*(const ExtendedMatrix& other) const {
    EXPECT_EQ(fCols, other.fRows);
    ExtendedMatrix result(fRows, other.fCols);
    for (std::size_t i = 0; i < fRows; ++i) {
      for (std::size_t j = 0; j < other.fCols; ++j) {
        for (std::size_t k = 0; k < fCols; ++k) result(i, j) += (*this)(i, k) * other(k, j);
      }
    }
    return result;
  }

  /// Gauss-Jordan elimination with row pivoting of a regular square matrix.
  ExtendedMatrix Inverse() const {
    ExtendedMatrix left(*this);
    ExtendedMatrix right(fRows, fRows);
    for (std::size_t i = 0; i < fRows; ++i) right(i, i) = 1;
    for (std::size_t k = 0; k < fRows; ++k) {
      std::size_t pivot = k;
      for (std::size_t i = k + 1; i < fRows; ++i) {
        if (std::abs(left(i, k)) > std::abs(left(pivot, k))) pivot = i;
      }
      left.SwapRows(k, pivot);
      right.SwapRows(k, pivot);
      const long double d = left(k, k);
      left.ScaleRow(k, 1 / d);
      right.ScaleRow(k, 1 / d);
      for (std::size_t i = 0; i < fRows; ++i) {
        if (i == k) continue;
        const long double a = left(i, k);
        left.SubtractRow(i, a, k);
        right.SubtractRow(i, a, k);
      }
    }
    return right;
  }

  /// Largest magnitude of an element.
  long double Largest() const {
    long double largest = 0;
    for (const long double x : fData) largest = std::max(largest, std::abs(x));
    return largest;
  }

  /// Largest difference from another matrix of this shape. A NaN anywhere makes it infinite.
  long double Difference(const ExtendedMatrix& other) const {
    long double largest = 0;
    for (std::size_t k = 0; k < fData.size(); ++k) {
      const long double difference = std::abs(fData[k] - other.fData[k]);
      if (std::isnan(difference)) return HUGE_VALL;
      largest = std::max(largest, difference);
    }
    return largest;
  }

private:
  template <class Element>
  void Fill(Element element) {
    for (std::size_t i = 0; i < fRows; ++i) {
      for (std::size_t j = 0; j < fCols; ++j) {
        (*this)(i, j) = element(static_cast<int>(i), static_cast<int>(j));
      }
    }
  }
  void SwapRows(std::size_t i, std::size_t k) {
    for (std::size_t j = 0; j < fCols; ++j) std::swap((*this)(i, j), (*this)(k, j));
  }
  void ScaleRow(std::size_t i, long double a) {
    for (std::size_t j = 0; j < fCols; ++j) (*this)(i, j) *= a;
  }
  void SubtractRow(std::size_t i, long double a, std::size_t k) {
    for (std::size_t j = 0; j < fCols; ++j) (*this)(i, j) -= a * (*this)(k, j);
  }

  std::size_t fRows;
  std::size_t fCols;
  std::vector<long double> fData;
};

/// Numbers that are the same on every machine.
class Noise {
public:
  explicit Noise(std::uint64_t seed) : fBits(seed) {}

  /// In [-1, 1), a multiple of 2^-52.
  double Next() { return static_cast<double>(fBits.Next() >> 11) * 0x1p-52 - 1.0; }

private:
  SplitMix64 fBits;
};

/// A matrix of noise.
inline MCCommonMath::MCRectMatrix NoisyMatrix(int rows, int cols, std::uint64_t seed) {
  MCCommonMath::MCRectMatrix result(rows, cols);
  Noise noise(seed);
  for (double& x : result.AsVector()) x = noise.Next();
  return result;
}

/// A symmetric matrix of noise, indefinite as a rule.
inline MCCommonMath::MCSymMatrix NoisySymmetric(int n, std::uint64_t seed) {
  MCCommonMath::MCSymMatrix result(n);
  Noise noise(seed);
  for (double& x : result.AsVector()) x = noise.Next();
  return result;
}

/// A positive definite matrix X'X of 3n + 5 rows of noise: its condition number stays below 100 at
/// every size.
inline MCCommonMath::MCSymMatrix NoisyDefinite(int n, std::uint64_t seed) {
  MCCommonMath::MCSymMatrix result(n);
  const MCCommonMath::MCRectMatrix X = NoisyMatrix(3 * n + 5, n, seed);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (int r = 0; r < X.GetNRows(); ++r) sum += X.GetElem(r, i) * X.GetElem(r, j);
      result.SetElem(i, j, sum);
    }
  }
  return result;
}

}  // namespace mctest
