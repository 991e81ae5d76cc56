// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mchashkey.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

namespace MCCommonMath {

namespace {

std::unique_ptr<int[]> MakeElements(int n) {
  if (n <= 0) return nullptr;
  return std::make_unique<int[]>(static_cast<std::size_t>(n));
}

}  // namespace

int MCHashKey::ADD_LOWER_BOUND = 0;

MCHashKey::MCHashKey(int n) : fData(MakeElements(n)), fSize(std::max(n, 0)) {
  ComputeHash();
}

MCHashKey::MCHashKey(const MCHashKey& other)
    : fData(MakeElements(other.fSize)), fSize(other.fSize), fHash(other.fHash) {
  std::copy_n(other.fData.get(), fSize, fData.get());
}

MCHashKey& MCHashKey::operator=(const MCHashKey& other) {
  if (this == &other) return *this;
  if (fSize != other.fSize) {
    fData = MakeElements(other.fSize);
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
