// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/imcvariable.h"
#include "metadata/mcvariablename.h"

#include <cstddef>
#include <string>

namespace MCCommonMetadata {

/// What variables have in common, whatever their level.
class MC_EXPORT MCVariable : public IMCVariable {
public:
  std::string GetVariableName() const override { return fName.Get(); }
  std::string GetVariableLabel() const override { return fLabel; }
  void SetVariableLabel(const std::string& label) override { fLabel = label; }
  VariableRole GetVariableRole() const override { return fRole; }
  void SetVariableRole(VariableRole role) override { fRole = role; }
  VariableStorage GetVariableStorage() const override { return fStorage; }
  void SetVariableStorage(VariableStorage storage) override { fStorage = storage; }
  void SetMissingValueReplacement(const std::string& value) override;
  const std::string* GetMissingValueReplacement() const override;

  /// The name without a copy of it.
  const std::string& Name() const { return fName.Get(); }

  /// From now on changes of the name are counted there.
  void CountNameChanges(std::size_t& changes) { fName.CountChanges(changes); }

protected:
  MCVariable(const std::string& name, const std::string& label, VariableRole role)
      : fName(name), fLabel(label), fRole(role) {}

  /// Exchanges all that is here, as assignments do once their copy is made.
  void SwapCommon(MCVariable& other) noexcept;

  void DisplayReplacement() const;

  MCVariableName fName;
  std::string fLabel;
  VariableRole fRole;
  VariableStorage fStorage = MC_STORAGE_UNDEFINED;
  std::string fReplacement;
  bool fbHasReplacement = false;
};

}  // namespace MCCommonMetadata
