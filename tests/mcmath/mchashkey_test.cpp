// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mchashkey.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <new>
#include <vector>

namespace {
using MCCommonMath::MCHashKey;

constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kSmallest = std::numeric_limits<int>::min();

MCHashKey MakeKey(const std::vector<int>& elements) {
  MCHashKey key(static_cast<int>(elements.size()));
  for (std::size_t i = 0; i < elements.size(); ++i) key.fData[i] = elements[i];
  key.ComputeHash();
  return key;
}

std::vector<int> Elements(const MCHashKey& key) {
  return {key.fData.get(), key.fData.get() + key.fSize};
}

// The element offset belongs to the whole process: whoever changes it puts it back.
class ElementOffset {
public:
  explicit ElementOffset(int offset) { MCHashKey::SetElementOffset(offset); }
  ~ElementOffset() { MCHashKey::SetElementOffset(0); }
};

// The hash rule in 64 bits, reduced modulo 2^32 at the end of each product.
int OracleHash(const std::vector<int>& elements, int offset) {
  std::uint32_t hash = 0;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const std::int64_t product =
        (std::int64_t{offset} + elements[i]) * MCHashKey::PRIME_FACTOR[i % 49];
    hash ^= static_cast<std::uint32_t>(product & 0xFFFFFFFF);
  }
  return static_cast<int>(hash);
}

TEST(MCHashKey, MultipliesByThePrimesFrom3To229) {
  std::vector<int> primes;
  for (int candidate = 3; candidate <= 229; ++candidate) {
    bool prime = true;
    for (int d = 2; d * d <= candidate; ++d) prime = prime && candidate % d != 0;
    if (prime) primes.push_back(candidate);
  }
  EXPECT_EQ(primes, std::vector<int>(std::begin(MCHashKey::PRIME_FACTOR),
                                     std::end(MCHashKey::PRIME_FACTOR)));
  EXPECT_EQ(primes.size(), 49U);
}

TEST(MCHashKey, IsEmptyByDefaultAndForSizesBelowOne) {
  for (const MCHashKey& key : {MCHashKey(), MCHashKey(0), MCHashKey(-1), MCHashKey(kSmallest)}) {
    EXPECT_EQ(key.fSize, 0);
    EXPECT_EQ(key.fHash, 0);
    EXPECT_EQ(key.fData, nullptr);
  }
}

TEST(MCHashKey, StartsWithElementsOfZeroAndTheirHash) {
  const ElementOffset offset(5);
  const MCHashKey key(3);
  EXPECT_EQ(Elements(key), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(key.fHash, (5 * 3) ^ (5 * 5) ^ (5 * 7));
}

TEST(MCHashKey, HashesByExclusiveOrOfProducts) {
  EXPECT_EQ(MakeKey({1, 2}).fHash, 9);
  EXPECT_EQ(MakeKey({0, 0}).fHash, 0);
  EXPECT_EQ(MakeKey({}).fHash, 0);
  EXPECT_EQ(MakeKey({4, 1, 9}).fHash, 12 ^ 5 ^ 63);
}

TEST(MCHashKey, RepeatsItsMultipliersAfter49Positions) {
  std::vector<int> elements(50, 0);
  elements[0] = 7;
  const int first = MakeKey(elements).fHash;
  elements[0] = 0;
  elements[49] = 7;
  EXPECT_EQ(MakeKey(elements).fHash, first);
  elements[49] = 0;
  elements[48] = 7;
  EXPECT_EQ(MakeKey(elements).fHash, 7 * 229);
}

TEST(MCHashKey, HashesAnyElementWithoutOverflow) {
  std::vector<int> elements;
  for (int i = 0; i < 120; ++i) {
    elements.push_back(i % 3 == 0 ? kSmallest + i : i % 3 == 1 ? kLargest - i : -i);
    for (const int offset : {0, 1, -1, kLargest, kSmallest}) {
      const ElementOffset guard(offset);
      EXPECT_EQ(MakeKey(elements).fHash, OracleHash(elements, offset)) << i << ' ' << offset;
    }
  }
}

TEST(MCHashKey, KeepsHashesFromBeingNegativeUpToTheElementBound) {
  EXPECT_EQ(MCHashKey::GetElementUpperBound(), 9377657);
  std::vector<int> elements;
  for (int i = 0; i < 60; ++i) {
    elements.push_back(9377657 - i);
    EXPECT_GE(MakeKey(elements).fHash, 0);
  }
  // One more and the product with the last prime passes 31 bits.
  elements.assign(49, 0);
  elements[48] = 9377658;
  EXPECT_LT(MakeKey(elements).fHash, 0);
}

TEST(MCHashKey, LowersTheElementBoundByTheOffset) {
  EXPECT_EQ(MCHashKey::GetElementOffset(), 0);
  const ElementOffset offset(1000);
  EXPECT_EQ(MCHashKey::GetElementOffset(), 1000);
  EXPECT_EQ(MCHashKey::ADD_LOWER_BOUND, 1000);
  EXPECT_EQ(MCHashKey::GetElementUpperBound(), 9376657);
  EXPECT_EQ(MakeKey({1, 2}).fHash, (1001 * 3) ^ (1002 * 5));
}

TEST(MCHashKey, SaturatesAnElementBoundThatNoIntHolds) {
  const ElementOffset offset(kSmallest);
  EXPECT_EQ(MCHashKey::GetElementUpperBound(), kLargest);
  MCHashKey::SetElementOffset(kLargest);
  EXPECT_EQ(MCHashKey::GetElementUpperBound(), 9377657 - kLargest);
}

TEST(MCHashKey, CopiesElementsAndTheStoredHash) {
  MCHashKey key = MakeKey({3, 4});
  key.fData[0] = 5;  // the hash is stale now, and a copy keeps it so
  const MCHashKey copy(key);
  EXPECT_EQ(Elements(copy), (std::vector<int>{5, 4}));
  EXPECT_EQ(copy.fHash, (3 * 3) ^ (4 * 5));
  key.fData[1] = 6;
  EXPECT_EQ(Elements(copy), (std::vector<int>{5, 4}));
  EXPECT_EQ(MCHashKey(MCHashKey()).fData, nullptr);
}

TEST(MCHashKey, AssignmentAllocatesOnlyWhereSizesDiffer) {
  const MCHashKey source = MakeKey({3, 4, 5});
  MCHashKey same(3);
  MCHashKey other(4);
  const std::size_t before = mctest::AllocationCount();
  same = source;
  EXPECT_EQ(mctest::AllocationCount(), before);
  other = source;
  EXPECT_EQ(mctest::AllocationCount(), before + 1);
  for (const MCHashKey* key : {&same, &other}) {
    EXPECT_EQ(Elements(*key), (std::vector<int>{3, 4, 5}));
    EXPECT_EQ(key->fHash, source.fHash);
  }
  other = MCHashKey();
  EXPECT_EQ(other.fSize, 0);
  EXPECT_EQ(other.fData, nullptr);
  EXPECT_EQ(other.fHash, 0);
}

TEST(MCHashKey, AssignmentToItselfChangesNothing) {
  MCHashKey key = MakeKey({3, 4});
  const MCHashKey& alias = key;
  key = alias;
  EXPECT_EQ(Elements(key), (std::vector<int>{3, 4}));
}

TEST(MCHashKey, AnAssignmentThatRunsOutOfMemoryChangesNothing) {
  const MCHashKey source = MakeKey({3, 4, 5});
  for (const std::vector<int>& elements : std::vector<std::vector<int>>{{1}, {1, 2, 3, 4}}) {
    MCHashKey key = MakeKey(elements);
    const int hash = key.fHash;
    const mctest::FailAllocation failure(1);
    EXPECT_THROW(key = source, std::bad_alloc);
    EXPECT_EQ(Elements(key), elements);
    EXPECT_EQ(key.fHash, hash);
  }
}

TEST(MCHashKey, KeepsUpToTwoElementsWithoutAllocation) {
  // A table has a key for each entry: with both elements it fits the least block of the heap.
  EXPECT_LE(sizeof(MCHashKey), 24U);
  const std::size_t before = mctest::AllocationCount();
  MCHashKey key(2);
  key.fData[0] = 3;
  key.fData[1] = 4;
  key.ComputeHash();
  const MCHashKey copy(key);
  MCHashKey assigned(1);
  assigned = copy;
  EXPECT_EQ(mctest::AllocationCount(), before);
  EXPECT_EQ(Elements(assigned), (std::vector<int>{3, 4}));
  EXPECT_TRUE(MCCommonMath::detail::IsSameKey(assigned, key));
}

TEST(MCHashKey, IsItsOwnCopyWhateverTheSizesBefore) {
  const std::vector<std::vector<int>> all = {{}, {1}, {1, 2}, {1, 2, 3}, {1, 2, 3, 4}};
  for (const std::vector<int>& from : all) {
    for (const std::vector<int>& to : all) {
      MCHashKey key = MakeKey(to);
      {
        const MCHashKey source = MakeKey(from);
        key = source;
        EXPECT_TRUE(key.fData == nullptr || key.fData != source.fData);
      }
      EXPECT_EQ(Elements(key), from);
      EXPECT_EQ(key.fHash, MakeKey(from).fHash);
      EXPECT_EQ(key.fData == nullptr, from.empty());
    }
  }
}

TEST(MCHashKey, RefillingAllocatesNothing) {
  MCHashKey key(60);
  const std::size_t before = mctest::AllocationCount();
  for (int i = 0; i < key.fSize; ++i) key.fData[static_cast<std::size_t>(i)] = i;
  key.ComputeHash();
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCHashKey, OrdersBySizeThenByElements) {
  const std::vector<std::vector<int>> ascending = {{},     {-5},   {3},    {-9, 7},
                                                   {1, 2}, {1, 3}, {2, 0}, {0, 0, 0}};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = 0; j < ascending.size(); ++j) {
      EXPECT_EQ(MakeKey(ascending[i]) < MakeKey(ascending[j]), i < j) << i << ' ' << j;
    }
  }
}

TEST(MCHashKey, DisplaysItsElements) {
  EXPECT_EQ(mctest::DisplayOf(MakeKey({1, -2, 30})), "\n\t Key:   1  -2  30");
  EXPECT_EQ(mctest::DisplayOf(MCHashKey()), "\n\t Key: ");
}
}  // namespace
