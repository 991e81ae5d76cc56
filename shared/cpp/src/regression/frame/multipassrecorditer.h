// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/recorditerator.h"

namespace MCCommon {

/// A source of rows that can be read again from its start. This is what a host implements to
/// feed a build, which reads it in several passes.
class MC_EXPORT MultiPassRecordIter : public RecordIterator {
public:
  /// Goes back to the first row. 0 on success, otherwise a fail reason.
  virtual int NewPass() = 0;
};

}  // namespace MCCommon
