// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the data handlers with its exact type: one that is missing or
// misnamed, or whose type has changed, doesn't compile.
#include "regression/interface/imcdatahandler.h"
#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mcpatterntabulator.h"
#include "regression/logistic/mcrecorditerhandler.h"
#include "regression/logistic/mcrowpatterns.h"
#include "support/exacttype.h"

#include <type_traits>
#include <vector>

namespace {

using mctest::Is;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;
using Statuses = std::vector<MCCommon::MCStatus>;
using MCCommon::MCStatus;
using MCCommon::Record;
using MCCommon::RecordIterator;
using MCConst::MCEstimationMethod;

static_assert(std::is_same_v<decltype((usePacking)), bool&>);

static_assert(std::is_abstract_v<IMCDataHandler>);
static_assert(std::has_virtual_destructor_v<IMCDataHandler>);
template <class Handler>
constexpr bool HasOperations() {
  return Is<void (Handler::*)(IMCAccumStats*, const IMCRegModel*)>(&Handler::SetStatsModel) &&
         Is<void (Handler::*)(MCEstimationMethod, bool)>(&Handler::ResetAccumStats) &&
         Is<void (Handler::*)()>(&Handler::CleanStatsModel) &&
         Is<MCStatus (Handler::*)(bool)>(&Handler::ComputeStatsForOptimizer) &&
         Is<const Statuses& (Handler::*)() const>(&Handler::GetWarnings) &&
         Is<void (Handler::*)() const>(&Handler::Display);
}
static_assert(HasOperations<IMCDataHandler>());

using Tabulator = MCPatternTabulator;
static_assert(std::is_base_of_v<IMCDataHandler, Tabulator>);
static_assert(std::is_constructible_v<Tabulator, const MCLogRegSettings&, const MCRecordExtractor&,
                                      MCCancelInfo&, bool>);
static_assert(!std::is_copy_constructible_v<Tabulator>);
static_assert(HasOperations<Tabulator>());
static_assert(
    Is<MCStatus (Tabulator::*)(RecordIterator&, MCFactorTables&)>(&Tabulator::FillFactorTable));
static_assert(Is<MCStatus (Tabulator::*)(RecordIterator&, const MCFactorTables&,
                                         const IMCRegModel&)>(&Tabulator::CreateRowPatterns));
static_assert(Is<MCStatus (Tabulator::*)(IMCRegModel&)>(&Tabulator::FillDesignMatrix));
static_assert(Is<MCStatus (Tabulator::*)(const Record&, const MCFactorTables&)>(
    &Tabulator::ProcessRowPattern));
static_assert(
    Is<MCStatus (Tabulator::*)(const Record&, MCFactorTables&)>(&Tabulator::UpdateFactorTable));
static_assert(
    Is<const MCRowPatterns* (Tabulator::*)(const Ints&) const>(&Tabulator::GetRowPatternsPtr));

static_assert(!std::is_polymorphic_v<MCRowPatterns>);
static_assert(std::is_default_constructible_v<MCRowPatterns>);
static_assert(Is<const Doubles& (MCRowPatterns::*)() const>(&MCRowPatterns::GetAllRecords));
static_assert(Is<void (MCRowPatterns::*)(std::size_t)>(&MCRowPatterns::Reserve));
static_assert(Is<void (MCRowPatterns::*)(const Doubles&)>(&MCRowPatterns::AddRow));
static_assert(Is<void (MCRowPatterns::*)() const>(&MCRowPatterns::Display));

using Handler = MCRecordIterHandler;
static_assert(std::is_base_of_v<IMCDataHandler, Handler>);
static_assert(std::is_constructible_v<Handler, MCCommon::MultiPassRecordIter&, MCCancelInfo&,
                                      const MCRegRecordValidator&, int, int, int>);
static_assert(HasOperations<Handler>());
static_assert(Is<bool (Handler::*)() const>(&Handler::WasCancelled));

}  // namespace
