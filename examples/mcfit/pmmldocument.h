// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/xmlelement.h"
#include "metadata/mcvarlist.h"
#include "outputfile.h"
#include "regression/frame/mcstatus.h"

#include <memory>
#include <string>
#include <vector>

namespace mcfit {

/// Adds a child, which belongs to its parent, so that attributes and children can follow.
MCCommonXML::XMLElement& AddChild(MCCommonXML::XMLElement& parent, const char* name);

/// A number in the shortest form that reads back as the same number, as XML schemas write it. What
/// a consumer computes with is written so: the library's own 15 digits lose the last bits.
std::string ExactNumber(double value);

/// Throws ModelError for a status of the exporter that is an error: no data lead to one.
void Require(const MCCommon::MCStatus& status);

/// A PMML 3.2 document: header and dictionary, and the model that the caller composes.
class PmmlDocument {
public:
  /// The dictionary holds all variables of the list that are in use. Throws InputError for a name
  /// or category that XML can't hold.
  PmmlDocument(const std::string& description, const MCCommonMetadata::MCVarList& variables);

  /// Adds a model with its mining schema, which names the fields of the dictionary: a target as
  /// predicted, a frequency weight as supplementary and all others as active.
  MCCommonXML::XMLElement& AddModel(const char* name, const char* functionName);

  void Write(OutputFile& out) const;

private:
  const MCCommonMetadata::MCVarList& fVariables;
  std::unique_ptr<MCCommonXML::XMLElement> fRoot;
};

}  // namespace mcfit
