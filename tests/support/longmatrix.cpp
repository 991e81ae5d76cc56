// SPDX-License-Identifier: Apache-2.0
#include "support/longmatrix.h"

#include "support/samebits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace mctest {

using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;

LongMatrix::LongMatrix(const MCSymMatrix& matrix)
    : LongMatrix(matrix.GetNRows(), matrix.GetNRows()) {
  std::size_t k = 0;
  for (int i = 0; i < fNRows; ++i) {
    for (int j = 0; j <= i; ++j) At(i, j) = At(j, i) = matrix.AsVectorConst()[k++];
  }
}

LongMatrix::LongMatrix(const MCRectMatrix& matrix)
    : LongMatrix(matrix.GetNRows(), matrix.GetNCols()) {
  std::size_t k = 0;
  for (int i = 0; i < fNRows; ++i) {
    for (int j = 0; j < fNCols; ++j) At(i, j) = matrix.AsVectorConst()[k++];
  }
}

LongMatrix::LongMatrix(const std::vector<double>& column)
    : LongMatrix(static_cast<int>(column.size()), 1) {
  for (int i = 0; i < fNRows; ++i) At(i, 0) = column[static_cast<std::size_t>(i)];
}

LongMatrix LongMatrix::Transposed() const {
  LongMatrix result(fNCols, fNRows);
  for (int i = 0; i < fNRows; ++i) {
    for (int j = 0; j < fNCols; ++j) result.At(j, i) = At(i, j);
  }
  return result;
}

LongMatrix LongMatrix::Magnitudes() const {
  LongMatrix result(*this);
  for (long double& x : result.fElements) x = std::fabs(x);
  return result;
}

LongMatrix LongMatrix::LowerTriangle() const {
  LongMatrix result(*this);
  for (int i = 0; i < fNRows; ++i) {
    for (int j = i + 1; j < fNCols; ++j) result.At(i, j) = 0.0L;
  }
  return result;
}

LongMatrix LongMatrix::Part(int row, int col, int nRows, int nCols) const {
  LongMatrix result(nRows, nCols);
  for (int i = 0; i < nRows; ++i) {
    for (int j = 0; j < nCols; ++j) result.At(i, j) = At(row + i, col + j);
  }
  return result;
}

LongMatrix operator*(const LongMatrix& a, const LongMatrix& b) {
  EXPECT_EQ(a.Cols(), b.Rows());
  LongMatrix result(a.Rows(), b.Cols());
  for (int i = 0; i < a.Rows(); ++i) {
    for (int j = 0; j < b.Cols(); ++j) {
      for (int k = 0; k < a.Cols(); ++k) result.At(i, j) += a.At(i, k) * b.At(k, j);
    }
  }
  return result;
}

LongMatrix operator+(const LongMatrix& a, const LongMatrix& b) {
  EXPECT_EQ(a.Rows(), b.Rows());
  EXPECT_EQ(a.Cols(), b.Cols());
  LongMatrix result(a);
  for (int i = 0; i < a.Rows(); ++i) {
    for (int j = 0; j < a.Cols(); ++j) result.At(i, j) += b.At(i, j);
  }
  return result;
}

Reference Chain(const std::vector<LongMatrix>& factors) {
  return Chain(LongMatrix(factors.front().Rows(), factors.back().Cols()), factors);
}

Reference Chain(const LongMatrix& start, const std::vector<LongMatrix>& factors) {
  LongMatrix value = factors.front();
  LongMatrix magnitude = factors.front().Magnitudes();
  long double roundings = static_cast<long double>(factors.size()) + 2.0L;
  for (std::size_t k = 1; k < factors.size(); ++k) {
    roundings += factors[k].Rows();
    value = value * factors[k];
    magnitude = magnitude * factors[k].Magnitudes();
  }
  LongMatrix unit(start.Rows(), start.Rows());
  for (int i = 0; i < start.Rows(); ++i) {
    unit.At(i, i) = roundings * std::numeric_limits<double>::epsilon();
  }
  return {start + value, unit * (start.Magnitudes() + magnitude)};
}

namespace {

// `got` has `nCols` columns, row by row.
void ExpectElements(const std::vector<double>& got, const Reference& want) {
  ASSERT_EQ(got.size(), static_cast<std::size_t>(want.value.Rows() * want.value.Cols()));
  std::size_t k = 0;
  for (int i = 0; i < want.value.Rows(); ++i) {
    for (int j = 0; j < want.value.Cols(); ++j, ++k) {
      EXPECT_LE(std::fabs(got[k] - want.value.At(i, j)), want.bound.At(i, j))
          << "element (" << i << ", " << j << ") is " << got[k];
    }
  }
}

}  // namespace

void ExpectWithin(const MCSymMatrix& got, const Reference& want) {
  ASSERT_EQ(got.GetNRows(), want.value.Rows());
  std::vector<double> full;
  for (int i = 0; i < got.GetNRows(); ++i) {
    for (int j = 0; j < got.GetNRows(); ++j) full.push_back(got.GetElem(i, j));
  }
  ExpectElements(full, want);
}

void ExpectWithin(const MCRectMatrix& got, const Reference& want) {
  ASSERT_EQ(got.GetNRows(), want.value.Rows());
  ASSERT_EQ(got.GetNCols(), want.value.Cols());
  ExpectElements(got.AsVectorConst(), want);
}

void ExpectWithin(const std::vector<double>& got, const Reference& want) {
  ExpectElements(got, want);
}

void ExpectWithin(double got, const Reference& want) {
  ExpectElements({got}, want);
}

void ExpectSameBits(const std::vector<double>& got, const std::vector<double>& want) {
  EXPECT_TRUE(SameBits(want, got));
}

void ExpectSameBits(double got, double want) {
  ExpectSameBits(std::vector<double>{got}, std::vector<double>{want});
}

double Numbers::Next() {
  const std::uint64_t bits = fGenerator();
  if (bits % 8 == 0) return 0.0;
  return static_cast<double>(bits >> 11) * 0x1p-52 - 1.0;
}

std::vector<double> Numbers::Vector(int n) {
  std::vector<double> values(static_cast<std::size_t>(n));
  for (double& x : values) x = Next();
  return values;
}

MCSymMatrix Numbers::Sym(int n) {
  MCSymMatrix matrix(n);
  for (double& x : matrix.AsVector()) x = Next();
  return matrix;
}

MCRectMatrix Numbers::Rect(int nRows, int nCols) {
  MCRectMatrix matrix(nRows, nCols);
  for (double& x : matrix.AsVector()) x = Next();
  return matrix;
}

}  // namespace mctest
