// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactorcounts.h"
#include "regression/design/mcfactortables.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

// Every public operation with its exact type: what is missing or misnamed doesn't compile.
namespace {

using mctest::Is;
using Ints = std::vector<int>;
using Counts = std::vector<std::pair<double, double>>;
using Pairs = std::vector<const MCCommonMath::MCHashPair<int>*>;
using Table = MCCommonMath::MCHashtable<int>;
using Key = MCCommonMath::MCHashKey;

using C = MCFactorCounts;
static_assert(std::is_same_v<C::CategoryCounts, Counts>);
static_assert(std::is_constructible_v<C, const Ints&, const Ints&, int, int, int, int, int, double,
                                      MCConst::MCOffsetType>);
static_assert(std::is_copy_constructible_v<C> && std::is_copy_assignable_v<C>);
static_assert(!std::is_polymorphic_v<C>);
static_assert(Is<int (C::*)() const>(&C::GetNFactors));
static_assert(Is<int (C::*)(int) const>(&C::GetNCategories));
static_assert(Is<const Counts* (C::*)(int) const>(&C::GetCountsPtr));
static_assert(Is<const Counts* (C::*)() const>(&C::GetDependCountsPtr));
static_assert(Is<const Counts* (C::*)() const>(&C::GetDepCountsWithOffsetPtr));
static_assert(Is<int (C::*)(int) const>(&C::GetNActiveCategories));
static_assert(Is<bool (C::*)(const MCCommon::Record&)>(&C::Update));
static_assert(Is<void (C::*)() const>(&C::Display));

using T = MCFactorTables;
static_assert(std::is_base_of_v<C, T> && std::is_convertible_v<T*, C*>);
static_assert(std::is_constructible_v<T, const Ints&, const Ints&, int, int, int, int, int, double,
                                      MCConst::MCOffsetType>);
static_assert(!std::is_copy_constructible_v<T> && !std::is_copy_assignable_v<T>);
static_assert(!std::is_move_constructible_v<T> && !std::is_move_assignable_v<T>);
static_assert(std::has_virtual_destructor_v<T>);
static_assert(std::is_same_v<T::HashPairs, Pairs>);
static_assert(Is<void (T::*)(int)>(&T::SetRegrWeightVar));
static_assert(Is<int (T::*)() const>(&T::GetNModelEffects));
static_assert(Is<const std::vector<Ints>& (T::*)() const>(&T::GetModelEffectFactors));
static_assert(Is<const Ints& (T::*)() const>(&T::GetParameterOffsets));
static_assert(Is<const Ints& (T::*)() const>(&T::GetModelEffectIndices));
static_assert(Is<const Ints& (T::*)() const>(&T::GetLocalEffectIndices));
static_assert(Is<int (T::*)() const>(&T::GetNCovariates));
static_assert(Is<double (T::*)() const>(&T::GetTotalWeight));
static_assert(Is<double (T::*)() const>(&T::GetTotalRegrWeight));
static_assert(Is<double (T::*)() const>(&T::GetSampleSize));
static_assert(Is<void (T::*)(const std::vector<Ints>&, const Ints&)>(&T::SetModelEffectFactors));
static_assert(Is<void (T::*)()>(&T::SetFactorTables));
static_assert(Is<void (T::*)(const Ints&)>(&T::SetCovariates));
static_assert(Is<bool (T::*)(const MCCommon::Record&)>(&T::UpdateAll));
static_assert(Is<bool (*)(Table*, Pairs*, Key&)>(&T::UpdateHashtable));
static_assert(Is<int (T::*)()>(&T::CreateParameterIndices));
static_assert(Is<int (T::*)(int) const>(&T::GetNEffectParameters));
static_assert(Is<int (*)(const Table*, Key&)>(&T::GetParameterIndex));
static_assert(Is<const Ints& (T::*)(const Ints&, bool&) const>(&T::GetParameterIndices));
static_assert(Is<int (T::*)(int, const Ints&) const>(&T::GetEffectParameterIndex));
static_assert(Is<const Ints& (T::*)(const double*, bool&) const>(&T::GetRowParameterIndices));
static_assert(Is<const Ints& (T::*)(const double*, bool&) const>(&T::GetRowLocalParamIndices));
static_assert(Is<bool (T::*)(Ints&, int, int) const>(&T::GetParameterFactorValues));
static_assert(Is<const std::vector<double>& (T::*)()>(&T::GetCovariateMeans));
static_assert(Is<int (T::*)() const>(&T::GetIncompleteEffectIndex));
static_assert(Is<void (T::*)() const>(&T::Display));

class Overriding : public MCFactorTables {
public:
  using MCFactorTables::MCFactorTables;
  bool UpdateAll(const MCCommon::Record&) override { return ++fCalls > 0; }
  int CreateParameterIndices() override { return 100 + ++fCalls; }
  int fCalls = 0;
};

TEST(MCFactorTablesSurface, RowsAndNumberingCanBeOverridden) {
  Overriding tables({}, {}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  MCFactorTables& base = tables;
  EXPECT_TRUE(base.UpdateAll(MCCommon::Record(0)));
  EXPECT_EQ(base.CreateParameterIndices(), 102);
}

}  // namespace
