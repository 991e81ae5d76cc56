// SPDX-License-Identifier: Apache-2.0
#include "reporttext.h"

#include "parametername.h"
#include "regression/frame/mcmv.h"
#include "statustext.h"
#include "text.h"
#include "texttable.h"

#include <fmt/format.h>

namespace mcfit {

const char* const kRedundantNote =
    "redundant: a linear combination of parameters above it, so its coefficient is 0\n";

std::string NumberText::operator()(std::optional<double> value) const {
  return value ? fmt::format("{:.{}g}", *value, fDigits) : ".";
}

std::optional<double> Defined(double statistic) {
  if (statistic == MCMV::gMissingValue) return {};
  return statistic;
}

std::string HeadText(const char* kind, const Dataset& data) {
  const RowCounts& counts = data.Counts();
  const RecordLayout& layout = data.Layout();
  TextTable table(1);
  table.Add({"Rows read", fmt::format("{}", counts.read)});
  table.Add({"Rows used", fmt::format("{}", counts.used)});
  table.Add({"Rows dropped", fmt::format("{}", counts.Dropped())});
  return fmt::format("{} regression of {}\n\n{}{}\n", kind,
                     Printable(layout.At(layout.Position(Role::kDependent)).name), table.Text(),
                     DroppedRowsText(counts, layout));
}

namespace {

bool HasFactorsInParens(const MCRegrParameter& parameter, const FittedModel& model) {
  const int effect = parameter.GetEffectIndex();
  return effect >= 0 &&
         model.Design().effects[static_cast<std::size_t>(effect)].GetFactorsInParens();
}

}  // namespace

std::string ParameterName(const MCRegrParameter& parameter, const FittedModel& model) {
  return ParameterName(parameter, model.Layout(), model.Data().Labels(),
                       HasFactorsInParens(parameter, model));
}

std::string EffectLabel(const MCRegrParameter& parameter, const FittedModel& model) {
  return EffectLabel(parameter, model.Layout(), HasFactorsInParens(parameter, model));
}

std::array<std::string, 2> LimitHeads(const ReportStyle& style) {
  return {fmt::format("Lower {:g} %", style.confidence),
          fmt::format("Upper {:g} %", style.confidence)};
}

std::string TestsText(const FittedModel& model, const ReportStyle& style, const char* statistic,
                      const std::function<TestFigures(const WaldTest&)>& figures, bool withAll) {
  const std::vector<EffectTest> tests = TestEffects(model);
  if (tests.empty()) return {};
  TextTable table(3);
  const auto add = [&](const EffectTest& effect) {
    const TestFigures found = effect.test ? figures(*effect.test) : TestFigures();
    table.Add({effect.name, fmt::format("{}", effect.test ? effect.test->freedom : 0),
               NumberText(style.digits)(found.statistic), PValueText(style)(found.p)});
  };
  table.Add({"Effect", "DF", statistic, "p"});
  table.AddRule();
  for (const EffectTest& effect : tests) add(effect);
  table.AddRule();
  if (withAll) {
    const IMCRegOutputStats& results = model.Results();
    add({"All", TestParameters(results, EstimatedParameters(results, false))});
  }
  return "Tests that all parameters of an effect are 0\n\n" + table.Text() + "\n";
}

std::string ConditionNote(std::optional<double> index) {
  if (!index) return {};
  return fmt::format("of the columns of the design; above {:g} they are nearly collinear",
                     kHighCondition);
}

}  // namespace mcfit
