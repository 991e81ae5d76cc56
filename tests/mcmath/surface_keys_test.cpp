// SPDX-License-Identifier: Apache-2.0
// The public operations of bit sets, keys, hash tables and packed ints, with their exact types:
// what is missing or has another type doesn't compile.
#include "mcmath/mcbitset.h"
#include "mcmath/mchashkey.h"
#include "mcmath/mchashpair.h"
#include "mcmath/mchashtable.h"
#include "mcmath/mcpackedint.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace {
using mctest::Is;
using namespace MCCommonMath;
using Ints = std::vector<int>;

static_assert(std::is_default_constructible_v<MCBitSet>);
static_assert(std::is_constructible_v<MCBitSet, int>);
static_assert(std::is_copy_constructible_v<MCBitSet> && std::is_copy_assignable_v<MCBitSet>);
static_assert(Is<int (MCBitSet::*)() const>(&MCBitSet::Size));
static_assert(Is<bool (MCBitSet::*)(int) const>(&MCBitSet::IsIn));
static_assert(Is<bool (MCBitSet::*)(int, bool)>(&MCBitSet::Set));
static_assert(Is<bool (MCBitSet::*)(int, int, bool)>(&MCBitSet::SetRange));
static_assert(Is<bool (MCBitSet::*)(const Ints&, bool)>(&MCBitSet::SetSubset));
static_assert(Is<int (MCBitSet::*)(bool)>(&MCBitSet::Append));
static_assert(Is<void (MCBitSet::*)()>(&MCBitSet::Clear));
static_assert(Is<void (MCBitSet::*)(int, bool)>(&MCBitSet::Resize));
static_assert(Is<void (MCBitSet::*)()>(&MCBitSet::Negate));
static_assert(Is<int (MCBitSet::*)(int, int) const>(&MCBitSet::InRange));
static_assert(Is<int (MCBitSet::*)(int, int) const>(&MCBitSet::InRangeS));
static_assert(Is<int (MCBitSet::*)() const>(&MCBitSet::InSet));
static_assert(Is<bool (MCBitSet::*)(const MCBitSet&, int) const>(&MCBitSet::IsNewFalse));
static_assert(Is<MCBitSet (MCBitSet::*)(int, int) const>(&MCBitSet::GetSubset));
static_assert(Is<void (MCBitSet::*)(const MCBitSet&, const MCBitSet&)>(&MCBitSet::DoAND));
static_assert(Is<void (MCBitSet::*)(const MCBitSet&, const MCBitSet&)>(&MCBitSet::DoOR));
static_assert(Is<bool (MCBitSet::*)(const MCBitSet&) const>(&MCBitSet::operator==));
static_assert(Is<void (MCBitSet::*)() const>(&MCBitSet::Display));

static_assert(std::is_default_constructible_v<MCHashKey>);
static_assert(std::is_constructible_v<MCHashKey, int>);
static_assert(std::is_copy_constructible_v<MCHashKey> && std::is_copy_assignable_v<MCHashKey>);
static_assert(!std::is_polymorphic_v<MCHashKey>);
static_assert(Is<void (*)(int)>(&MCHashKey::SetElementOffset));
static_assert(Is<int (*)()>(&MCHashKey::GetElementOffset));
static_assert(Is<int (*)()>(&MCHashKey::GetElementUpperBound));
static_assert(Is<void (MCHashKey::*)()>(&MCHashKey::ComputeHash));
static_assert(Is<void (MCHashKey::*)() const>(&MCHashKey::Display));
static_assert(Is<int*>(&MCHashKey::ADD_LOWER_BOUND));
static_assert(std::is_same_v<decltype(MCHashKey::PRIME_FACTOR), const int[49]>);
static_assert(
    Is<std::unique_ptr<int[], MCCommonMath::detail::KeyStorage> MCHashKey::*>(&MCHashKey::fData));
static_assert(Is<int MCHashKey::*>(&MCHashKey::fSize));
static_assert(Is<int MCHashKey::*>(&MCHashKey::fHash));
static_assert(Is<bool (*)(const MCHashKey&, const MCHashKey&)>(&MCCommonMath::operator<));

using Pair = MCHashPair<int>;
using Table = MCHashtable<int>;
static_assert(Is<MCHashKey * Pair::*>(&Pair::fKey));
static_assert(Is<int * Pair::*>(&Pair::fValue));
static_assert(Is<Pair * Pair::*>(&Pair::fNext));
static_assert(std::is_invocable_r_v<bool, MCHashPairPointerLess<int>, const Pair*, const Pair*>);
static_assert(std::is_default_constructible_v<Table>);
static_assert(Is<bool (Table::*)(MCHashKey*, int*)>(&Table::Put));
static_assert(Is<Pair* (Table::*)(const MCHashKey*) const>(&Table::Get));
static_assert(Is<void (Table::*)() const>(&Table::Display));
static_assert(Is<int Table::*>(&Table::fCapacity));
static_assert(Is<int Table::*>(&Table::fCount));
static_assert(Is<int Table::*>(&Table::fThreshold));
static_assert(Is<float Table::*>(&Table::fLoadFactor));
static_assert(Is<int Table::*>(&Table::fModCount));

static_assert(std::is_default_constructible_v<MCPackedInt>);
static_assert(std::is_constructible_v<MCPackedInt, int, int, const Ints&>);
static_assert(Is<bool (MCPackedInt::*)(int, int, const Ints&)>(&MCPackedInt::SetForSequence));
static_assert(Is<bool (MCPackedInt::*)()>(&MCPackedInt::Setup));
static_assert(Is<bool (MCPackedInt::*)(const Ints&, Ints&, bool) const>(&MCPackedInt::Pack));
static_assert(Is<bool (MCPackedInt::*)(Ints&, const Ints&) const>(&MCPackedInt::Unpack));
static_assert(Is<int (MCPackedInt::*)() const>(&MCPackedInt::GetSeqSize));
static_assert(Is<int (MCPackedInt::*)() const>(&MCPackedInt::GetLowerBound));
static_assert(Is<int (MCPackedInt::*)(int) const>(&MCPackedInt::GetNDiffVal));
static_assert(Is<void (MCPackedInt::*)() const>(&MCPackedInt::Display));

TEST(SurfaceOfKeys, IsExportedByTheLibrary) {
  // What the assertions above name must also link.
  MCHashtable<int> table;
  auto key = std::make_unique<MCHashKey>(2);
  auto value = std::make_unique<int>(3);
  EXPECT_TRUE(table.Put(key.release(), value.release()));
  EXPECT_FALSE(MCHashKey(2) < MCHashKey(1));
  EXPECT_EQ(MCBitSet(3).InSet(), 0);
  EXPECT_EQ(MCPackedInt(1, 1, {5}).GetNDiffVal(0), 5);
}
}  // namespace
