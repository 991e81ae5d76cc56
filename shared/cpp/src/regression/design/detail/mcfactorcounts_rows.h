// SPDX-License-Identifier: Apache-2.0
#pragma once

// What MCFactorCounts does once per row, inline for its own source and that of the tables.

#include "regression/design/mcfactorcounts.h"
#include "regression/frame/detail/mcnumericcast.h"

#include <cstdint>

inline int MCFactorCounts::Count(CategoryCounts& counts, std::int64_t level, double weight) {
  if (level < 0 || level >= static_cast<std::int64_t>(counts.size())) return kOutOfRange;
  std::pair<double, double>& count = counts[static_cast<std::size_t>(level)];
  count.first += weight;
  count.second += 1.0;
  return static_cast<int>(level);
}

inline double MCFactorCounts::GetFrequencyWeight(const double* row) const {
  return fWeightVar < 0 ? 1.0 : row[fWeightVar];
}

inline int MCFactorCounts::CountFactor(int factor, const double* row, double weight) {
  const auto i = static_cast<std::size_t>(factor);
  const double code = row[fFactorIndices[i]];
  return Count(fCounts[i], MCCommon::detail::CategoryLevel(code, fLowestCategory), weight);
}

inline int MCFactorCounts::CountDependent(const double* row, double weight) {
  if (!fDepCounts) return 0;
  const double code = row[fDependentVar];
  return Count(*fDepCounts, MCCommon::detail::CategoryLevel(code, fLowestCategory), weight);
}
