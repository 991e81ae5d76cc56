// SPDX-License-Identifier: Apache-2.0
// A whole logistic regression of any settings over any rows, from stored patterns or by rereading:
// build, results, convergence, scores and display. Sources may fail, rows may be short, missing or
// hold any double, and a cancel may come.
#include "regression/component/mclogcomponent.h"
#include "regression/component/mcregfactory.h"
#include "regression/frame/progressreportvect.h"
#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mclogoutputstats.h"
#include "regressioninput.h"
#include "require.h"
#include "support/makerecord.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

using mctest::Rows;

// Criteria are refused where they make no sense. Iterations are few, so that inputs are many.
void FillLogisticSettings(FuzzedDataProvider& data, MCLogRegSettings& settings) {
  settings.SetUsePatternTabulator(data.ConsumeBool());
  settings.SetDependentRefCat(data.ConsumeIntegralInRange(-3, 6),
                              data.ConsumeIntegralInRange(-1, 6));
  settings.SetMaxIterations(data.ConsumeIntegralInRange(-1, 12));
  settings.SetMaxStepHalvingValue(data.ConsumeIntegralInRange(-1, 8));
  settings.SetStartingIteration(data.ConsumeIntegralInRange(-1, 12));
  settings.SetIterationFrequency(data.ConsumeIntegralInRange(-1, 4));
  if (data.ConsumeIntegralInRange(0, 7) == 0) settings.SetLLConCriterion(TakeAnyDouble(data));
  if (data.ConsumeIntegralInRange(0, 7) == 0) {
    settings.SetParamEstConCriterion(TakeAnyDouble(data));
  }
  settings.SetLLFuncChange(data.ConsumeBool());
  settings.SetParamEstChange(data.ConsumeBool());
}

// Asks for all that a report has, and for what it doesn't have.
class Listener : public ProgressListener {
public:
  bool ReportProgress(ProgressReport* report) override {
    Require(report->DiscreteMeasure("iterNum") >= 0);
    Require(report->DiscreteMeasure("stepHalving") >= 0);
    Require(report->DiscreteMeasure("loglik") == 0);
    Require(report->ScaleMeasure("time") >= 0.0);
    Require(report->ScaleMeasure("iterNum") == 0.0);
    Require(static_cast<ProgressReportVect*>(report)->VectorMeasure("paramEstim") != nullptr);
    return false;
  }
};

// Puts the switches of the process back.
class Switches {
public:
  explicit Switches(FuzzedDataProvider& data) {
    usePacking = data.ConsumeBool();
    compute_estimates = data.ConsumeIntegralInRange(0, 15) != 0;
    display_hessian = data.ConsumeBool();
  }
  ~Switches() {
    usePacking = true;
    compute_estimates = true;
    display_hessian = false;
  }
  Switches(const Switches&) = delete;
  Switches& operator=(const Switches&) = delete;
};

void UseConvergence(const MCConvergence& convergence, const std::vector<double>& estimates) {
  Require(convergence.fReason >= MCConst::MC_CONV_NONE &&
          convergence.fReason <= MCConst::MC_CONV_NOT_RUN);
  if (!convergence.IsConverged()) return;
  Require(std::isfinite(convergence.fFinalLL) && convergence.fFinalLL <= 0.0);
  for (const double estimate : estimates) Require(std::isfinite(estimate));
}

void UseSparseRows(MCLogOutputStats& results, const Rows& rows) {
  std::vector<int> columns;
  std::vector<double> values;
  for (const auto& row : rows) {
    if (!results.ExpandRow(mctest::MakeRecord(row), columns, values)) continue;
    Require(columns.size() == values.size());
    const int size = static_cast<int>(results.GetParameters()->size());
    for (const int column : columns) Require(column < size);
  }
}

// What a score says is one of the categories or none.
void Score(const IMCRegComponent& component, const std::vector<double>& row,
           const std::vector<int>& categories) {
  double value = -2.0;
  std::vector<double> probabilities;
  const MCCommon::MCStatus status = component.Score(mctest::MakeRecord(row), value, probabilities);
  const bool isCategory =
      std::find(categories.begin(), categories.end(), value) != categories.end();
  Require(isCategory || value == -1.0);
  if (!status.IsError()) Require(!isCategory || probabilities.size() == categories.size());
}

// A model may come without estimates where a cancel falls between two steps.
void Use(MCLogComponent& component, const Rows& rows) {
  IMCRegOutputStats* stats = nullptr;
  Require(component.GetOutputStats(stats).IsError() != component.IsModelBuilt());
  Require((stats != nullptr) == component.IsModelBuilt());
  if (stats == nullptr) return;
  auto& results = static_cast<MCLogOutputStats&>(*stats);
  UseResults(results, rows);
  UseConvergence(component.GetConvergence(), *results.GetParamEstimates());
  UseSparseRows(results, rows);
  for (const auto& row : rows) Score(component, row, results.GetDependCategories());
}

void Run(MCLogComponent& component, mctest::RowSource& source, bool parametersFirst,
         const Rows& rows) {
  std::vector<MCRegrParameter> parameters;
  if (parametersFirst) static_cast<void>(component.CreateParameters(source, parameters));
  const MCCommon::MCStatus built = component.BuildModel(source);
  Require(!built.IsError() || !component.IsModelBuilt());
  Use(component, rows);
  component.Display();
  for (const MCCommon::MCStatus& warning : component.GetWarnings()) Require(warning.IsWarning());
  // Refused, unless a cancel that was withdrawn has kept it from beginning.
  const bool wasBuilt = component.IsModelBuilt();
  Require(component.BuildModel(source).IsError() || !wasBuilt);
  Require(component.IsModelBuilt() || !wasBuilt);
  Use(component, rows);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  DisplayNowhere();
  FuzzedDataProvider data(bytes, size);
  std::vector<int> variables;
  MCLogRegSettings settings;
  const Switches switches(data);
  FillLogisticSettings(data, settings);
  FillSettings(data, settings, variables);
  mctest::ScriptedCancel cancel = TakeCancel(data);
  settings.SetCancelPointer(&cancel);
  Listener listener;
  settings.SetProgressListener(&listener);
  settings.Display();
  const Failure failure(data, 8);
  const bool parametersFirst = data.ConsumeBool();

  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
  Require((component != nullptr) == !factory.GetStatus().IsError());
  if (component == nullptr) return 0;
  const Rows rows = TakeRows(data);
  mctest::RowSource source(rows);
  failure.Apply(source);
  Run(static_cast<MCLogComponent&>(*component), source, parametersFirst, rows);
  return 0;
}
