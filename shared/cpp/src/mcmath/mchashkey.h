// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <memory>

namespace MCCommonMath {

namespace detail {

/// Where the elements of a key lie, and what frees them.
class KeyStorage {
public:
  KeyStorage() = default;
  KeyStorage(const KeyStorage&) = delete;
  KeyStorage& operator=(const KeyStorage&) = delete;
  ~KeyStorage() = default;

  /// `n` elements of 0, null for n <= 0. What was provided before stays as it is, unless both are
  /// short enough to lie in here.
  int* Provide(int n);

  void operator()(int* elements) const {
    if (elements != fShort) delete[] elements;
  }

private:
  static constexpr int kMostInShort = 2;
  int fShort[kMostInShort] = {0, 0};
};

}  // namespace detail

/// A sequence of ints with its hash code, by which a hash table finds a combination of factor
/// levels or a pattern of values. The fields are open so that the owner of a scratch key can
/// refill it for each row without allocation:
///
///     for (int i = 0; i < key.fSize; ++i) key.fData[i] = level[i];
///     key.ComputeHash();
///     if (table.Get(&key) == nullptr) ...
///
/// Any element is safe. Elements from 0 to GetElementUpperBound() also keep every hash from
/// being negative.
///
/// Most keys are of one or two elements and a table may hold millions of them, so those lie in the
/// key itself; the elements of a longer key are an array of their own.
class MC_EXPORT MCHashKey {
public:
  /// Multipliers of the hash rule, the primes from 3 to 229; element i takes number i % 49.
  static constexpr int PRIME_FACTOR[] = {
      3,   5,   7,   11,  13,  17,  19,  23,  29,  31,  37,  41,  43,  47,  53,  59,  61,
      67,  71,  73,  79,  83,  89,  97,  101, 103, 107, 109, 113, 127, 131, 137, 139, 149,
      151, 157, 163, 167, 173, 179, 181, 191, 193, 197, 199, 211, 223, 227, 229};
  static constexpr int N_PRIME_FACTORS = 49;

  /// Added to each element before it is multiplied; starts at 0. It belongs to the whole process
  /// and is to be set before any key is used, or not at all.
  static int ADD_LOWER_BOUND;

  /// The empty key, with hash 0.
  MCHashKey() = default;

  /// `n` elements of 0 with their hash; a negative n gives the empty key.
  explicit MCHashKey(int n);

  /// Elements and the stored hash are copied as they are. Assignment allocates only where sizes
  /// differ, if at all; if that fails, the key is as before.
  MCHashKey(const MCHashKey& other);
  MCHashKey& operator=(const MCHashKey& other);
  ~MCHashKey() = default;

  /// The value of ADD_LOWER_BOUND.
  static void SetElementOffset(int offset) { ADD_LOWER_BOUND = offset; }
  static int GetElementOffset() { return ADD_LOWER_BOUND; }

  /// The largest element that keeps its product non-negative and within 31 bits: 9377657 while
  /// ADD_LOWER_BOUND is 0. A result that no int can hold is the largest int.
  static int GetElementUpperBound();

  /// Recomputes `fHash` from the elements: the exclusive-or over i of
  /// (ADD_LOWER_BOUND + fData[i]) * PRIME_FACTOR[i % 49], modulo 2^32; 0 for the empty key. To be
  /// called after elements were written; no table does it.
  void ComputeHash() {
    const auto offset = static_cast<unsigned>(ADD_LOWER_BOUND);
    unsigned hash = 0;
    for (int i = 0, k = 0; i < fSize; ++i) {
      hash ^= (offset + static_cast<unsigned>(fData[static_cast<std::size_t>(i)])) *
              static_cast<unsigned>(PRIME_FACTOR[k]);
      if (++k == N_PRIME_FACTORS) k = 0;
    }
    fHash = static_cast<int>(hash);
  }

  /// Writes the elements to the diagnostic display.
  void Display() const;

  std::unique_ptr<int[], detail::KeyStorage> fData;  ///< the elements, null when there are none
  int fSize = 0;                                     ///< number of elements
  int fHash = 0;                                     ///< hash code as last computed
};

static_assert(sizeof MCHashKey::PRIME_FACTOR == MCHashKey::N_PRIME_FACTORS * sizeof(int));

/// Order of keys: the shorter is less; keys of equal size compare element by element.
MC_EXPORT bool operator<(const MCHashKey& a, const MCHashKey& b);

namespace detail {

/// Whether two keys are the same to a hash table: equal stored hash, size and elements.
inline bool IsSameKey(const MCHashKey& a, const MCHashKey& b) {
  if (a.fHash != b.fHash || a.fSize != b.fSize) return false;
  const int* p = a.fData.get();
  const int* q = b.fData.get();
  for (const int* end = p + a.fSize; p != end; ++p, ++q) {
    if (*p != *q) return false;
  }
  return true;
}

}  // namespace detail

}  // namespace MCCommonMath
