// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"

#include <string>
#include <vector>

namespace MCCommonMetadata {

/// Univariate statistics of one variable: of a categorical one the frequencies of its categories,
/// of a continuous one a summary and perhaps a histogram.
class MC_EXPORT MCUniStats {
public:
  /// The summary of a continuous variable; what isn't known is the missing value.
  struct SummStats {
    double fMinimum = MCMV::gMissingValue;
    double fMaximum = MCMV::gMissingValue;
    double fMean = MCMV::gMissingValue;
    double fStdDev = MCMV::gMissingValue;
  };

  /// A continuous variable without name, with 0 cases: not valid.
  MCUniStats() = default;

  /// A categorical variable; one frequency for each category.
  MCUniStats(const std::string& name, double nCases, const std::vector<double>& frequencies);

  /// A continuous variable. Interval i of the histogram, with frequency i, lies between cut points
  /// i and i + 1; the first or the last cut point may be the missing value where it has no end.
  MCUniStats(const std::string& name, double nCases, const SummStats& stats,
             const std::vector<double>& frequencies, const std::vector<double>& cutPoints);

  /// Whether intervals hold their right end, as at the start, or their left one.
  void SetIntervalsOpenLeft(bool open) { fbIntervalsOpenLeft = open; }
  bool AreIntervalsOpenLeft() const { return fbIntervalsOpenLeft; }

  bool IsCategorical() const { return fbCategorical; }
  const std::vector<double>& GetFrequencies() const { return fFrequencies; }
  const std::vector<double>& GetCutPoints() const { return fCutPoints; }
  double GetNumberOfCases() const { return fNCases; }
  const SummStats& GetSummStats() const { return fSummStats; }
  const std::string& GetVarName() const { return fName; }

  /// Whether the statistics can be: a name, no negative number of cases, all frequencies >= 0. Of
  /// a continuous variable also: one cut point more than frequencies, rising strictly, all present
  /// but perhaps one of the ends, and none without frequencies; no deviation with fewer than 2
  /// cases and no summary with 0; no negative deviation, and a minimum that isn't above the
  /// maximum.
  bool IsValid() const;

private:
  bool IsHistogramValid() const;
  bool IsSummaryValid() const;

  std::string fName;
  bool fbCategorical = false;
  double fNCases = 0.0;
  std::vector<double> fFrequencies;
  bool fbIntervalsOpenLeft = true;
  std::vector<double> fCutPoints;
  SummStats fSummStats;
};

}  // namespace MCCommonMetadata
