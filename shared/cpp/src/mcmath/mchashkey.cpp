// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mchashkey.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

namespace MCCommonMath {

int MCHashKey::ADD_LOWER_BOUND = 0;

int* detail::KeyStorage::Provide(int n) {
  if (n <= 0) return nullptr;
  if (n > kMostInShort) return new int[static_cast<std::size_t>(n)]();
  std::fill_n(fShort, n, 0);
  return fShort;
}

MCHashKey::MCHashKey(int n) : fSize(std::max(n, 0)) {
  fData.reset(fData.get_deleter().Provide(n));
  ComputeHash();
}

MCHashKey::MCHashKey(const MCHashKey& other) {
  *this = other;
}

MCHashKey& MCHashKey::operator=(const MCHashKey& other) {
  if (this == &other) return *this;
  if (fSize != other.fSize) {
    fData.reset(fData.get_deleter().Provide(other.fSize));
    fSize = other.fSize;
  }
  std::copy_n(other.fData.get(), fSize, fData.get());
  fHash = other.fHash;
  return *this;
}

int MCHashKey::GetElementUpperBound() {
  constexpr int kLargest = std::numeric_limits<int>::max();
  constexpr int kQuotient = kLargest / PRIME_FACTOR[N_PRIME_FACTORS - 1];
  const std::int64_t bound = std::int64_t{kQuotient} - ADD_LOWER_BOUND;
  return static_cast<int>(std::min<std::int64_t>(bound, kLargest));
}

void MCHashKey::Display() const {
  std::string text = "\t Key: ";
  for (int i = 0; i < fSize; ++i) text += "  " + std::to_string(fData[static_cast<std::size_t>(i)]);
  MCComponentDisplay::DisplayText(1, text);
}

bool operator<(const MCHashKey& a, const MCHashKey& b) {
  if (a.fSize != b.fSize) return a.fSize < b.fSize;
  const int* p = a.fData.get();
  const int* q = b.fData.get();
  return std::lexicographical_compare(p, p + a.fSize, q, q + b.fSize);
}

}  // namespace MCCommonMath
