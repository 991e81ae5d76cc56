// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the folder with its exact type: one that is missing or misnamed, or
// whose type has changed, doesn't compile.
#include "regression/linear/mcglmalgorithm.h"
#include "regression/linear/mcglmmodel.h"
#include "regression/linear/mcglmoutputstats.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;
using MCCommon::Record;
using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using mctest::Is;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;
using Parameters = std::vector<MCRegrParameter>;

static_assert(std::is_constructible_v<MCGLMModel, const MCRegSettings&, MCCancelInfo&>);
static_assert(!std::is_copy_constructible_v<MCGLMModel>);
static_assert(!std::is_polymorphic_v<MCGLMModel>);
static_assert(Is<const MCFactorTables* (MCGLMModel::*)() const>(&MCGLMModel::GetFactorTables));
static_assert(Is<bool (MCGLMModel::*)() const>(&MCGLMModel::AreParamsCreated));
static_assert(Is<bool (MCGLMModel::*)() const>(&MCGLMModel::IsModelBuilt));
static_assert(Is<const MCSymMatrix* (MCGLMModel::*)() const>(&MCGLMModel::GetZPrimeZ));
static_assert(Is<const Ints& (MCGLMModel::*)() const>(&MCGLMModel::GetFactorOffsets));
static_assert(Is<const Ints& (MCGLMModel::*)() const>(&MCGLMModel::GetCovariateOffsets));
static_assert(Is<const Parameters& (MCGLMModel::*)() const>(&MCGLMModel::GetParameters));
static_assert(Is<int (MCGLMModel::*)() const>(&MCGLMModel::GetNParameters));
static_assert(Is<const Doubles& (MCGLMModel::*)() const>(&MCGLMModel::GetParamEstimates));
static_assert(Is<const MCBitSet& (MCGLMModel::*)() const>(&MCGLMModel::GetRedundancyInfo));
static_assert(Is<double (MCGLMModel::*)() const>(&MCGLMModel::GetMultipleRSquare));
static_assert(Is<double (MCGLMModel::*)() const>(&MCGLMModel::GetRootMeanSquareError));
static_assert(Is<const std::vector<MCStatus>& (MCGLMModel::*)() const>(&MCGLMModel::GetWarnings));
static_assert(
    Is<void (MCGLMModel::*)(const Ints&, const Ints&, int, int, int)>(&MCGLMModel::SetOffsets));
static_assert(Is<MCStatus (MCGLMModel::*)(MCFactorTables*)>(&MCGLMModel::CreateParameters));
static_assert(Is<void (MCGLMModel::*)(double, double)>(&MCGLMModel::SetDepMeanAndTotalW));
static_assert(Is<bool (MCGLMModel::*)(const double*)>(&MCGLMModel::UpdateZPrimeZ));
static_assert(Is<bool (MCGLMModel::*)(Doubles&, const double*) const>(&MCGLMModel::ExpandRow));
static_assert(Is<double (MCGLMModel::*)(const double*, const MCRegrParameter&) const>(
    &MCGLMModel::ComputeDesignRowValue2));
static_assert(Is<double (MCGLMModel::*)(const double*, const MCRegrParameter&) const>(
    &MCGLMModel::ComputeDesignRowValue));
static_assert(Is<MCStatus (MCGLMModel::*)()>(&MCGLMModel::BuildModel));
static_assert(Is<void (MCGLMModel::*)(Doubles&, const double*)>(&MCGLMModel::GetDResiduals));
static_assert(Is<void (MCGLMModel::*)(const double*)>(&MCGLMModel::AddResidual));
static_assert(Is<MCStatus (MCGLMModel::*)()>(&MCGLMModel::FinishErrors));
static_assert(Is<double (MCGLMModel::*)(const double*) const>(&MCGLMModel::Score));
static_assert(Is<bool (MCGLMModel::*)(int, int&, int&) const>(&MCGLMModel::GetParamsForEffect));
static_assert(Is<void (MCGLMModel::*)()>(&MCGLMModel::ClearZPrimeZMatrix));
static_assert(Is<void (MCGLMModel::*)() const>(&MCGLMModel::Display));

using Pass = MCStatus (MCGLMAlgorithm::*)(MultiPassRecordIter&);
static_assert(std::is_constructible_v<MCGLMAlgorithm, const MCRegSettings&>);
static_assert(!std::is_convertible_v<const MCRegSettings&, MCGLMAlgorithm>);
static_assert(!std::is_copy_constructible_v<MCGLMAlgorithm>);
static_assert(!std::is_polymorphic_v<MCGLMAlgorithm>);
static_assert(Is<Pass>(&MCGLMAlgorithm::ProcessData));
static_assert(Is<Pass>(&MCGLMAlgorithm::ProcessSource));
static_assert(Is<MCStatus (MCGLMAlgorithm::*)(Parameters&)>(&MCGLMAlgorithm::CreateParameters));
static_assert(Is<Pass>(&MCGLMAlgorithm::BuildModel));
static_assert(Is<Pass>(&MCGLMAlgorithm::FillDesignMatrix));
static_assert(Is<Pass>(&MCGLMAlgorithm::ComputeResiduals));
static_assert(
    Is<MCStatus (MCGLMAlgorithm::*)(const Record&, double&) const>(&MCGLMAlgorithm::Score));
static_assert(
    Is<bool (MCGLMAlgorithm::*)(const Record&) const>(&MCGLMAlgorithm::ReachesPredictors));
static_assert(Is<bool (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::IsDataProcessed));
static_assert(Is<bool (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::IsModelBuilt));
static_assert(Is<const Doubles& (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::GetMeanValues));
static_assert(
    Is<const MCFactorCounts& (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::GetFactorCounts));
static_assert(Is<const MCGLMModel& (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::GetModel));
static_assert(Is<const MCRegRecordValidator& (MCGLMAlgorithm::*)() const>(
    &MCGLMAlgorithm::GetRecordValidator));
static_assert(
    Is<const std::vector<MCStatus>& (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::GetWarnings));
static_assert(Is<double (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::GetTotalFreqWeight));
static_assert(Is<double (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::GetTotalRegrWeight));
static_assert(Is<bool (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::AreParamsCreated));
static_assert(Is<void (MCGLMAlgorithm::*)()>(&MCGLMAlgorithm::Cancel));
static_assert(Is<void (MCGLMAlgorithm::*)() const>(&MCGLMAlgorithm::Display));

static_assert(std::is_base_of_v<IMCRegOutputStats, MCGLMOutputStats>);
static_assert(std::is_constructible_v<MCGLMOutputStats, const MCRegSettings&, MCGLMAlgorithm&>);
static_assert(!std::is_copy_constructible_v<MCGLMOutputStats>);
static_assert(!std::is_abstract_v<MCGLMOutputStats>);

TEST(SurfaceLinear, HasItsTypes) {
  SUCCEED();  // the assertions above are the test
}

}  // namespace
