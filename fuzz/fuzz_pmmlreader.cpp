// SPDX-License-Identifier: Apache-2.0
// A PMML document of any bytes: its variables, with bins and without, and the statistics of every
// element that could be a model.
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcpmmlparser.h"
#include "readdocument.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

namespace {

using MCCommonMetadata::MCUniStats;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::GetFirstChildElmt;
using MCComXPrsUtil::GetNextSiblingElmt;
using MCComXPrsUtil::MCPMMLParser;
using xercesc::DOMElement;

void ReadVariables(const MCPMMLParser& parser) {
  MCVarList all;
  UseList(all, parser.FillVarList(all, {}, false));
  MCVarList binned;
  UseList(binned, parser.FillVarList(binned, {"x", "s"}, true));
  Require(binned.Size() <= 2);
  std::vector<double> cuts;
  std::vector<std::string> labels;
  Require(parser.SetBinsFrTransDict("x", cuts, labels) == !cuts.empty());
}

void ReadStatistics(MCPMMLParser& parser) {
  const DOMElement* model = GetFirstChildElmt(*parser.GetRootElement(), nullptr);
  for (; model != nullptr; model = GetNextSiblingElmt(*model, nullptr)) {
    Require(parser.SetModelElmt(*model));
    MCUniStats stats;
    const DOMElement* cursor = nullptr;
    while (parser.FillUniStats(stats, cursor).IsOK() && cursor != nullptr) {
      Require(stats.IsValid());
    }
    Require(cursor == nullptr);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static MCPMMLParser parser;  // Xerces stays up from run to run
  ReadDocument(parser, bytes, size);
  ReadVariables(parser);
  if (parser.GetStatus().IsOK()) ReadStatistics(parser);
  return 0;
}
