// SPDX-License-Identifier: Apache-2.0
// A settings document of any bytes: every question of every parameter, and its variables.
#include "mcparsexml/mcsettingsparser.h"
#include "readdocument.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using MCCommon::MCStatus;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::MCSettingsParser;

void Check(const MCStatus& status) {
  Require(status.IsOK() == (status.GetErrorCode() == 0));
  Require(status.IsWarning() == (status.GetErrorCode() == 120 || status.GetErrorCode() == 123));
}

template <class Value>
void ReadAs(const MCSettingsParser& parser, const char* name, void* scope) {
  Value value{};
  Check(parser.GetParameter(name, value, scope));
  if constexpr (!std::is_same_v<Value, bool>) {
    std::vector<Value> values;
    Check(parser.GetArray(name, values, scope));
    std::vector<std::vector<Value>> rows;
    Check(parser.GetMatrix(name, rows, scope));
  }
}

void ReadScope(MCSettingsParser& parser, void* scope) {
  for (const char* name : {"p", "b", "l", "m", "c", ""}) {
    Require(parser.GetParameterType(name, scope) >= 0);
    ReadAs<bool>(parser, name, scope);
    ReadAs<int>(parser, name, scope);
    ReadAs<double>(parser, name, scope);
    ReadAs<std::string>(parser, name, scope);
  }
}

void ReadNames(const MCSettingsParser& parser) {
  using Names = std::vector<std::string>;
  using Operation = MCStatus (MCSettingsParser::*)(Names&) const;
  for (const Operation operation :
       {&MCSettingsParser::GetPredictors, &MCSettingsParser::GetTargetVars,
        &MCSettingsParser::GetContPredictors, &MCSettingsParser::GetCatPredictors,
        &MCSettingsParser::GetContResponseVars, &MCSettingsParser::GetCatResponseVars}) {
    Names names;
    Check((parser.*operation)(names));
  }
  std::string weight;
  Check(parser.GetFrequencyWeight(weight));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static MCSettingsParser parser;  // Xerces stays up from run to run
  ReadDocument(parser, bytes, size);
  ReadScope(parser, nullptr);
  if (void* group = parser.GetComplexParameter("c", nullptr)) ReadScope(parser, group);
  ReadNames(parser);
  for (const bool bins : {false, true}) {
    MCVarList list;
    UseList(list, parser.FillVarList(list, bins));
    UseList(list, parser.FillTransDict(list));
  }
  return 0;
}
