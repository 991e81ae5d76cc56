// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/recorditerator.h"

namespace MCCommon {
namespace detail {

/// Gives the records that `source` still has to `use(const Record&)`, one after the other, as long
/// as `status` is no error, there are more and no cancel is pending, asked in this order before
/// each. A null record makes the error `nullRecordCode` the status. Answers whether a cancel ended
/// the loop; it doesn't touch the status.
template <class UseRecord>
bool ReadRecords(RecordIterator& source, const MCCancelInfo& cancel, long nullRecordCode,
                 MCStatus& status, UseRecord use) {
  while (!status.IsError() && source.HasMore()) {
    if (cancel.WillCancel()) return true;
    const Record* record = source.Next();
    if (record == nullptr) {
      status = MCStatus(nullRecordCode, false);
    } else {
      use(*record);
    }
  }
  return false;
}

}  // namespace detail
}  // namespace MCCommon
