// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <vector>

namespace MCCommonMath {

/// Squeezes sequences of bounded ints into few ints, so that a long pattern gives a short hash
/// key. A mixed-radix number: position i takes one of `nDiffVal[i]` values from `lowerBound` on,
/// and as many consecutive positions share a unit as keep their product of numbers of values
/// within MCHashKey::GetElementUpperBound(). The first position of a unit varies fastest.
class MC_EXPORT MCPackedInt {
public:
  /// Sequences of length 0.
  MCPackedInt() = default;

  /// As SetForSequence, without its answer.
  MCPackedInt(int seqSize, int lowerBound, const std::vector<int>& nDiffVal);

  /// Stores the description and answers what Setup does with it. `nDiffVal`: at least seqSize
  /// entries. Where memory runs out the exception passes, and nothing is changed.
  bool SetForSequence(int seqSize, int lowerBound, const std::vector<int>& nDiffVal);

  /// Lays the positions out on units. Where the next position would carry the product of a unit
  /// beyond the bound, it starts a new one; a position with more values than the bound fills a
  /// unit of its own (as the first one of all it fills unit 1, and unit 0 packs to 0).
  /// False, leaving sequences of length 0, unless the length is at least 1 and there are as many
  /// numbers of values, each at least 1.
  bool Setup();

  /// Packs the first GetSeqSize() elements of `seq` into `packed`, sized to the number of units.
  /// False, with `packed` untouched, if seq is shorter, or, with `check`, if an element lies
  /// outside lowerBound <= element < lowerBound + nDiffVal[i]. Without `check` such an element
  /// gives some packed value. The two vectors must not be the same. Allocates nothing where
  /// `packed` has the capacity.
  bool Pack(const std::vector<int>& seq, std::vector<int>& packed, bool check) const;

  /// Restores a packed sequence into the first GetSeqSize() elements of `seq`, which is grown if
  /// it is shorter. False, with `seq` untouched, if `packed` has fewer entries than there are
  /// units. The two vectors must not be the same.
  bool Unpack(std::vector<int>& seq, const std::vector<int>& packed) const;

  int GetSeqSize() const { return fSeqSize; }
  int GetLowerBound() const { return fLowerBound; }

  /// Entry `i` of the numbers of values as stored, which may be more than GetSeqSize(); -1 out of
  /// range.
  int GetNDiffVal(int i) const;

  /// Writes all fields to the diagnostic display.
  void Display() const;

private:
  bool IsConsistent() const;
  bool IsWithinBounds(const std::vector<int>& seq) const;
  bool SharesUnit(std::size_t position) const;

  int fSeqSize = 0;
  int fLowerBound = 0;
  std::vector<int> fNDiffVal;
  int fNUnits = 0;
  std::vector<int> fUnitIndex;  // per position, the unit that holds it
  std::vector<int> fProducts;   // per position, the product of fNDiffVal in its unit through it
};

}  // namespace MCCommonMath
