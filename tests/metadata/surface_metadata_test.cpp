// SPDX-License-Identifier: Apache-2.0
#include "metadata/metadata.h"
#include "support/exacttype.h"

#include <fstream>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

// Every operation by its name and exact type: one that is missing or changed doesn't compile.

namespace {

using namespace MCCommonMetadata;
using mctest::Is;
using std::ifstream;
using std::ostream;
using std::string;
using Numbers = std::vector<double>;
using Texts = std::vector<string>;

// The enumerations hold any int.
template <class Enumeration>
constexpr bool IsInt = std::is_same_v<std::underlying_type_t<Enumeration>, int>&&
    std::is_convertible_v<Enumeration, int>;
static_assert(IsInt<EncoderType> && IsInt<WRoundingOption> && IsInt<VariableRole>);
static_assert(IsInt<VariableStorage> && IsInt<MeasureLevel> && IsInt<VarStatus>);

#define MC_HAS(Class, Name, ...) \
  static_assert(Is<__VA_ARGS__>(static_cast<__VA_ARGS__>(&Class::Name)))

// Encoders.
using Encoder = IMCEncoder;
MC_HAS(Encoder, GetEncoderType, EncoderType (IMCEncoder::*)() const);
MC_HAS(Encoder, GetNumberOfCategories, int (IMCEncoder::*)() const);
MC_HAS(Encoder, Encode, double (IMCEncoder::*)(double));
MC_HAS(Encoder, EncodeConst, double (IMCEncoder::*)(double) const);
MC_HAS(Encoder, Encode, double (IMCEncoder::*)(const string&));
MC_HAS(Encoder, EncodeConst, double (IMCEncoder::*)(const string&) const);
MC_HAS(Encoder, IsMissing, bool (IMCEncoder::*)(double) const);
MC_HAS(Encoder, IsMissing, bool (IMCEncoder::*)(const string&) const);
MC_HAS(Encoder, Decode, string (IMCEncoder::*)(int) const);
MC_HAS(Encoder, DecodeNum, double (IMCEncoder::*)(int) const);
MC_HAS(Encoder, Clone, IMCEncoder* (IMCEncoder::*)() const);
MC_HAS(Encoder, SetValueLabels, void (IMCEncoder::*)(const Texts&));
MC_HAS(Encoder, SetValueLabel, void (IMCEncoder::*)(int, const string&));
MC_HAS(Encoder, AddDiscreteUserMissing, bool (IMCEncoder::*)(const string&, const string&));
MC_HAS(Encoder, AddDiscreteUserMissing, bool (IMCEncoder::*)(double, const string&));
MC_HAS(Encoder, SetMissingInterval, bool (IMCEncoder::*)(double, double));
MC_HAS(Encoder, GetValueLabels, const Texts* (IMCEncoder::*)() const);
MC_HAS(Encoder, GetDiscreteMissValues, const Numbers* (IMCEncoder::*)() const);
MC_HAS(Encoder, GetDiscreteMissValuesStr, const Texts* (IMCEncoder::*)() const);
MC_HAS(Encoder, GetMissValueLabels, const Texts* (IMCEncoder::*)() const);
MC_HAS(Encoder, GetMissingInterval, bool (IMCEncoder::*)(double&, double&) const);
MC_HAS(Encoder, WriteObjectXML, int (IMCEncoder::*)(ostream&, int) const);
MC_HAS(Encoder, ReadObjectXML, int (IMCEncoder::*)(ifstream&));
MC_HAS(Encoder, Display, void (IMCEncoder::*)() const);
static_assert(std::is_abstract_v<IMCEncoder> && std::has_virtual_destructor_v<IMCEncoder>);

template <class Class, class Base>
constexpr bool IsConcrete = std::is_base_of_v<Base, Class> && !std::is_abstract_v<Class> &&
                            std::is_copy_constructible_v<Class> && std::is_copy_assignable_v<Class>;
static_assert(IsConcrete<MCCatNumEncoder, IMCEncoder> && IsConcrete<MCStringEncoder, IMCEncoder>);
static_assert(IsConcrete<MCContEncoder, IMCEncoder> && IsConcrete<MCRoundEncoder, IMCEncoder>);
static_assert(std::is_constructible_v<MCCatNumEncoder, int>);
static_assert(std::is_constructible_v<MCCatNumEncoder, const Numbers&>);
static_assert(std::is_constructible_v<MCStringEncoder, int>);
static_assert(std::is_constructible_v<MCStringEncoder, const Texts&>);
static_assert(std::is_default_constructible_v<MCContEncoder>);
static_assert(std::is_constructible_v<MCContEncoder, double, double, int>);
static_assert(std::is_constructible_v<MCContEncoder, const Numbers&>);
static_assert(std::is_default_constructible_v<MCRoundEncoder>);
static_assert(std::is_constructible_v<MCRoundEncoder, WRoundingOption>);
MC_HAS(MCStringEncoder, CreateLinks, void (MCStringEncoder::*)());
MC_HAS(MCContEncoder, GetBinningEncoder, MCBinningEncoder* (MCContEncoder::*)());
MC_HAS(MCContEncoder, GetBinningEncoder, const MCBinningEncoder* (MCContEncoder::*)() const);

using Binning = MCBinningEncoder;
static_assert(std::is_default_constructible_v<Binning>);
static_assert(std::is_constructible_v<Binning, double, double, int>);
static_assert(std::is_constructible_v<Binning, const Numbers&>);
static_assert(!std::is_base_of_v<IMCEncoder, Binning>);
MC_HAS(Binning, Encode, double (Binning::*)(double) const);
MC_HAS(Binning, GetNumberOfCategories, int (Binning::*)() const);
MC_HAS(Binning, GetBinningCutpoints, const Numbers& (Binning::*)() const);
MC_HAS(Binning, SetBinningCutpoints, void (Binning::*)(const Numbers&));
MC_HAS(Binning, ComputeCutpoints, bool (Binning::*)(const Numbers&, Numbers&) const);
MC_HAS(Binning, AdjustBinning, void (Binning::*)(const Numbers&));
MC_HAS(Binning, CreateRebinned, Binning* (Binning::*)(const Numbers&) const);
MC_HAS(Binning, Clone, Binning* (Binning::*)() const);
MC_HAS(Binning, Display, void (Binning::*)() const);

// Variables.
using Variable = IMCVariable;
MC_HAS(Variable, GetMeasureLevel, MeasureLevel (IMCVariable::*)() const);
MC_HAS(Variable, GetVariableName, string (IMCVariable::*)() const);
MC_HAS(Variable, GetVariableLabel, string (IMCVariable::*)() const);
MC_HAS(Variable, SetVariableLabel, void (IMCVariable::*)(const string&));
MC_HAS(Variable, GetNumberOfCategories, int (IMCVariable::*)() const);
MC_HAS(Variable, GetVariableRole, VariableRole (IMCVariable::*)() const);
MC_HAS(Variable, SetVariableRole, void (IMCVariable::*)(VariableRole));
MC_HAS(Variable, GetVariableStorage, VariableStorage (IMCVariable::*)() const);
MC_HAS(Variable, SetVariableStorage, void (IMCVariable::*)(VariableStorage));
MC_HAS(Variable, UpdateNumberOfCategories, int (IMCVariable::*)());
MC_HAS(Variable, SetMissingValueReplacement, void (IMCVariable::*)(const string&));
MC_HAS(Variable, GetMissingValueReplacement, const string* (IMCVariable::*)() const);
MC_HAS(Variable, Clone, IMCVariable* (IMCVariable::*)() const);
MC_HAS(Variable, GetEncoder, const IMCEncoder* (IMCVariable::*)() const);
MC_HAS(Variable, GetEncoder, IMCEncoder* (IMCVariable::*)());
MC_HAS(Variable, GetVarStatus, VarStatus (IMCVariable::*)());
MC_HAS(Variable, WriteObjectXML, int (IMCVariable::*)(ostream&, int) const);
MC_HAS(Variable, ReadObjectXML, int (IMCVariable::*)(ifstream&));
MC_HAS(Variable, Display, void (IMCVariable::*)() const);
static_assert(std::is_abstract_v<IMCVariable> && std::has_virtual_destructor_v<IMCVariable>);

static_assert(IsConcrete<MCCatVar, IMCVariable> && IsConcrete<MCContVar, IMCVariable>);
static_assert(IsConcrete<MCWeightVar, IMCVariable>);
static_assert(std::is_constructible_v<MCCatVar, const string&, const string&, int, MeasureLevel,
                                      VariableRole, bool>);
MC_HAS(MCCatVar, SetNumberOfCategories, void (MCCatVar::*)(int));
MC_HAS(MCCatVar, SetOrdinalFlag, void (MCCatVar::*)(bool));
MC_HAS(MCCatVar, GetOrdinalFlag, bool (MCCatVar::*)() const);
MC_HAS(MCCatVar, ChangeEncoder, int (MCCatVar::*)(IMCEncoder*));
static_assert(std::is_constructible_v<MCContVar, const string&, const string&, VariableRole>);
static_assert(std::is_constructible_v<MCContVar, const string&, const string&, double, double,
                                      VariableRole, bool, int>);
static_assert(std::is_constructible_v<MCContVar, const string&, const string&, const Numbers&, bool,
                                      VariableRole>);
static_assert(std::is_constructible_v<MCContVar, const string&, const string&, double, double,
                                      const Numbers&, bool, VariableRole>);
MC_HAS(MCContVar, SetNBins, void (MCContVar::*)(int));
MC_HAS(MCContVar, SetMinMax, void (MCContVar::*)(double, double));
MC_HAS(MCContVar, GetNBins, int (MCContVar::*)() const);
MC_HAS(MCContVar, GetMin, double (MCContVar::*)() const);
MC_HAS(MCContVar, GetMax, double (MCContVar::*)() const);
static_assert(std::is_constructible_v<MCWeightVar, const string&, const string&, WRoundingOption>);

// Statistics.
using SummStats = MCUniStats::SummStats;
static_assert(std::is_same_v<decltype(SummStats::fMinimum), double>);
static_assert(std::is_same_v<decltype(SummStats::fMaximum), double>);
static_assert(std::is_same_v<decltype(SummStats::fMean), double>);
static_assert(std::is_same_v<decltype(SummStats::fStdDev), double>);
static_assert(std::is_default_constructible_v<MCUniStats>);
static_assert(std::is_constructible_v<MCUniStats, const string&, double, const Numbers&>);
static_assert(std::is_constructible_v<MCUniStats, const string&, double, const SummStats&,
                                      const Numbers&, const Numbers&>);
MC_HAS(MCUniStats, SetIntervalsOpenLeft, void (MCUniStats::*)(bool));
MC_HAS(MCUniStats, IsCategorical, bool (MCUniStats::*)() const);
MC_HAS(MCUniStats, AreIntervalsOpenLeft, bool (MCUniStats::*)() const);
MC_HAS(MCUniStats, GetFrequencies, const Numbers& (MCUniStats::*)() const);
MC_HAS(MCUniStats, GetCutPoints, const Numbers& (MCUniStats::*)() const);
MC_HAS(MCUniStats, GetNumberOfCases, double (MCUniStats::*)() const);
MC_HAS(MCUniStats, GetSummStats, const SummStats& (MCUniStats::*)() const);
MC_HAS(MCUniStats, GetVarName, const string& (MCUniStats::*)() const);
MC_HAS(MCUniStats, IsValid, bool (MCUniStats::*)() const);

// The list.
using List = MCVarList;
static_assert(std::has_virtual_destructor_v<List> && std::is_default_constructible_v<List>);
static_assert(std::is_copy_constructible_v<List> && std::is_copy_assignable_v<List>);
MC_HAS(List, Size, int (List::*)() const);
MC_HAS(List, GetNumContVar, int (List::*)() const);
MC_HAS(List, GetNumCatVar, int (List::*)() const);
MC_HAS(List, GetVarAt, const IMCVariable* (List::*)(int) const);
MC_HAS(List, GetVarAt, IMCVariable* (List::*)(int));
MC_HAS(List, GetEncoderAt, const IMCEncoder* (List::*)(int) const);
MC_HAS(List, GetEncoderAt, IMCEncoder* (List::*)(int));
MC_HAS(List, GetNumInputVars, int (List::*)() const);
MC_HAS(List, GetNumPossibleInputVars, int (List::*)() const);
MC_HAS(List, GetVariableRole, VariableRole (List::*)(int) const);
MC_HAS(List, FindVariable, int (List::*)(const string&) const);
MC_HAS(List, GetVarNames, void (List::*)(Texts&, string&) const);
MC_HAS(List, GetNInputCats, std::vector<int> (List::*)() const);
MC_HAS(List, SetListwiseDeletion, void (List::*)(bool));
MC_HAS(List, GetListwiseDeletion, bool (List::*)() const);
MC_HAS(List, AddCatVar, int (List::*)(const string&, const string&, const Texts&, VariableRole));
MC_HAS(List, AddCatVar,
       int (List::*)(const string&, const string&, const Texts&, const Texts&, VariableRole));
MC_HAS(List, AddCatVar, int (List::*)(const string&, const string&, const Numbers&, VariableRole));
MC_HAS(List, AddCatVar,
       int (List::*)(const string&, const string&, const Numbers&, const Texts&, VariableRole));
MC_HAS(List, AddCatVar,
       int (List::*)(const string&, const string&, int, MeasureLevel, VariableRole));
MC_HAS(List, AddContVar, int (List::*)(const string&, const string&, VariableRole));
MC_HAS(List, AddContVar,
       int (List::*)(const string&, const string&, double, double, VariableRole, bool, int));
MC_HAS(List, AddContVar,
       int (List::*)(const string&, const string&, const Numbers&, bool, VariableRole));
MC_HAS(List, AddContVar,
       int (List::*)(const string&, const string&, double, double, const Numbers&, bool,
                     VariableRole));
MC_HAS(List, SetWeightVar, int (List::*)(const string&, const string&, WRoundingOption));
MC_HAS(List, SetVariableRole, bool (List::*)(int, VariableRole));
MC_HAS(List, SetMissingValueReplacement, bool (List::*)(int, const string&));
MC_HAS(List, RemoveVar, bool (List::*)(int));
MC_HAS(List, RemoveVar, bool (List::*)(const string&));
MC_HAS(List, ChangeTargetEncoder, bool (List::*)(IMCEncoder*));
MC_HAS(List, UpdateNumbersOfCategories, int (List::*)());
MC_HAS(List, WriteObjectXML, int (List::*)(ostream&, int) const);
MC_HAS(List, ReadObjectXML, int (List::*)(ifstream&));
MC_HAS(List, Display, void (List::*)() const);

// Words.
template <class Enumeration>
constexpr bool IsShown =
    Is<void (*)(string, Enumeration)>(static_cast<void (*)(string, Enumeration)>(&Display));
static_assert(IsShown<VarStatus> && IsShown<WRoundingOption> && IsShown<EncoderType>);
static_assert(IsShown<MeasureLevel> && IsShown<VariableRole> && IsShown<VariableStorage>);

// The values are those of save files.
static_assert(MC_ENC_UNKNOWN == 0 && MC_ENC_BINNING == 1 && MC_ENC_CAT_NUM == 2);
static_assert(MC_ENC_STRING == 3 && MC_ENC_ROUND == 4);
static_assert(MC_ROUND_TRUNCATE == 0 && MC_ROUND_NEAREST == 1 && MC_ROUND_AS_IS == 2);
static_assert(MC_ROLE_UNDEFINED == 0 && MC_ROLE_TARGET == 1 && MC_ROLE_TARGET_RESPONSE == 2);
static_assert(MC_ROLE_WEIGHT == 3 && MC_ROLE_INPUT == 4 && MC_ROLE_POSSIBLE_INPUT == 5);
static_assert(MC_ROLE_UNUSED == 6);
static_assert(MC_STORAGE_UNDEFINED == 0 && MC_STORAGE_INTEGER == 1 && MC_STORAGE_REAL == 2);
static_assert(MC_STORAGE_STRING == 3 && MC_STORAGE_DATE == 4 && MC_STORAGE_TIME == 5);
static_assert(MC_STORAGE_TIMESTAMP == 6);
static_assert(MC_LEVEL_UNKNOWN == 0 && MC_LEVEL_CONTINUOUS == 1 && MC_LEVEL_CAT_NUM == 2);
static_assert(MC_LEVEL_CAT_STRING == 3 && MC_LEVEL_WEIGHT == 4);
static_assert(MC_VAR_OK == 0 && MC_VAR_CONSTANT == 1 && MC_VAR_INVALID == 2);

}  // namespace
