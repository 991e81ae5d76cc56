// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/xmlelement.h"
#include "metadata/mcapplicinfo4xml.h"
#include "metadata/mcunistats.h"
#include "metadata/mcvarlist.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcquerycancel.h"
#include "regression/frame/mcstatus.h"

#include <memory>
#include <string>
#include <vector>

namespace MCCommonMetadata {

/// Makes pieces of a PMML 3.2 document: root, header, data dictionary, univariate statistics and
/// extensions. The host puts them together in the order that the standard asks for, adds the
/// model, which is its own to compose, and prints the root:
///
///     MCPMMLExporter exporter(nullptr);
///     std::unique_ptr<XMLElement> root(exporter.ExportPMMLElement());
///     XMLElement* dictionary = nullptr;
///     if (!exporter.ExportDataDictionary(list, {}, dictionary).IsError()) {
///       root->AddElement(dictionary);
///     }
///     WriteTree(file, nullptr, root.get(), true);
///
/// Every element that an operation sets belongs to the caller; an element found in the argument is
/// not deleted. Numbers have 15 significant digits. Memory exhaustion is thrown.
class MC_EXPORT MCPMMLExporter {
public:
  /// `cancel` is borrowed for the life of the exporter and may be null.
  explicit MCPMMLExporter(MCQueryCancel* cancel);
  MCPMMLExporter(const MCPMMLExporter&) = delete;
  MCPMMLExporter& operator=(const MCPMMLExporter&) = delete;
  ~MCPMMLExporter();

  /// A new "PMML" element with version and namespaces.
  MCCommonXML::XMLElement* ExportPMMLElement() const;

  /// Sets `out` to a "Header". Without `info` (null) nothing is known of the application. A missing
  /// copyright is replaced by the deployment's. `timestamp` adds the local time. Always OK.
  MCCommon::MCStatus ExportHeader(const MCApplicInfo4XML* info, const std::string& description,
                                  bool timestamp, MCCommonXML::XMLElement*& out);

  /// Sets `out` to a "DataDictionary" of the variables at `indices`, in that order; without any,
  /// of all whose role isn't MC_ROLE_UNUSED. A "DataField" holds the valid categories, then the
  /// missing ones, then the bounds of the interval of missing values. The labels of the valid ones
  /// are written only if variable and encoder agree on their number.
  ///
  /// Code 101 with discrete datum 0 the index: there is no such variable; `out` has the fields
  /// before it. Code 1 on a cancel that stands at the end; `out` is null then. The cancel is polled
  /// before each field and at the end.
  MCCommon::MCStatus ExportDataDictionary(const MCVarList& list, const std::vector<int>& indices,
                                          MCCommonXML::XMLElement*& out);

  /// Sets `out` to a "UnivariateStats". Code 117, with `out` null, unless `stats` are valid.
  MCCommon::MCStatus ExportUniStats(const MCUniStats& stats, MCCommonXML::XMLElement*& out);

  /// Set `out` to an "Extension" of the deployment's vendor. A name that is empty is left out, as
  /// is a text.
  void ExportExtension(const std::string& name, const std::string& value,
                       MCCommonXML::XMLElement*& out);
  void ExportExtension(const std::string& name, double value, MCCommonXML::XMLElement*& out);

private:
  bool IsCancelled() const { return fpCancel != nullptr && fpCancel->WillCancel(); }
  MCCommon::MCStatus AddFields(const MCVarList& list, const std::vector<int>& indices,
                               int& nFields);
  void AddField(const IMCVariable& variable);

  std::unique_ptr<MCCommonXML::XMLElement> fpElement;  // under construction
  MCQueryCancel* fpCancel;
};

}  // namespace MCCommonMetadata
