// SPDX-License-Identifier: Apache-2.0
#include "mcfit/support/pmmlscorer.h"

#include "support/numbers.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

using mctest::XmlNode;

namespace {

template <class T>
bool Contains(const std::vector<T>& list, const T& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

std::vector<std::string> ValuesWith(const XmlNode& field, const std::string& property) {
  std::vector<std::string> values;
  for (const XmlNode* value : field.All("Value")) {
    if ((*value)["property"] == property) values.push_back((*value)["value"]);
  }
  return values;
}

std::vector<std::string> NamesIn(const XmlNode& list) {
  std::vector<std::string> names;
  for (const XmlNode* predictor : list.All("Predictor")) names.push_back((*predictor)["name"]);
  return names;
}

}  // namespace

PmmlScorer::PmmlScorer(const std::string& document) {
  const XmlNode root = mctest::ReadXml(document);
  const XmlNode& model = root.Only("GeneralRegressionModel");
  fbIsLinear = model["modelType"] == "generalLinear";
  std::map<std::string, std::string> usage;
  for (const XmlNode* field : model.Only("MiningSchema").All("MiningField")) {
    usage[(*field)["name"]] = (*field)["usageType"];
  }
  for (const XmlNode* field : root.Only("DataDictionary").All("DataField")) {
    const std::string name = (*field)["name"];
    if (usage.at(name) == "predicted") fCategories = ValuesWith(*field, "valid");
    if (usage.at(name) != "active") continue;
    fActive[name] = {(*field)["optype"] == "categorical", ValuesWith(*field, "valid"),
                     ValuesWith(*field, "missing")};
  }
  const std::vector<std::string> factors = NamesIn(model.Only("FactorList"));
  const std::vector<std::string> covariates = NamesIn(model.Only("CovariateList"));
  for (const XmlNode* cell : model.Only("PPMatrix").All("PPCell")) {
    const std::string name = (*cell)["predictorName"];
    const bool isFactor = Contains(factors, name);
    if (!isFactor && !Contains(covariates, name)) throw std::runtime_error(name + " is neither");
    fCells[(*cell)["parameterName"]].push_back({name, (*cell)["value"], isFactor});
  }
  for (const XmlNode* cell : model.Only("ParamMatrix").All("PCell")) {
    fBetas[(*cell)["targetCategory"]].emplace_back((*cell)["parameterName"],
                                                   mctest::ToNumber((*cell)["beta"]));
  }
}

bool PmmlScorer::IsScorable(const Row& row) const {
  for (const auto& [name, field] : fActive) {
    const std::string& value = row.at(name);
    if (value.empty() || Contains(field.missing, value)) return false;
    if (field.isCategorical ? !Contains(field.valid, value) : !mctest::NumberIn<double>(value))
      return false;
  }
  return true;
}

double PmmlScorer::Value(const std::string& parameter, const Row& row) const {
  const auto cells = fCells.find(parameter);
  double product = 1.0;
  if (cells == fCells.end()) return product;
  for (const Cell& cell : cells->second) {
    const std::string& value = row.at(cell.predictor);
    if (cell.isFactor) {
      product *= value == cell.value ? 1.0 : 0.0;
    } else {
      product *= std::pow(mctest::ToNumber(value), mctest::ToNumber(cell.value));
    }
  }
  return product;
}

std::optional<std::vector<double>> PmmlScorer::Score(const Row& row) const {
  if (!IsScorable(row)) return {};
  const auto predictor = [&](const std::string& category) {
    double sum = 0.0;
    const auto betas = fBetas.find(category);
    if (betas == fBetas.end()) return sum;
    for (const auto& [parameter, beta] : betas->second) sum += beta * Value(parameter, row);
    return sum;
  };
  if (fbIsLinear) return std::vector<double>{predictor("")};
  std::vector<double> shares;
  for (const std::string& category : fCategories) shares.push_back(predictor(category));
  const double largest = *std::max_element(shares.begin(), shares.end());
  double sum = 0.0;
  for (double& share : shares) sum += share = std::exp(share - largest);
  for (double& share : shares) share /= sum;
  return shares;
}
