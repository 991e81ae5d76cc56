// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcregrparameter.h"

#include <cstddef>
#include <vector>

namespace MCCommon {
namespace detail {

/// One covariate of a design column: where it stands in a row, negative if nowhere, and its power.
struct MCColumnTerm {
  int fPosition;
  int fPower;
};

/// value * x * x ..., by repeated products: a power function could round otherwise.
inline double TimesPower(double value, double x, int power) {
  for (int i = 0; i < power; ++i) value *= x;
  return value;
}

/// Value of the column with the terms from `term` up to, not including, `end`, for a row whose
/// factor levels select it: 1.0 times its terms in order, 0.0 if one stands nowhere.
inline double ColumnValue(const double* row, const MCColumnTerm* term, const MCColumnTerm* end) {
  double value = 1.0;
  for (; term != end; ++term) {
    if (term->fPosition < 0) return 0.0;
    value = TimesPower(value, row[term->fPosition], term->fPower);
  }
  return value;
}

/// By covariate variable its position in a row, -1 where there is none: variable i of `variables`
/// stands at entry i of `positions`, nowhere if that has no such entry. As long as the largest
/// variable plus one, at least `leastSize`.
std::vector<int> MakeCovariateLookup(const std::vector<int>& variables,
                                     const std::vector<int>& positions, std::size_t leastSize);

/// Position of a covariate, negative if it is unknown.
int CovariatePosition(const std::vector<int>& lookup, int covariate);

/// What ColumnValue() is for a parameter whose terms aren't compiled.
double ParameterValue(const double* row, const MCRegrParameter& parameter,
                      const std::vector<int>& lookup);

/// The columns of a design for rows of one layout: what the value of each is made of, with the
/// covariates looked up once and not once a row.
class MCDesignColumns {
public:
  MCDesignColumns(const std::vector<MCRegrParameter>& parameters, const std::vector<int>& lookup);

  /// Terms of a column, Begin() up to, not including, End().
  const MCColumnTerm* Begin(std::size_t column) const { return fTerms.data() + fTermBegin[column]; }
  const MCColumnTerm* End(std::size_t column) const {
    return fTerms.data() + fTermBegin[column + 1];
  }

  double Value(const double* row, std::size_t column) const {
    return ColumnValue(row, Begin(column), End(column));
  }

  bool HasTerms() const { return !fTerms.empty(); }

  /// Whether the column is one value of the row as it stands.
  bool IsPlainCopy(std::size_t column) const;

private:
  // Terms of column j: fTerms[fTermBegin[j]] up to, not including, fTerms[fTermBegin[j + 1]].
  std::vector<MCColumnTerm> fTerms;
  std::vector<std::size_t> fTermBegin;
};

}  // namespace detail
}  // namespace MCCommon
