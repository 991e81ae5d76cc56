// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the components and of the interfaces that a host holds, with its exact
// type: one that is missing or misnamed, or whose type has changed, doesn't compile. The order of
// virtual operations is part of the contract with hosts that were compiled apart.
#include "regression/component/mcglmcomponent.h"
#include "regression/component/mclogcomponent.h"
#include "regression/component/mcregfactory.h"
#include "regression/interface/imcregcomponent.h"
#include "regression/interface/imcregoutputstats.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

namespace {

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;
using MCCommon::Record;
using mctest::Is;
using Doubles = std::vector<double>;
using Parameters = std::vector<MCRegrParameter>;
using Statuses = std::vector<MCStatus>;

using C = IMCRegComponent;
static_assert(std::is_abstract_v<C>);
static_assert(std::has_virtual_destructor_v<C>);
static_assert(Is<int (C::*)() const>(&C::GetModelType));
static_assert(Is<MCStatus (C::*)(MultiPassRecordIter&, Parameters&)>(&C::CreateParameters));
static_assert(Is<MCStatus (C::*)(MultiPassRecordIter&)>(&C::BuildModel));
static_assert(Is<bool (C::*)() const>(&C::IsModelBuilt));
static_assert(Is<MCStatus (C::*)(IMCRegOutputStats*&)>(&C::GetOutputStats));
static_assert(Is<const MCRegSettings& (C::*)() const>(&C::GetCompSettings));
static_assert(Is<MCStatus (C::*)(const Record&, double&, Doubles&) const>(&C::Score));
static_assert(Is<void (C::*)()>(&C::Cancel));
static_assert(Is<MCStatus (C::*)() const>(&C::GetStatus));
static_assert(Is<Statuses (C::*)() const>(&C::GetWarnings));
static_assert(Is<void (C::*)() const>(&C::Display));

using S = IMCRegOutputStats;
static_assert(std::is_abstract_v<S>);
static_assert(std::has_virtual_destructor_v<S>);
static_assert(Is<int (S::*)() const>(&S::GetModelType));
static_assert(Is<const MCFactorCounts* (S::*)() const>(&S::GetFactorCounts));
static_assert(Is<const Doubles* (S::*)() const>(&S::GetMeanValues));
static_assert(Is<const Doubles* (S::*)() const>(&S::GetParamEstimates));
static_assert(Is<const Parameters* (S::*)() const>(&S::GetParameters));
static_assert(Is<double (S::*)() const>(&S::GetTotalFreqWeight));
static_assert(Is<double (S::*)() const>(&S::GetTotalRegrWeight));
static_assert(Is<double (S::*)() const>(&S::GetNDegFreedom));
static_assert(Is<double (S::*)(MCConst::MCModelFitStat) const>(&S::GetModelFitStat));
static_assert(Is<const MCCommonMath::MCSymMatrix* (S::*)() const>(&S::GetCovarianceMatrix));
static_assert(Is<const std::vector<MCRegrParameterStats>& (S::*)() const>(&S::GetParamStats));
static_assert(Is<const MCCommonMath::MCBitSet& (S::*)() const>(&S::GetRedundancyIndicators));
static_assert(Is<const MCRegRecordValidator& (S::*)() const>(&S::GetRecordValidator));
static_assert(Is<bool (S::*)(const Record&, Doubles&) const>(&S::ExpandRow));
static_assert(Is<void (S::*)()>(&S::Cancel));
static_assert(Is<void (S::*)() const>(&S::Display));

static_assert(std::is_base_of_v<IMCRegComponent, MCGLMComponent>);
static_assert(!std::is_abstract_v<MCGLMComponent>);
static_assert(std::is_constructible_v<MCGLMComponent, const MCRegSettings&>);
static_assert(!std::is_copy_constructible_v<MCGLMComponent>);
static_assert(!std::is_move_constructible_v<MCGLMComponent>);

using L = MCLogComponent;
static_assert(std::is_base_of_v<IMCRegComponent, L>);
static_assert(!std::is_abstract_v<L>);
static_assert(std::is_constructible_v<L, const MCLogRegSettings&>);
static_assert(!std::is_copy_constructible_v<L>);
static_assert(!std::is_move_constructible_v<L>);
static_assert(Is<MCConvergence (L::*)() const>(&L::GetConvergence));
static_assert(Is<const MCLogRegSettings& (L::*)() const>(&L::GetCompSettings));

static_assert(
    Is<IMCRegComponent* (MCRegFactory::*)(MCRegSettings&)>(&MCRegFactory::CreateRegAlgorithm));
static_assert(Is<MCStatus (MCRegFactory::*)() const>(&MCRegFactory::GetStatus));

// Place of a virtual operation in its table: the x86-64 ABI keeps in a pointer to it one more than
// the offset there.
template <class F>
std::ptrdiff_t PlaceOf(F operation) {
  std::ptrdiff_t offset = 0;
  std::memcpy(&offset, &operation, sizeof offset);
  return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(SurfaceComponent, VirtualOperationsOfAComponentStandInOrderBehindTheDestructor) {
  const std::vector<std::ptrdiff_t> places = {
      PlaceOf(&C::GetModelType), PlaceOf(&C::CreateParameters), PlaceOf(&C::BuildModel),
      PlaceOf(&C::IsModelBuilt), PlaceOf(&C::GetOutputStats),   PlaceOf(&C::GetCompSettings),
      PlaceOf(&C::Score),        PlaceOf(&C::Cancel),           PlaceOf(&C::GetStatus),
      PlaceOf(&C::GetWarnings),  PlaceOf(&C::Display)};
  for (std::size_t i = 0; i < places.size(); ++i) {
    EXPECT_EQ(places[i], static_cast<std::ptrdiff_t>(i) + 2) << "a destructor has two places";
  }
}

TEST(SurfaceComponent, VirtualOperationsOfOutputStatisticsStandInOrderBehindTheDestructor) {
  const std::vector<std::ptrdiff_t> places = {PlaceOf(&S::GetModelType),
                                              PlaceOf(&S::GetFactorCounts),
                                              PlaceOf(&S::GetMeanValues),
                                              PlaceOf(&S::GetParamEstimates),
                                              PlaceOf(&S::GetParameters),
                                              PlaceOf(&S::GetTotalFreqWeight),
                                              PlaceOf(&S::GetTotalRegrWeight),
                                              PlaceOf(&S::GetNDegFreedom),
                                              PlaceOf(&S::GetModelFitStat),
                                              PlaceOf(&S::GetCovarianceMatrix),
                                              PlaceOf(&S::GetParamStats),
                                              PlaceOf(&S::GetRedundancyIndicators),
                                              PlaceOf(&S::GetRecordValidator),
                                              PlaceOf(&S::ExpandRow),
                                              PlaceOf(&S::Cancel),
                                              PlaceOf(&S::Display)};
  for (std::size_t i = 0; i < places.size(); ++i) {
    EXPECT_EQ(places[i], static_cast<std::ptrdiff_t>(i) + 2) << "a destructor has two places";
  }
}

}  // namespace
