// SPDX-License-Identifier: Apache-2.0
//
// Every code that a regression can answer, each raised the way a host would meet it.
#include "regression/component/mcregfactory.h"
#include "regression/linear/mcglmalgorithm.h"
#include "support/libraryfit.h"
#include "support/rowsource.h"
#include "support/tabulation.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <vector>

namespace {

using MCCommon::MCStatus;
using mctest::LibraryFit;
using mctest::LinearProblem;
using mctest::LogisticProblem;
using mctest::RowSource;

// y on a factor of two levels and a covariate.
LinearProblem Sound() {
  LinearProblem problem;
  problem.dependent = 0;
  problem.factors = {1};
  problem.factorSizes = {2};
  problem.covariates = {2};
  problem.effects = {{{{1, false}}, {}}, {{}, {2}}};
  problem.rows = {{1, 0, 1}, {2, 1, 3}, {2, 0, 2}, {5, 1, 7}, {4, 1, 5}};
  return problem;
}

MCStatus BuildWith(const std::function<void(LinearProblem&)>& change) {
  LinearProblem problem = Sound();
  change(problem);
  return LibraryFit(problem).Build();
}

MCStatus BuildFrom(const std::function<void(RowSource&)>& change) {
  const LinearProblem problem = Sound();
  LibraryFit fit(problem);
  const std::unique_ptr<IMCRegComponent> component(
      MCRegFactory().CreateRegAlgorithm(fit.Settings()));
  RowSource source(problem.rows);
  change(source);
  return component->BuildModel(source);
}

MCStatus DriveBy(const std::function<MCStatus(MCGLMAlgorithm&, RowSource&)>& steps) {
  const LinearProblem problem = Sound();
  LibraryFit fit(problem);
  MCGLMAlgorithm driver(fit.Settings());
  RowSource source(problem.rows);
  return steps(driver, source);
}

MCStatus Cancelled() {
  const LinearProblem problem = Sound();
  LibraryFit fit(problem);
  const std::unique_ptr<IMCRegComponent> component(
      MCRegFactory().CreateRegAlgorithm(fit.Settings()));
  RowSource source(problem.rows);
  std::vector<MCRegrParameter> none;
  static_cast<void>(component->CreateParameters(source, none));
  component->Cancel();
  return component->BuildModel(source);
}

MCStatus BuiltTwice() {
  const LinearProblem problem = Sound();
  LibraryFit fit(problem);
  static_cast<void>(fit.Build());
  RowSource source(problem.rows);
  return fit.Component().BuildModel(source);
}

MCStatus ResultsTooEarly() {
  const LinearProblem problem = Sound();
  LibraryFit fit(problem);
  const std::unique_ptr<IMCRegComponent> component(
      MCRegFactory().CreateRegAlgorithm(fit.Settings()));
  IMCRegOutputStats* results = nullptr;
  return component->GetOutputStats(results);
}

// A factor with one level more than a matrix has rows for.
void TooManyLevels(LinearProblem& problem) {
  constexpr int kLevels = 46340;
  problem.intercept = false;
  problem.factorSizes = {kLevels};
  problem.effects = {{{{1, false}}, {}}};
  problem.rows.clear();
  for (int level = 0; level < kLevels; ++level) problem.rows.push_back({1.0, 1.0 * level, 0.0});
}

// Closing sums that no row was ever added to.
MCStatus NoWeight() {
  const LinearProblem problem = Sound();
  LibraryFit fit(problem);
  MCCancelInfo cancel(nullptr);
  return MCGLMModel(fit.Settings(), cancel).FinishErrors();
}

// y in two categories on a factor of two levels and a covariate, in no way separated.
LogisticProblem SoundLogistic() {
  LogisticProblem problem;
  problem.factors = {1};
  problem.factorSizes = {2};
  problem.covariates = {2};
  problem.effects = {{{{1, false}}, {}}, {{}, {2}}};
  problem.rows = {{0, 0, 1}, {1, 0, 2},   {0, 0, 3},   {1, 0, 0.5},
                  {0, 1, 0}, {1, 1, 1.5}, {0, 1, 2.5}, {1, 1, 3.5}};
  return problem;
}

// The first row is 0 in every column of the design.
LogisticProblem WithoutColumns() {
  LogisticProblem problem = SoundLogistic();
  problem.intercept = false;
  problem.effects = {{{}, {2}}};
  problem.rows[0][2] = 0.0;
  return problem;
}

MCStatus BuildLogistic(const LogisticProblem& problem, bool patterns) {
  LibraryFit fit(problem);
  fit.LogisticSettings().SetUsePatternTabulator(patterns);
  return fit.Build();
}

MCStatus BuildLogisticWith(const std::function<void(LogisticProblem&)>& change) {
  LogisticProblem problem = SoundLogistic();
  change(problem);
  return BuildLogistic(problem, true);
}

// From a source that gives null in the given pass: 0 and 1 are common to both roads.
MCStatus BuildLogisticFromNull(int pass, bool patterns) {
  const LogisticProblem problem = SoundLogistic();
  LibraryFit fit(problem);
  fit.LogisticSettings().SetUsePatternTabulator(patterns);
  const std::unique_ptr<IMCRegComponent> component(
      MCRegFactory().CreateRegAlgorithm(fit.Settings()));
  RowSource source(problem.rows);
  source.NullAt(pass, 2);
  return component->BuildModel(source);
}

MCStatus AfterLogisticBuild(const std::function<MCStatus(IMCRegComponent&, RowSource&)>& step) {
  const LogisticProblem problem = SoundLogistic();
  LibraryFit fit(problem);
  static_cast<void>(fit.Build());
  RowSource source(problem.rows);
  return step(fit.Component(), source);
}

MCStatus CreatedTwice(IMCRegComponent& component, RowSource& rows) {
  std::vector<MCRegrParameter> parameters;
  return component.CreateParameters(rows, parameters);
}

// A pass of its own that a host makes through a tabulator.
MCStatus RecordWithoutValues() {
  mctest::Tabulation tabulation{mctest::TabulatedDesign()};
  return tabulation.fTabulator.UpdateFactorTable(MCCommon::Record(0), tabulation.fTables);
}

using Ways = std::vector<std::pair<long, std::function<MCStatus()>>>;

Ways LinearWays() {
  return {
      {1, Cancelled},
      {301, [] { return BuildWith([](LinearProblem& p) { p.dependent = -1; }); }},
      {302,
       [] {
         return BuildWith([](LinearProblem& p) {
           p.intercept = false;
           p.effects.clear();
         });
       }},
      {303,
       [] {
         return DriveBy([](auto& driver, auto& rows) { return driver.ComputeResiduals(rows); });
       }},
      {305, [] { return BuildWith(TooManyLevels); }},
      {306,
       [] {
         return DriveBy([](auto& driver, auto& rows) {
           static_cast<void>(driver.ProcessData(rows));
           return driver.ProcessData(rows);
         });
       }},
      {307, [] { return BuildWith([](LinearProblem& p) { p.rows.clear(); }); }},
      {308, NoWeight},
      {309,
       [] { return DriveBy([](auto& driver, auto& rows) { return driver.BuildModel(rows); }); }},
      {310, BuiltTwice},
      {311, ResultsTooEarly},
      {312, [] { return BuildFrom([](RowSource& rows) { rows.NullAt(1, 2); }); }},
      {313, [] { return BuildFrom([](RowSource& rows) { rows.NullAt(2, 2); }); }},
      {315, [] { return BuildWith([](LinearProblem& p) { p.rows[3].pop_back(); }); }},
      {316, [] { return BuildWith([](LinearProblem& p) { p.rows[3][1] = 0.5; }); }},
  };
}

Ways LogisticWays() {
  return {
      {1,
       [] {
         return AfterLogisticBuild([](auto& component, auto& rows) {
           component.Cancel();
           double value = 0.0;
           std::vector<double> probabilities;
           return component.Score(*rows.Next(), value, probabilities);
         });
       }},
      {303, [] { return BuildLogistic(WithoutColumns(), false); }},
      {304, [] { return BuildLogisticFromNull(3, false); }},
      {306, [] { return AfterLogisticBuild(CreatedTwice); }},
      {307, [] { return BuildLogisticWith([](auto& p) { p.rows.clear(); }); }},
      {310,
       [] {
         return AfterLogisticBuild(
             [](auto& component, auto& rows) { return component.BuildModel(rows); });
       }},
      {312, [] { return BuildLogisticFromNull(1, true); }},
      {313, [] { return BuildLogisticFromNull(1, false); }},
      {313, [] { return BuildLogistic(WithoutColumns(), true); }},
      {314, RecordWithoutValues},
      {315, [] { return BuildLogisticWith([](auto& p) { p.rows[3].pop_back(); }); }},
      {316, [] { return BuildLogisticWith([](auto& p) { p.rows[3][0] = 0.5; }); }},
      {318,
       [] {
         return BuildLogisticWith([](auto& p) {
           for (auto& row : p.rows) row[0] = 1.0;
         });
       }},
      {319,
       [] {
         return BuildLogisticWith([](auto& p) {
           p.categories = 3;
           p.reference = 2;
         });
       }},
  };
}

void ExpectEachRaised(const Ways& ways) {
  for (const auto& [code, raise] : ways) {
    const MCStatus status = raise();
    EXPECT_EQ(status.GetErrorCode(), code);
    EXPECT_EQ(status.IsWarning(), code == MCCommon::MCS_REFCAT_REPLACED) << code;
    EXPECT_EQ(status.IsError(), code != MCCommon::MCS_REFCAT_REPLACED) << code;
  }
}

TEST(StatusCodes, EachOneOfALinearRegressionIsRaised) {
  ExpectEachRaised(LinearWays());
}

TEST(StatusCodes, EachOneOfALogisticRegressionIsRaised) {
  ExpectEachRaised(LogisticWays());
}

TEST(StatusCodes, TheTableHoldsNoOtherCodeOfARegression) {
  std::set<long> inTable;
#define MC_STATUS_CODE(code, name, severity, text) inTable.insert(code);
#include "regression/frame/mcstatuscodes.inc"
  std::set<long> raised;
  for (const Ways& ways : {LinearWays(), LogisticWays()}) {
    for (const auto& way : ways) raised.insert(way.first);
  }
  for (const long code : inTable) {
    const bool isOfARegression = code == MCCommon::MCS_CANCELLED || code > 300;
    EXPECT_EQ(raised.count(code) == 1, isOfARegression) << code;
  }
}

}  // namespace
