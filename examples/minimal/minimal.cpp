// SPDX-License-Identifier: Apache-2.0
#include "regression/regression.h"

#include <cstdio>
#include <memory>

// Fits what the settings describe to the rows of the source, and prints it.
int Fit(MCRegSettings& settings, MCCommon::MultiPassRecordIter& source) {
  const std::vector<int> variables = {0};  // factors, then covariates, as positions in a row
  MCModelEffect slope(0, 1, &variables);
  slope.AddCovariate(0);
  settings.AddCovariate(0);
  settings.AddModelEffect(slope);

  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> regression(factory.CreateRegAlgorithm(settings));
  IMCRegOutputStats* results = nullptr;
  if (!regression || regression->BuildModel(source).IsError()) return 1;
  if (regression->GetOutputStats(results).IsError()) return 1;
  for (const MCRegrParameterStats& parameter : results->GetParamStats()) {
    std::printf("parameter %d: %7.4f\n", parameter.fIndex, parameter.fEstimate);
  }
  const auto* logistic = dynamic_cast<const MCLogComponent*>(regression.get());
  if (logistic == nullptr) {
    std::printf("R square: %.4f\n", results->GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2));
  } else if (!logistic->GetConvergence().IsConverged()) {
    std::printf("not converged: see docs/convergence.md\n");
  }
  return 0;
}

int main() {
  // Seven rows: hours of practice, points scored, whether that was enough (0 or 1).
  const double rows[] = {1, 21, 0, 2, 39, 0, 3, 62, 1, 4, 58, 0, 5, 81, 1, 6, 90, 1, 7, 96, 1};
  std::FILE* file = std::tmpfile();
  if (file == nullptr || std::fwrite(rows, sizeof rows, 1, file) != 1) return 1;
  std::rewind(file);
  MCCommon::BinaryRecordIterator source(file, 3);

  MCRegSettings points;
  points.SetDependent(1);
  MCLogRegSettings enough;  // the last category, 1, is the reference: these are the odds of a 0
  enough.SetDependent(2);
  if (Fit(points, source) != 0 || source.NewPass() != 0) return 1;
  return Fit(enough, source);
}
