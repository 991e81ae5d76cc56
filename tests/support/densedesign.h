// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/linearproblem.h"

#include <cstddef>
#include <vector>

namespace mctest {

using Row = std::vector<double>;
using Vector = std::vector<long double>;
using Matrix = std::vector<Vector>;

inline double At(const Row& row, int position) {
  return row[static_cast<std::size_t>(position)];
}

/// Whether a row takes part: no missing value, weights above 0.
bool IsUsable(const LinearProblem& problem, const Row& row);

/// The explicit design, rows by columns: the intercept, then for each effect one column for each
/// combination of levels that the rows have.
Matrix BuildDesign(const LinearProblem& problem, const std::vector<Row>& rows);

/// X'WX over some columns.
Matrix CrossProducts(const Matrix& design, const Vector& weights,
                     const std::vector<std::size_t>& columns);

/// The same matrix with its diagonal scaled to 1, so that the rank and the condition don't depend
/// on the units of the columns.
Matrix Scaled(const Matrix& a);

/// Largest sum of magnitudes of a row.
long double Norm(const Matrix& a);

/// Gauss-Jordan elimination with full pivoting: the rank at the given relative tolerance, and the
/// inverse where the matrix is of full rank.
std::size_t Eliminate(Matrix a, long double tolerance, Matrix& inverse);

/// The columns that don't depend on those before them.
std::vector<std::size_t> IndependentColumns(const Matrix& design, const Vector& weights);

}  // namespace mctest
