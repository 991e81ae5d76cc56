// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/mcnamelist.h"

namespace MCComXPrsUtil {
namespace detail {

std::size_t MCNameList::Find(const std::string& name) const {
  const auto found = fPlaces.find(name);
  return found == fPlaces.end() ? Size() : found->second;
}

void MCNameList::Append(const std::string& name) {
  fvNames.push_back(fPlaces.emplace(name, Size()).first);
}

void MCNameList::Truncate(std::size_t size) {
  while (Size() > size) {
    const Places::const_iterator last = fvNames.back();
    fvNames.pop_back();
    if (last->second == Size()) fPlaces.erase(last);
  }
}

}  // namespace detail
}  // namespace MCComXPrsUtil
