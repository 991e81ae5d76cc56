// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mccatvar.h"
#include "metadata/mccontvar.h"
#include "metadata/mcvariable.h"
#include "metadata/mcweightvar.h"
#include "regression/frame/mcexport.h"

#include <cstddef>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

namespace MCCommonMetadata {

/// The dictionary of a data source: the variables of a row in their order, which it owns. The
/// place of a variable, from 0 up, is its column. The places of the target, of the target response
/// and of the frequency weight are kept at hand; as told by a save file they may be any number, and
/// an operation that meets one which is no place takes it for none.
///
///     MCVarList list;
///     list.AddCatVar("region", "", std::vector<std::string>{"north", "south"}, MC_ROLE_INPUT);
///     list.AddContVar("yield", "t/ha", MC_ROLE_TARGET);
class MC_EXPORT MCVarList {
public:
  MCVarList() = default;
  MCVarList(const MCVarList& other);
  MCVarList& operator=(const MCVarList& other);
  virtual ~MCVarList();

  int Size() const { return static_cast<int>(fVars.size()); }
  int GetNumContVar() const { return fNCont; }
  int GetNumCatVar() const { return fNCat; }

  /// A variable or its encoder, which belong to the list; null if out of range.
  const IMCVariable* GetVarAt(int i) const;
  IMCVariable* GetVarAt(int i);
  const IMCEncoder* GetEncoderAt(int i) const;
  IMCEncoder* GetEncoderAt(int i);

  /// Number of variables whose role is MC_ROLE_INPUT, or MC_ROLE_POSSIBLE_INPUT.
  int GetNumInputVars() const;
  int GetNumPossibleInputVars() const;

  /// MC_ROLE_UNDEFINED if out of range.
  VariableRole GetVariableRole(int i) const;

  /// The first variable of exactly this name; -1 if there is none.
  int FindVariable(const std::string& name) const;

  /// Sets `names` to the names of all variables but the weight, in order, and `weightName` to that
  /// of the weight; without one it stays as it is.
  void GetVarNames(std::vector<std::string>& names, std::string& weightName) const;

  /// The number of categories of each input, in order.
  std::vector<int> GetNInputCats() const;

  /// Whether a row with any missing value is to be left out. Kept for the host; not saved.
  void SetListwiseDeletion(bool on) { fbListwiseDeletion = on; }
  bool GetListwiseDeletion() const { return fbListwiseDeletion; }

  /// Append a variable: categorical, with its categories and perhaps their labels or with
  /// categories to be met later, or continuous, with the arguments of MCContVar. Each answers its
  /// place; -1, with nothing added, for a name that is empty or there already. One of role
  /// MC_ROLE_TARGET or MC_ROLE_TARGET_RESPONSE takes that place from the variable that had it,
  /// whose role stays. A category that is repeated keeps its first code.
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, const std::vector<std::string>& labels,
                VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, const std::vector<std::string>& labels,
                VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label, int nCategories,
                MeasureLevel level, VariableRole role);
  int AddContVar(const std::string& name, const std::string& label, VariableRole role);
  int AddContVar(const std::string& name, const std::string& label, double min, double max,
                 VariableRole role, bool binned, int nBins);
  int AddContVar(const std::string& name, const std::string& label,
                 const std::vector<double>& cutpoints, bool binned, VariableRole role);
  int AddContVar(const std::string& name, const std::string& label, double min, double max,
                 const std::vector<double>& cutpoints, bool binned, VariableRole role);

  /// Adds the frequency weight or, if there is one, puts a new one in its place, which it answers.
  /// Neither name nor label is looked at.
  int SetWeightVar(const std::string& name, const std::string& label, WRoundingOption option);

  /// Sets a variable's role. False if out of range. A variable that becomes target or target
  /// response takes that place only if nobody has it; one whose role was that and becomes another
  /// clears the place, whoever has it.
  bool SetVariableRole(int i, VariableRole role);

  /// False if out of range.
  bool SetMissingValueReplacement(int i, const std::string& value);

  /// Deletes a variable; those behind it move up. False if there is none. A weight, the target
  /// response and variables of the role MC_ROLE_TARGET that aren't continuous leave the number of
  /// categorical variables as it is; removing any variable of the role MC_ROLE_TARGET leaves the
  /// list without target.
  bool RemoveVar(int i);
  bool RemoveVar(const std::string& name);

  /// Puts another encoder in place of that of a categorical target. True if it has the type of an
  /// encoder of categories and has some. The encoder is taken over from the caller also on false,
  /// null leaving the target without one; but not if there is no target or it isn't categorical,
  /// where nothing is touched and the answer is false.
  bool ChangeTargetEncoder(IMCEncoder* encoder);

  /// Updates the number of categories of each variable. Their sum, or the largest int.
  int UpdateNumbersOfCategories();

  /// Writes the list in the save format (docs/formats.md), indented by `nTabs` tabs. Number of
  /// lines.
  int WriteObjectXML(std::ostream& out, int nTabs) const;

  /// Replaces the list by what WriteObjectXML() wrote. Number of lines. Throws IOException, after
  /// a message on standard error, if the file doesn't hold a list; this one is empty then.
  int ReadObjectXML(std::ifstream& in);

  /// Writes the list to the display stream.
  void Display() const;

private:
  bool IsPlace(int i) const { return i >= 0 && i < Size(); }
  MCVariable& At(int i) const { return *fVars[static_cast<std::size_t>(i)]; }
  bool IsFreeName(const std::string& name) const;
  int Append(std::unique_ptr<MCVariable> variable);
  int Add(std::unique_ptr<MCVariable> variable, int& counter);
  template <class Value>
  int AddCategories(const std::string& name, const std::string& label,
                    const std::vector<Value>& values, const std::vector<std::string>* labels,
                    MeasureLevel level, VariableRole role);
  int CountRole(VariableRole role) const;
  void Clear();
  void CopyFrom(const MCVarList& other);
  void IndexNames() const;

  std::vector<std::unique_ptr<MCVariable>> fVars;
  int fNCont = 0;
  int fNCat = 0;
  int fTarget = -1;
  int fTargetResponse = -1;
  int fWeight = -1;
  bool fbListwiseDeletion = false;

  // First place by name, for the first fNIndexed variables as they were named when fNameChanges
  // was fIndexedChanges.
  mutable std::unordered_map<std::string, int> fPlaces;
  mutable std::size_t fNIndexed = 0;
  mutable std::size_t fIndexedChanges = 0;
  std::size_t fNameChanges = 0;
};

}  // namespace MCCommonMetadata
