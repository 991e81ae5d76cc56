// SPDX-License-Identifier: Apache-2.0
#include "modeldictionary.h"

#include "regression/design/mcfactorcounts.h"
#include "text.h"

#include <algorithm>

namespace mcfit {

using MCCommonMetadata::MCVarList;

namespace {

void AddMissingTexts(MCVarList& variables, const MissingCells& missing) {
  for (int i = 0; i < variables.Size(); ++i) {
    MCCommonMetadata::IMCEncoder& encoder = *variables.GetEncoderAt(i);
    for (const std::string& text : missing.texts) {
      const std::optional<double> number = ParseNumber(text);
      if (!encoder.AddDiscreteUserMissing(text, "") && number) {
        encoder.AddDiscreteUserMissing(*number, "");
      }
    }
  }
}

// The labels of a factor that rows in use have.
std::vector<std::string> UsedLabels(const FittedModel& model, int position, int factor) {
  const MCFactorCounts::CategoryCounts& counts =
      *model.Results().GetFactorCounts()->GetCountsPtr(factor);
  std::vector<std::string> labels;
  for (std::size_t code = 0; code < counts.size(); ++code) {
    if (counts[code].second > 0.0) {
      labels.push_back(model.Data().LabelsAt(position).Label(static_cast<int>(code)));
    }
  }
  return labels;
}

// A column of categories: numbers where the declaration has numbers, and texts without one.
void AddCategorical(MCVarList& variables, const RecordLayout::Column& column,
                    const std::vector<std::string>& labels, MCCommonMetadata::VariableRole role) {
  if (column.declaration == nullptr || !column.declaration->HasNumericCategories()) {
    variables.AddCatVar(column.name, "", labels, role);
    return;
  }
  std::vector<double> numbers;
  numbers.reserve(labels.size());
  for (const std::string& label : labels) numbers.push_back(*ParseNumber(label));
  variables.AddCatVar(column.name, "", numbers, role);
}

void AddDeclaredMissing(MCCommonMetadata::IMCEncoder& encoder,
                        const MCCommonMetadata::IMCEncoder& declared) {
  const auto labelAt = [&declared](std::size_t i) {
    const std::vector<std::string>* labels = declared.GetMissValueLabels();
    return labels != nullptr && i < labels->size() ? (*labels)[i] : std::string();
  };
  const auto add = [&](const auto* values) {
    for (std::size_t i = 0; values != nullptr && i < values->size(); ++i) {
      encoder.AddDiscreteUserMissing((*values)[i], labelAt(i));
    }
  };
  add(declared.GetDiscreteMissValues());
  add(declared.GetDiscreteMissValuesStr());
  double low = 0.0;
  double high = 0.0;
  if (declared.GetMissingInterval(low, high)) encoder.SetMissingInterval(low, high);
}

void AddValueLabels(MCCommonMetadata::IMCEncoder& encoder, const Declaration& declaration) {
  const std::vector<std::string>* labels = declaration.Variable().GetEncoder()->GetValueLabels();
  if (labels == nullptr || labels->empty()) return;
  for (int code = 0; code < encoder.GetNumberOfCategories(); ++code) {
    const auto& declared = declaration.Labels();
    const auto place = static_cast<std::size_t>(
        std::find(declared.begin(), declared.end(), encoder.Decode(code)) - declared.begin());
    encoder.SetValueLabel(code, place < labels->size() ? (*labels)[place] : "");
  }
}

// What the settings tell of a variable and the model doesn't.
void AddDeclared(MCVarList& variables, const RecordLayout& layout) {
  for (int i = 0; i < variables.Size(); ++i) {
    const Declaration* declaration = layout.At(i).declaration;
    if (declaration == nullptr) continue;
    MCCommonMetadata::IMCVariable& variable = *variables.GetVarAt(i);
    variable.SetVariableLabel(declaration->Variable().GetVariableLabel());
    variable.SetVariableStorage(declaration->Variable().GetVariableStorage());
    AddDeclaredMissing(*variable.GetEncoder(), *declaration->Variable().GetEncoder());
    AddValueLabels(*variable.GetEncoder(), *declaration);
  }
}

}  // namespace

MCVarList ModelDictionary(const FittedModel& model, const PmmlTerms& terms,
                          const MissingCells& missing) {
  const RecordLayout& layout = model.Layout();
  const int dependent = layout.Position(Role::kDependent);
  MCVarList variables;
  if (terms.categories.empty()) {
    variables.AddContVar(layout.At(dependent).name, "", MCCommonMetadata::MC_ROLE_TARGET);
  } else {
    std::vector<std::string> labels;
    for (const int code : terms.categories) {
      labels.push_back(model.Data().LabelsAt(dependent).Label(code));
    }
    AddCategorical(variables, layout.At(dependent), labels, MCCommonMetadata::MC_ROLE_TARGET);
  }
  int factor = 0;
  for (const int position : layout.Positions(Role::kFactor)) {
    const Declaration* declaration = layout.At(position).declaration;
    if (declaration != nullptr && declaration->Bins()) {
      variables.AddContVar(layout.At(position).name, "", MCCommonMetadata::MC_ROLE_INPUT);
    } else {
      AddCategorical(variables, layout.At(position), UsedLabels(model, position, factor),
                     MCCommonMetadata::MC_ROLE_INPUT);
    }
    ++factor;
  }
  for (const int position : layout.Positions(Role::kCovariate)) {
    variables.AddContVar(layout.At(position).name, "", MCCommonMetadata::MC_ROLE_INPUT);
  }
  AddDeclared(variables, layout);
  AddMissingTexts(variables, missing);
  return variables;
}

}  // namespace mcfit
