// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstddef>
#include <vector>

namespace MCCommonMath {

/// A set of row or parameter numbers, one bit for each, counted from 0: it marks parameters as
/// redundant, swept, kept or in use. A plain value, bit-packed because the loops over triangles
/// consult it. Whatever is asked about a position outside the set answers false or -1 and changes
/// nothing.
class MC_EXPORT MCBitSet {
public:
  /// The empty set.
  MCBitSet() = default;

  /// `n` bits, all clear; a negative n gives the empty set.
  explicit MCBitSet(int n);

  /// Number of bits.
  int Size() const { return static_cast<int>(fbVec.size()); }

  /// Bit `i`; false outside the set.
  bool IsIn(int i) const {
    const auto position = static_cast<std::size_t>(i);  // a negative one is beyond any size
    return position < fbVec.size() && fbVec[position];
  }

  /// Sets bit `i` to `b`; false outside the set.
  bool Set(int i, bool b) {
    const auto position = static_cast<std::size_t>(i);
    if (position >= fbVec.size()) return false;
    fbVec[position] = b;
    return true;
  }

  /// Sets bits `i` to `j`, both included, to `b`; false, with nothing changed, unless
  /// 0 <= i <= j < Size().
  bool SetRange(int i, int j, bool b);

  /// Sets the bits listed in `idx`, in any order, to `b`. All or nothing: false, with nothing
  /// changed, if any is outside the set. An empty list is true.
  bool SetSubset(const std::vector<int>& idx, bool b);

  /// Adds a bit at the end and answers the new size; -1, with nothing changed, if no int can hold
  /// it.
  int Append(bool b);

  /// Clears all bits and keeps the size.
  void Clear();

  /// Gives the set `n` bits, every one of them, old ones too, equal to `b`; n <= 0 empties it.
  void Resize(int n, bool b);

  /// Flips all bits.
  void Negate();

  /// Number of set bits among `i` to `j`, both included; -1 unless 0 <= i <= j < Size().
  int InRange(int i, int j) const;

  /// Number of set bits among the `count` positions from `start` on; -1 if either is negative or
  /// start + count exceeds Size(). No positions give 0, also from start = Size().
  int InRangeS(int start, int count) const;

  /// Number of set bits.
  int InSet() const;

  /// True if some position below min(Size(), n) is set here and clear in `other`, where all
  /// positions beyond its size count as clear. A negative n looks at none.
  bool IsNewFalse(const MCBitSet& other, int n) const;

  /// A new set of the bits `i` to `j`, both included, renumbered from 0. i is raised to 0 and j
  /// lowered to Size() - 1; if j < i then, the result is empty.
  MCBitSet GetSubset(int i, int j) const;

  /// This set becomes the intersection, or the union, of `a` and `b` over the smaller of their two
  /// sizes. Either may be this set.
  void DoAND(const MCBitSet& a, const MCBitSet& b);
  void DoOR(const MCBitSet& a, const MCBitSet& b);

  /// Equal sizes and equal bits.
  bool operator==(const MCBitSet& other) const { return fbVec == other.fbVec; }

  /// Writes the bits to the diagnostic display.
  void Display() const;

private:
  std::vector<bool> fbVec;
};

}  // namespace MCCommonMath
