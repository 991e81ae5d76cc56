// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mchashpair.h"
#include "regression/frame/mccomponentdisplay.h"

#include <cstdint>
#include <limits>
#include <locale>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace MCCommonMath {

namespace detail {

/// Number of buckets after a table of `capacity` buckets grew: 89, 179, 359, 719 and so on. Where
/// no int could hold it the table stays as it is, and its chains lengthen.
inline int NextCapacity(int capacity) {
  const std::int64_t next = 2 * std::int64_t{capacity} + 1;
  return next <= std::numeric_limits<int>::max() ? static_cast<int>(next) : capacity;
}

template <class T, class = void>
struct HasDisplay : std::false_type {};
template <class T>
struct HasDisplay<T, std::void_t<decltype(std::declval<const T&>().Display())>> : std::true_type {};

}  // namespace detail

/// A chained hash table from keys to values of type T, which finds a parameter number from a
/// combination of factor levels once for each row. It owns what was put, never hashes (a key
/// brings its hash with it) and allocates nothing in a lookup. Entries are never removed.
///
/// T is anything that can be deleted, and shown either by its own Display() or by operator<<.
template <class T>
class MCHashtable {
public:
  MCHashtable() : fBuckets(static_cast<std::size_t>(fCapacity), nullptr) {}

  /// Deletes every key and value, and all entries.
  ~MCHashtable() {
    ForEachEntry([](MCHashPair<T>* pair) {
      delete pair->fKey;
      delete pair->fValue;
      delete pair;
    });
  }

  /// A table owns raw pointers, so it has no copy.
  MCHashtable(const MCHashtable&) = delete;
  MCHashtable& operator=(const MCHashtable&) = delete;

  /// Enters `key` with `value`. On true the table owns both. False if the key is in the table
  /// already or if either pointer is null; nothing is changed then, and what was handed in stays
  /// the caller's, except that pointers which an earlier call has accepted remain the table's.
  /// Where memory runs out the exception passes, and nothing is changed or taken over either.
  /// `key->fHash` must be up to date: a key with another hash is another key.
  bool Put(MCHashKey* key, T* value) {
    if (key == nullptr || value == nullptr || Get(key) != nullptr) return false;
    auto pair = std::make_unique<MCHashPair<T>>();
    pair->fKey = key;
    pair->fValue = value;
    if (fCount >= fThreshold) Grow();
    Push(fBuckets, pair.release());
    ++fCount;
    return true;
  }

  /// The entry whose key has the hash, size and elements of `key`, or null; also for a null key.
  /// The entry lives as long as the table.
  MCHashPair<T>* Get(const MCHashKey* key) const {
    if (key == nullptr) return nullptr;
    MCHashPair<T>* pair = fBuckets[Bucket(*key, fBuckets.size())];
    while (pair != nullptr && !detail::IsSameKey(*pair->fKey, *key)) pair = pair->fNext;
    return pair;
  }

  /// Calls `visit(MCHashPair<T>*)` for every entry: buckets in ascending order, each from its
  /// head. `visit` may delete the entry.
  template <class Visitor>
  void ForEachEntry(Visitor visit) const {
    for (MCHashPair<T>* pair : fBuckets) {
      while (pair != nullptr) {
        MCHashPair<T>* next = pair->fNext;
        visit(pair);
        pair = next;
      }
    }
  }

  /// Writes all entries, bucket by bucket, to the diagnostic display.
  void Display() const {
    MCComponentDisplay::DisplayText(1, "Start of Hashtable.\n");
    for (std::size_t bucket = 0; bucket < fBuckets.size(); ++bucket) {
      if (fBuckets[bucket] == nullptr) continue;
      MCComponentDisplay::DisplayText(1, "Bucket " + std::to_string(bucket) + " :");
      for (const MCHashPair<T>* pair = fBuckets[bucket]; pair != nullptr; pair = pair->fNext) {
        pair->fKey->Display();
        DisplayValue(*pair->fValue);
      }
    }
    MCComponentDisplay::DisplayText(1, "End of Hashtable.\n");
  }

  // For reading only.
  int fCapacity = 89;         ///< number of buckets
  int fCount = 0;             ///< number of entries
  int fThreshold = 66;        ///< the table grows before an entry is added to so many
  float fLoadFactor = 0.75F;  ///< threshold over capacity after growth
  int fModCount = 0;          ///< number of times the table has grown

private:
  using Buckets = std::vector<MCHashPair<T>*>;

  // From the unsigned hash, as a remainder of a negative one would be no index.
  static std::size_t Bucket(const MCHashKey& key, std::size_t capacity) {
    return static_cast<unsigned>(key.fHash) % static_cast<unsigned>(capacity);
  }

  static void Push(Buckets& buckets, MCHashPair<T>* pair) {
    MCHashPair<T>*& head = buckets[Bucket(*pair->fKey, buckets.size())];
    pair->fNext = head;
    head = pair;
  }

  void Grow() {
    const int capacity = detail::NextCapacity(fCapacity);
    if (capacity == fCapacity) return;
    Buckets buckets(static_cast<std::size_t>(capacity), nullptr);
    ForEachEntry([&buckets](MCHashPair<T>* pair) { Push(buckets, pair); });
    fBuckets.swap(buckets);
    fCapacity = capacity;
    fThreshold = static_cast<int>(static_cast<float>(capacity) * fLoadFactor);
    ++fModCount;
  }

  static void DisplayValue(const T& value) {
    if constexpr (detail::HasDisplay<T>::value) {
      value.Display();
    } else {
      std::ostringstream text;
      text.imbue(std::locale::classic());
      text << "\t Value: " << value;
      MCComponentDisplay::DisplayText(1, text.str());
    }
  }

  Buckets fBuckets;
};

}  // namespace MCCommonMath
