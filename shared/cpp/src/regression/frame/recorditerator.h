// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/record.h"

namespace MCCommon {

/// A source of rows that is read once, front to back. Ask HasMore() before each Next(), never
/// after it: a source may know that its last row is the last while it hands it out.
class MC_EXPORT RecordIterator {
public:
  virtual ~RecordIterator() = default;

  /// Whether Next() will give a row.
  virtual bool HasMore() const = 0;

  /// The next row, or null if there is none. The source keeps ownership and may reuse the row
  /// at the next call.
  virtual Record* Next() = 0;

  /// Why there are no more rows: 0 while there are, 1 at the end of the data, otherwise a
  /// reason of the source's own.
  virtual int GetFailReason() const = 0;
};

}  // namespace MCCommon
