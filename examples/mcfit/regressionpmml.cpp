// SPDX-License-Identifier: Apache-2.0
#include "regressionpmml.h"

#include "errors.h"
#include "mcmath/mcsymmatrix.h"
#include "modeldictionary.h"
#include "pmmldocument.h"
#include "reporttext.h"

#include <fmt/format.h>

namespace mcfit {

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

}  // namespace

void CheckPmmlDesign(const ModelDesign& design) {
  if (design.effects.empty()) {
    throw InputError("PMML 3.2 can't tell a model of the intercept alone");
  }
}

void WriteRegressionPmml(const FittedModel& model, const MissingCells& missing, OutputFile& out) {
  const PmmlTerms terms = model.InPmml();
  const MCCommonMetadata::MCVarList variables = ModelDictionary(model, terms, missing);
  PmmlDocument document(terms.description, variables);
  RegressionWriter(model, terms, document.AddModel("GeneralRegressionModel", terms.functionName))
      .Write();
  document.Write(out);
}

}  // namespace mcfit
