// SPDX-License-Identifier: Apache-2.0
// A whole linear regression of any settings over any rows: build, results, scores and display.
// Sources may fail, rows may be short, missing or hold any double, and a cancel may come.
#include "regression/component/mcregfactory.h"
#include "regressioninput.h"
#include "require.h"
#include "support/makerecord.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace {

using mctest::Rows;

void Run(IMCRegComponent& component, mctest::RowSource& source, bool parametersFirst,
         const Rows& rows) {
  std::vector<MCRegrParameter> parameters;
  if (parametersFirst) static_cast<void>(component.CreateParameters(source, parameters));
  const MCCommon::MCStatus built = component.BuildModel(source);
  Require(component.IsModelBuilt() == !built.IsError());
  IMCRegOutputStats* stats = nullptr;
  Require(component.GetOutputStats(stats).IsError() == built.IsError());
  Require((stats != nullptr) == component.IsModelBuilt());
  if (stats != nullptr) {
    Require(stats->GetCovarianceMatrix() != nullptr);
    UseResults(*stats, rows);
  }
  for (const auto& row : rows) {
    double value = 0.0;
    std::vector<double> probabilities;
    static_cast<void>(component.Score(mctest::MakeRecord(row), value, probabilities));
  }
  component.Display();
  for (const MCCommon::MCStatus& warning : component.GetWarnings()) Require(warning.IsWarning());
  Require(component.BuildModel(source).IsError());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  DisplayNowhere();
  FuzzedDataProvider data(bytes, size);
  std::vector<int> variables;
  MCRegSettings settings;
  FillSettings(data, settings, variables);
  mctest::ScriptedCancel cancel = TakeCancel(data);
  settings.SetCancelPointer(&cancel);
  settings.Display();
  const Failure failure(data, 3);
  const bool parametersFirst = data.ConsumeBool();

  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
  Require((component != nullptr) == !factory.GetStatus().IsError());
  if (component == nullptr) return 0;
  const Rows rows = TakeRows(data);
  mctest::RowSource source(rows);
  failure.Apply(source);
  Run(*component, source, parametersFirst, rows);
  return 0;
}
