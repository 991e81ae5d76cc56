// SPDX-License-Identifier: Apache-2.0
#include "documents/buildcolumns.h"

#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <map>
#include <memory>
#include <utility>

namespace mcfit {

using MCComXPrsUtil::MCSettingsParser;

namespace {

constexpr char kTarget[] = "target";
constexpr char kContTargets[] = "ContResponses";
constexpr char kCatTargets[] = "CatResponses";
constexpr char kInputs[] = "inputs";
constexpr char kCovariates[] = "ContPredictors";
constexpr char kFactors[] = "CatPredictors";
constexpr char kWeight[] = "RegressionWeightVar";

/// Gives the variables of a document their roles, one each.
class ColumnReader {
public:
  explicit ColumnReader(SettingsDocument& document)
      : fDocument(document), fVariables(document.Variables()) {}

  ModelColumns Read() {
    ReadTarget();
    ReadPredictors();
    fColumns.frequency = Weight(kFrequencyWeight, fDocument.FrequencyWeight(), Role::kFrequency);
    fColumns.weight = Weight(kWeight, fDocument.VariableName(kWeight), Role::kWeight);
    fColumns.declarations = std::make_shared<const Declarations>(std::move(fVariables), fBins);
    return std::move(fColumns);
  }

private:
  struct Claim {
    Role role;
    const char* parameter;
  };

  [[noreturn]] void Fail(const char* parameter, const std::string& text) const {
    throw InputError(fmt::format("{}: {}", fDocument.Names()(parameter), text));
  }

  bool IsCategorical(const char* parameter, const std::string& name) const {
    const int place = fVariables.FindVariable(name);
    if (place < 0) {
      Fail(parameter, fmt::format("the dictionary has no field {}", Quoted(name)));
    }
    return Declaration(*std::as_const(fVariables).GetVarAt(place)).IsCategorical();
  }

  void RequireContinuous(const char* parameter, const std::string& name) const {
    if (IsCategorical(parameter, name)) {
      Fail(parameter, fmt::format("the dictionary calls field {} categorical", Quoted(name)));
    }
  }

  // Whether the role is new to the variable; it may be told twice, but not by the same parameter.
  bool Take(const char* parameter, const std::string& name, Role role) {
    const auto [claim, isNew] = fClaims.insert({name, {role, parameter}});
    if (isNew) return true;
    if (claim->second.parameter == std::string(parameter)) {
      Fail(parameter, fmt::format("field {} stands in it twice", Quoted(name)));
    }
    if (claim->second.role != role) {
      Fail(parameter, fmt::format("field {} stands in {}, too; a field takes one role",
                                  Quoted(name), claim->second.parameter));
    }
    return false;
  }

  void ReadTarget() {
    std::vector<std::string> targets;
    const auto add = [&](const char* parameter, const std::string& name) {
      if (Take(parameter, name, Role::kDependent)) targets.push_back(name);
    };
    for (const std::string& name : NamesOf(kContTargets, &MCSettingsParser::GetContResponseVars)) {
      RequireContinuous(kContTargets, name);
      add(kContTargets, name);
    }
    for (const std::string& name : NamesOf(kCatTargets, &MCSettingsParser::GetCatResponseVars)) {
      if (!IsCategorical(kCatTargets, name)) {
        Fail(kCatTargets, fmt::format("the dictionary calls field {} continuous", Quoted(name)));
      }
      add(kCatTargets, name);
    }
    for (const std::string& name : NamesOf(kTarget, &MCSettingsParser::GetTargetVars)) {
      static_cast<void>(IsCategorical(kTarget, name));
      add(kTarget, name);
    }
    if (targets.size() != 1) {
      throw InputError(fmt::format(
          "{}: {}; a regression has one, named by {}, {} or {}", Printable(fDocument.Path()),
          targets.empty() ? "no target" : "several targets: " + QuotedList(targets), kTarget,
          kContTargets, kCatTargets));
    }
    fColumns.dependent = targets.front();
  }

  std::vector<std::string> NamesOf(const char* parameter,
                                   SettingsDocument::NamesQuestion question) {
    return fDocument.VariableNames(parameter, question);
  }

  void ReadPredictors() {
    for (const std::string& name : NamesOf(kFactors, &MCSettingsParser::GetCatPredictors)) {
      if (!IsCategorical(kFactors, name)) AddBins(name);
      AddPredictor(kFactors, name, Role::kFactor);
    }
    for (const std::string& name : NamesOf(kCovariates, &MCSettingsParser::GetContPredictors)) {
      RequireContinuous(kCovariates, name);
      AddPredictor(kCovariates, name, Role::kCovariate);
    }
    for (const std::string& name : NamesOf(kInputs, &MCSettingsParser::GetPredictors)) {
      const bool isFactor = IsCategorical(kInputs, name) || fBins.count(name) > 0;
      AddPredictor(kInputs, name, isFactor ? Role::kFactor : Role::kCovariate);
    }
  }

  void AddBins(const std::string& name) {
    const std::optional<DeclaredBins> bins = fDocument.Bins(name);
    if (!bins) {
      Fail(kFactors, fmt::format("the dictionary calls field {} continuous, and no Discretize "
                                 "sorts it into bins",
                                 Quoted(name)));
    }
    fBins.emplace(name, *bins);
  }

  void AddPredictor(const char* parameter, const std::string& name, Role role) {
    if (!Take(parameter, name, role)) return;
    (role == Role::kFactor ? fColumns.factors : fColumns.covariates).push_back(name);
  }

  std::optional<std::string> Weight(const char* parameter, std::optional<std::string> name,
                                    Role role) {
    if (!name) return {};
    RequireContinuous(parameter, *name);
    Take(parameter, *name, role);
    return name;
  }

  SettingsDocument& fDocument;
  MCCommonMetadata::MCVarList fVariables;
  std::map<std::string, DeclaredBins> fBins;
  std::map<std::string, Claim> fClaims;
  ModelColumns fColumns;
};

}  // namespace

ModelColumns ReadColumns(SettingsDocument& document) {
  return ColumnReader(document).Read();
}

bool HasCategoricalTarget(const ModelColumns& columns) {
  return columns.declarations->Find(columns.dependent)->IsCategorical();
}

}  // namespace mcfit
