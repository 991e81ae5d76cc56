// SPDX-License-Identifier: Apache-2.0
// Files of any bytes, set apart by zeros, merged as models of a split. The first byte says by how
// many variables they are split and whether they are read strictly. What comes out can be read.
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/mcxsplitpmmlcombiner.h"
#include "memoryfile.h"
#include "require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOM.hpp>

namespace {

using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::GetFirstChildElmt;
using MCComXPrsUtil::GetNextSiblingElmt;
using MCComXPrsUtil::MCXMLReadWrite;
using MCComXPrsUtil::MCXSplitPMMLCombiner;

MCVarList SplitVariables(bool areTwo) {
  MCVarList list;
  list.AddCatVar("region", "", std::vector<std::string>{"north", "<&>"},
                 MCCommonMetadata::MC_ROLE_INPUT);
  if (areTwo) list.AddContVar("year", "", MCCommonMetadata::MC_ROLE_INPUT);
  return list;
}

void CheckDocument(const std::string& file, int nModels) {
  MCXMLReadWrite reader;
  reader.SetStrict(true);
  Require(reader.ParseToDOM(file).IsOK());
  const xercesc::DOMElement* element = GetFirstChildElmt(*reader.GetDocument(), "PMML");
  for (const char* name : {"MiningModel", "Segmentation", "Segment"}) {
    Require(element != nullptr);
    element = GetFirstChildElmt(*element, name);
  }
  for (; element != nullptr; element = GetNextSiblingElmt(*element, "Segment")) --nModels;
  Require(nModels == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const MCXMLReadWrite xerces;  // stays up from run to run
  static MemoryFile file;
  static MemoryFile merged;
  if (size == 0) return 0;
  const std::string_view input(reinterpret_cast<const char*>(bytes), size);
  const bool isStrict = (bytes[0] & 2U) != 0;
  // Xerces's own defaults let entities expand without end.
  if (!isStrict && input.find("<!DOCTYPE") != std::string_view::npos) return 0;
  const bool areTwo = (bytes[0] & 1U) != 0;
  MCXSplitPMMLCombiner combiner(SplitVariables(areTwo));
  combiner.SetStrict(isStrict);
  const std::vector<std::string> values =
      areTwo ? std::vector<std::string>{"<&>", "2025"} : std::vector<std::string>{"north"};

  std::string_view rest = input.substr(1);
  int nModels = 0;
  for (;;) {
    const std::size_t end = std::min(rest.find('\0'), rest.size());
    const MCCommon::MCStatus status = combiner.AddModel(file.Fill(rest.substr(0, end)), values);
    if (status.IsOK()) ++nModels;
    Require(combiner.GetNModels() == nModels);
    if (end == rest.size()) break;
    rest.remove_prefix(end + 1);
  }
  merged.Fill("");
  const MCCommon::MCStatus status = combiner.ExportMiningModel(merged.Name());
  if (nModels == 0) return 0;
  Require(status.IsOK());
  CheckDocument(merged.Name(), nModels);
  return 0;
}
