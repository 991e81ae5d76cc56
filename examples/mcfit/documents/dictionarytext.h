// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mcpmmlparser.h"
#include "metadata/mcvarlist.h"

#include <string>

namespace mcfit {

/// The variables that the parser read, for the screen: a line for each, and below it one for each
/// category, missing value and bin.
std::string DictionaryText(const MCComXPrsUtil::MCPMMLParser& parser,
                           const MCCommonMetadata::MCVarList& variables);

}  // namespace mcfit
