// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/imcencoder.h"
#include "regression/frame/mcexport.h"

#include <fstream>
#include <ostream>
#include <string>

namespace MCCommonMetadata {

// The numbers are those of save files; each enumeration holds any int, as a file may say anything.

/// What a variable is to the model.
enum VariableRole : int {
  MC_ROLE_UNDEFINED = 0,
  MC_ROLE_TARGET = 1,
  MC_ROLE_TARGET_RESPONSE = 2,
  MC_ROLE_WEIGHT = 3,  ///< frequency weight
  MC_ROLE_INPUT = 4,
  MC_ROLE_POSSIBLE_INPUT = 5,
  MC_ROLE_UNUSED = 6
};

/// How the data hold a variable's values.
enum VariableStorage : int {
  MC_STORAGE_UNDEFINED = 0,
  MC_STORAGE_INTEGER = 1,
  MC_STORAGE_REAL = 2,
  MC_STORAGE_STRING = 3,
  MC_STORAGE_DATE = 4,
  MC_STORAGE_TIME = 5,
  MC_STORAGE_TIMESTAMP = 6
};

/// What a variable's values mean.
enum MeasureLevel : int {
  MC_LEVEL_UNKNOWN = 0,
  MC_LEVEL_CONTINUOUS = 1,
  MC_LEVEL_CAT_NUM = 2,     ///< categories that are numbers
  MC_LEVEL_CAT_STRING = 3,  ///< categories that are strings
  MC_LEVEL_WEIGHT = 4       ///< frequency weight
};

/// Whether a variable is of use.
enum VarStatus : int { MC_VAR_OK = 0, MC_VAR_CONSTANT = 1, MC_VAR_INVALID = 2 };

/// One column of the data: its name, what it is to the model, how it is stored and measured, and
/// the encoder that codes its values, which it owns.
class MC_EXPORT IMCVariable {
public:
  virtual ~IMCVariable() = default;

  virtual MeasureLevel GetMeasureLevel() const = 0;
  virtual std::string GetVariableName() const = 0;
  virtual std::string GetVariableLabel() const = 0;
  virtual void SetVariableLabel(const std::string& label) = 0;

  /// Number of categories or, of a continuous variable, of bins; 0 for a weight.
  virtual int GetNumberOfCategories() const = 0;
  virtual VariableRole GetVariableRole() const = 0;

  /// A weight keeps its role.
  virtual void SetVariableRole(VariableRole role) = 0;
  virtual VariableStorage GetVariableStorage() const = 0;
  virtual void SetVariableStorage(VariableStorage storage) = 0;

  /// Takes over the number of categories that the encoder has met, if it is larger, and answers
  /// the number.
  virtual int UpdateNumberOfCategories() = 0;

  /// The value that stands for missing ones; null until it is set, and for a weight always.
  virtual void SetMissingValueReplacement(const std::string& value) = 0;
  virtual const std::string* GetMissingValueReplacement() const = 0;

  /// A copy with an encoder of its own, which the caller owns.
  virtual IMCVariable* Clone() const = 0;

  /// The encoder, which belongs to the variable; null if there is none.
  virtual const IMCEncoder* GetEncoder() const = 0;
  virtual IMCEncoder* GetEncoder() = 0;

  /// Constant or invalid variables are of no use to a model. Takes over the number of categories
  /// first.
  virtual VarStatus GetVarStatus() = 0;

  /// Writes the variable in the save format (docs/formats.md), indented by `nTabs` tabs. Number of
  /// lines.
  virtual int WriteObjectXML(std::ostream& out, int nTabs) const = 0;

  /// Replaces the variable by what WriteObjectXML() wrote. Number of lines. Throws IOException,
  /// after a message on standard error, if the file doesn't hold such a variable; this one is
  /// valid then, with what was read so far and perhaps without encoder.
  virtual int ReadObjectXML(std::ifstream& in) = 0;

  /// Writes the variable to the display stream.
  virtual void Display() const = 0;
};

}  // namespace MCCommonMetadata
