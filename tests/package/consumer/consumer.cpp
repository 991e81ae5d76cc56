// SPDX-License-Identifier: Apache-2.0
//
// The least a host does: rows of its own, settings, a component, its estimates.
#include "mcmath/mcmath.h"
#include "regression/regression.h"

#include <cstdio>
#include <memory>

namespace {

// The rows (x, 1 + 2x) for x from 0 to 9.
class LineSource : public MCCommon::MultiPassRecordIter {
public:
  bool HasMore() const override { return fNext < 10; }
  MCCommon::Record* Next() override {
    fRow[0] = fNext++;
    fRow[1] = 1.0 + 2.0 * fRow[0];
    return &fRow;
  }
  int GetFailReason() const override { return HasMore() ? 0 : 1; }
  int NewPass() override {
    fNext = 0;
    return 0;
  }

private:
  MCCommon::Record fRow{2};
  int fNext = 0;
};

}  // namespace

int main() {
  MCRegSettings settings;
  settings.AddCovariate(0);
  settings.SetDependent(1);
  MCModelEffect slope(0, 1, &settings.GetCovariates());
  slope.AddCovariate(0);
  settings.AddModelEffect(slope);

  MCRegFactory factory;
  std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
  LineSource rows;
  if (component == nullptr || component->BuildModel(rows).IsError()) return 1;
  IMCRegOutputStats* results = nullptr;
  if (component->GetOutputStats(results).IsError()) return 1;
  const std::vector<double>& estimates = *results->GetParamEstimates();
  std::printf("y = %g + %g x\n", estimates[0], estimates[1]);
  return 0;
}
