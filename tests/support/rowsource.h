// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/multipassrecorditer.h"

#include <vector>

namespace mctest {

using Rows = std::vector<std::vector<double>>;

/// A source of rows in memory that counts how it is used and fails where it is told to.
class RowSource : public MCCommon::MultiPassRecordIter {
public:
  explicit RowSource(Rows rows);

  bool HasMore() const override;
  MCCommon::Record* Next() override;
  int GetFailReason() const override;
  int NewPass() override;

  /// Passes count from 1: the first NewPass() begins pass 1; 0 is before any.

  /// NewPass() of that pass answers 3 and gives no rows.
  void FailNewPass(int pass) { fFailNewPass = pass; }
  /// In that pass Next() answers null in place of row `row` (from 0); with `forGood` there are
  /// no rows after it either.
  void NullAt(int pass, int row, bool forGood = false);
  /// In that pass HasMore() turns false before row `row`.
  void EndAt(int pass, int row);

  int fNewPassCalls = 0;
  mutable int fHasMoreCalls = 0;
  int fNextCalls = 0;

private:
  Rows fRows;
  MCCommon::Record fRecord{0};
  int fPosition = 0;
  int fFailNewPass = -1;
  int fNullPass = -1;
  int fNullRow = -1;
  bool fbNullForGood = false;
  int fEndPass = -1;
  int fEndRow = -1;
  bool fbFailed = false;
};

}  // namespace mctest
