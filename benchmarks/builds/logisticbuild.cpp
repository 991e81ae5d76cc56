// SPDX-License-Identifier: Apache-2.0
// logisticbuild NAME DIRECTORY: fits a data set as a host does, with the criteria of fresh
// settings, and reports time, memory and R square.
#include "dataset.h"
#include "describe.h"
#include "regression/regression.h"

#include <memory>

int main(int argc, char** argv) {
  const Dataset dataset = DatasetNamed(argc == 3 ? argv[1] : "");
  std::FILE* file = dataset.nCategories == 0 ? nullptr : OpenRows(dataset, argv[2], "rb");
  if (file == nullptr) return 2;
  const std::vector<int> variables = Variables(dataset);
  MCLogRegSettings settings;
  settings.SetDependentRefCat(dataset.nCategories - 1, dataset.nCategories);
  settings.SetUsePatternTabulator(true);
  Describe(dataset, variables, settings);
  MCCommon::BinaryRecordIterator source(file, dataset.NVariables());
  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
  IMCRegOutputStats* results = nullptr;
  if (component == nullptr || component->BuildModel(source).IsError()) return 1;
  if (component->GetOutputStats(results).IsError()) return 1;
  ReportUse("mcstat", results->GetModelFitStat(MCConst::MC_FIT_MCFADDEN));
  return std::fclose(file) == 0 ? 0 : 1;
}
