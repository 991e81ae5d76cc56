// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>

namespace MCCommonMath {

namespace {

template <class Operation>
std::vector<bool> Combine(const std::vector<bool>& a, const std::vector<bool>& b,
                          Operation operation) {
  const std::size_t size = std::min(a.size(), b.size());
  std::vector<bool> result(size);
  for (std::size_t i = 0; i < size; ++i) result[i] = operation(a[i], b[i]);
  return result;
}

}  // namespace

MCBitSet::MCBitSet(int n) : fbVec(static_cast<std::size_t>(std::max(n, 0)), false) {}

bool MCBitSet::SetRange(int i, int j, bool b) {
  if (i < 0 || i > j || j >= Size()) return false;
  std::fill(fbVec.begin() + i, fbVec.begin() + j + 1, b);
  return true;
}

bool MCBitSet::SetSubset(const std::vector<int>& idx, bool b) {
  const int size = Size();
  const bool fits =
      std::all_of(idx.begin(), idx.end(), [size](int i) { return i >= 0 && i < size; });
  if (!fits) return false;
  for (const int i : idx) fbVec[static_cast<std::size_t>(i)] = b;
  return true;
}

int MCBitSet::Append(bool b) {
  if (Size() == std::numeric_limits<int>::max()) return -1;
  fbVec.push_back(b);
  return Size();
}

void MCBitSet::Clear() {
  std::fill(fbVec.begin(), fbVec.end(), false);
}

void MCBitSet::Resize(int n, bool b) {
  fbVec.assign(static_cast<std::size_t>(std::max(n, 0)), b);
}

void MCBitSet::Negate() {
  fbVec.flip();
}

int MCBitSet::InRange(int i, int j) const {
  if (i < 0 || i > j || j >= Size()) return -1;
  return static_cast<int>(std::count(fbVec.begin() + i, fbVec.begin() + j + 1, true));
}

int MCBitSet::InRangeS(int start, int count) const {
  if (start < 0 || count < 0 || std::int64_t{start} + count > Size()) return -1;
  return static_cast<int>(std::count(fbVec.begin() + start, fbVec.begin() + start + count, true));
}

int MCBitSet::InSet() const {
  return static_cast<int>(std::count(fbVec.begin(), fbVec.end(), true));
}

bool MCBitSet::IsNewFalse(const MCBitSet& other, int n) const {
  const int end = std::min(Size(), n);
  for (int i = 0; i < end; ++i) {
    if (IsIn(i) && !other.IsIn(i)) return true;
  }
  return false;
}

MCBitSet MCBitSet::GetSubset(int i, int j) const {
  const int first = std::max(i, 0);
  const int last = std::min(j, Size() - 1);
  MCBitSet subset;
  if (first <= last) subset.fbVec.assign(fbVec.begin() + first, fbVec.begin() + last + 1);
  return subset;
}

void MCBitSet::DoAND(const MCBitSet& a, const MCBitSet& b) {
  fbVec = Combine(a.fbVec, b.fbVec, std::logical_and<>());
}

void MCBitSet::DoOR(const MCBitSet& a, const MCBitSet& b) {
  fbVec = Combine(a.fbVec, b.fbVec, std::logical_or<>());
}

void MCBitSet::Display() const {
  MCComponentDisplay::DisplayText(1, "MCBitSet display start");
  MCComponentDisplay::DisplayBV("fbVec", fbVec);
  MCComponentDisplay::DisplayText(1, "MCBitSet display end");
}

}  // namespace MCCommonMath
