// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mcpmmlparser.h"

#include <string>
#include <vector>

namespace mcfit {

/// The bins of a field in the transformation dictionary of a document.
struct FieldBins {
  FieldBins(const MCComXPrsUtil::MCPMMLParser& parser, const std::string& field);

  /// Whether each bin has a name of its own. Writers that name none begin with "0".
  bool HasNames() const;

  bool DoRise() const;

  bool exist = false;         // two or more of them
  std::vector<double> edges;  // between them
  std::vector<std::string> names;
};

}  // namespace mcfit
