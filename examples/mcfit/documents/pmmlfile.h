// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mcpmmlparser.h"
#include "regression/frame/mcstatus.h"

#include <string>

namespace mcfit {

/// Reads a file into the parser, strictly, as a document from a stranger is to be read. Throws
/// InputError with the file's name and what Xerces or the parser have against it.
void ReadDocument(MCComXPrsUtil::MCPMMLParser& parser, const std::string& path);

/// Throws InputError for an error of a FillVarList(): `dictionary` is the element whose field it
/// is that can't be read, `nRead` how many were read before it.
void CheckFields(const MCCommon::MCStatus& status, const std::string& path, const char* dictionary,
                 int nRead);

}  // namespace mcfit
