// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mcpmmlparser.h"
#include "metadata/mcvarlist.h"

#include <string>

namespace mcfit {

/// The univariate statistics of each model of the document, for the screen; empty if there are
/// none. Statistics that can't be read end those of their model, and a note tells why.
std::string ModelStatsText(MCComXPrsUtil::MCPMMLParser& parser, const std::string& path,
                           const MCCommonMetadata::MCVarList& variables);

}  // namespace mcfit
