// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mccontstats.h"

#include "regression/frame/mccomponentdisplay.h"

namespace MCCommonMath {

namespace {

bool IsMissing(double x) {
  return x == MCMV::gMissingValue;
}

double WeightOrOne(double weight) {
  return weight > 0.0 ? weight : 1.0;
}

}  // namespace

void MCContStats::UpdateExtrema(double smallest, double largest) {
  if (IsMissing(fMin) || smallest < fMin) fMin = smallest;
  if (IsMissing(fMax) || largest > fMax) fMax = largest;
}

bool MCContStats::Update(double x, double freqW, double compW) {
  if (IsMissing(x) || IsMissing(freqW) || IsMissing(compW)) return false;
  UpdateExtrema(x, x);
  const double weight = WeightOrOne(compW);
  const double before = fSumCompWeights;
  const double difference = x - fMean;
  fSumFreqWeights += WeightOrOne(freqW);
  fSumCompWeights += weight;
  fMean += difference * weight / fSumCompWeights;
  // The square alone might overflow where `before` is 0, and leave a NaN.
  fSSQ += difference * (difference * before * weight / fSumCompWeights);
  return true;
}

bool MCContStats::Update(double x) {
  return Update(x, 1.0, 1.0);
}

void MCContStats::Pool(const MCContStats& other) {
  if (other.fSumFreqWeights == 0.0) return;
  if (fSumFreqWeights == 0.0) {
    *this = other;
    return;
  }
  const MCContStats added = other;  // it may be this object
  UpdateExtrema(added.fMin, added.fMax);
  const double before = fSumCompWeights;
  const double weight = added.fSumCompWeights;
  const double difference = added.fMean - fMean;
  fSumFreqWeights += added.fSumFreqWeights;
  fSumCompWeights += weight;
  fMean += difference * weight / fSumCompWeights;
  fSSQ += added.fSSQ + before * weight * difference * difference / fSumCompWeights;
}

double MCContStats::GetMean() const {
  return fSumFreqWeights == 0.0 ? MCMV::gMissingValue : fMean;
}

double MCContStats::GetVariance() const {
  return fSumFreqWeights > 1.0 ? fSSQ / (fSumFreqWeights - 1.0) : MCMV::gMissingValue;
}

void MCContStats::Display() const {
  MCComponentDisplay::DisplayText(1, "MCContStats");
  MCComponentDisplay::DisplayDV("Min & max", {fMin, fMax}, false);
  MCComponentDisplay::DisplayDV("Sum of freq. wgts, composite wgts",
                                {fSumFreqWeights, fSumCompWeights}, false);
  MCComponentDisplay::DisplayD("SSQ", fSSQ);
}

}  // namespace MCCommonMath
