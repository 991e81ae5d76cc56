// SPDX-License-Identifier: Apache-2.0
#include "support/rowsource.h"

#include <utility>

namespace mctest {

RowSource::RowSource(Rows rows) : fRows(std::move(rows)) {}

void RowSource::NullAt(int pass, int row, bool forGood) {
  fNullPass = pass;
  fNullRow = row;
  fbNullForGood = forGood;
}

void RowSource::EndAt(int pass, int row) {
  fEndPass = pass;
  fEndRow = row;
}

bool RowSource::HasMore() const {
  ++fHasMoreCalls;
  if (fbFailed) return false;
  if (fNewPassCalls == fEndPass && fPosition >= fEndRow) return false;
  return fPosition < static_cast<int>(fRows.size());
}

MCCommon::Record* RowSource::Next() {
  ++fNextCalls;
  const int row = fPosition++;
  if (fbFailed || row >= static_cast<int>(fRows.size())) return nullptr;
  if (fNewPassCalls == fNullPass && row == fNullRow) {
    fbFailed = fbNullForGood;
    return nullptr;
  }
  const std::vector<double>& values = fRows[static_cast<std::size_t>(row)];
  fRecord.Resize(static_cast<int>(values.size()));
  for (int i = 0; i < fRecord.Size(); ++i) fRecord[i] = values[static_cast<std::size_t>(i)];
  return &fRecord;
}

int RowSource::GetFailReason() const {
  return fbFailed ? 3 : 0;
}

int RowSource::NewPass() {
  ++fNewPassCalls;
  fPosition = 0;
  fbFailed = fNewPassCalls == fFailNewPass;
  return fbFailed ? 3 : 0;
}

}  // namespace mctest
