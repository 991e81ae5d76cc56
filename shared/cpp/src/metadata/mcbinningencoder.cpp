// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcbinningencoder.h"

#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace MCCommonMetadata {

namespace {

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kLargest = std::numeric_limits<double>::max();

}  // namespace

MCBinningEncoder::MCBinningEncoder(double low, double high, int nBins) {
  if (nBins < 2) return;
  const double width = (high - low) / nBins;
  fCutpoints.reserve(static_cast<std::size_t>(nBins) - 1);
  for (int k = 1; k < nBins; ++k) fCutpoints.push_back(k * width + low);
  fNBins = nBins;
}

MCBinningEncoder::MCBinningEncoder(const std::vector<double>& cutpoints) {
  SetBinningCutpoints(cutpoints);
}

void MCBinningEncoder::SetBinningCutpoints(const std::vector<double>& cutpoints) {
  fCutpoints = cutpoints;
  fNBins = static_cast<int>(fCutpoints.size()) + 1;
}

double MCBinningEncoder::Encode(double value) const {
  if (value == MCMV::gMissingValue) return -1.0;
  if (!HasBins()) return value < 0.0 ? 0.0 : 1.0;
  const auto at = std::lower_bound(fCutpoints.begin(), fCutpoints.end(), value);
  return static_cast<double>(at - fCutpoints.begin());
}

bool MCBinningEncoder::ComputeCutpoints(const std::vector<double>& counts,
                                        std::vector<double>& cuts) const {
  std::vector<std::size_t> full;  // the bins that aren't empty
  for (std::size_t bin = 0; bin < counts.size(); ++bin) {
    if (counts[bin] > 0.0) full.push_back(bin);
  }
  const std::size_t nCounts = counts.size();
  cuts = fCutpoints;
  if (full.size() < 2 || full.size() == nCounts || nCounts != cuts.size() + 1) return false;

  const auto at = [&cuts](std::size_t i) {
    return cuts.begin() + static_cast<std::vector<double>::difference_type>(i);
  };
  std::fill(cuts.begin(), at(full.front()), kLowest);
  std::fill(at(full.back()), cuts.end(), kLargest);
  for (std::size_t i = 1; i < full.size(); ++i) {
    const std::size_t first = full[i - 1];
    const std::size_t last = full[i] - 1;
    if (first < last) std::fill(at(first), at(last + 1), (cuts[first] + cuts[last]) * 0.5);
  }
  return true;
}

void MCBinningEncoder::AdjustBinning(const std::vector<double>& counts) {
  std::vector<double> cuts;
  if (!ComputeCutpoints(counts, cuts)) return;
  const auto first = std::find_if(cuts.begin(), cuts.end(), [](double c) { return c != kLowest; });
  const auto end = std::find(first, cuts.end(), kLargest);
  std::vector<double> kept;
  for (auto cut = first; cut != end; ++cut) {
    if (kept.empty() || *cut > kept.back()) kept.push_back(*cut);
  }
  SetBinningCutpoints(kept);
}

MCBinningEncoder* MCBinningEncoder::CreateRebinned(const std::vector<double>& counts) const {
  std::vector<double> cuts;
  return ComputeCutpoints(counts, cuts) ? new MCBinningEncoder(cuts) : Clone();
}

void MCBinningEncoder::Display() const {
  MCComponentDisplay::DisplayDV("\t\tCutpoints", fCutpoints, true);
}

}  // namespace MCCommonMetadata
