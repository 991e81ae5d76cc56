// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/binaryrecorditerator.h"

namespace MCCommon {

BinaryRecordIterator::BinaryRecordIterator(FILE* file, int numVars)
    : fCurrent(numVars), fLookahead(numVars), fFile(file), fNumVars(numVars) {
  if (fFile == nullptr) {
    std::fputs("Error: file handle is NULL in BinaryRecordIterator constructor", stdout);
  }
  // Without room for both rows neither is kept, and nothing will ever be read.
  if (fCurrent.Size() != fNumVars) fLookahead.Resize(0);
  fFailReason = IsReadable() ? ReadAhead() : static_cast<int>(kReadFailure);
}

bool BinaryRecordIterator::HasMore() const {
  return fFailReason == kHasRows;
}

Record* BinaryRecordIterator::Next() {
  if (fFailReason != kHasRows) return nullptr;
  fFailReason = ReadAhead();
  return &fCurrent;
}

int BinaryRecordIterator::GetFailReason() const {
  return fFailReason;
}

int BinaryRecordIterator::NewPass() {
  if (fFailReason == kNoFurtherPass) return fFailReason;
  // Without a seek the pass would begin in the middle of the data.
  if (!IsReadable() || std::fseek(fFile, 0, SEEK_SET) != 0) {
    fFailReason = kReadFailure;
    return fFailReason;
  }
  fFailReason = kHasRows;
  fFailReason = ReadAhead();
  return fFailReason;
}

bool BinaryRecordIterator::IsReadable() const {
  // The row read ahead has another size where numVars is negative, and where memory ran out. The
  // size of the current row tells nothing: it was in the caller's hands.
  return fFile != nullptr && fLookahead.Size() == fNumVars;
}

int BinaryRecordIterator::ReadAhead() {
  fCurrent = fLookahead;
  if (fFailReason != kHasRows) return fFailReason;
  const auto wanted = static_cast<std::size_t>(fNumVars);
  // A record of no values has no array, which fread must not be given.
  const std::size_t got =
      wanted == 0 ? 0 : std::fread(fLookahead.GetAll(), sizeof(double), wanted, fFile);
  // Fewer than 8 bytes make no item: a tail that short is the end of the file, not a torn row.
  if (got == 0 && std::feof(fFile) != 0) return kEndOfData;
  if (got < wanted) return kReadFailure;
  return kHasRows;
}

}  // namespace MCCommon
