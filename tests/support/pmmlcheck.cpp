// SPDX-License-Identifier: Apache-2.0
#include "support/pmmlcheck.h"

#include "support/xmldocument.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace mctest {

namespace {

/// What an element may hold: its children as a pattern of names that each end in a blank, the
/// attributes that it must have, those that it may have.
struct ElementRule {
  const char* children;
  const char* required;
  const char* optional;
};

const std::map<std::string, ElementRule>& Rules() {
  static const std::map<std::string, ElementRule> rules = {
      {"PMML",
       {"Header DataDictionary (GeneralRegressionModel |TreeModel )*", "version",
        "xmlns xmlns:xsi xsi:schemaLocation"}},
      {"Header", {"(Extension )*(Application )?(Timestamp )?", "copyright", "description"}},
      {"Application", {"", "name", "version"}},
      {"Timestamp", {"", "", ""}},
      {"Extension", {".*", "", "extender name value"}},
      {"DataDictionary", {"(Extension )*(DataField )+", "", "numberOfFields"}},
      {"DataField",
       {"(Extension )*((Interval )*|(Value )*)", "name optype dataType",
        "displayName taxonomy isCyclic"}},
      {"Value", {"", "value", "displayValue property"}},
      {"MiningSchema", {"(MiningField )+", "", ""}},
      {"MiningField", {"", "name", "usageType optype"}},
      {"ModelStats", {"(UnivariateStats )+", "", ""}},
      {"UnivariateStats", {"(Counts )?(NumericInfo )?(DiscrStats )?(ContStats )?", "", "field"}},
      {"Counts", {"", "totalFreq", "missingFreq invalidFreq"}},
      {"NumericInfo", {"", "", "minimum maximum mean standardDeviation median"}},
      {"DiscrStats", {"(Array ){0,2}", "", "modalValue"}},
      {"ContStats", {"(Interval )*(Array ){0,3}", "", "totalValuesSum totalSquaresSum"}},
      {"Interval", {"", "closure", "leftMargin rightMargin"}},
      {"Array", {"", "type", "n"}},
      {"TreeModel",
       {"MiningSchema (ModelStats )?Node ", "functionName",
        "modelName algorithmName splitCharacteristic"}},
      {"Node", {"True (Node )*", "score", "id recordCount"}},
      {"True", {"", "", ""}},
      {"GeneralRegressionModel",
       {"MiningSchema (ModelStats )?ParameterList (FactorList )?(CovariateList )?PPMatrix "
        "(PCovMatrix )?ParamMatrix ",
        "modelType functionName", "targetVariableName modelName algorithmName"}},
      {"ParameterList", {"(Parameter )+", "", ""}},
      {"Parameter", {"", "name", "label"}},
      {"FactorList", {"(Predictor )*", "", ""}},
      {"CovariateList", {"(Predictor )*", "", ""}},
      {"Predictor", {"", "name", ""}},
      {"PPMatrix", {"(PPCell )+", "", ""}},
      {"PPCell", {"", "value predictorName parameterName", "targetCategory"}},
      {"PCovMatrix", {"(PCovCell )+", "", ""}},
      {"PCovCell", {"", "pRow pCol value", "tRow tCol targetCategory"}},
      {"ParamMatrix", {"(PCell )+", "", ""}},
      {"PCell", {"", "parameterName beta", "targetCategory df"}}};
  return rules;
}

bool IsWordOf(const std::string& list, const std::string& word) {
  return (" " + list + " ").find(" " + word + " ") != std::string::npos;
}

std::string FaultsOf(const XmlNode& node) {
  const auto found = Rules().find(node.name);
  if (found == Rules().end()) return node.name + " isn't known\n";
  const ElementRule& rule = found->second;
  std::string faults;
  std::string children;
  for (const XmlNode& child : node.children) {
    // One name stands for a run of it, which the patterns don't tell apart from more.
    const std::string name = child.name + " ";
    const bool isLongRun = children.size() > 10 * name.size() &&
                           children.compare(children.size() - name.size(), name.size(), name) == 0;
    if (!isLongRun) children += name;
    faults += FaultsOf(child);
  }
  if (!std::regex_match(children, std::regex(rule.children))) {
    faults += node.name + " holds " + children + "\n";
  }
  std::istringstream required(rule.required);
  for (std::string name; required >> name;) {
    if (!node.Has(name)) faults += node.name + " has no " + name + "\n";
  }
  for (const auto& [name, value] : node.attributes) {
    if (!IsWordOf(rule.required, name) && !IsWordOf(rule.optional, name)) {
      faults += node.name + " has a " + name + "\n";
    }
  }
  return faults;
}

std::string OutputOf(const std::string& command) {
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return "cannot run " + command;
  std::string output;
  char buffer[4096];
  while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) output += buffer;
  const int status = pclose(pipe);
  if (status != 0 && output.empty()) output = command + " failed";
  return status == 0 ? "" : output;
}

}  // namespace

std::string PmmlSchemaFaults(const std::string& document, const std::string& version) {
  const std::string schemas = MCSTAT_PMML_SCHEMAS;
  if (schemas.empty()) return "";
  char path[] = "/tmp/mcstat-pmml-XXXXXX";
  const int descriptor = mkstemp(path);
  if (descriptor < 0) return "no temporary file";
  close(descriptor);
  std::ofstream(path, std::ios::binary) << document;
  const std::string faults = OutputOf("xmllint --noout --nonet --schema '" + schemas + "/pmml-" +
                                      version + ".xsd' " + path + " 2>&1");
  std::remove(path);
  return faults;
}

std::string PmmlFaults(const std::string& document) {
  try {
    return FaultsOf(ReadXml(document)) + PmmlSchemaFaults(document, "3-2");
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

}  // namespace mctest
