// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/splitmix64.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace mctest {

using Vector = std::vector<double>;

/// A column-major matrix in an array of exactly the size that it needs, so that a sanitizer sees
/// any step outside; between columns there are `gap` entries that nobody may touch. Elements count
/// from 0.
class Columns {
public:
  Columns(int rows, int cols, int gap = 0)
      : fRows(rows), fCols(cols), fLd(std::max(rows, 1) + gap), fStorage(Size(), kUntouched) {
    for (int j = 0; j < cols; ++j) {
      for (int i = 0; i < rows; ++i) (*this)(i, j) = 0.0;
    }
  }

  int Rows() const { return fRows; }
  int Cols() const { return fCols; }
  int Ld() const { return fLd; }
  double* Data() { return fStorage.data(); }
  const double* Data() const { return fStorage.data(); }

  double& operator()(int i, int j) { return fStorage[Place(i, j)]; }
  double operator()(int i, int j) const { return fStorage[Place(i, j)]; }

  bool GapsAreUntouched() const {
    for (std::size_t place = 0; place < fStorage.size(); ++place) {
      const bool bGap = place % static_cast<std::size_t>(fLd) >= static_cast<std::size_t>(fRows);
      if (bGap && fStorage[place] != kUntouched) return false;
    }
    return true;
  }

  /// Exact equality of all entries, those between columns included.
  bool operator==(const Columns& other) const { return fStorage == other.fStorage; }

private:
  static constexpr double kUntouched = -7.75e77;

  std::size_t Size() const {
    if (fRows < 1 || fCols < 1) return 0;
    return Place(fRows - 1, fCols - 1) + 1;
  }
  std::size_t Place(int i, int j) const {
    return static_cast<std::size_t>(j) * static_cast<std::size_t>(fLd) +
           static_cast<std::size_t>(i);
  }

  int fRows;
  int fCols;
  int fLd;
  Vector fStorage;
};

inline Columns Transposed(const Columns& a) {
  Columns result(a.Cols(), a.Rows());
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i < a.Rows(); ++i) result(j, i) = a(i, j);
  }
  return result;
}

inline Columns Product(const Columns& a, const Columns& b) {
  Columns result(a.Rows(), b.Cols());
  for (int j = 0; j < b.Cols(); ++j) {
    for (int k = 0; k < a.Cols(); ++k) {
      for (int i = 0; i < a.Rows(); ++i) result(i, j) += a(i, k) * b(k, j);
    }
  }
  return result;
}

inline Vector Product(const Columns& a, const Vector& x) {
  Vector result(static_cast<std::size_t>(a.Rows()));
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i < a.Rows(); ++i) {
      result[static_cast<std::size_t>(i)] += a(i, j) * x[static_cast<std::size_t>(j)];
    }
  }
  return result;
}

inline Columns Identity(int n) {
  Columns result(n, n);
  for (int i = 0; i < n; ++i) result(i, i) = 1.0;
  return result;
}

/// The upper triangle (or trapezium) of the first `rows` rows, zero below.
inline Columns UpperTriangle(const Columns& a, int rows) {
  Columns result(rows, a.Cols());
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i < std::min(j + 1, rows); ++i) result(i, j) = a(i, j);
  }
  return result;
}

/// The symmetric matrix whose upper triangle stands in `a`.
inline Columns FromUpper(const Columns& a) {
  Columns result(a.Rows(), a.Cols());
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i <= j; ++i) result(i, j) = result(j, i) = a(i, j);
  }
  return result;
}

/// Sets all below the diagonal to a number that shows in any result it comes into.
inline Columns WithoutLower(Columns a) {
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = j + 1; i < a.Rows(); ++i) a(i, j) = 1e99;
  }
  return a;
}

inline Vector PackedUpper(const Columns& a) {
  Vector result;
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i <= j; ++i) result.push_back(a(i, j));
  }
  result.shrink_to_fit();
  return result;
}

inline Columns FromPackedUpper(int n, const Vector& packed) {
  Columns result(n, n);
  std::size_t place = 0;
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i <= j; ++i) result(i, j) = result(j, i) = packed[place++];
  }
  return result;
}

/// The largest sum of magnitudes of a column; NaN if there is one.
inline double Norm1(const Columns& a) {
  double norm = 0.0;
  for (int j = 0; j < a.Cols(); ++j) {
    double sum = 0.0;
    for (int i = 0; i < a.Rows(); ++i) sum += std::fabs(a(i, j));
    norm = sum > norm || std::isnan(sum) ? sum : norm;
  }
  return norm;
}

inline double Norm1(const Vector& x) {
  double sum = 0.0;
  for (const double value : x) sum += std::fabs(value);
  return sum;
}

inline Columns Difference(const Columns& a, const Columns& b) {
  Columns result(a.Rows(), a.Cols());
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i < a.Rows(); ++i) result(i, j) = a(i, j) - b(i, j);
  }
  return result;
}

inline Columns Scaled(Columns a, double factor) {
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i < a.Rows(); ++i) a(i, j) *= factor;
  }
  return a;
}

/// A symmetric matrix whose rows and columns are shrunk, the last ones by nearly 10^-decades.
inline Columns ShrunkByDecades(Columns a, double decades) {
  const int n = a.Rows();
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) a(i, j) *= std::pow(10.0, -decades * (i + j) / n);
  }
  return a;
}

/// The leading rows and columns.
inline Columns Leading(const Columns& a, int rows, int cols, int gap = 0) {
  Columns result(rows, cols, gap);
  for (int j = 0; j < cols; ++j) {
    for (int i = 0; i < rows; ++i) result(i, j) = a(i, j);
  }
  return result;
}

inline Columns WithGap(const Columns& a, int gap) {
  return Leading(a, a.Rows(), a.Cols(), gap);
}

/// The columns in another order, whose numbers count from 1 as those of pivots do.
inline Columns InOrder(const Columns& a, const std::vector<int>& order) {
  Columns result(a.Rows(), a.Cols());
  for (int j = 0; j < a.Cols(); ++j) {
    const int from = order[static_cast<std::size_t>(j)] - 1;
    for (int i = 0; i < a.Rows(); ++i) result(i, j) = a(i, from);
  }
  return result;
}

/// |a - b| over n eps |b|, n the larger dimension, in the 1-norm: what LAPACK's own tests hold
/// below 30.
inline double Distance(const Columns& a, const Columns& b) {
  const double unit = std::max({a.Rows(), a.Cols(), 1}) * std::numeric_limits<double>::epsilon();
  const double norm = Norm1(b);
  return Norm1(Difference(a, b)) / (unit * (norm == 0.0 ? 1.0 : norm));
}

/// |A x - b| over n eps |A| |x|, the residual of a backward stable solution.
inline double Residual(const Columns& a, const Vector& x, const Vector& b) {
  Vector rest = Product(a, x);
  for (std::size_t i = 0; i < rest.size(); ++i) rest[i] -= b[i];
  const double unit = std::max(a.Rows(), 1) * std::numeric_limits<double>::epsilon();
  return Norm1(rest) / (unit * Norm1(a) * Norm1(x));
}

/// Sources of matrices and vectors with a fixed seed.
class RandomColumns {
public:
  explicit RandomColumns(std::uint64_t seed) : fNumbers(seed) {}

  double Next() { return 2.0 * 0x1p-53 * static_cast<double>(fNumbers.Next() >> 11U) - 1.0; }

  Vector Entries(int n) {
    Vector result(static_cast<std::size_t>(n));
    for (double& value : result) value = Next();
    return result;
  }

  Columns Matrix(int rows, int cols, int gap = 0) {
    Columns result(rows, cols, gap);
    for (int j = 0; j < cols; ++j) {
      for (int i = 0; i < rows; ++i) result(i, j) = Next();
    }
    return result;
  }

  /// Columns that shrink from 1 to 1e-10.
  Columns Graded(int rows, int cols) {
    Columns result = Matrix(rows, cols);
    for (int j = 0; j < cols; ++j) {
      for (int i = 0; i < rows; ++i) result(i, j) *= std::pow(10.0, -10.0 * j / std::max(cols, 1));
    }
    return result;
  }

  Columns Symmetric(int n) { return FromUpper(Matrix(n, n)); }

  /// A'A of a random matrix with twice as many rows.
  Columns Definite(int n) {
    const Columns a = Matrix(2 * n, n);
    return Product(Transposed(a), a);
  }

private:
  SplitMix64 fNumbers;
};

}  // namespace mctest
