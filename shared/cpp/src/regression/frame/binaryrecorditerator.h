// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/multipassrecorditer.h"

#include <cstdio>

namespace MCCommon {

/// Reads a row file: rows of doubles in the machine's byte order, back to back, with no header
/// and no trailer, so that row r of n values starts at byte 8 n r. The stream is the caller's,
/// opened for reading and kept open while the source is in use; it is neither opened nor closed
/// here. A larger stream buffer (setvbuf with 256 KiB) about doubles the speed of reading.
class MC_EXPORT BinaryRecordIterator : public MultiPassRecordIter {
public:
  /// Fail reasons of this source.
  enum FailReason {
    kHasRows = 0,       ///< there are more rows
    kEndOfData = 1,     ///< the file ended at the border of two rows, or within one value
    kReadFailure = 3,   ///< a read failed, or the last row is incomplete and was not delivered
    kNoFurtherPass = 4  ///< the file can't be read again; never set by this class
  };

  /// Reads rows of `numVars` values from where `file` stands, and reads the first one ahead.
  /// A null file prints a line to standard output and gives reason 3, as do, silently, a
  /// negative numVars and rows that memory can't hold. With numVars 0 the source never ends.
  BinaryRecordIterator(FILE* file, int numVars);

  bool HasMore() const override;
  /// The next row, valid until the following call of Next() or NewPass().
  Record* Next() override;
  int GetFailReason() const override;

  /// Seeks to the start of the file, whatever ended the pass before, and reads the first row
  /// ahead. Answers the fail reason after that, so 1 for an empty file; 3 if there is no usable
  /// file or it can't seek.
  int NewPass() override;

private:
  bool IsReadable() const;
  int ReadAhead();

  Record fCurrent;
  Record fLookahead;
  FILE* fFile;
  int fNumVars;
  int fFailReason = kHasRows;
};

}  // namespace MCCommon
