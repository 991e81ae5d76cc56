// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the folder with its exact type: one that is missing or misnamed, or
// whose type has changed, doesn't compile.
#include "regression/settings/mclogregsettings.h"
#include "regression/settings/mcmodeleffect.h"
#include "regression/settings/mcregsettings.h"
#include "support/exacttype.h"

#include <type_traits>
#include <vector>

namespace {

using mctest::Is;
using Ints = std::vector<int>;
using Effects = std::vector<MCModelEffect>;
using MCCommon::MCStatus;

static_assert(std::is_default_constructible_v<MCModelEffect>);
static_assert(std::is_copy_constructible_v<MCModelEffect>);
static_assert(!std::is_polymorphic_v<MCModelEffect>);
static_assert(std::is_constructible_v<MCModelEffect, int, int, const Ints*>);
static_assert(Is<void (MCModelEffect::*)(int, int, const Ints*)>(&MCModelEffect::Setup));
static_assert(Is<void (MCModelEffect::*)()>(&MCModelEffect::Reset));
static_assert(Is<bool (MCModelEffect::*)(int, bool)>(&MCModelEffect::AddNewFactor));
static_assert(Is<int (MCModelEffect::*)(int)>(&MCModelEffect::AddCovariate));
static_assert(Is<int (MCModelEffect::*)(int) const>(&MCModelEffect::ContainsFactor));
static_assert(Is<int (MCModelEffect::*)(int) const>(&MCModelEffect::GetCovariateMult));
static_assert(Is<int (MCModelEffect::*)() const>(&MCModelEffect::GetNCovariateMult));
static_assert(Is<bool (MCModelEffect::*)() const>(&MCModelEffect::IsIntercept));
static_assert(Is<Ints (MCModelEffect::*)() const>(&MCModelEffect::GetFactors));
static_assert(Is<Ints (MCModelEffect::*)() const>(&MCModelEffect::GetFactorLevels));
static_assert(Is<Ints (MCModelEffect::*)() const>(&MCModelEffect::GetCovariates));
static_assert(Is<Ints (MCModelEffect::*)() const>(&MCModelEffect::GetCovMultiplicities));
static_assert(Is<const Ints& (MCModelEffect::*)() const>(&MCModelEffect::GetModelEffect));
static_assert(Is<const Ints* (MCModelEffect::*)() const>(&MCModelEffect::GetVarIndices));
static_assert(Is<void (MCModelEffect::*)(const Ints*)>(&MCModelEffect::SetVarIndices));
static_assert(Is<int (MCModelEffect::*)() const>(&MCModelEffect::GetNFactors));
static_assert(Is<int (MCModelEffect::*)() const>(&MCModelEffect::GetNModelFactors));
static_assert(Is<int (MCModelEffect::*)() const>(&MCModelEffect::GetNCovariates));
static_assert(Is<int (MCModelEffect::*)() const>(&MCModelEffect::GetNModelCovariates));
static_assert(Is<int (MCModelEffect::*)() const>(&MCModelEffect::GetNLevels));
static_assert(Is<bool (MCModelEffect::*)() const>(&MCModelEffect::GetFactorsInParens));
static_assert(Is<void (MCModelEffect::*)()>(&MCModelEffect::SetFactorsInParens));
static_assert(Is<bool (MCModelEffect::*)(const MCModelEffect&) const>(&MCModelEffect::operator==));
static_assert(
    Is<bool (MCModelEffect::*)(const MCModelEffect&) const>(&MCModelEffect::IsContainedIn));
static_assert(Is<bool (MCModelEffect::*)(const std::vector<bool>&)>(&MCModelEffect::ApplyMask));
static_assert(
    Is<int (MCModelEffect::*)(const Ints&, int, int, int) const>(&MCModelEffect::FindInVector));
static_assert(Is<void (MCModelEffect::*)() const>(&MCModelEffect::Display));
static_assert(Is<std::vector<bool> (*)(const Effects&)>(&MCModelEffect::CheckVariableUse));
static_assert(Is<void (*)(const Effects&, Ints&, Ints&)>(&MCModelEffect::GetUsedVariables));

static_assert(std::has_virtual_destructor_v<MCRegSettings>);
static_assert(std::is_default_constructible_v<MCRegSettings>);
static_assert(std::is_copy_constructible_v<MCRegSettings>);
static_assert(std::is_copy_assignable_v<MCRegSettings>);
static_assert(Is<int (MCRegSettings::*)() const>(&MCRegSettings::GetModelType));
static_assert(Is<MCStatus (MCRegSettings::*)() const>(&MCRegSettings::IsValidSettings));
static_assert(Is<bool (MCRegSettings::*)(int)>(&MCRegSettings::SetDependent));
static_assert(Is<int (MCRegSettings::*)(int)>(&MCRegSettings::AddCovariate));
static_assert(Is<bool (MCRegSettings::*)(const MCModelEffect&)>(&MCRegSettings::AddModelEffect));
static_assert(Is<void (MCRegSettings::*)() const>(&MCRegSettings::Display));
static_assert(Is<bool (MCRegSettings::*)(int)>(&MCRegSettings::SetRegrWeightVar));
static_assert(Is<bool (MCRegSettings::*)(int)>(&MCRegSettings::SetFrequencyWeightVar));
static_assert(Is<int (MCRegSettings::*)(int, int)>(&MCRegSettings::AddFactor));
static_assert(Is<void (MCRegSettings::*)(bool)>(&MCRegSettings::SetInterceptUse));
static_assert(Is<void (MCRegSettings::*)(double)>(&MCRegSettings::SetTolerance));
static_assert(Is<void (MCRegSettings::*)(MCConst::MCTestType)>(&MCRegSettings::SetTestType));
static_assert(
    Is<void (MCRegSettings::*)(MCConst::MCPAdjustMethod)>(&MCRegSettings::SetPAdjustment));
static_assert(Is<void (MCRegSettings::*)(MCConst::MCCovbType)>(&MCRegSettings::SetCovbType));
static_assert(Is<void (MCRegSettings::*)(ProgressListener*)>(&MCRegSettings::SetProgressListener));
static_assert(Is<void (MCRegSettings::*)(MCQueryCancel*)>(&MCRegSettings::SetCancelPointer));
static_assert(Is<void (MCRegSettings::*)(double)>(&MCRegSettings::SetConfidenceLevel));
static_assert(Is<void (MCRegSettings::*)(double)>(&MCRegSettings::SetDF));
static_assert(Is<int (MCRegSettings::*)() const>(&MCRegSettings::GetDependent));
static_assert(Is<const Ints& (MCRegSettings::*)() const>(&MCRegSettings::GetFactors));
static_assert(Is<const Ints& (MCRegSettings::*)() const>(&MCRegSettings::GetFactorSizes));
static_assert(Is<const Ints& (MCRegSettings::*)() const>(&MCRegSettings::GetCovariates));
static_assert(Is<int (MCRegSettings::*)() const>(&MCRegSettings::GetFrequencyWeightVar));
static_assert(Is<int (MCRegSettings::*)() const>(&MCRegSettings::GetRegrWeightVar));
static_assert(Is<bool (MCRegSettings::*)() const>(&MCRegSettings::GetInterceptUse));
static_assert(Is<double (MCRegSettings::*)() const>(&MCRegSettings::GetTolerance));
static_assert(Is<const Effects& (MCRegSettings::*)() const>(&MCRegSettings::GetModelEffects));
static_assert(Is<int (MCRegSettings::*)() const>(&MCRegSettings::GetNModelEffects));
static_assert(Is<double (MCRegSettings::*)() const>(&MCRegSettings::GetConfidenceLevel));
static_assert(Is<double (MCRegSettings::*)() const>(&MCRegSettings::GetDF));
static_assert(Is<MCConst::MCTestType (MCRegSettings::*)() const>(&MCRegSettings::GetTestType));
static_assert(
    Is<MCConst::MCPAdjustMethod (MCRegSettings::*)() const>(&MCRegSettings::GetPAdjustment));
static_assert(
    Is<ProgressListener* (MCRegSettings::*)() const>(&MCRegSettings::GetProgressListener));
static_assert(Is<MCQueryCancel* (MCRegSettings::*)() const>(&MCRegSettings::GetCancelPointer));
static_assert(Is<const std::vector<MCConst::MCVariableType>& (MCRegSettings::*)() const>(
    &MCRegSettings::GetVariableTypes));
static_assert(Is<MCConst::MCCovbType (MCRegSettings::*)() const>(&MCRegSettings::GetCovbType));

static_assert(std::is_base_of_v<MCRegSettings, MCLogRegSettings>);
static_assert(std::is_default_constructible_v<MCLogRegSettings>);
static_assert(std::is_copy_constructible_v<MCLogRegSettings>);
static_assert(std::is_copy_assignable_v<MCLogRegSettings>);
static_assert(Is<int (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetModelType));
static_assert(Is<MCStatus (MCLogRegSettings::*)() const>(&MCLogRegSettings::IsValidSettings));
static_assert(Is<void (MCLogRegSettings::*)() const>(&MCLogRegSettings::Display));
static_assert(Is<bool (MCLogRegSettings::*)(int, int)>(&MCLogRegSettings::SetDependentRefCat));
static_assert(Is<bool (MCLogRegSettings::*)(int)>(&MCLogRegSettings::SetIterationFrequency));
static_assert(Is<bool (MCLogRegSettings::*)(double)>(&MCLogRegSettings::SetLLConCriterion));
static_assert(Is<bool (MCLogRegSettings::*)(double)>(&MCLogRegSettings::SetParamEstConCriterion));
static_assert(Is<bool (MCLogRegSettings::*)(int)>(&MCLogRegSettings::SetMaxIterations));
static_assert(Is<bool (MCLogRegSettings::*)(int)>(&MCLogRegSettings::SetMaxStepHalvingValue));
static_assert(Is<bool (MCLogRegSettings::*)(int)>(&MCLogRegSettings::SetStartingIteration));
static_assert(Is<void (MCLogRegSettings::*)(bool)>(&MCLogRegSettings::SetLLFuncChange));
static_assert(Is<void (MCLogRegSettings::*)(bool)>(&MCLogRegSettings::SetParamEstChange));
static_assert(Is<void (MCLogRegSettings::*)(bool)>(&MCLogRegSettings::SetUsePatternTabulator));
static_assert(Is<int (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetDependentNCategs));
static_assert(Is<int (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetDependentRefCateg));
static_assert(Is<int (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetIterationFrequency));
static_assert(Is<double (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetLLConCriterion));
static_assert(Is<bool (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetLLFuncChange));
static_assert(Is<double (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetParamEstConCriterion));
static_assert(Is<bool (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetParamEstChange));
static_assert(Is<int (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetMaxIterations));
static_assert(Is<int (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetMaxStepHalvingValue));
static_assert(Is<int (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetStartingIteration));
static_assert(Is<bool (MCLogRegSettings::*)() const>(&MCLogRegSettings::GetUsePatternTabulator));

}  // namespace
