// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mcpmmlparser.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace MCComXPrsUtil {

/// Reads a request to build a model (docs/formats.md): a PMML document that names, beside the
/// variables, the analysis and its options. What a parameter means is the host's to know: it asks
/// for each by name.
///
///     MCSettingsParser settings;
///     if (!settings.ParseToDOM(file).IsOK()) return;
///     double level = 0.95;  // stands if the document says nothing
///     if (settings.GetParameter("ConfidenceLevel", level, nullptr).IsError()) return;
///
/// `scope` is an element that GetComplexParameter() answered, or null for "Parameters" itself. A
/// parameter is the first of its name among the children of its scope; a null name is an empty one.
/// Beside the codes listed with an operation each answers first the status of the parser, then 107
/// if no document is held and 119 if that has no "Parameters". 120 and 123 are warnings: the host's
/// default stands, as an output does that isn't spoken of.
class MC_EXPORT MCSettingsParser : public MCPMMLParser {
public:
  MCSettingsParser();
  ~MCSettingsParser() override;

  /// As MCPMMLParser::ParseToDOM(); and 119: there is no "MiningBuildTask" with an "Extension"
  /// with "Parameters", of each the first being looked at.
  MCCommon::MCStatus ParseToDOM(std::istream& stream) override;

  /// Type of a parameter: 0 string, 1 double, 2 integer, 3 boolean, 4 enum, 5 field name; 6 for any
  /// other, and if there is none.
  int GetParameterType(const char* name, void* scope);

  /// A group of parameters, to be asked for what it holds; null if there is none.
  void* GetComplexParameter(const char* name, void* scope);

  /// One value. An int is not negative, a bool "true" or "false". 109: the value isn't one; 120: no
  /// such parameter; 121: it holds a list; 123: it holds no value.
  MCCommon::MCStatus GetParameter(const char* name, bool& value, void* scope) const;
  MCCommon::MCStatus GetParameter(const char* name, double& value, void* scope) const;
  MCCommon::MCStatus GetParameter(const char* name, int& value, void* scope) const;
  MCCommon::MCStatus GetParameter(const char* name, std::string& value, void* scope) const;

  /// All values of a parameter; one that has no list is a list of one. Ints are not negative. 109:
  /// a value isn't one; 120: no such parameter; 123: a value is absent, or the list is empty. A
  /// status that isn't OK ends the reading; but for 120, `values` are those before it.
  MCCommon::MCStatus GetArray(const char* name, std::vector<int>& values, void* scope) const;
  MCCommon::MCStatus GetArray(const char* name, std::vector<double>& values, void* scope) const;
  MCCommon::MCStatus GetArray(const char* name, std::vector<std::string>& values,
                              void* scope) const;

  /// A matrix ("MatrixParmeter", as the format spells it): its rows stand at the end of `rows`,
  /// behind one empty row for each child node of the element, texts between the rows included.
  /// Values that can't be read are left out. Ints are not negative. 120: no such matrix.
  MCCommon::MCStatus GetMatrix(const char* name, std::vector<std::vector<int>>& rows,
                               void* scope) const;
  MCCommon::MCStatus GetMatrix(const char* name, std::vector<std::vector<double>>& rows,
                               void* scope) const;
  MCCommon::MCStatus GetMatrix(const char* name, std::vector<std::vector<std::string>>& rows,
                               void* scope) const;

  /// Names of variables, empty ones left out: a list where "isList" is "true", else one. 108: a
  /// value is absent; 120: no such parameter; 122: the list is absent. But for 120, `names` are
  /// those before the error.
  MCCommon::MCStatus GetVariables(const char* name, std::vector<std::string>& names) const;

  /// The name of one variable. 108: it is absent; 120: no such parameter; 121: it is absent, and
  /// "isList" is "true".
  MCCommon::MCStatus GetVariables(const char* name, std::string& value) const;

  /// The variables of the parameters "inputs" and "target", by GetArray().
  MCCommon::MCStatus GetPredictors(std::vector<std::string>& names) const;
  MCCommon::MCStatus GetTargetVars(std::vector<std::string>& names) const;

  /// Those of "ContPredictors", "CatPredictors", "ContResponses", "CatResponses" and
  /// "FrequencyWeightVar", by GetVariables().
  MCCommon::MCStatus GetContPredictors(std::vector<std::string>& names) const;
  MCCommon::MCStatus GetCatPredictors(std::vector<std::string>& names) const;
  MCCommon::MCStatus GetContResponseVars(std::vector<std::string>& names) const;
  MCCommon::MCStatus GetCatResponseVars(std::vector<std::string>& names) const;
  MCCommon::MCStatus GetFrequencyWeight(std::string& value) const;

  /// As MCPMMLParser::FillVarList() of all fields, with these differences: "dataType" is one of
  /// string, date, time, dateTime, double, float and integer, and sets the variable's storage; an
  /// "Interval" in a numeric field tells the range of a continuous one without bins. Of that an
  /// absent left margin is the smallest positive normal double, an absent right one the largest
  /// double. Also 109: a margin isn't a number, or the right is below the left.
  MCCommon::MCStatus FillVarList(MCCommonMetadata::MCVarList& list, bool bins) const;

  /// The same without bins for each "DerivedField" of the "TransformationDictionary"; nothing if
  /// there is no such dictionary. The interval of a field may also stand in an "Extension".
  MCCommon::MCStatus FillTransDict(MCCommonMetadata::MCVarList& list) const;

private:
  // What every question begins with: the first element of that tag and name; null with its status.
  const xercesc::DOMElement* Find(const char* tag, const char* name, const void* scope,
                                  MCCommon::MCStatus& status) const;
  template <class Value>
  MCCommon::MCStatus GetOne(const char* name, Value& value, const void* scope) const;
  template <class Value>
  MCCommon::MCStatus GetAll(const char* name, std::vector<Value>& values, const void* scope) const;
  template <class Value>
  MCCommon::MCStatus GetRows(const char* name, std::vector<std::vector<Value>>& rows,
                             const void* scope) const;
};

}  // namespace MCComXPrsUtil
