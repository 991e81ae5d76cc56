// SPDX-License-Identifier: Apache-2.0
//
// Every code that a linear regression can answer, each raised the way a host would meet it.
#include "regression/component/mcregfactory.h"
#include "regression/linear/mcglmalgorithm.h"
#include "support/libraryfit.h"
#include "support/rowsource.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <vector>

namespace {

using MCCommon::MCStatus;
using mctest::LibraryFit;
using mctest::LinearProblem;
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

TEST(StatusCodes, EachOneOfALinearRegressionIsRaised) {
  const std::vector<std::pair<long, std::function<MCStatus()>>> ways = {
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
  for (const auto& [code, raise] : ways) {
    const MCStatus status = raise();
    EXPECT_EQ(status.GetErrorCode(), code);
    EXPECT_TRUE(status.IsError()) << code;
  }
}

// What belongs to the iterative estimator alone.
TEST(StatusCodes, TheTableHoldsNoOtherCodeOfARegression) {
  std::set<long> inTable;
#define MC_STATUS_CODE(code, name, severity, text) inTable.insert(code);
#include "regression/frame/mcstatuscodes.inc"
  const std::set<long> elsewhere = {304, 314, 318, 319};
  const std::set<long> raised = {1,   301, 302, 303, 305, 306, 307, 308,
                                 309, 310, 311, 312, 313, 315, 316};
  for (const long code : inTable) {
    if (code > 1 && code < 300) continue;
    EXPECT_NE(raised.count(code), elsewhere.count(code)) << code;
  }
}

}  // namespace
