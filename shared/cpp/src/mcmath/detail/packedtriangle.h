// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Addressing of a packed lower triangle: row by row, row i holding columns 0 to i, so element
/// (i, j) with i >= j lies at i(i+1)/2 + j. All in std::size_t, where no product of two row
/// numbers can overflow.
namespace MCCommonMath {
namespace detail {

/// Index of element (i, 0); also the number of entries of a triangle of i rows.
constexpr std::size_t RowStart(std::size_t i) {
  return i * (i + 1) / 2;
}

/// Index of element (i, i).
constexpr std::size_t DiagonalIndex(std::size_t i) {
  return RowStart(i) + i;
}

/// Index of element (i, j) in any order of the two.
constexpr std::size_t PackedIndex(std::size_t i, std::size_t j) {
  return i >= j ? RowStart(i) + j : RowStart(j) + i;
}

/// Walks a full symmetric row of a packed triangle by ascending column: along row i up to the
/// diagonal, then down column i, where the stride grows by one at each step. It doesn't know the
/// number of rows: whoever walks stops at the last column. `T` is double or const double.
template <class T>
class PackedRow {
public:
  PackedRow(T* triangle, std::size_t row, std::size_t column = 0)
      : fTriangle(triangle), fRow(row), fColumn(column), fIndex(PackedIndex(row, column)) {}

  T& operator*() const { return fTriangle[fIndex]; }

  PackedRow& operator++() {
    fIndex += fColumn < fRow ? 1 : fColumn + 1;
    ++fColumn;
    return *this;
  }

private:
  T* fTriangle;
  std::size_t fRow;
  std::size_t fColumn;
  std::size_t fIndex;
};

/// A vector seen at a stride: entry j is data[j * stride].
struct StridedVector {
  const double* data;
  std::ptrdiff_t stride = 1;
  double operator[](std::size_t j) const { return data[static_cast<std::ptrdiff_t>(j) * stride]; }
};

/// Sum over j < count of row[j] * x[j], added by ascending j from 0.0. The row is walked from where
/// it stands.
template <class Vector>
double RowTimes(PackedRow<const double> row, std::size_t count, const Vector& x) {
  double sum = 0.0;
  for (std::size_t j = 0; j < count; ++j, ++row) sum += *row * x[j];
  return sum;
}

/// Sum over j < count of a[j] * b[j], two rows walked together, in the order of the other form.
inline double RowTimes(PackedRow<const double> a, std::size_t count, PackedRow<const double> b) {
  double sum = 0.0;
  for (std::size_t j = 0; j < count; ++j, ++a, ++b) sum += *a * *b;
  return sum;
}

/// y = S x for the packed matrix of n rows; y must not overlap x. Each y[i] has the bits of
/// RowTimes over row i, but the triangle is read once and in order, which large matrices need.
template <class Vector>
void TimesVector(const double* triangle, std::size_t n, const Vector& x, double* y) {
  const double* row = triangle;
  for (std::size_t i = 0; i < n; ++i) {
    const double xi = x[i];
    double sum = 0.0;
    for (std::size_t j = 0; j < i; ++j) sum += row[j] * x[j];
    y[i] = sum + row[i] * xi;
    for (std::size_t j = 0; j < i; ++j) y[j] += row[j] * xi;
    row += i + 1;
  }
}

}  // namespace detail
}  // namespace MCCommonMath
