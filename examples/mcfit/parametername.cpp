// SPDX-License-Identifier: Apache-2.0
#include "parametername.h"

#include "text.h"

#include <fmt/format.h>

namespace mcfit {

namespace {

std::string CovariateName(const std::string& name, int power) {
  return power == 1 ? Printable(name) : fmt::format("{}^{}", Printable(name), power);
}

// With the label that the parameter is for, if there are labels.
std::string FactorName(const MCRegrParameter& parameter, std::size_t i, const RecordLayout& layout,
                       const std::vector<LabelTable>* labels) {
  const int position = parameter.GetFactors()[i];
  const std::string name = Printable(layout.At(position).name);
  if (labels == nullptr) return name;
  const LabelTable& table = (*labels)[static_cast<std::size_t>(layout.LabelledNumber(position))];
  return fmt::format("{}={}", name, Printable(table.Label(parameter.GetCategories()[i])));
}

// Writes terms with " * " between them, and opens a parenthesis where a further level begins.
class NameWriter {
public:
  void BeginLevel() {
    if (!fText.empty()) {
      fText += " (";
      ++fOpen;
    }
    fbFirst = true;
  }

  void AddTerm(const std::string& term) {
    if (!fbFirst) fText += " * ";
    fText += term;
    fbFirst = false;
  }

  std::string Finished() const { return fText + std::string(fOpen, ')'); }

private:
  std::string fText;
  std::size_t fOpen = 0;
  bool fbFirst = true;
};

std::string Name(const MCRegrParameter& parameter, const RecordLayout& layout,
                 const std::vector<LabelTable>* labels, bool factorsInParens) {
  if (parameter.IsIntercept()) return "(Intercept)";
  NameWriter writer;
  for (std::size_t i = 0; i < parameter.GetCovariates().size(); ++i) {
    writer.AddTerm(CovariateName(layout.At(parameter.GetCovariates()[i]).name,
                                 parameter.GetCovariateMultiplicities()[i]));
  }
  if (factorsInParens) writer.BeginLevel();
  for (std::size_t i = 0; i < parameter.GetFactors().size(); ++i) {
    const std::vector<int>& levels = parameter.GetFactorNestLevels();
    if (i > 0 && levels[i] != levels[i - 1]) writer.BeginLevel();
    writer.AddTerm(FactorName(parameter, i, layout, labels));
  }
  return writer.Finished();
}

}  // namespace

std::string ParameterName(const MCRegrParameter& parameter, const RecordLayout& layout,
                          const std::vector<LabelTable>& labels, bool factorsInParens) {
  return Name(parameter, layout, &labels, factorsInParens);
}

std::string EffectLabel(const MCRegrParameter& parameter, const RecordLayout& layout,
                        bool factorsInParens) {
  return Name(parameter, layout, nullptr, factorsInParens);
}

}  // namespace mcfit
