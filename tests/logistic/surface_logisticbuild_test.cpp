// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the driver and the results of a logistic regression with its exact
// type: one that is missing or misnamed, or whose type has changed, doesn't compile.
#include "regression/logistic/mcconvergence.h"
#include "regression/logistic/mclogalgorithm.h"
#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mclogoutputstats.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;
using MCCommon::Record;
using mctest::Is;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;
using Parameters = std::vector<MCRegrParameter>;
using Statuses = std::vector<MCStatus>;

using A = MCLogAlgorithm;
using Step = MCStatus (A::*)(MultiPassRecordIter&);
static_assert(std::is_constructible_v<A, const MCLogRegSettings&>);
static_assert(!std::is_convertible_v<const MCLogRegSettings&, A>);
static_assert(!std::is_copy_constructible_v<A>);
static_assert(!std::is_polymorphic_v<A>);
static_assert(Is<MCStatus (A::*)(MultiPassRecordIter&, Parameters&)>(&A::CreateParameters));
static_assert(Is<Step>(&A::FillFactorTable));
static_assert(Is<Step>(&A::BuildModel));
static_assert(Is<MCStatus (A::*)(const Record&, Doubles&, int&) const>(&A::Score));
static_assert(Is<bool (A::*)(const Record&) const>(&A::ReachesPredictors));
static_assert(Is<bool (A::*)(const MCStatus&, bool)>(&A::AddNewWarning));
static_assert(Is<bool (A::*)(const Statuses&, bool)>(&A::AddNewWarnings));
static_assert(Is<void (A::*)()>(&A::Cancel));
static_assert(Is<bool (A::*)() const>(&A::AreParamsCreated));
static_assert(Is<bool (A::*)() const>(&A::IsModelBuilt));
static_assert(Is<bool (A::*)() const>(&A::IsFactorTableFilled));
static_assert(Is<const Doubles& (A::*)() const>(&A::GetMeanValues));
static_assert(Is<const MCFactorCounts& (A::*)() const>(&A::GetFactorCounts));
static_assert(Is<const MCLogModel& (A::*)() const>(&A::GetModel));
static_assert(Is<const MCRegOptimizer* (A::*)() const>(&A::GetOptimizer));
static_assert(Is<const Statuses& (A::*)() const>(&A::GetWarnings));
static_assert(Is<const MCRegRecordValidator& (A::*)() const>(&A::GetRecordValidator));
static_assert(Is<double (A::*)() const>(&A::GetTotalWeight));
static_assert(Is<double (A::*)() const>(&A::GetTotalRegrWeight));
static_assert(Is<const MCConvergence& (A::*)() const>(&A::GetConvergence));
static_assert(Is<void (A::*)() const>(&A::Display));

using S = MCLogOutputStats;
static_assert(std::is_base_of_v<IMCRegOutputStats, S>);
static_assert(std::is_constructible_v<S, const MCRegSettings&, MCLogAlgorithm&>);
static_assert(!std::is_copy_constructible_v<S>);
static_assert(!std::is_abstract_v<S>);
static_assert(Is<const Ints& (S::*)() const>(&S::GetDependCategories));
static_assert(Is<bool (S::*)(const Record&, Doubles&) const>(
    static_cast<bool (S::*)(const Record&, Doubles&) const>(&S::ExpandRow)));
static_assert(Is<bool (S::*)(const Record&, Ints&, Doubles&)>(
    static_cast<bool (S::*)(const Record&, Ints&, Doubles&)>(&S::ExpandRow)));
static_assert(Is<const MCConvergence& (S::*)() const>(&S::GetConvergence));

static_assert(std::is_standard_layout_v<MCConvergence>, "fields in the order told");
static_assert(std::is_same_v<decltype(MCConvergence::fReason), int>);
static_assert(std::is_same_v<decltype(MCConvergence::fIterations), int>);
static_assert(std::is_same_v<decltype(MCConvergence::fInitialLL), double>);
static_assert(std::is_same_v<decltype(MCConvergence::fFinalLL), double>);
static_assert(std::is_same_v<decltype(MCConvergence::fLLChange), double>);
static_assert(std::is_same_v<decltype(MCConvergence::fParamChange), double>);
static_assert(std::is_same_v<decltype(MCConvergence::fExpectedGain), double>);
static_assert(std::is_same_v<decltype(MCConvergence::fbScoreIsZero), bool>);
static_assert(Is<bool (MCConvergence::*)() const>(
    static_cast<bool (MCConvergence::*)() const>(&MCConvergence::IsConverged)));
static_assert(Is<bool (*)(int)>(static_cast<bool (*)(int)>(&MCConvergence::IsConverged)));

static_assert(std::is_same_v<decltype(compute_estimates), bool>);
static_assert(std::is_same_v<decltype(compute_variances), bool>);

TEST(SurfaceLogisticBuild, HasItsTypes) {
  SUCCEED();  // the assertions above are the test
}

}  // namespace
