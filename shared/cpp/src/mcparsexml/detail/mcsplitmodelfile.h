// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"
#include "regression/frame/mcstatus.h"

#include <string>
#include <vector>

namespace MCComXPrsUtil {
namespace detail {

/// The pieces of a PMML file that go into a merged document; they belong to the file's document.
struct MCSplitModelFile {
  const xercesc::DOMElement* fpRoot = nullptr;
  const xercesc::DOMElement* fpHeader = nullptr;  // may be missing
  const xercesc::DOMElement* fpDictionary = nullptr;
  const xercesc::DOMElement* fpTransformations = nullptr;  // may be missing
  const xercesc::DOMElement* fpModel = nullptr;
  const xercesc::DOMElement* fpMiningSchema = nullptr;
  std::string fFunctionName;
};

/// Finds root, model and its function. `standardModels`: the tags of models; the first of them that
/// the file has decides. Code 108 for what is missing, 125 for a model that is a "MiningModel".
MCCommon::MCStatus FindSplitModel(const xercesc::DOMDocument& document,
                                  const std::vector<std::string>& standardModels,
                                  MCSplitModelFile& file);

/// Finds the other pieces of a file whose model is found. Code 108 for a missing one, 104 for one
/// that is nested too deep to be written again, the model included.
MCCommon::MCStatus FindOtherPieces(MCSplitModelFile& file);

/// The text of an attribute; "" if it is absent.
std::string AttributeText(const xercesc::DOMElement& element, const char* name);

}  // namespace detail
}  // namespace MCComXPrsUtil
