// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the accumulator and its interface with its exact type: one that is
// missing or misnamed, or whose type has changed, doesn't compile.
#include "regression/interface/imcaccumstats.h"
#include "regression/logistic/mcaccumstatslogistic.h"
#include "support/exacttype.h"

#include <type_traits>
#include <vector>

namespace {

using mctest::Is;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;
using MCConst::MCEstimationMethod;

template <class Stats>
constexpr bool HasOperations() {
  return Is<void (Stats::*)(MCEstimationMethod, bool)>(&Stats::Reset) &&
         Is<bool (Stats::*)()>(&Stats::CheckConstraints) &&
         Is<int (Stats::*)(const Ints&, const Doubles&, int, double, bool)>(&Stats::UpdateForRow) &&
         Is<double (Stats::*)() const>(&Stats::GetLL) &&
         Is<const Doubles& (Stats::*)() const>(&Stats::GetScores) &&
         Is<void (Stats::*)(MCCommonMath::MCSymMatrix&) const>(&Stats::GetHessian) &&
         Is<void (Stats::*)(int&, int&, double&) const>(&Stats::GetCounts) &&
         Is<void (Stats::*)(double&, double&, double&) const>(&Stats::GetMinMaxProbabilities) &&
         Is<double (Stats::*)() const>(&Stats::GetStepAdjustmentFactor) &&
         Is<void (Stats::*)(bool) const>(&Stats::Display);
}

static_assert(std::is_abstract_v<IMCAccumStats>);
static_assert(std::has_virtual_destructor_v<IMCAccumStats>);
static_assert(HasOperations<IMCAccumStats>());

using Accumulator = MCAccumStatsLogistic;
static_assert(std::is_base_of_v<IMCAccumStats, Accumulator>);
static_assert(std::is_constructible_v<Accumulator, const MCRegSettings&, int, int, const Doubles&>);
static_assert(!std::is_copy_constructible_v<Accumulator>);
static_assert(HasOperations<Accumulator>());
static_assert(Is<bool (Accumulator::*)() const>(&Accumulator::IsValid));
static_assert(
    Is<int (Accumulator::*)(const MCCommon::detail::MCPatternColumns&,
                            const MCCommon::detail::MCPatternLayout&, const double*, std::size_t,
                            const MCCancelInfo&, bool)>(&Accumulator::UpdateForPattern));

}  // namespace
