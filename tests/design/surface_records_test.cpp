// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the folder with its exact type: one that is missing or misnamed, or
// whose type has changed, doesn't compile.
#include "regression/design/mcrecordextractor.h"
#include "regression/design/mcregrecordvalidator.h"
#include "regression/design/mcregrparameter.h"
#include "regression/design/mcregrparameterstats.h"
#include "support/exacttype.h"

#include <type_traits>
#include <utility>
#include <vector>

namespace {

using mctest::Is;
using Ints = std::vector<int>;
using Roles = std::vector<MCConst::MCVariableType>;
using MCCommon::MCStatus;
using MCCommon::Record;

static_assert(std::is_default_constructible_v<MCRegrParameter>);
static_assert(std::is_copy_constructible_v<MCRegrParameter>);
static_assert(std::is_nothrow_move_constructible_v<MCRegrParameter>);
static_assert(!std::is_polymorphic_v<MCRegrParameter>);
static_assert(
    std::is_same_v<decltype(std::declval<const MCRegrParameter&>().GetCategories()), const Ints&>);
static_assert(std::is_same_v<decltype(std::declval<MCRegrParameter&>().GetCategories()), Ints&>);
static_assert(Is<const Ints& (MCRegrParameter::*)() const>(&MCRegrParameter::GetFactors));
static_assert(Is<const Ints& (MCRegrParameter::*)() const>(&MCRegrParameter::GetFactorNestLevels));
static_assert(Is<const Ints& (MCRegrParameter::*)() const>(&MCRegrParameter::GetCovariates));
static_assert(
    Is<const Ints& (MCRegrParameter::*)() const>(&MCRegrParameter::GetCovariateMultiplicities));
static_assert(Is<int (MCRegrParameter::*)() const>(&MCRegrParameter::GetNFactors));
static_assert(Is<int (MCRegrParameter::*)() const>(&MCRegrParameter::GetNCovariates));
static_assert(Is<int (MCRegrParameter::*)(int, int) const>(&MCRegrParameter::ContainsFactor));
static_assert(Is<int (MCRegrParameter::*)(int) const>(&MCRegrParameter::GetCovariateMult));
static_assert(Is<int (MCRegrParameter::*)() const>(&MCRegrParameter::GetNCovariateMult));
static_assert(Is<bool (MCRegrParameter::*)() const>(&MCRegrParameter::IsIntercept));
static_assert(Is<int (MCRegrParameter::*)() const>(&MCRegrParameter::GetEffectIndex));
static_assert(Is<void (MCRegrParameter::*)(int)>(&MCRegrParameter::SetEffectIndex));
static_assert(Is<int (MCRegrParameter::*)() const>(&MCRegrParameter::GetTargetCategory));
static_assert(Is<void (MCRegrParameter::*)(int)>(&MCRegrParameter::SetTargetCategory));
static_assert(Is<bool (MCRegrParameter::*)(int, int, int)>(&MCRegrParameter::AddFactor));
static_assert(Is<int (MCRegrParameter::*)(int, int)>(&MCRegrParameter::AddCovariate));
static_assert(Is<bool (MCRegrParameter::*)(const MCModelEffect&, int, int)>(
    &MCRegrParameter::SetupFromEffect));
static_assert(
    Is<bool (MCRegrParameter::*)(const MCRegrParameter&) const>(&MCRegrParameter::operator==));
static_assert(Is<void (MCRegrParameter::*)() const>(&MCRegrParameter::Display));

using Stats = MCRegrParameterStats;
static_assert(!std::is_polymorphic_v<Stats>);
static_assert(std::is_trivially_copyable_v<Stats>);
static_assert(Is<double (Stats::*)() const>(&Stats::GetSqrtDeff));
static_assert(Is<int Stats::*>(&Stats::fIndex));
static_assert(Is<double Stats::*>(&Stats::fEstimate));
static_assert(Is<bool Stats::*>(&Stats::fRedundant));
static_assert(Is<double Stats::*>(&Stats::fStat1));
static_assert(Is<double Stats::*>(&Stats::fStat2));
static_assert(Is<double Stats::*>(&Stats::fStat3));
static_assert(Is<double Stats::*>(&Stats::fStat4));
static_assert(Is<double Stats::*>(&Stats::fStat5));
static_assert(Is<double Stats::*>(&Stats::fStat6));
static_assert(Is<double Stats::*>(&Stats::fDeff));
static_assert(Is<int Stats::*>(&Stats::fEffectIndex));
static_assert(Is<double Stats::*>(&Stats::fStat7));

static_assert(std::is_default_constructible_v<MCRecordExtractor>);
static_assert(std::is_copy_constructible_v<MCRecordExtractor>);
static_assert(!std::is_polymorphic_v<MCRecordExtractor>);
static_assert(std::is_constructible_v<MCRecordExtractor, int, const Ints&, const Ints&, int, int>);
static_assert(Is<void (MCRecordExtractor::*)(int, const Ints&, const Ints&, int, int)>(
    &MCRecordExtractor::SetRecordIndices));
static_assert(Is<int (MCRecordExtractor::*)() const>(&MCRecordExtractor::GetDependentOffset));
static_assert(Is<const Ints& (MCRecordExtractor::*)() const>(&MCRecordExtractor::GetFactorOffsets));
static_assert(
    Is<const Ints& (MCRecordExtractor::*)() const>(&MCRecordExtractor::GetCovariateOffsets));
static_assert(Is<int (MCRecordExtractor::*)() const>(&MCRecordExtractor::GetFreqWeightOffset));
static_assert(Is<int (MCRecordExtractor::*)() const>(&MCRecordExtractor::GetRegrWeightOffset));
static_assert(
    Is<const Ints& (MCRecordExtractor::*)() const>(&MCRecordExtractor::GetAllRecordIndices));
static_assert(Is<void (MCRecordExtractor::*)() const>(&MCRecordExtractor::Display));

static_assert(std::is_default_constructible_v<MCRegRecordValidator>);
static_assert(std::is_copy_constructible_v<MCRegRecordValidator>);
static_assert(!std::is_polymorphic_v<MCRegRecordValidator>);
static_assert(
    std::is_constructible_v<MCRegRecordValidator, const Roles&, const Ints&, const Ints&, int>);
static_assert(Is<void (MCRegRecordValidator::*)(const Roles&, const Ints&, const Ints&, int)>(
    &MCRegRecordValidator::SetRecordInfo));
static_assert(Is<bool (MCRegRecordValidator::*)(const Record&, MCStatus&) const>(
    &MCRegRecordValidator::IsValidRecord));
static_assert(Is<bool (MCRegRecordValidator::*)(const Record&, MCStatus&) const>(
    &MCRegRecordValidator::IsValid4Scoring));
static_assert(Is<void (MCRegRecordValidator::*)() const>(&MCRegRecordValidator::Display));

}  // namespace
