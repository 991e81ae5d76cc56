// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mchashtable.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/localeguard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {
using MCCommonMath::MCHashKey;
using MCCommonMath::MCHashPair;
using MCCommonMath::MCHashPairPointerLess;
using MCCommonMath::MCHashtable;

static_assert(!std::is_copy_constructible_v<MCHashtable<int>>);
static_assert(!std::is_copy_assignable_v<MCHashtable<int>>);

std::unique_ptr<MCHashKey> MakeKey(const std::vector<int>& elements) {
  auto key = std::make_unique<MCHashKey>(static_cast<int>(elements.size()));
  std::copy(elements.begin(), elements.end(), key->fData.get());
  key->ComputeHash();
  return key;
}

// Puts as a caller has to: what is refused is freed here.
template <class T>
bool Put(MCHashtable<T>& table, const std::vector<int>& elements, T value) {
  auto key = MakeKey(elements);
  auto owned = std::make_unique<T>(std::move(value));
  if (!table.Put(key.get(), owned.get())) return false;
  static_cast<void>(key.release());
  static_cast<void>(owned.release());
  return true;
}

int ValueOf(const MCHashtable<int>& table, const std::vector<int>& elements) {
  const MCHashPair<int>* pair = table.Get(MakeKey(elements).get());
  return pair == nullptr ? -1 : *pair->fValue;
}

std::vector<int> ValuesInOrder(const MCHashtable<int>& table) {
  std::vector<int> values;
  table.ForEachEntry([&values](const MCHashPair<int>* pair) { values.push_back(*pair->fValue); });
  return values;
}

TEST(MCHashtable, StartsEmptyWith89Buckets) {
  const MCHashtable<int> table;
  EXPECT_EQ(table.fCapacity, 89);
  EXPECT_EQ(table.fCount, 0);
  EXPECT_EQ(table.fThreshold, 66);
  EXPECT_EQ(table.fLoadFactor, 0.75F);
  EXPECT_EQ(table.fModCount, 0);
  EXPECT_EQ(ValueOf(table, {1}), -1);
}

TEST(MCHashtable, FindsWhatWasPut) {
  MCHashtable<int> table;
  EXPECT_TRUE(Put(table, {1, 2}, 7));
  EXPECT_TRUE(Put(table, {2, 1}, 8));
  EXPECT_EQ(table.fCount, 2);
  EXPECT_EQ(ValueOf(table, {1, 2}), 7);
  EXPECT_EQ(ValueOf(table, {2, 1}), 8);
  EXPECT_EQ(ValueOf(table, {1, 2, 0}), -1);
}

TEST(MCHashtable, HandsOutTheKeyAndValueThatItWasGiven) {
  MCHashtable<int> table;
  MCHashKey* key = MakeKey({4}).release();
  auto* value = new int(5);
  ASSERT_TRUE(table.Put(key, value));
  const MCHashPair<int>* pair = table.Get(key);
  ASSERT_NE(pair, nullptr);
  EXPECT_EQ(pair->fKey, key);
  EXPECT_EQ(pair->fValue, value);
  EXPECT_EQ(pair->fNext, nullptr);
}

TEST(MCHashtable, TellsKeysOfEqualHashApart) {
  // All of them hash to 0.
  MCHashtable<int> table;
  EXPECT_TRUE(Put(table, {}, 1));
  EXPECT_TRUE(Put(table, {0}, 2));
  EXPECT_TRUE(Put(table, {0, 0}, 3));
  EXPECT_TRUE(Put(table, {5, 3}, 4));  // 15 xor 15
  EXPECT_EQ(ValueOf(table, {}), 1);
  EXPECT_EQ(ValueOf(table, {0}), 2);
  EXPECT_EQ(ValueOf(table, {0, 0}), 3);
  EXPECT_EQ(ValueOf(table, {5, 3}), 4);
  EXPECT_EQ(ValuesInOrder(table), (std::vector<int>{4, 3, 2, 1})) << "newest first in a bucket";
}

TEST(MCHashtable, RefusesAKeyThatItHas) {
  MCHashtable<int> table;
  ASSERT_TRUE(Put(table, {1, 2}, 7));
  EXPECT_FALSE(Put(table, {1, 2}, 9));
  EXPECT_EQ(table.fCount, 1);
  EXPECT_EQ(table.fModCount, 0);
  EXPECT_EQ(ValueOf(table, {1, 2}), 7);
}

TEST(MCHashtable, RefusesTheSamePointersAgainAndKeepsThem) {
  MCHashtable<int> table;
  MCHashKey* key = MakeKey({4}).release();
  auto* value = new int(5);
  ASSERT_TRUE(table.Put(key, value));
  EXPECT_FALSE(table.Put(key, value));
  EXPECT_EQ(table.fCount, 1);
}

TEST(MCHashtable, RefusesNullPointers) {
  MCHashtable<int> table;
  const auto key = MakeKey({1});
  int value = 1;
  EXPECT_FALSE(table.Put(nullptr, &value));
  EXPECT_FALSE(table.Put(key.get(), nullptr));
  EXPECT_FALSE(table.Put(nullptr, nullptr));
  EXPECT_EQ(table.Get(nullptr), nullptr);
  EXPECT_EQ(table.fCount, 0);
}

TEST(MCHashtable, TrustsTheStoredHash) {
  MCHashtable<int> table;
  ASSERT_TRUE(Put(table, {1, 2}, 7));
  auto stale = MakeKey({1, 3});
  stale->fData[1] = 2;
  EXPECT_EQ(table.Get(stale.get()), nullptr);
  stale->ComputeHash();
  EXPECT_NE(table.Get(stale.get()), nullptr);
  // A hash that lands in the same bucket is not enough.
  stale->fHash += 89;
  EXPECT_EQ(table.Get(stale.get()), nullptr);
}

TEST(MCHashtable, GrowsAtThe67thKeyTo179Buckets) {
  MCHashtable<int> table;
  for (int i = 0; i < 66; ++i) ASSERT_TRUE(Put(table, {i}, i));
  EXPECT_FALSE(Put(table, {3}, 0)) << "a known key doesn't make it grow";
  EXPECT_EQ(table.fCapacity, 89);
  ASSERT_TRUE(Put(table, {66}, 66));
  EXPECT_EQ(table.fCapacity, 179);
  EXPECT_EQ(table.fThreshold, 134);
  EXPECT_EQ(table.fModCount, 1);
  EXPECT_EQ(table.fCount, 67);
}

TEST(MCHashtable, FindsEveryKeyAfterManyGrowths) {
  MCHashtable<int> table;
  struct Growth {
    int fCount, fCapacity, fThreshold;
  };
  // Capacities 2c + 1; thresholds are the integer part of three quarters.
  const std::vector<Growth> expected = {
      {67, 179, 134}, {135, 359, 269}, {270, 719, 539}, {540, 1439, 1079}, {1080, 2879, 2159}};
  std::vector<Growth> seen;
  int capacity = table.fCapacity;
  for (int i = 0; i < 2000; ++i) {
    ASSERT_TRUE(Put(table, {i, i % 7, -i}, i));
    if (table.fCapacity != capacity)
      seen.push_back({table.fCount, table.fCapacity, table.fThreshold});
    capacity = table.fCapacity;
  }
  ASSERT_EQ(seen.size(), expected.size());
  for (std::size_t i = 0; i < seen.size(); ++i) {
    EXPECT_EQ(seen[i].fCount, expected[i].fCount);
    EXPECT_EQ(seen[i].fCapacity, expected[i].fCapacity);
    EXPECT_EQ(seen[i].fThreshold, expected[i].fThreshold);
  }
  EXPECT_EQ(table.fModCount, 5);
  for (int i = 0; i < 2000; ++i) EXPECT_EQ(ValueOf(table, {i, i % 7, -i}), i);
  EXPECT_EQ(ValueOf(table, {2000, 5, -2000}), -1);
}

TEST(MCHashtable, EntriesStayWhereTheyAreWhileItGrows) {
  MCHashtable<int> table;
  ASSERT_TRUE(Put(table, {0}, 0));
  MCHashPair<int>* pair = table.Get(MakeKey({0}).get());
  for (int i = 1; i < 500; ++i) ASSERT_TRUE(Put(table, {i}, i));
  EXPECT_EQ(table.Get(MakeKey({0}).get()), pair);
  *pair->fValue = 77;
  EXPECT_EQ(ValueOf(table, {0}), 77);
}

TEST(MCHashtable, ReversesChainsWhenItGrows) {
  // Hashes 3i: those of i and i + 179 * 89 share their buckets before and after growth.
  constexpr int kBoth = 179 * 89;
  MCHashtable<int> table;
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(Put(table, {i * kBoth}, i));
  EXPECT_EQ(ValuesInOrder(table), (std::vector<int>{2, 1, 0}));
  for (int i = 3; i < 67; ++i) ASSERT_TRUE(Put(table, {i}, i));
  ASSERT_EQ(table.fModCount, 1);
  std::vector<int> values = ValuesInOrder(table);
  values.resize(3);
  EXPECT_EQ(values, (std::vector<int>{0, 1, 2}));
}

TEST(MCHashtable, KeysOfAnyElementsAreSafe) {
  constexpr int kLargest = std::numeric_limits<int>::max();
  constexpr int kSmallest = std::numeric_limits<int>::min();
  MCHashtable<int> table;
  std::map<std::vector<int>, int> oracle;
  std::mt19937 random(20240517);
  std::uniform_int_distribution<int> any(kSmallest, kLargest);
  const int extremes[] = {kSmallest, kLargest, -1, 0, 1, 9377658};
  int negative = 0;
  for (int i = 0; i < 3000; ++i) {
    std::vector<int> key(static_cast<std::size_t>(random() % 4));
    for (int& element : key) element = random() % 2 == 0 ? any(random) : extremes[random() % 6];
    negative += MakeKey(key)->fHash < 0 ? 1 : 0;
    EXPECT_EQ(Put(table, key, i), oracle.emplace(key, i).second);
  }
  EXPECT_GT(negative, 500);
  EXPECT_EQ(table.fCount, static_cast<int>(oracle.size()));
  for (const auto& [key, value] : oracle) EXPECT_EQ(ValueOf(table, key), value);
}

TEST(MCHashtable, ChoosesTheBucketFromTheUnsignedHash) {
  MCHashtable<int> table;
  ASSERT_TRUE(Put(table, {-1}, 0));  // hash 2^32 - 3, and (2^32 - 3) % 89 = 42
  EXPECT_NE(mctest::DisplayOf(table).find("\nBucket 42 :"), std::string::npos);
}

TEST(MCHashtable, CapacityStopsWhereNoIntCouldHoldIt) {
  using MCCommonMath::detail::NextCapacity;
  EXPECT_EQ(NextCapacity(89), 179);
  EXPECT_EQ(NextCapacity(1073741823), std::numeric_limits<int>::max());
  EXPECT_EQ(NextCapacity(1073741824), 1073741824);
  EXPECT_EQ(NextCapacity(std::numeric_limits<int>::max()), std::numeric_limits<int>::max());
}

TEST(MCHashtable, LookupsAllocateNothing) {
  MCHashtable<int> table;
  for (int i = 0; i < 1000; ++i) ASSERT_TRUE(Put(table, {i, -i}, i));
  MCHashKey key(2);
  int found = 0;
  const std::size_t before = mctest::AllocationCount();
  for (int i = 0; i < 2000; ++i) {
    key.fData[0] = i;
    key.fData[1] = -i;
    key.ComputeHash();
    found += table.Get(&key) != nullptr ? 1 : 0;
  }
  EXPECT_EQ(mctest::AllocationCount(), before);
  EXPECT_EQ(found, 1000);
}

TEST(MCHashtable, ARefusedPutAllocatesNothing) {
  MCHashtable<int> table;
  ASSERT_TRUE(Put(table, {1}, 1));
  const auto key = MakeKey({1});
  int value = 2;
  const std::size_t before = mctest::AllocationCount();
  EXPECT_FALSE(table.Put(key.get(), &value));
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCHashtable, APutAllocatesOneEntry) {
  MCHashtable<int> table;
  auto key = MakeKey({1});
  auto value = std::make_unique<int>(2);
  const std::size_t before = mctest::AllocationCount();
  ASSERT_TRUE(table.Put(key.release(), value.release()));
  EXPECT_EQ(mctest::AllocationCount(), before + 1);
}

TEST(MCHashtable, APutThatRunsOutOfMemoryTakesNothingOver) {
  MCHashtable<int> table;
  for (int i = 0; i < 66; ++i) ASSERT_TRUE(Put(table, {i}, i));
  // The entry and the new buckets: two allocations, either of which may fail.
  const auto key = MakeKey({66});
  const auto value = std::make_unique<int>(66);
  for (const std::size_t k : {1U, 2U}) {
    const mctest::FailAllocation failure(k);
    EXPECT_THROW(table.Put(key.get(), value.get()), std::bad_alloc);
    EXPECT_TRUE(failure.HasFired());
    EXPECT_EQ(table.Get(key.get()), nullptr);
    EXPECT_EQ(table.fCount, 66);
    EXPECT_EQ(table.fCapacity, 89);
    EXPECT_EQ(table.fThreshold, 66);
    EXPECT_EQ(table.fModCount, 0);
  }
  EXPECT_TRUE(Put(table, {66}, 66));
  EXPECT_EQ(table.fCapacity, 179);
}

// Counts how many of its kind live.
struct Counted {
  explicit Counted(int& alive) : fAlive(alive) { ++fAlive; }
  ~Counted() { --fAlive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  static void Display() {}
  int& fAlive;
};

TEST(MCHashtable, DeletesItsValues) {
  int alive = 0;
  {
    MCHashtable<Counted> table;
    for (int i = 0; i < 100; ++i) {
      ASSERT_TRUE(table.Put(MakeKey({i}).release(), new Counted(alive)));
    }
    EXPECT_EQ(alive, 100);
  }
  EXPECT_EQ(alive, 0);
}

TEST(MCHashPairPointerLess, OrdersEntriesByTheirKeys) {
  MCHashtable<int> table;
  const std::vector<std::vector<int>> ascending = {{3}, {9}, {-1, 4}, {0, 0}, {0, 1}};
  for (int i = 4; i >= 0; --i) ASSERT_TRUE(Put(table, ascending[static_cast<std::size_t>(i)], i));
  std::vector<const MCHashPair<int>*> pairs;
  table.ForEachEntry([&pairs](const MCHashPair<int>* pair) { pairs.push_back(pair); });
  std::sort(pairs.begin(), pairs.end(), MCHashPairPointerLess<int>());
  for (int i = 0; i < 5; ++i) EXPECT_EQ(*pairs[static_cast<std::size_t>(i)]->fValue, i);
}

struct Shown {
  void Display() const { MCComponentDisplay::DisplayI("Shown", fNumber); }
  int fNumber;
};

TEST(MCHashtable, DisplaysFilledBucketsWithKeyThenValue) {
  MCHashtable<int> table;
  EXPECT_EQ(mctest::DisplayOf(table), "\nStart of Hashtable.\n\nEnd of Hashtable.\n");
  ASSERT_TRUE(Put(table, {1, 2}, 7));
  ASSERT_TRUE(Put(table, {3}, 8));
  ASSERT_TRUE(Put(table, {30}, 9));  // hash 90, bucket 1
  EXPECT_EQ(mctest::DisplayOf(table),
            "\nStart of Hashtable.\n"
            "\nBucket 1 :\n\t Key:   30\n\t Value: 9"
            "\nBucket 9 :\n\t Key:   3\n\t Value: 8\n\t Key:   1  2\n\t Value: 7"
            "\nEnd of Hashtable.\n");
}

TEST(MCHashtable, DisplaysNumbersWithADecimalPointInEveryLocale) {
  const mctest::LocaleGuard german("de_DE.UTF-8");
  ASSERT_TRUE(german.IsSet());
  MCHashtable<double> table;
  ASSERT_TRUE(Put(table, {1}, 1234.5));
  EXPECT_NE(mctest::DisplayOf(table).find("Value: 1234.5"), std::string::npos);
}

TEST(MCHashtable, DisplaysValuesByTheirOwnDisplay) {
  MCHashtable<Shown> table;
  ASSERT_TRUE(Put(table, {1}, Shown{5}));
  EXPECT_EQ(mctest::DisplayOf(table),
            "\nStart of Hashtable.\n\nBucket 3 :\n\t Key:   1\nShown = 5\nEnd of Hashtable.\n");
}
}  // namespace
