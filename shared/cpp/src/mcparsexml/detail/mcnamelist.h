// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace MCComXPrsUtil {
namespace detail {

/// Names in the order in which they came, repeated ones too, with the place of each at hand. A tree
/// and not a hash table finds them: documents come from strangers, and no choice of names makes it
/// slow.
class MCNameList {
public:
  MCNameList() = default;
  MCNameList(MCNameList&&) = default;
  MCNameList& operator=(MCNameList&&) = default;
  // Places in a copy would be those of the original.
  MCNameList(const MCNameList&) = delete;
  MCNameList& operator=(const MCNameList&) = delete;

  std::size_t Size() const { return fvNames.size(); }

  /// Whether the name is there, and its first place from 0 up, which is Size() if it isn't.
  bool Contains(const std::string& name) const { return fPlaces.count(name) > 0; }
  std::size_t Find(const std::string& name) const;

  void Append(const std::string& name);

  /// Takes names off the end until this many are left.
  void Truncate(std::size_t size);

private:
  using Places = std::map<std::string, std::size_t>;

  Places fPlaces;  // the first ones
  std::vector<Places::const_iterator> fvNames;
};

}  // namespace detail
}  // namespace MCComXPrsUtil
