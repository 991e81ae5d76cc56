// SPDX-License-Identifier: Apache-2.0
#include "recordsources.h"

#include "regression/frame/mcmv.h"

#include <fmt/format.h>

namespace mcfit {

RecodedRows::RecodedRows(MCCommon::MultiPassRecordIter& source, std::vector<int> positions,
                         const std::vector<std::vector<int>>& codes)
    : fSource(source), fPositions(std::move(positions)) {
  for (const std::vector<int>& factor : codes) fCodes.emplace_back(factor.begin(), factor.end());
}

MCCommon::Record* RecodedRows::Next() {
  MCCommon::Record* record = fSource.Next();
  if (record == nullptr) return nullptr;
  for (std::size_t i = 0; i < fPositions.size(); ++i) {
    double& code = (*record)[fPositions[i]];
    if (code != MCMV::gMissingValue) code = fCodes[i][static_cast<std::size_t>(code)];
  }
  return record;
}

WatchedRows::WatchedRows(MCCommon::MultiPassRecordIter& source, ProgressLine& progress,
                         std::int64_t rows, int passes)
    : fSource(source), fProgress(progress), fRows(rows), fPasses(passes) {}

MCCommon::Record* WatchedRows::Next() {
  MCCommon::Record* record = fSource.Next();
  ++fRow;
  if (fProgress.IsDue()) {
    fProgress.Show(fmt::format("fitting: pass {} of {}, {} %", fPass, fPasses, 100 * fRow / fRows));
  }
  return record;
}

int WatchedRows::NewPass() {
  ++fPass;
  fRow = 0;
  return fSource.NewPass();
}

}  // namespace mcfit
