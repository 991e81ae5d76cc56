// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstddef>
#include <string>

namespace MCCommonMetadata {

/// The name of a variable. It counts its changes for whoever holds the variable, so that a list
/// can keep an index of its names. A copy counts for nobody.
class MC_EXPORT MCVariableName {
public:
  explicit MCVariableName(const std::string& name) : fName(name) {}
  MCVariableName(const MCVariableName& other) : fName(other.fName) {}
  MCVariableName& operator=(const MCVariableName&) = delete;
  MCVariableName& operator=(const std::string& name) {
    fName = name;
    Count();
    return *this;
  }
  ~MCVariableName() = default;

  const std::string& Get() const { return fName; }

  /// Exchanges the names; each goes on to count where it counted.
  void Swap(MCVariableName& other) noexcept {
    fName.swap(other.fName);
    Count();
    other.Count();
  }

  /// From now on changes are counted there.
  void CountChanges(std::size_t& changes) { fpChanges = &changes; }

private:
  void Count() noexcept {
    if (fpChanges != nullptr) ++*fpChanges;
  }

  std::string fName;
  std::size_t* fpChanges = nullptr;
};

}  // namespace MCCommonMetadata
