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
  PackedRow(T* triangle, std::size_t row)
      : fTriangle(triangle), fRow(row), fColumn(0), fIndex(RowStart(row)) {}

  std::size_t Column() const { return fColumn; }
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

}  // namespace detail
}  // namespace MCCommonMath
