// SPDX-License-Identifier: Apache-2.0
#include "regressionpmml.h"

#include "errors.h"
#include "mcmath/mcsymmatrix.h"
#include "pmmldocument.h"
#include "regression/design/mcfactorcounts.h"
#include "reporttext.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>

namespace mcfit {

using MCCommonMetadata::MCVarList;
using MCCommonXML::XMLElement;

namespace {

/// Composes the model element.
class RegressionWriter {
public:
  RegressionWriter(const FittedModel& fitted, const PmmlTerms& terms, XMLElement& model)
      : fFitted(fitted),
        fTerms(terms),
        fModel(model),
        fParameters(*fitted.Results().GetParameters()),
        fBlocks(terms.categories.empty() ? 1 : terms.categories.size() - 1),
        fPerBlock(fParameters.size() / fBlocks) {}

  void Write() {
    AddBins();
    fModel.AddAttribute("modelType", fTerms.modelType);
    fModel.AddAttribute("targetVariableName", NameAt(Layout().Position(Role::kDependent)));
    AddParameters();
    AddPredictors("FactorList", Role::kFactor);
    AddPredictors("CovariateList", Role::kCovariate);
    AddDesign();
    AddCovariances();
    AddEstimates();
  }

private:
  const RecordLayout& Layout() const { return fFitted.Layout(); }
  const std::string& NameAt(int position) const { return Layout().At(position).name; }
  const Declaration* DeclarationAt(int position) const { return Layout().At(position).declaration; }
  bool HasBins(int position) const {
    return DeclarationAt(position) != nullptr && DeclarationAt(position)->Bins();
  }
  std::string PredictorAt(int position) const {
    return HasBins(position) ? NameOfBins(position) : NameAt(position);
  }
  const std::string& LabelAt(int position, int code) const {
    return fFitted.Data().LabelsAt(position).Label(code);
  }
  const MCRegrParameterStats& Stats(std::size_t i) const {
    return fFitted.Results().GetParamStats()[i];
  }

  // Each category of the dependent has the same columns of the design.
  std::string ParameterOf(std::size_t i) const { return fmt::format("p{}", i % fPerBlock); }

  void AddCategory(XMLElement& cell, const char* attribute, std::size_t i) const {
    if (fTerms.categories.empty()) return;
    cell.AddAttribute(
        attribute, LabelAt(Layout().Position(Role::kDependent), fTerms.categories[i / fPerBlock]));
  }

  // A name that no column has.
  std::string NameOfBins(int position) const {
    std::string name = NameAt(position) + " in bins";
    while (Layout().PositionOfPredictor(name) >= 0) name += '\'';
    return name;
  }

  // A factor that the dictionary makes of numbers is a field of its own.
  void AddBins() {
    XMLElement* transformations = nullptr;
    for (const int position : Layout().Positions(Role::kFactor)) {
      if (!HasBins(position)) continue;
      if (transformations == nullptr) {
        transformations = &AddChild(fModel, "LocalTransformations");
      }
      AddBinnedField(*transformations, position, *DeclarationAt(position)->Bins());
    }
  }

  void AddBinnedField(XMLElement& transformations, int position, const DeclaredBins& bins) {
    XMLElement& field = AddChild(transformations, "DerivedField");
    field.AddAttribute("name", NameOfBins(position));
    field.AddAttribute("optype", "categorical");
    field.AddAttribute("dataType", "string");
    XMLElement& discretize = AddChild(field, "Discretize");
    discretize.AddAttribute("field", NameAt(position));
    for (std::size_t i = 0; i < bins.labels.size(); ++i) {
      XMLElement& bin = AddChild(discretize, "DiscretizeBin");
      bin.AddAttribute("binValue", bins.labels[i]);
      XMLElement& interval = AddChild(bin, "Interval");
      interval.AddAttribute("closure", i < bins.edges.size() ? "openClosed" : "openOpen");
      if (i > 0) interval.AddAttribute("leftMargin", ExactNumber(bins.edges[i - 1]));
      if (i < bins.edges.size()) interval.AddAttribute("rightMargin", ExactNumber(bins.edges[i]));
    }
  }

  void AddParameters() {
    XMLElement& list = AddChild(fModel, "ParameterList");
    for (std::size_t i = 0; i < fPerBlock; ++i) {
      XMLElement& parameter = AddChild(list, "Parameter");
      parameter.AddAttribute("name", ParameterOf(i));
      parameter.AddAttribute("label", ParameterName(fParameters[i], fFitted));
    }
  }

  void AddPredictors(const char* name, Role role) {
    XMLElement& list = AddChild(fModel, name);
    for (const int position : Layout().Positions(role)) {
      AddChild(list, "Predictor").AddAttribute("name", PredictorAt(position));
    }
  }

  // A cell for each factor of a column, with its category, and each covariate, with its power; the
  // intercept is the parameter without any.
  void AddDesign() {
    XMLElement& matrix = AddChild(fModel, "PPMatrix");
    const auto addCell = [&](std::size_t i, int position, const std::string& value) {
      XMLElement& cell = AddChild(matrix, "PPCell");
      cell.AddAttribute("value", value);
      cell.AddAttribute("predictorName", PredictorAt(position));
      cell.AddAttribute("parameterName", ParameterOf(i));
    };
    for (std::size_t i = 0; i < fPerBlock; ++i) {
      const MCRegrParameter& parameter = fParameters[i];
      for (std::size_t j = 0; j < parameter.GetFactors().size(); ++j) {
        const int factor = parameter.GetFactors()[j];
        addCell(i, factor, LabelAt(factor, parameter.GetCategories()[j]));
      }
      for (std::size_t j = 0; j < parameter.GetCovariates().size(); ++j) {
        addCell(i, parameter.GetCovariates()[j],
                fmt::format("{}", parameter.GetCovariateMultiplicities()[j]));
      }
    }
  }

  std::vector<std::size_t> EstimatedParameters() const {
    std::vector<std::size_t> estimated;
    for (std::size_t i = 0; i < fParameters.size(); ++i) {
      if (!Stats(i).fRedundant) estimated.push_back(i);
    }
    return estimated;
  }

  // The matrix is symmetric, and half of it says all.
  void AddCovariances() {
    const MCCommonMath::MCSymMatrix* covariance = fFitted.Results().GetCovarianceMatrix();
    const std::vector<std::size_t> estimated = EstimatedParameters();
    if (covariance == nullptr || !fTerms.covarianceScale || estimated.empty()) return;
    if (estimated.size() > kMostCovariances) return;
    XMLElement& matrix = AddChild(fModel, "PCovMatrix");
    for (std::size_t row = 0; row < estimated.size(); ++row) {
      for (std::size_t column = 0; column <= row; ++column) {
        const std::size_t i = estimated[row];
        const std::size_t j = estimated[column];
        XMLElement& cell = AddChild(matrix, "PCovCell");
        cell.AddAttribute("pRow", ParameterOf(i));
        cell.AddAttribute("pCol", ParameterOf(j));
        AddCategory(cell, "tRow", i);
        AddCategory(cell, "tCol", j);
        const double value = covariance->GetElem(static_cast<int>(i), static_cast<int>(j));
        cell.AddAttribute("value", ExactNumber(value * *fTerms.covarianceScale));
      }
    }
  }

  void AddEstimates() {
    XMLElement& matrix = AddChild(fModel, "ParamMatrix");
    for (std::size_t i = 0; i < fParameters.size(); ++i) {
      XMLElement& cell = AddChild(matrix, "PCell");
      AddCategory(cell, "targetCategory", i);
      cell.AddAttribute("parameterName", ParameterOf(i));
      cell.AddAttribute("beta", ExactNumber(Stats(i).fEstimate));
      cell.AddAttribute("df", Stats(i).fRedundant ? "0" : "1");
    }
  }

  const FittedModel& fFitted;
  const PmmlTerms& fTerms;
  XMLElement& fModel;
  const std::vector<MCRegrParameter>& fParameters;
  std::size_t fBlocks;
  std::size_t fPerBlock;
};

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

// The variables stand in the order of the layout.
MCVarList Dictionary(const FittedModel& model, const PmmlTerms& terms,
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

}  // namespace

void CheckPmmlDesign(const ModelDesign& design) {
  if (design.effects.empty()) {
    throw InputError("--pmml: PMML 3.2 can't tell a model of the intercept alone");
  }
}

void WriteRegressionPmml(const FittedModel& model, const MissingCells& missing, OutputFile& out) {
  const PmmlTerms terms = model.InPmml();
  const MCVarList variables = Dictionary(model, terms, missing);
  PmmlDocument document(terms.description, variables);
  RegressionWriter(model, terms, document.AddModel("GeneralRegressionModel", terms.functionName))
      .Write();
  document.Write(out);
}

}  // namespace mcfit
