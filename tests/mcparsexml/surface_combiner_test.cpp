// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxsplitpmmlcombiner.h"
#include "support/exacttype.h"

#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

// Every operation by its name and exact type: one that is missing or changed doesn't compile.

namespace {

using MCCommon::MCStatus;
using MCCommonMetadata::MCVarList;
using mctest::Is;
using std::string;
using Combiner = MCComXPrsUtil::MCXSplitPMMLCombiner;
using Texts = std::vector<string>;

#define MC_HAS(Name, ...) static_assert(Is<__VA_ARGS__>(static_cast<__VA_ARGS__>(&Combiner::Name)))

MC_HAS(GetStatus, MCStatus (Combiner::*)() const);
MC_HAS(GetNModels, int (Combiner::*)() const);
MC_HAS(Display, void (Combiner::*)(std::ostream&) const);
MC_HAS(AddModel, MCStatus (Combiner::*)(const string&, const Texts&));
MC_HAS(ExportMiningModel, MCStatus (Combiner::*)(const string&));
MC_HAS(IsEqualValues, MCStatus (Combiner::*)(const Texts&) const);
MC_HAS(SetStrict, void (Combiner::*)(bool));
MC_HAS(IsStrict, bool (Combiner::*)() const);
MC_HAS(GetXercesMessage, string (Combiner::*)() const);

static_assert(std::is_constructible_v<Combiner, const MCVarList&>);
static_assert(!std::is_polymorphic_v<Combiner>);
static_assert(!std::is_copy_constructible_v<Combiner> && !std::is_copy_assignable_v<Combiner>);

}  // namespace
