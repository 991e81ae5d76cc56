// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <vector>

namespace MCCommonMetadata {

/// Sorts numbers into bins: with cutpoints c[0] < c[1] < ..., bin i covers (c[i-1], c[i]], the
/// first all below and the last all above. Without cutpoints, that is with fewer than two bins,
/// there is a bin 0 of all numbers below 0 and a bin 1 of all others.
class MC_EXPORT MCBinningEncoder {
public:
  /// No bins.
  MCBinningEncoder() = default;

  /// `nBins` bins of equal width between `low` and `high`: cutpoint k is k * width + low for k
  /// from 1 to nBins - 1. No bins for nBins < 2. Bounds whose difference isn't finite give
  /// cutpoints that aren't.
  MCBinningEncoder(double low, double high, int nBins);

  /// One bin more than `cutpoints`, which rise.
  explicit MCBinningEncoder(const std::vector<double>& cutpoints);

  /// The bin of a number, from 0 up; -1.0 for the missing value.
  double Encode(double value) const;

  int GetNumberOfCategories() const { return fNBins; }
  const std::vector<double>& GetBinningCutpoints() const { return fCutpoints; }
  void SetBinningCutpoints(const std::vector<double>& cutpoints);

  /// Sets `cuts` to the cutpoints with the empty bins merged into their neighbours, where
  /// `counts` holds the count of each bin and one that isn't above 0 is empty. The cutpoints of a
  /// run of empty bins at the start become the lowest double and at the end the largest; those
  /// beside an inner run all become the midpoint of its outer two. False, with `cuts` set to the
  /// cutpoints as they are, if no bin is empty, fewer than two aren't, or there isn't one count
  /// for each bin. `counts` and `cuts` may be the same vector.
  bool ComputeCutpoints(const std::vector<double>& counts, std::vector<double>& cuts) const;

  /// Merges empty bins and drops the cutpoints that this makes the extremes or repeats.
  void AdjustBinning(const std::vector<double>& counts);

  /// A new encoder with the cutpoints of ComputeCutpoints(), extremes and repeats included, which
  /// the caller owns; a copy where that answers false.
  MCBinningEncoder* CreateRebinned(const std::vector<double>& counts) const;

  /// A copy, which the caller owns.
  MCBinningEncoder* Clone() const { return new MCBinningEncoder(*this); }

  /// Writes the cutpoints to the display stream.
  void Display() const;

private:
  bool HasBins() const { return fNBins >= 2; }

  int fNBins = 0;
  std::vector<double> fCutpoints;
};

}  // namespace MCCommonMetadata
