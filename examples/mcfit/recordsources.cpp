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
                         const char* work, std::int64_t rows, int passes)
    : fSource(source), fProgress(progress), fWork(work), fRows(rows), fPasses(passes) {}

MCCommon::Record* WatchedRows::Next() {
  MCCommon::Record* record = fSource.Next();
  // Not every reader asks for a new pass before the first one.
  if (fRow == 0) ++fPass;
  ++fRow;
  if (fProgress.IsDue()) {
    fProgress.Show(fmt::format("{}: {}{} %", fWork, PassText(), 100 * fRow / fRows));
  }
  return record;
}

int WatchedRows::NewPass() {
  fRow = 0;
  return fSource.NewPass();
}

std::string WatchedRows::PassText() const {
  if (fPasses == 1) return {};
  if (fPasses == 0) return fmt::format("pass {}, ", fPass);
  return fmt::format("pass {} of {}, ", fPass, fPasses);
}

}  // namespace mcfit
