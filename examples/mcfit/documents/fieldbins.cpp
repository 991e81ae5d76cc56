// SPDX-License-Identifier: Apache-2.0
#include "documents/fieldbins.h"

#include <algorithm>
#include <set>

namespace mcfit {

FieldBins::FieldBins(const MCComXPrsUtil::MCPMMLParser& parser, const std::string& field) {
  constexpr std::size_t kEnds = 2;
  std::vector<double> cuts;
  exist = parser.SetBinsFrTransDict(field, cuts, names) && cuts.size() > kEnds;
  if (exist) edges.assign(cuts.begin() + 1, cuts.end() - 1);
}

bool FieldBins::HasNames() const {
  return names.size() == edges.size() + 1 && names.front() != "0" &&
         std::set<std::string>(names.begin(), names.end()).size() == names.size();
}

bool FieldBins::DoRise() const {
  return std::adjacent_find(edges.begin(), edges.end(),
                            [](double a, double b) { return !(a < b); }) == edges.end();
}

}  // namespace mcfit
