// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the optimizer and its reports with its exact type: one that is missing
// or misnamed, or whose type has changed, doesn't compile.
#include "regression/logistic/mciterationreporter.h"
#include "regression/logistic/mcregoptimizer.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

using MCCommon::MCStatus;
using MCConst::MCEstimationMethod;
using mctest::Is;
using Doubles = std::vector<double>;
using Optimizer = MCRegOptimizer;
using Reporter = MCIterationReporter;

static_assert(std::is_constructible_v<Optimizer, const MCLogRegSettings&, const IMCRegModel&,
                                      IMCDataHandler*, IMCAccumStats*, Doubles&, ProgressListener*,
                                      int, MCEstimationMethod, int>);
static_assert(!std::is_copy_constructible_v<Optimizer>);
static_assert(!std::is_copy_assignable_v<Optimizer>);
static_assert(!std::is_polymorphic_v<Optimizer>);
static_assert(Is<MCStatus (Optimizer::*)()>(&Optimizer::Estimate));
static_assert(Is<const Doubles& (Optimizer::*)() const>(&Optimizer::GetParEstimates));
static_assert(
    Is<const MCCommonMath::MCSymMatrix* (Optimizer::*)() const>(&Optimizer::GetHessianGI));
static_assert(Is<void (Optimizer::*)()>(&Optimizer::ClearHessianGIMatrix));
static_assert(Is<int (Optimizer::*)() const>(&Optimizer::GetConverCrit));
static_assert(Is<void (Optimizer::*)(int&, double&, double&, double&, double&) const>(
    &Optimizer::GetEstStats));
static_assert(Is<int (Optimizer::*)() const>(&Optimizer::GetFisherIterInHybrid));
static_assert(Is<bool (Optimizer::*)(MCEstimationMethod) const>(&Optimizer::HybridSwitch));
static_assert(Is<int (Optimizer::*)(const Doubles&, double, int, double, bool)>(
    &Optimizer::CheckForConvergence));
static_assert(
    Is<bool (Optimizer::*)(double&, double&, double&) const>(&Optimizer::ComputeRSquares));
static_assert(Is<void (Optimizer::*)()>(&Optimizer::Cancel));
static_assert(Is<void (Optimizer::*)() const>(&Optimizer::Display));

static_assert(std::is_base_of_v<ProgressReportVect, Reporter>);
static_assert(std::is_default_constructible_v<Reporter>);
static_assert(!std::is_abstract_v<Reporter>);
static_assert(Is<int (Reporter::*)(const std::string&)>(&Reporter::DiscreteMeasure));
static_assert(Is<double (Reporter::*)(const std::string&)>(&Reporter::ScaleMeasure));
static_assert(Is<const Doubles* (Reporter::*)(const std::string&)>(&Reporter::VectorMeasure));
static_assert(Is<void (Reporter::*)()>(&Reporter::Reset));
static_assert(Is<void (Reporter::*)() const>(&Reporter::Display));
static_assert(Is<void (Reporter::*)(const Doubles*, int, int, double, double)>(&Reporter::SetInfo));

TEST(SurfaceOptimizer, HasItsTypes) {
  SUCCEED();  // the assertions above are the test
}

}  // namespace
