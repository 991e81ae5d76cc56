// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the model with its exact type: one that is missing or misnamed, or
// whose type has changed, doesn't compile.
#include "regression/logistic/mclogmodel.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

using MCCommon::MCStatus;
using MCCommon::detail::MCPatternColumns;
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::Is;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;
using Parameters = std::vector<MCRegrParameter>;

// Picks the overload of that type; there being none, it doesn't compile.
template <class F>
constexpr bool HasOverload(F /*operation*/) {
  return true;
}

// What the interface declares, the model overrides with the same type.
template <class Class>
constexpr bool HasOperationsOfTheInterface() {
  using Tables = const MCFactorTables* (Class::*)() const;
  using Step = MCStatus (Class::*)();
  using Query = bool (Class::*)() const;
  using Matrix = const MCSymMatrix* (Class::*)() const;
  using List = const Parameters& (Class::*)() const;
  using Count = int (Class::*)() const;
  using Bits = const MCBitSet& (Class::*)() const;
  using Codes = const Ints& (Class::*)() const;
  using Clear = void (Class::*)();
  using Update = bool (Class::*)(const double*);
  using UpdateAt = bool (Class::*)(const double*, const Ints&);
  using Dense = bool (Class::*)(Doubles&, const double*) const;
  using Indexed = bool (Class::*)(const double*, Ints&, Doubles&) const;
  using Sparse = bool (Class::*)(const double*, int&, Ints&, Doubles&) const;
  using SparseAt = bool (Class::*)(const double*, const Ints&, int&, Ints&, Doubles&) const;
  return Is<Tables>(&Class::GetFactorTables) && Is<Step>(&Class::CreateParameters) &&
         Is<Query>(&Class::AreParamsCreated) && HasOverload<UpdateAt>(&Class::UpdateXPrimeX) &&
         HasOverload<Update>(&Class::UpdateXPrimeX) && Is<Step>(&Class::IdentifyRedundancy) &&
         Is<Query>(&Class::IsModelBuilt) &&
         Is<void (Class::*)(Doubles&, const double*)>(&Class::GetDResiduals) &&
         Is<Step>(&Class::FinishErrors) && Is<Matrix>(&Class::GetXPrimeX) &&
         Is<Matrix>(&Class::GetHessianGI) && Is<List>(&Class::GetParameters) &&
         Is<List>(&Class::GetBasicParams) && Is<Count>(&Class::GetNParameters) &&
         Is<Count>(&Class::GetNNonRedParams) && Is<Count>(&Class::GetNBasicParameters) &&
         Is<Count>(&Class::GetNBasicNonRed) &&
         Is<const Doubles& (Class::*)() const>(&Class::GetParamEstimates) &&
         Is<Bits>(&Class::GetBasicRedundInfo) && Is<Bits>(&Class::GetRedundancyInfo) &&
         Is<Count>(&Class::GetDependentNCategs) && Is<Codes>(&Class::GetDependCategories) &&
         Is<Codes>(&Class::GetDepCatLocalInds) && Is<Clear>(&Class::ClearXPrimeXMatrix) &&
         Is<Clear>(&Class::ClearHessianGIMatrix) &&
         Is<bool (Class::*)(int, int&, int&) const>(&Class::GetParamsForEffect) &&
         Is<MCStatus (Class::*)(const double*, Doubles&, int&) const>(&Class::Score) &&
         Is<MCStatus (Class::*)(const Doubles&, const MCSymMatrix&)>(&Class::UncompressEstimates) &&
         HasOverload<Dense>(&Class::ExpandRow) && HasOverload<Indexed>(&Class::ExpandRow) &&
         HasOverload<SparseAt>(&Class::ExpandAndCompressRow) &&
         HasOverload<Sparse>(&Class::ExpandAndCompressRow) &&
         Is<MCStatus (Class::*)() const>(&Class::GetStatus) &&
         Is<void (Class::*)() const>(&Class::Display);
}

static_assert(HasOperationsOfTheInterface<IMCRegModel>());
static_assert(HasOperationsOfTheInterface<MCLogModel>());
static_assert(std::is_abstract_v<IMCRegModel>);
static_assert(std::has_virtual_destructor_v<IMCRegModel>);

static_assert(std::is_base_of_v<IMCRegModel, MCLogModel>);
static_assert(!std::is_abstract_v<MCLogModel>);
static_assert(std::is_constructible_v<MCLogModel, const MCLogRegSettings&, MCCancelInfo&>);
static_assert(std::is_copy_constructible_v<MCLogModel>);
static_assert(!std::is_copy_assignable_v<MCLogModel>);
static_assert(Is<MCStatus (MCLogModel::*)(MCFactorTables*)>(&MCLogModel::SetDepCatInfo));
static_assert(Is<MCStatus (MCLogModel::*)(Doubles&) const>(&MCLogModel::SetInitialEstimates));
static_assert(Is<int (*)()>(&MCLogModel::GetMaxNMatrixRows));
static_assert(Is<const Ints& (MCLogModel::*)() const>(&MCLogModel::GetFactorOffsets));
static_assert(Is<const Ints& (MCLogModel::*)(bool) const>(&MCLogModel::GetCovariateOffsets));
static_assert(Is<int (MCLogModel::*)() const>(&MCLogModel::GetDependentRefCateg));
static_assert(Is<const Doubles& (MCLogModel::*)() const>(&MCLogModel::GetDependCatCounts));
static_assert(Is<const Doubles& (MCLogModel::*)() const>(&MCLogModel::GetDependCatNCases));
static_assert(Is<const MCRectMatrix* (MCLogModel::*)() const>(&MCLogModel::GetClassificationTable));
static_assert(Is<void (MCLogModel::*)(double, double)>(&MCLogModel::SetTotalWeight));
static_assert(
    Is<void (MCLogModel::*)(const Ints&, const Ints&, int, int, int)>(&MCLogModel::SetOffsets));
static_assert(Is<void (MCLogModel::*)(const Ints&, int, int, int)>(&MCLogModel::SetPatternOffsets));
static_assert(Is<double (MCLogModel::*)(const double*, const MCRegrParameter&, bool) const>(
    &MCLogModel::ComputeDesignRowValue2));
static_assert(
    Is<void (MCLogModel::*)(const Ints&, MCPatternColumns&) const>(&MCLogModel::DescribePattern));

TEST(SurfaceMCLogModel, HasItsTypes) {
  SUCCEED();  // the assertions above are the test
}

}  // namespace
