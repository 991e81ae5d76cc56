// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcparsexml.h"
#include "support/exacttype.h"

#include <istream>
#include <string>
#include <type_traits>
#include <vector>

// Every operation of the readers by its name and exact type: one that is missing or changed doesn't
// compile.

namespace {

using namespace MCComXPrsUtil;
using MCCommon::MCStatus;
using MCCommonMetadata::MCUniStats;
using MCCommonMetadata::MCVarList;
using mctest::Is;
using std::string;
using xercesc::DOMElement;
using Numbers = std::vector<double>;
using Ints = std::vector<int>;
using Texts = std::vector<string>;
template <class Row>
using Rows = std::vector<Row>;

#define MC_HAS(Class, Name, ...) \
  static_assert(Is<__VA_ARGS__>(static_cast<__VA_ARGS__>(&Class::Name)))

using P = MCPMMLParser;
static_assert(std::is_default_constructible_v<P> && !std::is_copy_constructible_v<P>);
static_assert(std::has_virtual_destructor_v<P> && !std::is_copy_assignable_v<P>);
MC_HAS(P, GetStatus, MCStatus (P::*)() const);
MC_HAS(P, GetRootElement, const DOMElement* (P::*)() const);
MC_HAS(P, GetXercesMessage, string (P::*)() const);
MC_HAS(P, SetStrict, void (P::*)(bool));
MC_HAS(P, IsStrict, bool (P::*)() const);
MC_HAS(P, ParseToDOM, MCStatus (P::*)(std::istream&));
MC_HAS(P, SetModelElmt, bool (P::*)(const DOMElement&));
MC_HAS(P, FillVarList, MCStatus (P::*)(MCVarList&, const Texts&, bool) const);
MC_HAS(P, FillUniStats, MCStatus (P::*)(MCUniStats&, const DOMElement*&) const);
MC_HAS(P, FillUniStatsCat, MCStatus (*)(MCUniStats&, const string&, double, const DOMElement&));
MC_HAS(P, FillUniStatsCont, MCStatus (*)(MCUniStats&, const string&, double, const DOMElement&));
MC_HAS(P, FillCutPointsFreqs, MCStatus (*)(Numbers&, Numbers&, bool&, const DOMElement&));
MC_HAS(P, ExtractInterval, MCStatus (*)(double&, double&, bool&, const DOMElement&));
MC_HAS(P, SetBinsFrTransDict, bool (P::*)(const string&, Numbers&, Texts&) const);

using S = MCSettingsParser;
static_assert(std::is_default_constructible_v<S> && std::is_base_of_v<P, S>);
static_assert(!std::is_copy_constructible_v<S> && !std::is_copy_assignable_v<S>);
MC_HAS(S, ParseToDOM, MCStatus (S::*)(std::istream&));
MC_HAS(S, GetParameterType, int (S::*)(const char*, void*));
MC_HAS(S, GetComplexParameter, void* (S::*)(const char*, void*));
MC_HAS(S, GetParameter, MCStatus (S::*)(const char*, bool&, void*) const);
MC_HAS(S, GetParameter, MCStatus (S::*)(const char*, double&, void*) const);
MC_HAS(S, GetParameter, MCStatus (S::*)(const char*, int&, void*) const);
MC_HAS(S, GetParameter, MCStatus (S::*)(const char*, string&, void*) const);
MC_HAS(S, GetArray, MCStatus (S::*)(const char*, Ints&, void*) const);
MC_HAS(S, GetArray, MCStatus (S::*)(const char*, Numbers&, void*) const);
MC_HAS(S, GetArray, MCStatus (S::*)(const char*, Texts&, void*) const);
MC_HAS(S, GetMatrix, MCStatus (S::*)(const char*, Rows<Ints>&, void*) const);
MC_HAS(S, GetMatrix, MCStatus (S::*)(const char*, Rows<Numbers>&, void*) const);
MC_HAS(S, GetMatrix, MCStatus (S::*)(const char*, Rows<Texts>&, void*) const);
MC_HAS(S, GetVariables, MCStatus (S::*)(const char*, Texts&) const);
MC_HAS(S, GetVariables, MCStatus (S::*)(const char*, string&) const);
MC_HAS(S, GetPredictors, MCStatus (S::*)(Texts&) const);
MC_HAS(S, GetTargetVars, MCStatus (S::*)(Texts&) const);
MC_HAS(S, GetContPredictors, MCStatus (S::*)(Texts&) const);
MC_HAS(S, GetCatPredictors, MCStatus (S::*)(Texts&) const);
MC_HAS(S, GetContResponseVars, MCStatus (S::*)(Texts&) const);
MC_HAS(S, GetCatResponseVars, MCStatus (S::*)(Texts&) const);
MC_HAS(S, GetFrequencyWeight, MCStatus (S::*)(string&) const);
MC_HAS(S, FillVarList, MCStatus (S::*)(MCVarList&, bool) const);
MC_HAS(S, FillTransDict, MCStatus (S::*)(MCVarList&) const);

}  // namespace
