// SPDX-License-Identifier: Apache-2.0
#include "classification.h"

#include <numeric>

namespace mcfit {

void Classification::Add(int observed, int predicted, double cases) {
  fTotals[static_cast<std::size_t>(observed)] += cases;
  fNonEmpty[{observed, predicted}] += cases;
}

double Classification::Cases(int observed, int predicted) const {
  const auto found = fNonEmpty.find({observed, predicted});
  return found == fNonEmpty.end() ? 0.0 : found->second;
}

double Classification::Cases() const {
  return std::accumulate(fTotals.begin(), fTotals.end(), 0.0);
}

double Classification::Correct() const {
  double correct = 0.0;
  for (int category = 0; category < Categories(); ++category) correct += Cases(category, category);
  return correct;
}

}  // namespace mcfit
