// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "declaration.h"
#include "mcparsexml/mcsettingsparser.h"
#include "metadata/mcvarlist.h"
#include "optionnames.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace mcfit {

/// The parameter that the library's reader takes for the name of the frequency weight.
inline constexpr char kFrequencyWeight[] = "FrequencyWeightVar";

/// A settings document as the library reads it, with messages for the user: what is absent has no
/// value, and what can't be used throws InputError with the names of file and parameter. It
/// remembers what it was asked for, to tell in the end what nobody wanted to know.
class SettingsDocument {
public:
  explicit SettingsDocument(const std::string& path);

  const std::string& Path() const { return fPath; }
  const OptionNames& Names() const { return fNames; }

  /// The fields of both dictionaries.
  MCCommonMetadata::MCVarList Variables() const;

  /// The bins of a field in the transformation dictionary, labelled by their names where all have
  /// one of their own. None if there are fewer than two. Throws for edges that don't rise.
  std::optional<DeclaredBins> Bins(const std::string& field) const;

  /// One value: bool, double, int or std::string. None if there is no such parameter, or none in
  /// it, which is told.
  template <class Value>
  std::optional<Value> One(const char* name);

  /// All values of a list, or the one.
  std::optional<std::vector<std::string>> All(const char* name);

  /// The rows of a matrix that hold anything.
  std::optional<std::vector<std::vector<std::string>>> Rows(const char* name);

  /// Names of variables, by the question that knows the parameter's name.
  using NamesQuestion =
      MCCommon::MCStatus (MCComXPrsUtil::MCSettingsParser::*)(std::vector<std::string>&) const;
  std::vector<std::string> VariableNames(const char* name, NamesQuestion question);

  /// The name of one variable; the second is that of the frequency weight.
  std::optional<std::string> VariableName(const char* name);
  std::optional<std::string> FrequencyWeight();

  /// Tells each parameter that nobody has asked for, and each that is there twice.
  void NoteTheRest() const;

private:
  // An element and the name that it carries.
  using Asked = std::pair<std::string, std::string>;

  bool Has(const char* name, const MCCommon::MCStatus& status) const;

  std::string fPath;
  OptionNames fNames;
  MCComXPrsUtil::MCSettingsParser fParser;
  std::set<Asked> fAsked;
};

}  // namespace mcfit
