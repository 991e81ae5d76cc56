// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcunistats.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMetadata {

namespace {

bool IsPresent(double value) {
  return value != MCMV::gMissingValue;
}

}  // namespace

MCUniStats::MCUniStats(const std::string& name, double nCases,
                       const std::vector<double>& frequencies)
    : fName(name), fbCategorical(true), fNCases(nCases), fFrequencies(frequencies) {}

MCUniStats::MCUniStats(const std::string& name, double nCases, const SummStats& stats,
                       const std::vector<double>& frequencies, const std::vector<double>& cutPoints)
    : fName(name),
      fNCases(nCases),
      fFrequencies(frequencies),
      fCutPoints(cutPoints),
      fSummStats(stats) {}

// Comparisons are written so that a NaN is refused among frequencies and cut points alone.
bool MCUniStats::IsValid() const {
  if (fName.empty() || fNCases < 0.0) return false;
  const bool areCounts = std::all_of(fFrequencies.begin(), fFrequencies.end(),
                                     [](double frequency) { return frequency >= 0.0; });
  if (!areCounts) return false;
  return fbCategorical || (IsHistogramValid() && IsSummaryValid());
}

bool MCUniStats::IsHistogramValid() const {
  if (fFrequencies.empty()) return fCutPoints.empty();
  if (fCutPoints.size() != fFrequencies.size() + 1) return false;
  const auto first = fCutPoints.begin() + (IsPresent(fCutPoints.front()) ? 0 : 1);
  const auto last = fCutPoints.end() - (IsPresent(fCutPoints.back()) ? 0 : 1);
  if (first == last || !IsPresent(*first) || std::isnan(*first)) return false;
  const auto doesNotRise = [](double left, double right) { return !(left < right); };
  return std::adjacent_find(first, last, doesNotRise) == last;
}

bool MCUniStats::IsSummaryValid() const {
  const SummStats& s = fSummStats;
  if (fNCases < 2.0 ? IsPresent(s.fStdDev) : IsPresent(s.fStdDev) && s.fStdDev < 0.0) return false;
  const bool hasRange = IsPresent(s.fMinimum) || IsPresent(s.fMaximum) || IsPresent(s.fMean);
  if (fNCases == 0.0 && hasRange) return false;
  return !(IsPresent(s.fMinimum) && IsPresent(s.fMaximum) && s.fMinimum > s.fMaximum);
}

}  // namespace MCCommonMetadata
