// SPDX-License-Identifier: Apache-2.0
#include "regression/regression.h"

#include <cstdio>
#include <memory>

int main() {
  const double rows[] = {1, 2.1, 2, 3.9, 3, 6.2, 4, 7.8, 5, 10.1};  // five rows of x and y
  std::FILE* file = std::tmpfile();
  if (file == nullptr || std::fwrite(rows, sizeof rows, 1, file) != 1) return 1;
  std::rewind(file);
  MCCommon::BinaryRecordIterator source(file, 2);

  const std::vector<int> variables = {0};  // factors, then covariates, as positions in a row
  MCModelEffect slope(0, 1, &variables);
  slope.AddCovariate(0);
  MCRegSettings settings;
  settings.AddCovariate(0);
  settings.SetDependent(1);
  settings.AddModelEffect(slope);

  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> regression(factory.CreateRegAlgorithm(settings));
  IMCRegOutputStats* results = nullptr;
  if (!regression || regression->BuildModel(source).IsError()) return 1;
  if (regression->GetOutputStats(results).IsError()) return 1;
  for (const MCRegrParameterStats& parameter : results->GetParamStats()) {
    std::printf("parameter %d: %7.4f\n", parameter.fIndex, parameter.fEstimate);
  }
  std::printf("R square: %.4f\n", results->GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2));
}
