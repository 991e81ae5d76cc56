// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmalgorithm.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/makerecord.h"
#include "support/regressiondesign.h"
#include "support/rowsource.h"
#include "support/scriptedcancel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <vector>

namespace {
using MCCommon::MCStatus;
using MCCommon::Record;
using mctest::MakeRecord;
using mctest::RegressionDesign;
using mctest::Rows;
using mctest::RowSource;
using mctest::ScriptedCancel;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kTolerance = 1e-12;  // small well-conditioned designs

MCStatus BadValue(long position, double value) {
  MCStatus status(316, false);
  status.SetDiscreteDatum(1, position);
  status.SetScaleDatum(1, value);
  return status;
}

// y at 0, factor a of three categories at 1, covariate x at 2. With all rows valid, y = 1 + a + 2x.
RegressionDesign Design() {
  return RegressionDesign(0, {{1, 3}}, {2}).Effect({1}).Effect({}, {2});
}

const Rows kRows = {{1, 0, 0}, {3, 0, 1}, {2, 1, 0}, {6, 1, 2}, {5, 2, 1}};

// A design, its driver and a source of rows, and the whole road in one call.
struct Driver {
  explicit Driver(RegressionDesign design, Rows rows = kRows)
      : fDesign(std::move(design)), fAlgorithm(fDesign.Settings()), fSource(std::move(rows)) {}

  MCStatus CreateParameters() {
    std::vector<MCRegrParameter> parameters;
    return fAlgorithm.CreateParameters(parameters);
  }

  MCStatus Run() {
    MCStatus status = fAlgorithm.ProcessData(fSource);
    if (!status.IsError()) status = CreateParameters();
    if (!status.IsError()) status = fAlgorithm.BuildModel(fSource);
    return status;
  }

  RegressionDesign fDesign;
  MCGLMAlgorithm fAlgorithm;
  RowSource fSource;
};

// --- The road -----------------------------------------------------------------------------------

TEST(MCGLMAlgorithm, AFreshDriverHasDoneNothing) {
  const Driver driver{Design()};
  EXPECT_FALSE(driver.fAlgorithm.IsDataProcessed());
  EXPECT_FALSE(driver.fAlgorithm.AreParamsCreated());
  EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
  EXPECT_THAT(driver.fAlgorithm.GetMeanValues(), IsEmpty());
  EXPECT_THAT(driver.fAlgorithm.GetWarnings(), IsEmpty());
  EXPECT_EQ(driver.fAlgorithm.GetTotalFreqWeight(), 0.0);
  EXPECT_EQ(driver.fAlgorithm.GetTotalRegrWeight(), 0.0);
}

TEST(MCGLMAlgorithm, ReadsTheSourceInThreePassesAskingBeforeEachRow) {
  Driver driver{Design()};
  const int n = static_cast<int>(kRows.size());
  EXPECT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  EXPECT_EQ(driver.fSource.fNewPassCalls, 1);
  EXPECT_EQ(driver.fSource.fHasMoreCalls, 1 + n + 1) << "whether there are rows, then each row";
  EXPECT_EQ(driver.fSource.fNextCalls, n);
  EXPECT_TRUE(driver.fAlgorithm.IsDataProcessed());

  EXPECT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_EQ(driver.fSource.fNewPassCalls, 1) << "the source rests";
  EXPECT_TRUE(driver.fAlgorithm.AreParamsCreated());

  EXPECT_TRUE(driver.fAlgorithm.BuildModel(driver.fSource).IsOK());
  EXPECT_EQ(driver.fSource.fNewPassCalls, 3);
  EXPECT_EQ(driver.fSource.fHasMoreCalls, 1 + 3 * (n + 1));
  EXPECT_EQ(driver.fSource.fNextCalls, 3 * n);
  EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
}

TEST(MCGLMAlgorithm, FitsThePlaneThatTheRowsLieOn) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.Run().IsOK());
  const std::vector<double>& estimates = driver.fAlgorithm.GetModel().GetParamEstimates();
  const std::vector<double> expected = {3, -2, -1, 0, 2};
  ASSERT_EQ(estimates.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_NEAR(estimates[i], expected[i], kTolerance);
  EXPECT_NEAR(driver.fAlgorithm.GetModel().GetMultipleRSquare(), 1.0, kTolerance);
}

TEST(MCGLMAlgorithm, KeepsMeansOfCovariatesAndOfTheDependentLast) {
  Driver driver{Design().FrequencyWeight(3).RegressionWeight(4),
                {{1, 0, 10, 1, 1}, {5, 1, 20, 2, 0.5}, {9, 1, 40, 1, 2}}};
  ASSERT_TRUE(driver.Run().IsOK());
  // Products of the weights 1, 1, 2.
  ASSERT_EQ(driver.fAlgorithm.GetMeanValues().size(), 2u);
  EXPECT_NEAR(driver.fAlgorithm.GetMeanValues()[0], 27.5, kTolerance);
  EXPECT_NEAR(driver.fAlgorithm.GetMeanValues()[1], 6.0, kTolerance);
  EXPECT_EQ(driver.fAlgorithm.GetTotalFreqWeight(), 4.0);
  EXPECT_EQ(driver.fAlgorithm.GetTotalRegrWeight(), 4.0);
  EXPECT_EQ((*driver.fAlgorithm.GetFactorCounts().GetCountsPtr(0))[1].first, 3.0);
}

TEST(MCGLMAlgorithm, LeavesTheVectorOfParametersAsItCame) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  std::vector<MCRegrParameter> parameters(7);
  EXPECT_TRUE(driver.fAlgorithm.CreateParameters(parameters).IsOK());
  EXPECT_EQ(parameters.size(), 7u);
  EXPECT_EQ(driver.fAlgorithm.GetModel().GetNParameters(), 5);
}

TEST(MCGLMAlgorithm, SkipsRowsThatTheValidatorTurnsDownInEveryPass) {
  const double missing = MCMV::gMissingValue;
  Rows rows = kRows;
  rows.push_back({missing, 0, 0});
  rows.insert(rows.begin() + 2, {99, 0, missing});
  rows.push_back({99, missing, 0});
  Driver driver{Design(), rows};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(driver.fAlgorithm.GetTotalFreqWeight(), 5.0);
  EXPECT_NEAR(driver.fAlgorithm.GetModel().GetRootMeanSquareError(), 0.0, kTolerance);
}

TEST(MCGLMAlgorithm, ACodeEqualToTheNumberOfCategoriesIsValidButUnseen) {
  Rows rows = kRows;
  rows.push_back({7, 3, 1});
  Driver driver{Design(), rows};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(driver.fAlgorithm.GetTotalFreqWeight(), 5.0) << "the tables drop it";
  EXPECT_THAT(mctest::DisplayOf(driver.fAlgorithm), testing::HasSubstr("fValidCount = 6"));
  double value = 0.0;
  EXPECT_TRUE(driver.fAlgorithm.Score(MakeRecord({0, 3, 1}), value).IsOK());
  EXPECT_EQ(value, MCMV::gMissingValue);
}

TEST(MCGLMAlgorithm, OnlyRowsThatTheTablesDropLeaveNoWeight) {
  Driver driver{Design(), {{7, 3, 1}, {8, 3, 2}}};
  EXPECT_EQ(driver.Run(), MCStatus(308, false));
}

TEST(MCGLMAlgorithm, FactorsFollowTheirNesting) {
  Driver driver{RegressionDesign(0, {{1, 3}, {2, 2}}, {}).Nested({2, 1}),
                {{1, 0, 0}, {2, 1, 1}, {3, 2, 0}}};
  ASSERT_TRUE(driver.Run().IsOK());
  const std::vector<MCRegrParameter>& parameters = driver.fAlgorithm.GetModel().GetParameters();
  EXPECT_THAT(parameters[1].GetFactors(), ElementsAre(2, 1));
  EXPECT_THAT(parameters[2].GetCategories(), ElementsAre(0, 2));
}

// --- Failures -----------------------------------------------------------------------------------

TEST(MCGLMAlgorithm, AnEmptySourceHasNoDataAndIsNotAskedForARow) {
  Driver driver{Design(), {}};
  EXPECT_EQ(driver.fAlgorithm.ProcessData(driver.fSource), MCStatus(307, false));
  EXPECT_EQ(driver.fSource.fHasMoreCalls, 1);
  EXPECT_EQ(driver.fSource.fNextCalls, 0);
  EXPECT_FALSE(driver.fAlgorithm.IsDataProcessed());
}

TEST(MCGLMAlgorithm, ASourceWithoutAValidRowHasNoData) {
  Driver driver{Design(), {{1, 0, MCMV::gMissingValue}, {2, MCMV::gMissingValue, 0}}};
  EXPECT_EQ(driver.fAlgorithm.ProcessData(driver.fSource), MCStatus(307, false));
  EXPECT_FALSE(driver.fAlgorithm.IsDataProcessed());
  EXPECT_EQ(driver.fSource.fNextCalls, 2);
  EXPECT_THAT(driver.fAlgorithm.GetMeanValues(),
              ElementsAre(MCMV::gMissingValue, MCMV::gMissingValue));
}

TEST(MCGLMAlgorithm, TheDataAreProcessedOnce) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  EXPECT_EQ(driver.fAlgorithm.ProcessData(driver.fSource), MCStatus(306, false));
  EXPECT_EQ(driver.fSource.fNewPassCalls, 2);
  EXPECT_EQ(driver.CreateParameters(), MCStatus(306, false)) << "the error stands";
}

TEST(MCGLMAlgorithm, ProcessedDataGoBeforeAnEmptySource) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  RowSource empty({});
  EXPECT_EQ(driver.fAlgorithm.ProcessData(empty), MCStatus(306, false));
}

TEST(MCGLMAlgorithm, IsNotBuiltWithoutParameters) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  EXPECT_EQ(driver.fAlgorithm.BuildModel(driver.fSource), MCStatus(309, false));
  EXPECT_EQ(driver.fSource.fNewPassCalls, 1);
}

TEST(MCGLMAlgorithm, IsNotBuiltWithoutData) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_EQ(driver.fAlgorithm.BuildModel(driver.fSource), MCStatus(313, false));
  EXPECT_EQ(driver.fSource.fNewPassCalls, 0);
}

TEST(MCGLMAlgorithm, ParametersMadeBeforeTheDataDoNotMatchThemAndDoNoHarm) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_TRUE(driver.fAlgorithm.BuildModel(driver.fSource).IsOK());
  EXPECT_EQ(driver.fAlgorithm.GetModel().GetNParameters(), 1) << "of the first call";
}

TEST(MCGLMAlgorithm, IsBuiltOnce) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(driver.fAlgorithm.BuildModel(driver.fSource), MCStatus(310, false));
  double value = 99.0;
  EXPECT_EQ(driver.fAlgorithm.Score(MakeRecord(kRows[0]), value), MCStatus(310, false));
  EXPECT_EQ(value, 99.0);
  EXPECT_EQ(driver.fSource.fNewPassCalls, 3);
}

TEST(MCGLMAlgorithm, PassesOutOfOrderAreRefused) {
  Driver fill{Design()};
  EXPECT_EQ(fill.fAlgorithm.FillDesignMatrix(fill.fSource), MCStatus(313, false));
  Driver residuals{Design()};
  EXPECT_EQ(residuals.fAlgorithm.ComputeResiduals(residuals.fSource), MCStatus(303, false));
  EXPECT_EQ(fill.fSource.fNewPassCalls + residuals.fSource.fNewPassCalls, 0);
}

TEST(MCGLMAlgorithm, ARowThatTheModelRefusesEndsThePass) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  EXPECT_EQ(driver.fAlgorithm.FillDesignMatrix(driver.fSource), MCStatus(313, false))
      << "there are no parameters";
  EXPECT_EQ(driver.fSource.fNextCalls, static_cast<int>(kRows.size()) + 1);
}

TEST(MCGLMAlgorithm, AnErrorStandsAndEveryStepAnswersItWithoutLookingAtTheSource) {
  Driver driver{Design(), {}};
  ASSERT_EQ(driver.fAlgorithm.ProcessData(driver.fSource), MCStatus(307, false));
  RowSource source(kRows);
  const MCStatus expected(307, false);
  EXPECT_EQ(driver.fAlgorithm.ProcessData(source), expected);
  EXPECT_EQ(driver.fAlgorithm.ProcessSource(source), expected);
  EXPECT_EQ(driver.CreateParameters(), expected);
  EXPECT_EQ(driver.fAlgorithm.BuildModel(source), expected);
  EXPECT_EQ(driver.fAlgorithm.FillDesignMatrix(source), expected);
  EXPECT_EQ(driver.fAlgorithm.ComputeResiduals(source), expected);
  double value = 99.0;
  EXPECT_EQ(driver.fAlgorithm.Score(MakeRecord(kRows[0]), value), expected);
  EXPECT_EQ(value, 99.0);
  EXPECT_EQ(source.fNewPassCalls + source.fHasMoreCalls + source.fNextCalls, 0);
}

TEST(MCGLMAlgorithm, AMalformedCategoryStopsAnyPass) {
  for (std::size_t row = 0; row < kRows.size(); ++row) {
    Rows rows = kRows;
    rows[row][1] = 3.5;
    Driver driver{Design(), rows};
    EXPECT_EQ(driver.Run(), BadValue(1, 3.5)) << row;
    EXPECT_EQ(driver.fSource.fNextCalls, static_cast<int>(row) + 1);
    EXPECT_FALSE(driver.fAlgorithm.IsDataProcessed());
  }
}

TEST(MCGLMAlgorithm, ARowThatIsTooShortStopsAnyPass) {
  const int n = static_cast<int>(kRows.size());
  Rows rows = kRows;
  rows[3] = {6, 1};
  Driver first{Design(), rows};
  EXPECT_EQ(first.Run(), MCStatus(315, false));
  EXPECT_EQ(first.fSource.fNextCalls, 4);

  Driver second{Design()};
  RowSource withShortRow(rows);
  ASSERT_TRUE(second.fAlgorithm.ProcessData(second.fSource).IsOK());
  ASSERT_TRUE(second.CreateParameters().IsOK());
  EXPECT_EQ(second.fAlgorithm.BuildModel(withShortRow), MCStatus(315, false));
  EXPECT_EQ(withShortRow.fNextCalls, 4);
  EXPECT_EQ(second.fSource.fNextCalls, n);
}

TEST(MCGLMAlgorithm, ASourceWithOtherRowsInTheSecondPassIsTakenAsItIs) {
  Driver driver{Design()};
  RowSource others({{4, 2, 1}, {8, 7.5, 0}});
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_EQ(driver.fAlgorithm.BuildModel(others), BadValue(1, 7.5));
}

// Where memory ran out when a role was recorded, the settings keep the position and forget all
// roles, and the validator accepts rows of any length.
TEST(MCGLMAlgorithm, ARowThatEndsBeforeAForgottenRoleIsTooShort) {
  MCRegSettings settings;
  {
    const mctest::FailAllocation failure(1);
    EXPECT_FALSE(settings.SetDependent(5));
  }
  ASSERT_EQ(settings.GetDependent(), 5);
  MCGLMAlgorithm algorithm(settings);
  RowSource source({{1, 2, 3, 4, 5}});
  EXPECT_EQ(algorithm.ProcessData(source), MCStatus(315, false));
  MCGLMAlgorithm other(settings);
  RowSource longEnough({{1, 2, 3, 4, 5, 6}});
  EXPECT_TRUE(other.ProcessData(longEnough).IsOK());
}

TEST(MCGLMAlgorithm, WithoutADependentNoRowWillDo) {
  MCRegSettings settings;
  MCGLMAlgorithm algorithm(settings);
  RowSource source({{1, 2}});
  EXPECT_EQ(algorithm.ProcessData(source), MCStatus(315, false));
}

TEST(MCGLMAlgorithm, APositionAtTheEndOfTheIntsMakesEveryRowShort) {
  MCRegSettings settings;
  {
    const mctest::FailAllocation failure(1);  // no room for the roles
    EXPECT_FALSE(settings.SetDependent(std::numeric_limits<int>::max()));
  }
  MCGLMAlgorithm algorithm(settings);
  RowSource source({{1, 2}});
  EXPECT_EQ(algorithm.ProcessData(source), MCStatus(315, false));
}

// --- Sources that fail --------------------------------------------------------------------------

TEST(MCGLMAlgorithm, ASourceThatFailsToBeginAPassShowsNoRows) {
  const long codes[] = {307, 309, 308};
  for (int pass = 1; pass <= 3; ++pass) {
    Driver driver{Design()};
    driver.fSource.FailNewPass(pass);
    EXPECT_EQ(driver.Run(), MCStatus(codes[pass - 1], false)) << pass;
    EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
    EXPECT_EQ(driver.fSource.fNewPassCalls, pass);
  }
}

TEST(MCGLMAlgorithm, ANullRowEndsThePass) {
  const long codes[] = {312, 313, 313};
  const int n = static_cast<int>(kRows.size());
  for (int pass = 1; pass <= 3; ++pass) {
    for (int row = 0; row < n; ++row) {
      for (const bool forGood : {false, true}) {
        Driver driver{Design()};
        driver.fSource.NullAt(pass, row, forGood);
        EXPECT_EQ(driver.Run(), MCStatus(codes[pass - 1], false)) << pass << ' ' << row;
        EXPECT_EQ(driver.fSource.fNextCalls, (pass - 1) * n + row + 1);
        EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
      }
    }
  }
}

TEST(MCGLMAlgorithm, APassThatEndsBeforeItsFirstRowHasNothing) {
  const long codes[] = {307, 309, 308};
  for (int pass = 1; pass <= 3; ++pass) {
    Driver driver{Design()};
    driver.fSource.EndAt(pass, 0);
    EXPECT_EQ(driver.Run(), MCStatus(codes[pass - 1], false)) << pass;
  }
}

TEST(MCGLMAlgorithm, APassThatEndsEarlyIsTakenForTheWhole) {
  for (int pass = 1; pass <= 3; ++pass) {
    for (int row = 1; row < static_cast<int>(kRows.size()); ++row) {
      Driver driver{Design()};
      driver.fSource.EndAt(pass, row);
      EXPECT_TRUE(driver.Run().IsOK()) << pass << ' ' << row;
      EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
    }
  }
}

TEST(MCGLMAlgorithm, ProcessSourceReadsOnWhereTheSourceStands) {
  Driver driver{Design()};
  driver.fSource.NewPass();
  driver.fSource.Next();
  EXPECT_TRUE(driver.fAlgorithm.ProcessSource(driver.fSource).IsOK());
  EXPECT_EQ(driver.fSource.fNewPassCalls, 1);
  EXPECT_EQ(driver.fAlgorithm.GetTotalFreqWeight(), static_cast<double>(kRows.size()) - 1.0);
  EXPECT_TRUE(driver.fAlgorithm.IsDataProcessed());
}

// --- Cancel -------------------------------------------------------------------------------------

// The polls of a whole build over n rows with E effects and p parameters, in order.
struct Polls {
  int fRows = static_cast<int>(kRows.size());
  int fEffects = 2;
  int fParameters = 5;

  int FirstPass() const { return fRows; }                // one before each row
  int DataProcessed() const { return FirstPass() + 1; }  // may the data count as processed?
  int FirstPassEnd() const { return DataProcessed() + 1; }
  int List() const { return FirstPassEnd() + 1 + fEffects; }
  int SecondPass() const { return List() + fRows; }
  int SecondPassEnd() const { return SecondPass() + 1; }
  int FitStart() const { return SecondPassEnd() + 1; }
  int Sweep() const { return FitStart() + fParameters; }
  int FitEnd() const { return Sweep() + 1; }
  int ThirdPass() const { return FitEnd() + 2 * fRows; }  // the driver's and the model's
  int All() const { return ThirdPass() + 1; }
};

TEST(MCGLMAlgorithmCancel, IsPolledBeforeEachRowAndAtEachStep) {
  ScriptedCancel query;
  Driver driver{Design().CancelledBy(query)};
  ASSERT_TRUE(driver.fAlgorithm.ProcessData(driver.fSource).IsOK());
  EXPECT_EQ(query.fPolls, Polls().FirstPassEnd());
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_EQ(query.fPolls, Polls().List());
  ASSERT_TRUE(driver.fAlgorithm.BuildModel(driver.fSource).IsOK());
  EXPECT_EQ(query.fPolls, Polls().All());
  double value = 0.0;
  EXPECT_TRUE(driver.fAlgorithm.Score(MakeRecord(kRows[0]), value).IsOK());
  EXPECT_EQ(query.fPolls, Polls().All() + 1);
  EXPECT_EQ(query.fIsCancelCalls, 0) << "a yes that would be remembered is never asked for";
}

// Before the first row there is no valid one, which is tested first; and a first residual row that
// was read, but dropped at the model's own poll, leaves no weight, which is tested first as well.
MCStatus AnswerToLastingYes(int poll) {
  if (poll == 1) return MCStatus(307, false);
  if (poll == Polls().FitEnd() + 2) return MCStatus(308, false);
  return MCStatus(1, false);
}

TEST(MCGLMAlgorithmCancel, AtAnyPollForGoodEndsTheBuildWithAnError) {
  for (int poll = 1; poll <= Polls().All(); ++poll) {
    ScriptedCancel query(poll);
    Driver driver{Design().CancelledBy(query)};
    const MCStatus status = driver.Run();
    EXPECT_EQ(status, AnswerToLastingYes(poll)) << poll;
    EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
    const int polls = query.fPolls;
    EXPECT_EQ(driver.fAlgorithm.BuildModel(driver.fSource), status) << "it stands";
    EXPECT_EQ(query.fPolls, polls);
  }
}

// A query that changes its mind. Each poll has its own consequence.
MCStatus AnswerToOneYes(int poll) {
  const Polls polls;
  if (poll == 1) return MCStatus(307, false);                      // no row was valid
  if (poll <= polls.FirstPass()) return {};                        // the rows so far are the data
  if (poll == polls.DataProcessed()) return MCStatus(313, false);  // noticed in the second pass
  if (poll == polls.FirstPassEnd()) return MCStatus(1, false);
  if (poll <= polls.List()) return MCStatus(1, false);        // the list is cut short
  if (poll == polls.List() + 1) return MCStatus(309, false);  // no row in the matrix
  if (poll <= polls.SecondPass()) return {};
  if (poll == polls.SecondPassEnd()) return MCStatus(1, false);
  if (poll == polls.FitStart()) return MCStatus(1, false);
  if (poll <= polls.Sweep()) return {};  // the rest is redundant
  if (poll == polls.FitEnd()) return MCStatus(1, false);
  if (poll == polls.FitEnd() + 1) return MCStatus(308, false);  // no residual
  if (poll <= polls.ThirdPass()) return {};
  return MCStatus(1, false);
}

TEST(MCGLMAlgorithmCancel, AtOnePollOnlyHasTheConsequenceOfThatPoll) {
  for (int poll = 1; poll <= Polls().All(); ++poll) {
    ScriptedCancel query(poll, ScriptedCancel::kOnce);
    Driver driver{Design().CancelledBy(query)};
    EXPECT_EQ(driver.Run(), AnswerToOneYes(poll)) << poll;
    EXPECT_EQ(driver.fAlgorithm.IsModelBuilt(), AnswerToOneYes(poll).IsOK()) << poll;
  }
}

TEST(MCGLMAlgorithmCancel, BetweenThePassesShowsInTheNext) {
  Driver afterData{Design()};
  ASSERT_TRUE(afterData.fAlgorithm.ProcessData(afterData.fSource).IsOK());
  afterData.fAlgorithm.Cancel();
  EXPECT_EQ(afterData.CreateParameters(), MCStatus(1, false));

  Driver afterList{Design()};
  ASSERT_TRUE(afterList.fAlgorithm.ProcessData(afterList.fSource).IsOK());
  ASSERT_TRUE(afterList.CreateParameters().IsOK());
  afterList.fAlgorithm.Cancel();
  EXPECT_EQ(afterList.fAlgorithm.BuildModel(afterList.fSource), MCStatus(1, false));
  EXPECT_EQ(afterList.fSource.fNextCalls, static_cast<int>(kRows.size()));
}

TEST(MCGLMAlgorithmCancel, BeforeTheFirstResidualGoesBeforeTheLackOfWeight) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.Run().IsOK());
  driver.fAlgorithm.Cancel();
  EXPECT_EQ(driver.fAlgorithm.ComputeResiduals(driver.fSource), MCStatus(1, false));
  EXPECT_EQ(driver.fSource.fNextCalls, 3 * static_cast<int>(kRows.size())) << "no row was read";
}

TEST(MCGLMAlgorithmCancel, BeforeTheFirstRowLeavesNoValidRow) {
  Driver driver{Design()};
  driver.fAlgorithm.Cancel();
  EXPECT_EQ(driver.fAlgorithm.ProcessData(driver.fSource), MCStatus(307, false));
  EXPECT_EQ(driver.fSource.fNextCalls, 0);
}

TEST(MCGLMAlgorithmCancel, IsAnsweredByScoreButNotStored) {
  ScriptedCancel query(Polls().All() + 1, ScriptedCancel::kOnce);
  Driver driver{Design().CancelledBy(query)};
  ASSERT_TRUE(driver.Run().IsOK());
  double value = 99.0;
  EXPECT_EQ(driver.fAlgorithm.Score(MakeRecord(kRows[1]), value), MCStatus(1, false));
  EXPECT_EQ(value, 99.0);
  EXPECT_TRUE(driver.fAlgorithm.Score(MakeRecord(kRows[1]), value).IsOK());
  EXPECT_NEAR(value, 3.0, kTolerance);
}

// --- Score --------------------------------------------------------------------------------------

TEST(MCGLMAlgorithmScore, NeedsABuiltModel) {
  Driver driver{Design()};
  double value = 99.0;
  EXPECT_EQ(driver.fAlgorithm.Score(MakeRecord(kRows[0]), value), MCStatus(311, false));
  EXPECT_EQ(value, 99.0);
  EXPECT_TRUE(driver.Run().IsOK()) << "the answer was not stored";
}

TEST(MCGLMAlgorithmScore, ACancelGoesBeforeTheLackOfAModel) {
  Driver driver{Design()};
  driver.fAlgorithm.Cancel();
  double value = 99.0;
  EXPECT_EQ(driver.fAlgorithm.Score(MakeRecord(kRows[0]), value), MCStatus(1, false));
}

TEST(MCGLMAlgorithmScore, ARecordThatEndsBeforeAPositionItNeedsIsTooShort) {
  // Dependent and weights stand behind the factors and covariates, and need not be there.
  Driver driver{RegressionDesign(3, {{0, 2}}, {1}).FrequencyWeight(4).Effect({0}).Effect({}, {1}),
                {{0, 0, 9, 1, 1}, {0, 1, 9, 3, 1}, {1, 0, 9, 5, 1}, {1, 1, 9, 7, 1}}};
  ASSERT_TRUE(driver.Run().IsOK());
  for (int size = 0; size < 4; ++size) {
    double value = 99.0;
    const MCStatus status = driver.fAlgorithm.Score(Record(size), value);
    if (size < 2) {
      EXPECT_EQ(status, MCStatus(315, false));
      EXPECT_EQ(value, MCMV::gMissingValue);
    } else {
      EXPECT_TRUE(status.IsOK()) << "not stored";
      EXPECT_NEAR(value, 1.0, kTolerance);
    }
  }
}

TEST(MCGLMAlgorithmScore, AnInterceptScoresAnEmptyRecord) {
  Driver driver{RegressionDesign(0, {}, {}), {{1}, {3}}};
  ASSERT_TRUE(driver.Run().IsOK());
  double value = 99.0;
  EXPECT_TRUE(driver.fAlgorithm.Score(Record(0), value).IsOK());
  EXPECT_EQ(value, 2.0);
}

TEST(MCGLMAlgorithmScore, ARecordIsNotValidated) {
  Driver driver{Design()};
  ASSERT_TRUE(driver.Run().IsOK());
  double value = 99.0;
  EXPECT_TRUE(driver.fAlgorithm.Score(MakeRecord({MCMV::gMissingValue, 0.25, 1}), value).IsOK());
  EXPECT_NEAR(value, 3.0, kTolerance);
  MCStatus reason;
  EXPECT_TRUE(driver.fAlgorithm.GetRecordValidator().IsValidRecord(MakeRecord(kRows[0]), reason));
}

// --- Memory, display ----------------------------------------------------------------------------

TEST(MCGLMAlgorithmMemory, ExhaustionAnywhereIsThrownOrAnError) {
  bool fired = true;
  std::size_t k = 0;
  while (fired) {
    Driver driver{Design()};
    MCStatus status;
    bool isThrown = false;
    {
      const mctest::FailAllocation failure(++k);
      try {
        status = driver.Run();
      } catch (const std::bad_alloc&) {
        isThrown = true;
      }
      fired = failure.HasFired();
    }
    EXPECT_EQ(driver.fAlgorithm.IsModelBuilt(), !fired) << k;
    // The matrix; or the source's record, which is then too short.
    const long code = status.GetErrorCode();
    EXPECT_TRUE(fired ? isThrown || code == 305 || code == 315 : status.IsOK()) << k;
  }
  EXPECT_GT(k, 20u) << "the build allocates";
}

TEST(MCGLMAlgorithmDisplay, ShowsItsPartsInOrder) {
  Driver driver{RegressionDesign(0, {}, {1}).Effect({}, {1}), {{2, 1}, {4, 2}}};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(mctest::DisplayOf(driver.fAlgorithm),
            "\nMCGLMAlgorithm display start"
            "\nRecord Validator" +
                mctest::DisplayOf(driver.fAlgorithm.GetRecordValidator()) + "\nfFactorTables" +
                mctest::DisplayOf(
                    static_cast<const MCFactorTables&>(driver.fAlgorithm.GetFactorCounts())) +
                "\nfMeanValues (size = 2)\n 1.5 3"
                "\nfModel" +
                mctest::DisplayOf(driver.fAlgorithm.GetModel()) +
                "\nfbDataProcessed = true"
                "\nfbModelBuilt = true"
                "\nfRecordCount = 2"
                "\nfValidCount = 2"
                "\nMCGLMAlgorithm display end");
}

}  // namespace
