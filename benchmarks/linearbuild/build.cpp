// SPDX-License-Identifier: Apache-2.0
// build NAME DIRECTORY: fits a data set as a host does, and reports time, memory and R square.
#include "dataset.h"
#include "regression/regression.h"

#include <memory>

namespace {

MCRegSettings Settings(const Dataset& dataset, const std::vector<int>& variables) {
  MCRegSettings settings;
  const int nFactors = dataset.NFactors();
  for (int i = 0; i < nFactors; ++i) {
    settings.AddFactor(i, dataset.factorSizes[static_cast<std::size_t>(i)]);
  }
  for (int i = 0; i < dataset.nCovariates; ++i) settings.AddCovariate(nFactors + i);
  settings.SetDependent(dataset.NVariables() - 1);
  settings.SetInterceptUse(true);
  for (const std::vector<int>& factors : dataset.factorEffects) {
    MCModelEffect effect(nFactors, dataset.nCovariates, &variables);
    for (int factor : factors) effect.AddNewFactor(factor, 0);
    settings.AddModelEffect(effect);
  }
  for (int i = 0; i < dataset.nCovariates; ++i) {
    MCModelEffect effect(nFactors, dataset.nCovariates, &variables);
    effect.AddCovariate(nFactors + i);
    settings.AddModelEffect(effect);
  }
  return settings;
}

}  // namespace

int main(int argc, char** argv) {
  const Dataset dataset = DatasetNamed(argc == 3 ? argv[1] : "");
  std::FILE* file = dataset.name.empty() ? nullptr : OpenRows(dataset, argv[2], "rb");
  if (file == nullptr) return 2;
  std::vector<int> variables(static_cast<std::size_t>(dataset.NVariables() - 1));
  for (std::size_t i = 0; i < variables.size(); ++i) variables[i] = static_cast<int>(i);
  MCRegSettings settings = Settings(dataset, variables);
  MCCommon::BinaryRecordIterator source(file, dataset.NVariables());
  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
  IMCRegOutputStats* results = nullptr;
  if (component == nullptr || component->BuildModel(source).IsError()) return 1;
  if (component->GetOutputStats(results).IsError()) return 1;
  ReportUse("mcstat", results->GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2));
  return std::fclose(file) == 0 ? 0 : 1;
}
