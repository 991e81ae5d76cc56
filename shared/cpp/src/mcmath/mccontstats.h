// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"

#include <utility>

namespace MCCommonMath {

/// Running mean, variance and extremes of weighted values, in one pass and without cancellation
/// (Welford 1962; pooling by Chan, Golub and LeVeque 1979). A value carries a frequency weight,
/// which counts cases, and a composite weight, by which it enters the mean.
class MC_EXPORT MCContStats {
public:
  MCContStats() = default;

  /// Adds a value; weights that are not positive, NaN included, count as 1. False, with nothing
  /// changed, if any argument is the missing value. A NaN value isn't missing: it enters the mean
  /// but not the extremes, unless it is the first value, which becomes both.
  bool Update(double x, double freqW, double compW);

  /// The same with both weights 1.
  bool Update(double x);

  /// Adds all values of `other`, which may be this object.
  void Pool(const MCContStats& other);

  /// Smallest and largest value, in this order; missing values before any was added.
  std::pair<double, double> GetExtrema() const { return {fMin, fMax}; }

  /// Mean by composite weights; the missing value before any value was added.
  double GetMean() const;

  /// Sum of squares about the mean, by composite weights, over the sum of frequency weights less
  /// 1; the missing value unless that sum is above 1.
  double GetVariance() const;

  double GetSumFreqWeights() const { return fSumFreqWeights; }

  /// Writes extremes, sums of weights and sum of squares to the diagnostic display.
  void Display() const;

private:
  void UpdateExtrema(double smallest, double largest);

  double fMin = MCMV::gMissingValue;
  double fMax = MCMV::gMissingValue;
  double fSumFreqWeights = 0.0;
  double fSumCompWeights = 0.0;
  double fMean = 0.0;
  double fSSQ = 0.0;  // about the mean
};

}  // namespace MCCommonMath
