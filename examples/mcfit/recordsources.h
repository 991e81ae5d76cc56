// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "progressline.h"
#include "regression/frame/multipassrecorditer.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mcfit {

/// Hands out the rows of another source with new category codes. While a file is read, a label gets
/// the code of its first appearance, since only the end of the file tells how labels sort; this
/// puts the sorted codes in their place on the way to the library.
class RecodedRows : public MCCommon::MultiPassRecordIter {
public:
  /// `source` is borrowed. `positions`: record positions that hold codes; `codes`: for each of
  /// them, the new code of each old one. Missing values stay.
  RecodedRows(MCCommon::MultiPassRecordIter& source, std::vector<int> positions,
              const std::vector<std::vector<int>>& codes);

  bool HasMore() const override { return fSource.HasMore(); }
  MCCommon::Record* Next() override;
  int GetFailReason() const override { return fSource.GetFailReason(); }
  int NewPass() override { return fSource.NewPass(); }

private:
  MCCommon::MultiPassRecordIter& fSource;
  std::vector<int> fPositions;
  std::vector<std::vector<double>> fCodes;
};

/// Hands out the rows of another source and shows on the progress line which pass is under way and
/// how far it has come.
class WatchedRows : public MCCommon::MultiPassRecordIter {
public:
  /// `source`, `progress` and `work`, the name of the work, are borrowed. `rows`: how many rows a
  /// pass has; `passes`: how many passes the work takes, 0 if that isn't known.
  WatchedRows(MCCommon::MultiPassRecordIter& source, ProgressLine& progress, const char* work,
              std::int64_t rows, int passes);

  bool HasMore() const override { return fSource.HasMore(); }
  MCCommon::Record* Next() override;
  int GetFailReason() const override { return fSource.GetFailReason(); }
  int NewPass() override;

private:
  std::string PassText() const;

  MCCommon::MultiPassRecordIter& fSource;
  ProgressLine& fProgress;
  const char* fWork;
  std::int64_t fRows;
  std::int64_t fRow = 0;
  int fPasses;
  int fPass = 0;
};

}  // namespace mcfit
