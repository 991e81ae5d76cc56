// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogalgorithm.h"

#include "mcmath/mcsymmatrix.h"
#include "regression/frame/progresslistener.h"
#include "regression/frame/progressreportvect.h"
#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mcregoptimizer.h"
#include "support/contingencytable.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/makerecord.h"
#include "support/recordingdoubles.h"
#include "support/regressiondesign.h"
#include "support/rowsource.h"
#include "support/scriptedcancel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {
using MCCommon::MCStatus;
using MCCommon::Record;
using mctest::ContingencyTable;
using mctest::LogisticDesign;
using mctest::MakeRecord;
using mctest::Rows;
using mctest::RowSource;
using mctest::ScriptedCancel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Newton's method stops where estimates change by less than 1e-6 of themselves; as each step
// squares the error, what is left is far below that, and rounding rules.
constexpr double kTolerance = 1e-12;

// Two runs whose sums differ by rounding may stop at steps that rounding alone refused, which gain
// less than 1e-15 of the log-likelihood: the estimates then agree to some 1e-8 standard errors.
constexpr double kOtherRounding = 1e-7;

enum Road { kPatterns, kRereading };
constexpr Road kRoads[] = {kPatterns, kRereading};

const Rows kRows = ContingencyTable::WeightedRows();

// A design, its driver and a source of rows, and the whole road in one call.
struct Driver {
  explicit Driver(LogisticDesign design, Rows rows = kRows)
      : fDesign(std::move(design)), fAlgorithm(fDesign.Settings()), fSource(std::move(rows)) {}

  MCStatus CreateParameters() { return fAlgorithm.CreateParameters(fSource, fParameters); }
  MCStatus Build() { return fAlgorithm.BuildModel(fSource); }

  MCStatus Run() {
    const MCStatus status = CreateParameters();
    return status.IsError() ? status : Build();
  }

  MCStatus Score(const std::vector<double>& values) {
    return fAlgorithm.Score(MakeRecord(values), fProbabilities, fCategory);
  }

  const std::vector<double>& Estimates() const { return fAlgorithm.GetModel().GetParamEstimates(); }

  LogisticDesign fDesign;
  MCLogAlgorithm fAlgorithm;
  RowSource fSource;
  std::vector<MCRegrParameter> fParameters = std::vector<MCRegrParameter>(7);
  std::vector<double> fProbabilities = {0.25};
  int fCategory = 99;
};

LogisticDesign Table(Road road = kPatterns) {
  return ContingencyTable::Design().Rereading(road == kRereading);
}

// y in three categories on group and covariate, in no way separated; a weight that says nothing.
LogisticDesign Plane(Road road = kPatterns) {
  return LogisticDesign(0, {{1, 2}}, {2})
      .Categories(3)
      .Rereading(road == kRereading)
      .Effect({1})
      .Effect({}, {2});
}

const Rows kPlane = {{0, 0, 1},    {1, 0, 2},   {2, 0, 3},   {0, 1, 4},   {1, 1, 2.5}, {2, 1, 0.5},
                     {0, 0, 3.5},  {1, 0, 0.5}, {2, 0, 1.5}, {0, 1, 1},   {1, 1, 4.5}, {2, 1, 3},
                     {0, 0, -0.5}, {1, 1, 0},   {2, 0, 2},   {2, 1, 2.25}};

void ExpectNear(const std::vector<double>& expected, const std::vector<double>& actual,
                double tolerance = kTolerance) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(actual[i], expected[i], tolerance) << i;
  }
}

MCStatus BadValue(long position, double value) {
  MCStatus status(316, false);
  status.SetDiscreteDatum(1, position);
  status.SetScaleDatum(1, value);
  return status;
}

// --- The road -----------------------------------------------------------------------------------

TEST(MCLogAlgorithm, AFreshDriverHasDoneNothing) {
  const Driver driver{Table()};
  EXPECT_FALSE(driver.fAlgorithm.IsFactorTableFilled());
  EXPECT_FALSE(driver.fAlgorithm.AreParamsCreated());
  EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
  EXPECT_THAT(driver.fAlgorithm.GetMeanValues(), IsEmpty());
  EXPECT_THAT(driver.fAlgorithm.GetWarnings(), IsEmpty());
  EXPECT_EQ(driver.fAlgorithm.GetOptimizer(), nullptr);
  EXPECT_EQ(driver.fAlgorithm.GetTotalWeight(), 0.0);
  EXPECT_EQ(driver.fAlgorithm.GetTotalRegrWeight(), 0.0);
}

TEST(MCLogAlgorithm, FitsTheSaturatedTableOnBothRoads) {
  for (const Road road : kRoads) {
    for (const Rows& rows : {kRows, ContingencyTable::RepeatedRows()}) {
      Driver driver{Table(road), rows};
      ASSERT_TRUE(driver.Run().IsOK());
      EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
      ExpectNear(ContingencyTable::Estimates(), driver.Estimates());
      const MCCommonMath::MCSymMatrix& covariance = *driver.fAlgorithm.GetModel().GetHessianGI();
      ASSERT_EQ(covariance.GetNRows(), ContingencyTable::kNParameters);
      for (int i = 0; i < ContingencyTable::kNParameters; ++i) {
        for (int j = 0; j <= i; ++j) {
          EXPECT_NEAR(covariance.GetElem(i, j), ContingencyTable::Covariance(i, j), kTolerance);
        }
      }
    }
  }
}

TEST(MCLogAlgorithm, ReadsTheSourceTwiceWithPatternsHoweverManyIterationsThereAre) {
  const int n = static_cast<int>(kPlane.size());
  Driver driver{Plane(), kPlane};
  EXPECT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_TRUE(driver.fAlgorithm.IsFactorTableFilled());
  EXPECT_TRUE(driver.fAlgorithm.AreParamsCreated());
  EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
  EXPECT_EQ(driver.fSource.fNewPassCalls, 0) << "the rows that the source still has";
  EXPECT_EQ(driver.fSource.fNextCalls, n);
  EXPECT_EQ(driver.fParameters.size(), 8u);

  EXPECT_TRUE(driver.Build().IsOK());
  EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
  EXPECT_GT(driver.fAlgorithm.GetConvergence().fIterations, 2);
  EXPECT_EQ(driver.fSource.fNewPassCalls, 1);
  EXPECT_EQ(driver.fSource.fNextCalls, 2 * n);
}

TEST(MCLogAlgorithm, WithoutPatternsReadsTheSourceTwiceAndOnceForEachPassOfTheEstimator) {
  const int n = static_cast<int>(kPlane.size());
  mctest::CallLog log;
  mctest::RecordingListener listener(log);
  LogisticDesign design = Plane(kRereading);
  design.Settings().SetProgressListener(&listener);
  Driver driver{std::move(design), kPlane};
  EXPECT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_EQ(driver.fSource.fNewPassCalls, 1) << "ready for the next pass";
  EXPECT_EQ(driver.fSource.fNextCalls, n);
  EXPECT_EQ(driver.fSource.fHasMoreCalls, 1 + n + 1);

  EXPECT_TRUE(driver.Build().IsOK());
  ASSERT_GT(driver.fAlgorithm.GetConvergence().fIterations, 2);
  // The initial one; of each iteration one for each trial, of which rounding may want more than the
  // first, and one at the step that was accepted.
  int nPasses = 1 + 2 * driver.fAlgorithm.GetConvergence().fIterations;
  for (const auto& report : listener.fEntries) nPasses += report.fHalvings;
  EXPECT_EQ(driver.fSource.fNewPassCalls, 2 + nPasses);
  EXPECT_EQ(driver.fSource.fNextCalls, (2 + nPasses) * n);
  EXPECT_EQ(driver.fSource.fHasMoreCalls, 1 + (2 + nPasses) * (n + 1));
}

TEST(MCLogAlgorithm, BothRoadsGiveTheSameWhereCodesAreLocalIndices) {
  Driver patterns{Plane(), kPlane};
  Driver rereading{Plane(kRereading), kPlane};
  ASSERT_TRUE(patterns.Run().IsOK());
  ASSERT_TRUE(rereading.Run().IsOK());
  // Not to the bit: patterns add the rows in another order.
  ExpectNear(patterns.Estimates(), rereading.Estimates(), kOtherRounding);
}

TEST(MCLogAlgorithm, BothRoadsGiveTheSameBitsWhereAllRowsAreOnePattern) {
  const auto line = [](Road road) {
    return LogisticDesign(0, {}, {2}).Categories(3).Rereading(road == kRereading).Effect({}, {2});
  };
  Driver patterns{line(kPatterns), kPlane};
  Driver rereading{line(kRereading), kPlane};
  ASSERT_TRUE(patterns.Run().IsOK());
  ASSERT_TRUE(rereading.Run().IsOK());
  EXPECT_EQ(patterns.Estimates(), rereading.Estimates());
  EXPECT_EQ(patterns.fAlgorithm.GetModel().GetHessianGI()->AsVectorConst(),
            rereading.fAlgorithm.GetModel().GetHessianGI()->AsVectorConst());
}

TEST(MCLogAlgorithm, PackingOfKeysChangesNoResult) {
  Driver packed{Plane(), kPlane};
  Driver plain{Plane(), kPlane};
  ASSERT_TRUE(packed.Run().IsOK());
  usePacking = false;
  const MCStatus status = plain.Run();
  usePacking = true;
  ASSERT_TRUE(status.IsOK());
  ExpectNear(packed.Estimates(), plain.Estimates(), kOtherRounding);
}

TEST(MCLogAlgorithm, AFrequencyWeightIsTheRowRepeated) {
  for (const Road road : kRoads) {
    Rows weighted;
    Rows repeated;
    for (std::size_t r = 0; r < kPlane.size(); ++r) {
      const int times = 1 + static_cast<int>(r % 3);
      weighted.push_back(kPlane[r]);
      weighted.back().push_back(times);
      repeated.insert(repeated.end(), static_cast<std::size_t>(times), kPlane[r]);
    }
    Driver once{Plane(road).FrequencyWeight(3), weighted};
    Driver often{Plane(road), repeated};
    ASSERT_TRUE(once.Run().IsOK());
    ASSERT_TRUE(often.Run().IsOK());
    ExpectNear(often.Estimates(), once.Estimates(), kOtherRounding);
    EXPECT_EQ(once.fAlgorithm.GetTotalWeight(), often.fAlgorithm.GetTotalWeight());
  }
}

TEST(MCLogAlgorithm, RegressionWeightsEnterTheEstimatesButNeitherTotalsNorMeans) {
  for (const Road road : kRoads) {
    Rows rows;
    for (const std::vector<double>& row : kRows) rows.push_back({row[0], row[1], 2, row[2], 8});
    rows[0][4] = 2;
    // Frequency weight 2 and the count as regression weight: the table, each case twice.
    Driver driver{LogisticDesign(0, {{1, 2}}, {4})
                      .Categories(3)
                      .Rereading(road == kRereading)
                      .FrequencyWeight(2)
                      .RegressionWeight(3)
                      .Effect({1}),
                  rows};
    ASSERT_TRUE(driver.Run().IsOK());
    EXPECT_EQ(driver.fAlgorithm.GetTotalWeight(), 12.0);
    EXPECT_EQ(driver.fAlgorithm.GetTotalRegrWeight(), 12.0);
    EXPECT_THAT(driver.fAlgorithm.GetMeanValues(), ElementsAre(7.0)) << "the mean of 2 and five 8";
    ExpectNear(ContingencyTable::Estimates(), driver.Estimates());
  }
}

TEST(MCLogAlgorithm, CopiesTheListOfParameters) {
  Driver driver{Table()};
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_TRUE(driver.fParameters == driver.fAlgorithm.GetModel().GetParameters());
  EXPECT_EQ(driver.fParameters[3].GetTargetCategory(), 1);
}

TEST(MCLogAlgorithm, SkipsRowsThatTheValidatorTurnsDownInEveryPass) {
  const double missing = MCMV::gMissingValue;
  for (const Road road : kRoads) {
    Rows rows = kRows;
    rows.push_back({missing, 0, 3});
    rows.insert(rows.begin() + 2, {1, missing, 3});
    rows.push_back({1, 0, 0});
    rows.push_back({1, 0, missing});
    Driver driver{Table(road), rows};
    ASSERT_TRUE(driver.Run().IsOK());
    EXPECT_EQ(driver.fAlgorithm.GetTotalWeight(), ContingencyTable::Total());
    ExpectNear(ContingencyTable::Estimates(), driver.Estimates());
  }
}

TEST(MCLogAlgorithm, WithPatternsACodeEqualToTheNumberOfCategoriesIsDropped) {
  for (const std::vector<double>& odd : Rows{{3, 0, 50}, {1, 2, 50}}) {
    Rows rows = kRows;
    rows.insert(rows.begin() + 3, odd);
    Driver driver{Table(), rows};
    ASSERT_TRUE(driver.Run().IsOK());
    ExpectNear(ContingencyTable::Estimates(), driver.Estimates());
  }
}

TEST(MCLogAlgorithm, WithoutPatternsSuchACodeOfTheDependentEndsTheEstimation) {
  Rows rows = kRows;
  rows.insert(rows.begin() + 3, {3, 0, 50});
  Driver driver{Table(kRereading), rows};
  EXPECT_EQ(driver.Run(), MCStatus(303, false));
}

TEST(MCLogAlgorithm, WithoutPatternsARowWithAFactorCellThatIsNoneEndsTheDesignPass) {
  Rows rows = kRows;
  rows.insert(rows.begin() + 3, {1, 2, 50});
  Driver driver{Table(kRereading), rows};
  EXPECT_EQ(driver.Run(), MCStatus(313, false));
}

TEST(MCLogAlgorithm, TheBuildReadsItsOwnSourceAndNotThatOfTheFirstPass) {
  for (const Road road : kRoads) {
    Driver driver{Table(road)};
    {
      const auto gone = std::make_unique<RowSource>(kRows);
      ASSERT_TRUE(driver.fAlgorithm.CreateParameters(*gone, driver.fParameters).IsOK());
    }
    ASSERT_TRUE(driver.Build().IsOK());
    ExpectNear(ContingencyTable::Estimates(), driver.Estimates());
  }
}

TEST(MCLogAlgorithm, TheReferenceMayBeAnyCategoryWithPatterns) {
  Driver last{Table()};
  Driver first{Table().Categories(3, -2)};
  ASSERT_TRUE(last.Run().IsOK());
  ASSERT_TRUE(first.Run().IsOK());
  EXPECT_THAT(first.fAlgorithm.GetModel().GetDependCategories(), ElementsAre(1, 2, 0));
  // Log odds of 2 against 0 are minus those of 0 against 2.
  EXPECT_NEAR(first.Estimates()[3], -last.Estimates()[0], kTolerance);
  EXPECT_NEAR(first.Estimates()[4], -last.Estimates()[1], kTolerance);
}

TEST(MCLogAlgorithm, FactorsFollowTheirNesting) {
  Driver driver{LogisticDesign(0, {{1, 3}, {2, 2}}, {}).Nested({2, 1}),
                {{1, 0, 0}, {0, 1, 1}, {1, 2, 0}, {0, 0, 0}}};
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  EXPECT_THAT(driver.fParameters[1].GetFactors(), ElementsAre(2, 1));
  EXPECT_THAT(driver.fParameters[2].GetCategories(), ElementsAre(0, 2));
}

// --- What the flags and the order of calls do ---------------------------------------------------

TEST(MCLogAlgorithm, WithComputeEstimatesClearedIsBuiltWithEveryEstimateZero) {
  for (const Road road : kRoads) {
    Driver driver{Table(road)};
    compute_estimates = false;
    const MCStatus status = driver.Run();
    compute_estimates = true;
    EXPECT_TRUE(status.IsOK());
    EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
    EXPECT_THAT(driver.Estimates(), ElementsAre(0, 0, 0, 0, 0, 0));
    EXPECT_EQ(driver.fAlgorithm.GetModel().GetHessianGI(), nullptr);
    EXPECT_EQ(driver.fAlgorithm.GetModel().GetNNonRedParams(), 4);
    EXPECT_NE(driver.fAlgorithm.GetOptimizer(), nullptr) << "it was made and not run";
    EXPECT_EQ(driver.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_NOT_RUN);
    EXPECT_EQ(driver.fSource.fNewPassCalls, road == kPatterns ? 1 : 2);
  }
}

TEST(MCLogAlgorithm, ComputeVariancesChangesNothing) {
  Driver driver{Table()};
  compute_variances = false;
  const MCStatus status = driver.Run();
  compute_variances = true;
  EXPECT_TRUE(status.IsOK());
  EXPECT_NE(driver.fAlgorithm.GetModel().GetHessianGI(), nullptr);
}

TEST(MCLogAlgorithm, IsNotBuiltWithoutParametersAndSaysNothing) {
  Driver driver{Table()};
  EXPECT_TRUE(driver.Build().IsOK());
  EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
  EXPECT_EQ(driver.fSource.fHasMoreCalls + driver.fSource.fNewPassCalls, 0);
  EXPECT_TRUE(driver.Run().IsOK()) << "nothing is spoilt";
}

TEST(MCLogAlgorithm, ADesignWithoutAnyColumnIsNotBuiltEither) {
  const std::vector<int> others = {7};
  MCModelEffect effect(1, 0, &others);
  effect.AddNewFactor(7, false);
  for (const Road road : kRoads) {
    LogisticDesign design = LogisticDesign(0, {}, {}).NoIntercept().Rereading(road == kRereading);
    design.Settings().AddModelEffect(effect);
    Driver driver{std::move(design), {{0}, {1}, {1}}};
    EXPECT_TRUE(driver.Run().IsOK());
    EXPECT_THAT(driver.fParameters, IsEmpty());
    EXPECT_FALSE(driver.fAlgorithm.AreParamsCreated());
    EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
  }
}

TEST(MCLogAlgorithm, TheFirstPassIsMadeOnce) {
  for (const Road road : kRoads) {
    Driver driver{Table(road)};
    ASSERT_TRUE(driver.CreateParameters().IsOK());
    driver.fSource.NewPass();
    EXPECT_EQ(driver.CreateParameters(), MCStatus(306, false));
    EXPECT_EQ(driver.Build(), MCStatus(306, false)) << "the error stands";
    EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
  }
}

TEST(MCLogAlgorithm, AFirstPassThatWasMadeGoesBeforeAnEmptySource) {
  Driver driver{Table()};
  ASSERT_TRUE(driver.fAlgorithm.FillFactorTable(driver.fSource).IsOK());
  EXPECT_FALSE(driver.fAlgorithm.AreParamsCreated());
  RowSource empty({});
  EXPECT_EQ(driver.fAlgorithm.FillFactorTable(empty), MCStatus(306, false));
}

TEST(MCLogAlgorithm, ASecondBuildIsRefusedAndChangesNothing) {
  for (const Road road : kRoads) {
    Driver driver{Table(road)};
    ASSERT_TRUE(driver.Run().IsOK());
    const int nPasses = driver.fSource.fNewPassCalls;
    EXPECT_EQ(driver.Build(), MCStatus(310, false));
    EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
    EXPECT_TRUE(driver.Score({0, 1, 1}).IsOK()) << "it is not stored";
    EXPECT_EQ(driver.fSource.fNewPassCalls, nPasses);
  }
}

// --- Failures -----------------------------------------------------------------------------------

TEST(MCLogAlgorithm, AnEmptySourceHasNoDataAndIsNotAskedForARow) {
  for (const Road road : kRoads) {
    Driver driver{Table(road), {}};
    EXPECT_EQ(driver.CreateParameters(), MCStatus(307, false));
    EXPECT_EQ(driver.fSource.fHasMoreCalls, 1);
    EXPECT_EQ(driver.fSource.fNextCalls, 0);
    EXPECT_FALSE(driver.fAlgorithm.IsFactorTableFilled());
  }
}

TEST(MCLogAlgorithm, ASourceWithoutAValidRowHasNoData) {
  for (const Road road : kRoads) {
    Driver driver{Table(road), {{1, MCMV::gMissingValue, 1}, {MCMV::gMissingValue, 0, 1}}};
    EXPECT_EQ(driver.CreateParameters(), MCStatus(307, false));
    EXPECT_FALSE(driver.fAlgorithm.IsFactorTableFilled());
  }
}

TEST(MCLogAlgorithm, OneCategoryOfTheDependentIsTooFew) {
  for (const Road road : kRoads) {
    Driver driver{Table(road), {{1, 0, 5}, {1, 1, 6}}};
    EXPECT_EQ(driver.CreateParameters(), MCStatus(318, false));
    EXPECT_EQ(driver.Build(), MCStatus(318, false));
    EXPECT_EQ(driver.fParameters.size(), 7u) << "the list is left alone";
  }
}

TEST(MCLogAlgorithm, TooManyParametersAreRefusedWithTheirNumber) {
  // 25,000 levels by 3 categories, 2 of which have parameters; 46340 is the limit.
  constexpr int kLevels = 25000;
  Rows rows;
  for (int level = 0; level < kLevels; ++level) rows.push_back({1.0 * (level % 3), 1.0 * level});
  Driver driver{LogisticDesign(0, {{1, kLevels}}, {}).Categories(3).NoIntercept().Effect({1}),
                rows};
  const MCStatus status = driver.CreateParameters();
  EXPECT_EQ(status.GetErrorCode(), 305);
  EXPECT_EQ(status.GetDiscreteDatum(0), 2L * kLevels);
  EXPECT_EQ(driver.Build(), status);
}

// Without an intercept a row in which all columns are zero tells nothing, and is refused.
TEST(MCLogAlgorithm, ARowWithoutAnyColumnEndsTheEstimation) {
  const Rows rows = {{0, 1}, {1, 2}, {0, 3}, {1, 0}, {1, 1.5}};
  const auto slope = [](Road road) {
    return LogisticDesign(0, {}, {1}).NoIntercept().Rereading(road == kRereading).Effect({}, {1});
  };
  Driver patterns{slope(kPatterns), rows};
  EXPECT_EQ(patterns.Run(), MCStatus(313, false));
  Driver rereading{slope(kRereading), rows};
  EXPECT_EQ(rereading.Run(), MCStatus(303, false));
  EXPECT_EQ(rereading.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_NONE);
}

TEST(MCLogAlgorithm, AnErrorStandsAndEveryStepAnswersItWithoutLookingAtTheSource) {
  Driver driver{Table(), {}};
  ASSERT_EQ(driver.CreateParameters(), MCStatus(307, false));
  RowSource source(kRows);
  const MCStatus expected(307, false);
  EXPECT_EQ(driver.fAlgorithm.FillFactorTable(source), expected);
  EXPECT_EQ(driver.fAlgorithm.CreateParameters(source, driver.fParameters), expected);
  EXPECT_EQ(driver.fAlgorithm.BuildModel(source), expected);
  EXPECT_EQ(driver.Score(kRows[0]), expected);
  EXPECT_EQ(driver.fCategory, 99);
  EXPECT_THAT(driver.fProbabilities, ElementsAre(0.25));
  EXPECT_EQ(source.fNewPassCalls + source.fHasMoreCalls + source.fNextCalls, 0);
}

// The pass in which the design of the rereading road is read, and the first of its estimator; the
// source has begun one more in between, in which no row is read.
constexpr int kDesignPass = 1;
constexpr int kFirstIteration = 3;

long NullRowCode(Road road, int pass) {
  if (pass == 0 || road == kPatterns) return 312;
  return pass == kDesignPass ? 313 : 304;
}

std::vector<int> PassesWithRows(Road road) {
  if (road == kPatterns) return {0, 1};
  return {0, kDesignPass, kFirstIteration, kFirstIteration + 1, kFirstIteration + 2};
}

TEST(MCLogAlgorithm, ANullRowEndsThePassInWhichItComes) {
  for (const Road road : kRoads) {
    for (const int pass : PassesWithRows(road)) {
      for (int row = 0; row < static_cast<int>(kRows.size()); ++row) {
        for (const bool forGood : {false, true}) {
          Driver driver{Table(road)};
          driver.fSource.NullAt(pass, row, forGood);
          EXPECT_EQ(driver.Run(), MCStatus(NullRowCode(road, pass), false)) << pass << ' ' << row;
          EXPECT_EQ(driver.fSource.fNextCalls % static_cast<int>(kRows.size()),
                    (row + 1) % static_cast<int>(kRows.size()));
          EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt());
        }
      }
    }
  }
}

TEST(MCLogAlgorithm, ASourceThatFailsToBeginAPassShowsNoRows) {
  Driver patterns{Table()};
  patterns.fSource.FailNewPass(1);
  EXPECT_EQ(patterns.Run(), MCStatus(307, false));

  const std::vector<std::pair<int, MCStatus>> ways = {{kDesignPass, MCStatus(309, false)},
                                                      {kDesignPass + 1, MCStatus()},
                                                      {kFirstIteration, MCStatus(307, false)},
                                                      {kFirstIteration + 1, MCStatus(307, false)}};
  for (const auto& [pass, expected] : ways) {
    Driver rereading{Table(kRereading)};
    rereading.fSource.FailNewPass(pass);
    EXPECT_EQ(rereading.Run(), expected) << pass;
    EXPECT_EQ(rereading.fAlgorithm.IsModelBuilt(), expected.IsOK());
  }
}

TEST(MCLogAlgorithm, APassThatEndsBeforeItsFirstRowHasNothing) {
  for (const Road road : kRoads) {
    Driver first{Table(road)};
    first.fSource.EndAt(0, 0);
    EXPECT_EQ(first.Run(), MCStatus(307, false));
    Driver second{Table(road)};
    second.fSource.EndAt(1, 0);
    EXPECT_EQ(second.Run(), MCStatus(road == kPatterns ? 307 : 309, false));
  }
}

TEST(MCLogAlgorithm, AMalformedCategoryOrAShortRowStopsAnyPass) {
  for (const Road road : kRoads) {
    for (std::size_t row = 0; row < kRows.size(); ++row) {
      Rows malformed = kRows;
      malformed[row][1] = 0.5;
      Driver driver{Table(road), malformed};
      EXPECT_EQ(driver.Run(), BadValue(1, 0.5)) << row;
      malformed[row] = {1, 0};
      Driver other{Table(road), malformed};
      EXPECT_EQ(other.Run(), MCStatus(315, false)) << row;
    }
  }
}

TEST(MCLogAlgorithm, AMalformedRowOfTheDesignPassStands) {
  for (const Road road : kRoads) {
    Driver driver{Table(road)};
    ASSERT_TRUE(driver.CreateParameters().IsOK());
    RowSource malformed({kRows[0], kRows[1], {1, 0.5, 1}, kRows[2]});
    EXPECT_EQ(driver.fAlgorithm.BuildModel(malformed), BadValue(1, 0.5));
    EXPECT_EQ(malformed.fNextCalls, 3);
    EXPECT_EQ(driver.fAlgorithm.GetModel().GetXPrimeX() == nullptr, road == kRereading)
        << "the workspace is freed once the design has been begun";
  }
}

TEST(MCLogAlgorithm, ARowOfTheDesignPassWithALevelThatWasNotSeenStands) {
  Driver driver{
      LogisticDesign(0, {{1, 3}}, {}).Categories(3).FrequencyWeight(2).Rereading().Effect({1})};
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  RowSource others({kRows[0], {1, 2, 1}, kRows[1]});
  EXPECT_EQ(driver.fAlgorithm.BuildModel(others), MCStatus(313, false));
  EXPECT_EQ(others.fNextCalls, 2);
}

// Where memory ran out when a role was recorded, the settings keep the position and forget all
// roles, and the validator accepts rows of any length.
TEST(MCLogAlgorithm, ARowThatEndsBeforeAForgottenRoleIsTooShort) {
  for (const Road road : kRoads) {
    MCLogRegSettings settings;
    settings.SetUsePatternTabulator(road == kPatterns);
    {
      const mctest::FailAllocation failure(1);
      EXPECT_FALSE(settings.SetDependent(2));
    }
    ASSERT_EQ(settings.GetDependent(), 2);
    std::vector<MCRegrParameter> parameters;
    MCLogAlgorithm algorithm(settings);
    RowSource source({{1, 2}});
    EXPECT_EQ(algorithm.CreateParameters(source, parameters), MCStatus(315, false));
    MCLogAlgorithm other(settings);
    RowSource longEnough({{1, 2, 1}, {1, 2, 0}});
    EXPECT_TRUE(other.CreateParameters(longEnough, parameters).IsOK());
    EXPECT_TRUE(other.BuildModel(longEnough).IsOK());
  }
}

TEST(MCLogAlgorithm, WithoutADependentNoRowWillDo) {
  for (const Road road : kRoads) {
    MCLogRegSettings settings;
    settings.SetUsePatternTabulator(road == kPatterns);
    MCLogAlgorithm algorithm(settings);
    RowSource source({{1, 2}});
    std::vector<MCRegrParameter> parameters;
    EXPECT_TRUE(algorithm.CreateParameters(source, parameters).IsError());
  }
}

// --- Warnings -----------------------------------------------------------------------------------

TEST(MCLogAlgorithm, AWarningSurvivesToTheEnd) {
  for (const Road road : kRoads) {
    Rows rows;
    for (const std::vector<double>& row : kRows) {
      if (row[0] < 2) rows.push_back(row);
    }
    Driver driver{Table(road).Categories(3, 2), rows};
    const MCStatus warning(319, true);
    EXPECT_EQ(driver.CreateParameters(), warning);
    EXPECT_EQ(driver.Build(), warning);
    EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
    EXPECT_THAT(driver.fAlgorithm.GetWarnings(), ElementsAre(warning)) << "once";
    EXPECT_THAT(driver.fAlgorithm.GetModel().GetDependCategories(), ElementsAre(0, 1));
  }
}

TEST(MCLogAlgorithm, TheLastWarningIsTheAnswerOfTheBuild) {
  Driver driver{Table()};
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  MCStatus first(319, true);
  MCStatus second = first;
  second.SetDiscreteDatum(0, 7);
  EXPECT_TRUE(driver.fAlgorithm.AddNewWarning(second, false));
  EXPECT_TRUE(driver.fAlgorithm.AddNewWarning(first, false));
  EXPECT_FALSE(driver.fAlgorithm.AddNewWarning(second, false)) << "it is there";
  EXPECT_FALSE(driver.fAlgorithm.AddNewWarnings({first, second}, false));
  EXPECT_TRUE(driver.fAlgorithm.AddNewWarnings({}, false));
  EXPECT_EQ(driver.Build(), first);
  EXPECT_THAT(driver.fAlgorithm.GetWarnings(), ElementsAre(second, first));
}

TEST(MCLogAlgorithm, AnErrorAmongTheWarningsStands) {
  Driver driver{Table()};
  EXPECT_TRUE(driver.fAlgorithm.AddNewWarning(MCStatus(312, false), false));
  EXPECT_THAT(driver.fAlgorithm.GetWarnings(), IsEmpty());
  EXPECT_EQ(driver.Run(), MCStatus(312, false));
  EXPECT_TRUE(driver.fAlgorithm.AddNewWarnings({MCStatus(313, false)}, true));
  EXPECT_THAT(driver.fAlgorithm.GetWarnings(), ElementsAre(MCStatus(313, false)));
}

// --- Cancel -------------------------------------------------------------------------------------

// The polls of a whole build of the table, in order. The gaps are those between the steps, where a
// cancel raises nothing of its own.
struct Polls {
  explicit Polls(Road road) : fbPatterns(road == kPatterns) {}

  bool fbPatterns;
  int fRows = static_cast<int>(kRows.size());
  int fTerms = 2;  // intercept and effect
  int fColumns = 3;
  int fIterations = 4;

  int Begin() const { return 1; }                    // a gap
  int FirstPass() const { return Begin() + fRows; }  // one before each row
  // The tabulator's own and the driver's; the driver's alone.
  int FirstPassEnd() const { return FirstPass() + (fbPatterns ? 2 : 1); }
  int BeforeParameters() const { return FirstPassEnd() + 2; }  // two gaps
  int List() const { return BeforeParameters() + fTerms; }

  int BuildBegin() const { return List() + 1; }  // a gap
  int SecondPass() const { return BuildBegin() + (fbPatterns ? fRows + 1 : 0); }
  int BeforeDesign() const { return SecondPass() + 1; }  // a gap
  // The walk's or the driver's, and the model's in each of its forms that are gone through.
  int PerDesignRow() const { return fbPatterns ? 2 : 3; }
  int Design() const { return BeforeDesign() + PerDesignRow() * fRows; }
  int DesignEnd() const { return Design() + 1; }
  int Redundancy() const { return DesignEnd() + 1 + fColumns + 1; }
  int InitialEstimates() const { return Redundancy() + 1; }
  int Accumulator() const { return InitialEstimates() + 1; }  // three gaps
  int Optimizer() const { return Accumulator() + 1; }
  int BeforeEstimation() const { return Optimizer() + 1; }
  // The tabulator asks at the end of each pass, too.
  int Pass() const { return fbPatterns ? fRows + 1 : fRows; }
  int InitialPass() const { return BeforeEstimation() + Pass(); }
  // Before the iteration and before its trial, then the trial's pass, after it, the full pass.
  int Iteration() const { return 2 + Pass() + 1 + Pass(); }
  int Estimation() const { return InitialPass() + fIterations * Iteration() + 1; }
  int All() const { return Estimation() + 1; }  // the model's, before it takes the estimates
};

TEST(MCLogAlgorithmCancel, IsPolledBeforeEachRowAndAtEachStep) {
  for (const Road road : kRoads) {
    const Polls polls(road);
    ScriptedCancel query;
    Driver driver{Table(road).CancelledBy(query)};
    ASSERT_TRUE(driver.CreateParameters().IsOK());
    EXPECT_EQ(query.fPolls, polls.List());
    ASSERT_TRUE(driver.Build().IsOK());
    EXPECT_EQ(driver.fAlgorithm.GetConvergence().fIterations, polls.fIterations);
    EXPECT_EQ(query.fPolls, polls.All());
    EXPECT_EQ(query.fIsCancelCalls, 0) << "a yes that would be remembered is never asked for";
  }
}

struct Expected {
  MCStatus fStatus;
  bool fbBuilt;
};

const Expected kNothing = {MCStatus(), false};
const Expected kBuilt = {MCStatus(), true};
Expected Error(long code) {
  return {MCStatus(code, false), false};
}

// In a gap nothing is raised: before there are parameters nothing is built, and afterwards the
// model counts as built. Where a pass hasn't seen a row yet, that it has none is tested first.
Expected AnswerToLastingYes(Road road, int poll) {
  const Polls polls(road);
  if (poll == polls.Begin()) return kNothing;
  if (poll == polls.Begin() + 1) return Error(307);
  if (poll <= polls.FirstPassEnd()) return Error(1);
  if (poll <= polls.BeforeParameters()) return kNothing;
  if (poll <= polls.List()) return Error(1);
  if (poll == polls.BuildBegin()) return kBuilt;
  if (road == kPatterns && poll == polls.BuildBegin() + 1) return Error(307);
  if (poll <= polls.SecondPass()) return Error(1);
  if (poll == polls.BeforeDesign()) return kBuilt;
  // No row was added to the matrix. The rereading driver answers by itself before that is tested.
  if (road == kPatterns && poll <= polls.BeforeDesign() + 2) return Error(309);
  if (poll <= polls.Redundancy()) return Error(1);
  if (poll <= polls.BeforeEstimation()) return kBuilt;
  return Error(1);
}

TEST(MCLogAlgorithmCancel, AtAnyPollForGoodAnswersAsThatPollMust) {
  for (const Road road : kRoads) {
    for (int poll = 1; poll <= Polls(road).All(); ++poll) {
      ScriptedCancel query(poll);
      Driver driver{Table(road).CancelledBy(query)};
      const MCStatus status = driver.Run();
      const Expected expected = AnswerToLastingYes(road, poll);
      EXPECT_EQ(status, expected.fStatus) << road << ' ' << poll;
      EXPECT_EQ(driver.fAlgorithm.IsModelBuilt(), expected.fbBuilt) << road << ' ' << poll;
      EXPECT_EQ(driver.Score(kRows[0]), MCStatus(1, false)) << "whatever stands";
      EXPECT_EQ(driver.fCategory, 99);
      if (status.IsError()) {
        EXPECT_EQ(driver.Build(), status) << "it stands";
      }
    }
  }
}

// A query that changes its mind, up to the estimation. Each poll has its own consequence.
Expected AnswerToOneYes(Road road, int poll) {
  const Polls polls(road);
  const bool isPatterns = road == kPatterns;
  if (poll == polls.Begin()) return Error(309);  // there is no table, says the next step
  if (poll == polls.Begin() + 1) return Error(307);
  if (poll <= polls.FirstPassEnd()) return Error(1);
  if (poll <= polls.BeforeParameters()) return kNothing;
  if (poll <= polls.List()) return Error(1);
  // No patterns are made, so there is nothing to walk; without patterns nothing is skipped here.
  if (poll == polls.BuildBegin()) return isPatterns ? Error(309) : kBuilt;
  if (isPatterns && poll == polls.BuildBegin() + 1) return Error(307);
  if (poll <= polls.SecondPass()) return Error(1);
  if (poll == polls.BeforeDesign()) return kBuilt;
  if (poll <= polls.Design()) {
    const int atRow = (poll - polls.BeforeDesign() - 1) % polls.PerDesignRow();
    // The model alone knows why it refused the row. Without a single row the matrix is empty.
    const bool isFirstRow = poll <= polls.BeforeDesign() + polls.PerDesignRow();
    if (isPatterns && isFirstRow) return Error(309);
    return Error(atRow == 0 ? 1 : 313);
  }
  if (poll <= polls.Redundancy()) return Error(1);
  if (poll == polls.InitialEstimates()) return Error(305);  // there are no estimates to sum at
  if (poll == polls.Accumulator()) return Error(303);       // the estimator has nothing to read
  if (poll <= polls.BeforeEstimation()) return kBuilt;
  return Error(1);
}

TEST(MCLogAlgorithmCancel, AtOnePollOnlyHasTheConsequenceOfThatPoll) {
  for (const Road road : kRoads) {
    for (int poll = 1; poll <= Polls(road).BeforeEstimation(); ++poll) {
      ScriptedCancel query(poll, ScriptedCancel::kOnce);
      Driver driver{Table(road).CancelledBy(query)};
      const Expected expected = AnswerToOneYes(road, poll);
      MCStatus status = driver.Run();
      EXPECT_EQ(status.GetErrorCode(), expected.fStatus.GetErrorCode()) << road << ' ' << poll;
      EXPECT_EQ(driver.fAlgorithm.IsModelBuilt(), expected.fbBuilt) << road << ' ' << poll;
    }
  }
}

// The estimator leaves off where it is, or sums up a part of the rows, and knows of nothing.
TEST(MCLogAlgorithmCancel, AtOnePollOfTheEstimationEndsTheBuild) {
  for (const Road road : kRoads) {
    const Polls polls(road);
    for (int poll = polls.BeforeEstimation() + 1; poll <= polls.All(); ++poll) {
      ScriptedCancel query(poll, ScriptedCancel::kOnce);
      Driver driver{Table(road).CancelledBy(query)};
      EXPECT_EQ(driver.Run(), MCStatus(1, false)) << road << ' ' << poll;
      EXPECT_FALSE(driver.fAlgorithm.IsModelBuilt()) << road << ' ' << poll;
      EXPECT_EQ(driver.fAlgorithm.GetModel().GetHessianGI(), nullptr) << road << ' ' << poll;
      EXPECT_THAT(driver.Estimates(), testing::Each(0.0)) << road << ' ' << poll;
      if (poll < polls.All()) {
        EXPECT_EQ(driver.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_NONE) << poll;
      }
    }
  }
}

TEST(MCLogAlgorithmCancel, WithdrawnAtTheSecondAskingABuiltModelRefusesParameters) {
  const Polls polls(kPatterns);
  ScriptedCancel query(polls.All() + 1, ScriptedCancel::kOnce);
  Driver driver{Table().CancelledBy(query)};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(driver.CreateParameters(), MCStatus(310, false));
  EXPECT_EQ(driver.Score(kRows[0]), MCStatus(310, false)) << "stored";
}

TEST(MCLogAlgorithmCancel, BetweenTheCallsLeavesAModelWithoutEstimates) {
  for (const Road road : kRoads) {
    Driver driver{Table(road)};
    ASSERT_TRUE(driver.CreateParameters().IsOK());
    driver.fAlgorithm.Cancel();
    EXPECT_TRUE(driver.Build().IsOK());
    EXPECT_TRUE(driver.fAlgorithm.IsModelBuilt());
    EXPECT_EQ(driver.fAlgorithm.GetOptimizer(), nullptr);
    EXPECT_EQ(driver.Score(kRows[0]), MCStatus(1, false));
    EXPECT_NE(mctest::DisplayOf(driver.fAlgorithm), "");
  }
}

// --- Score --------------------------------------------------------------------------------------

TEST(MCLogAlgorithmScore, GivesProbabilitiesAndTheMostProbableCategory) {
  Driver driver{Table()};
  ASSERT_TRUE(driver.Run().IsOK());
  const int predicted[] = {2, 1};
  for (int g = 0; g < 2; ++g) {
    EXPECT_TRUE(driver.Score({MCMV::gMissingValue, 1.0 * g, -1}).IsOK());
    ASSERT_EQ(driver.fProbabilities.size(), 3u);
    for (int t = 0; t < 3; ++t) {
      EXPECT_NEAR(driver.fProbabilities[static_cast<std::size_t>(t)],
                  ContingencyTable::Probability(g, t), kTolerance);
    }
    EXPECT_EQ(driver.fCategory, predicted[g]);
  }
}

TEST(MCLogAlgorithmScore, NeedsABuiltModel) {
  Driver driver{Table()};
  EXPECT_EQ(driver.Score(kRows[0]), MCStatus(311, false));
  EXPECT_EQ(driver.fCategory, 99);
  EXPECT_TRUE(driver.Run().IsOK()) << "the answer was not stored";
}

TEST(MCLogAlgorithmScore, ACancelGoesBeforeAnErrorAndTheLackOfAModel) {
  Driver fresh{Table()};
  fresh.fAlgorithm.Cancel();
  EXPECT_EQ(fresh.Score(kRows[0]), MCStatus(1, false));
  Driver failed{Table(), {}};
  ASSERT_EQ(failed.Run(), MCStatus(307, false));
  failed.fAlgorithm.Cancel();
  EXPECT_EQ(failed.Score(kRows[0]), MCStatus(1, false));
}

TEST(MCLogAlgorithmScore, ARecordThatFailsTheValidatorLeavesTheOutputsAlone) {
  Driver driver{Table()};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(driver.Score({0, 0.5, 1}), BadValue(1, 0.5));
  EXPECT_EQ(driver.Score({0}), MCStatus(315, false));
  EXPECT_EQ(driver.Score({}), MCStatus(315, false));
  EXPECT_TRUE(driver.Score({0, MCMV::gMissingValue, 1}).IsOK()) << "turned down silently";
  EXPECT_TRUE(driver.fAlgorithm.AddNewWarning(MCStatus(319, true), false));
  EXPECT_EQ(driver.fCategory, 99);
  EXPECT_THAT(driver.fProbabilities, ElementsAre(0.25));
  EXPECT_TRUE(driver.Score({0, 0, 1}).IsOK()) << "nothing was stored";
}

TEST(MCLogAlgorithmScore, ASilentRejectionAnswersTheStandingWarning) {
  Rows rows;
  for (const std::vector<double>& row : kRows) {
    if (row[0] < 2) rows.push_back(row);
  }
  Driver driver{Table().Categories(3, 2), rows};
  ASSERT_EQ(driver.Run(), MCStatus(319, true));
  EXPECT_EQ(driver.Score({0, MCMV::gMissingValue, 1}), MCStatus(319, true));
  EXPECT_EQ(driver.fCategory, 99);
  EXPECT_TRUE(driver.Score({0, 0, 1}).IsOK()) << "that of the scoring alone";
}

TEST(MCLogAlgorithmScore, ACombinationThatWasNotSeenHasNoPrediction) {
  Driver driver{Table()};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_TRUE(driver.Score({0, 2, 1}).IsOK());  // one above the last category
  EXPECT_EQ(driver.fCategory, -1);
  EXPECT_THAT(driver.fProbabilities, testing::Each(MCMV::gMissingValue));
  EXPECT_EQ(driver.fProbabilities.size(), 3u);
}

TEST(MCLogAlgorithmScore, ARecordThatEndsBeforeAPredictorIsTooShort) {
  // Dependent and weight stand behind the factor and need not be there.
  Rows rows;
  for (const std::vector<double>& row : kRows) rows.push_back({row[1], row[0], row[2]});
  Driver driver{LogisticDesign(1, {{0, 2}}, {}).Categories(3).FrequencyWeight(2).Effect({0}), rows};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_FALSE(driver.fAlgorithm.ReachesPredictors(Record(0)));
  EXPECT_EQ(driver.Score({}), MCStatus(315, false));
  EXPECT_TRUE(driver.fAlgorithm.ReachesPredictors(Record(1)));
  EXPECT_TRUE(driver.Score({1}).IsOK());
  EXPECT_EQ(driver.fCategory, 1);
}

TEST(MCLogAlgorithmScore, ARecordThatEndsBeforeAForgottenRoleIsTooShort) {
  LogisticDesign design = LogisticDesign(-1, {{1, 2}}, {}).Categories(3).Effect({1});
  {
    const mctest::FailAllocation failure(1);
    ASSERT_FALSE(design.Settings().SetDependent(3));
  }
  Rows rows;
  for (const std::vector<double>& row : ContingencyTable::RepeatedRows()) {
    rows.push_back({9, row[1], 9, row[0]});
  }
  Driver driver{std::move(design), rows};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(driver.Score({9}), MCStatus(315, false));
  EXPECT_EQ(driver.fCategory, 99);
  EXPECT_TRUE(driver.Score({9, 0}).IsOK());
  EXPECT_EQ(driver.fCategory, 2);
}

// --- Convergence --------------------------------------------------------------------------------

TEST(MCLogAlgorithmConvergence, IsStatedWithTheLogLikelihoods) {
  for (const Road road : kRoads) {
    Driver driver{Table(road)};
    ASSERT_TRUE(driver.Run().IsOK());
    const MCConvergence& stated = driver.fAlgorithm.GetConvergence();
    EXPECT_EQ(stated.fReason, MCConst::MC_CONV_PARAM);
    EXPECT_TRUE(stated.IsConverged());
    EXPECT_EQ(stated.fIterations, 4);
    EXPECT_NEAR(stated.fInitialLL, ContingencyTable::InitialLogLik(), 1e-12);
    EXPECT_NEAR(stated.fFinalLL, ContingencyTable::LogLik(), 1e-12);
    EXPECT_GT(stated.fLLChange, -1e-300);
    EXPECT_LT(stated.fParamChange, 1e-6);
    EXPECT_GE(stated.fExpectedGain, 0.0);
    EXPECT_TRUE(stated.fbScoreIsZero);
    int iterations = 0;
    double initialLL = 0.0;
    double finalLL = 0.0;
    double llChange = 0.0;
    double paramChange = 0.0;
    driver.fAlgorithm.GetOptimizer()->GetEstStats(iterations, initialLL, finalLL, llChange,
                                                  paramChange);
    EXPECT_EQ(stated.fIterations, iterations);
    EXPECT_EQ(stated.fInitialLL, initialLL);
    EXPECT_EQ(stated.fFinalLL, finalLL);
    EXPECT_EQ(stated.fLLChange, llChange);
    EXPECT_EQ(stated.fParamChange, paramChange);
  }
}

// At the initial estimates g has the entries n[0][t] - N[0] N[t] / N for the effect of group 0, and
// 0 for the intercepts, of which a row of the inverse information has the rest.
TEST(MCLogAlgorithmConvergence, ExpectedGainIsHalfTheScoreStatisticWhereNothingWasIterated) {
  LogisticDesign design = Table();
  design.Settings().SetMaxIterations(0);
  Driver driver{std::move(design)};
  ASSERT_TRUE(driver.Run().IsOK());
  const MCConvergence& stated = driver.fAlgorithm.GetConvergence();
  EXPECT_EQ(stated.fReason, MCConst::MC_CONV_NOT_RUN);
  EXPECT_FALSE(stated.IsConverged());
  // The score statistic of independence in a table is Pearson's chi square.
  double chiSquare = 0.0;
  for (int g = 0; g < 2; ++g) {
    double inGroup = 0.0;
    for (int t = 0; t < 3; ++t) inGroup += ContingencyTable::Count(g, t);
    for (int t = 0; t < 3; ++t) {
      const double inCategory = ContingencyTable::Count(0, t) + ContingencyTable::Count(1, t);
      const double expected = inGroup * inCategory / ContingencyTable::Total();
      const double difference = ContingencyTable::Count(g, t) - expected;
      chiSquare += difference * difference / expected;
    }
  }
  EXPECT_NEAR(stated.fExpectedGain, 0.5 * chiSquare, kTolerance);
  EXPECT_FALSE(stated.fbScoreIsZero);
  EXPECT_EQ(stated.fFinalLL, MCMV::gMissingValue);
  EXPECT_NEAR(stated.fInitialLL, ContingencyTable::InitialLogLik(), kTolerance);
}

TEST(MCLogAlgorithmConvergence, InterceptsAloneAreSolvedByTheInitialEstimates) {
  for (const Road road : kRoads) {
    Driver driver{
        LogisticDesign(0, {}, {}).Categories(3).FrequencyWeight(2).Rereading(road == kRereading)};
    ASSERT_TRUE(driver.Run().IsOK());
    const MCConvergence& stated = driver.fAlgorithm.GetConvergence();
    EXPECT_EQ(stated.fReason, MCConst::MC_CONV_NOT_RUN);
    EXPECT_EQ(stated.fIterations, 0);
    EXPECT_TRUE(stated.fbScoreIsZero) << "held against the initial log-likelihood";
    EXPECT_NEAR(stated.fInitialLL, ContingencyTable::InitialLogLik(), kTolerance);
    EXPECT_NEAR(driver.Estimates()[0], std::log(11.0 / 15.0), kTolerance);
    EXPECT_NEAR(driver.fAlgorithm.GetModel().GetHessianGI()->GetElem(0, 0), 1.0 / 11 + 1.0 / 15,
                kTolerance);
  }
}

TEST(MCLogAlgorithmConvergence, WithoutAnyColumnLeftThereIsNothingToEstimate) {
  // A tolerance of 1 and more makes every column redundant.
  LogisticDesign design = Table();
  design.Settings().SetTolerance(2.0);
  Driver driver{std::move(design)};
  ASSERT_TRUE(driver.Run().IsOK());
  const MCConvergence& stated = driver.fAlgorithm.GetConvergence();
  EXPECT_EQ(driver.fAlgorithm.GetModel().GetNNonRedParams(), 0);
  EXPECT_EQ(stated.fReason, MCConst::MC_CONV_NOT_RUN);
  EXPECT_EQ(stated.fExpectedGain, 0.0);
  EXPECT_TRUE(stated.fbScoreIsZero);
  EXPECT_NEAR(stated.fInitialLL, 41 * std::log(1.0 / 3.0), kTolerance);
}

TEST(MCLogAlgorithmConvergence, TheIterationLimitLeavesAScore) {
  LogisticDesign design = Plane();
  design.Settings().SetMaxIterations(1);
  Driver driver{std::move(design), kPlane};
  ASSERT_TRUE(driver.Run().IsOK());
  const MCConvergence& stated = driver.fAlgorithm.GetConvergence();
  EXPECT_EQ(stated.fReason, MCConst::MC_CONV_MAX_ITER);
  EXPECT_FALSE(stated.IsConverged());
  EXPECT_EQ(stated.fIterations, 1);
  EXPECT_GT(stated.fExpectedGain, 0.0);
  EXPECT_FALSE(stated.fbScoreIsZero);
}

TEST(MCLogAlgorithmConvergence, CriteriaOfTheLogLikelihoodAreTold) {
  const std::vector<std::pair<double, int>> ways = {{0.0, MCConst::MC_CONV_LL},
                                                    {10.0, MCConst::MC_CONV_BOTH}};
  for (const auto& [paramCriterion, reason] : ways) {
    LogisticDesign design = Table();
    design.Settings().SetLLConCriterion(1.0);
    design.Settings().SetParamEstConCriterion(paramCriterion);
    design.Settings().SetParamEstChange(true);
    Driver driver{std::move(design)};
    ASSERT_TRUE(driver.Run().IsOK());
    EXPECT_EQ(driver.fAlgorithm.GetConvergence().fReason, reason);
    EXPECT_TRUE(driver.fAlgorithm.GetConvergence().IsConverged());
  }
}

// x below 0 has category 0, above 0 category 1.
const Rows kSeparated = {{0, -3}, {0, -2}, {0, -1}, {1, 1}, {1, 2}, {1, 3}};

// The same with one row of each at 0, so that the probabilities there stay at one half.
Rows QuasiSeparated() {
  Rows rows = kSeparated;
  rows.push_back({0, 0});
  rows.push_back({1, 0});
  return rows;
}

LogisticDesign Line(Road road = kPatterns) {
  return LogisticDesign(0, {}, {1}).Rereading(road == kRereading).Effect({}, {1});
}

TEST(MCLogAlgorithmConvergence, SeparationIsTold) {
  for (const Road road : kRoads) {
    Driver complete{Line(road), kSeparated};
    ASSERT_TRUE(complete.Run().IsOK());
    EXPECT_EQ(complete.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_COMPLETE_SEP);
    EXPECT_EQ(complete.fAlgorithm.GetConvergence().fIterations, 20);
    EXPECT_FALSE(complete.fAlgorithm.GetConvergence().fbScoreIsZero);

    Driver quasi{Line(road), QuasiSeparated()};
    ASSERT_TRUE(quasi.Run().IsOK());
    EXPECT_EQ(quasi.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_QUASI_SEP);
    EXPECT_FALSE(quasi.fAlgorithm.GetConvergence().IsConverged());
  }
}

TEST(MCLogAlgorithmConvergence, ASingularHessianIsTold) {
  // Without the separation check the probabilities run to 0 and 1 until nothing is left to learn.
  LogisticDesign design = Line();
  design.Settings().SetStartingIteration(0);
  Driver driver{std::move(design), kSeparated};
  ASSERT_TRUE(driver.Run().IsOK());
  EXPECT_EQ(driver.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_SINGULAR);
  EXPECT_FALSE(driver.fAlgorithm.GetConvergence().IsConverged());
}

// With criteria that nothing meets, a step is refused in the end because of rounding alone, or the
// iterations run out. Either way the score is told to be zero.
TEST(MCLogAlgorithmConvergence, AStepThatOnlyRoundingRefusedLeavesAZeroScore) {
  for (const Road road : kRoads) {
    LogisticDesign design = Plane(road);
    design.Settings().SetParamEstConCriterion(0.0);
    Driver driver{std::move(design), kPlane};
    ASSERT_TRUE(driver.Run().IsOK());
    const MCConvergence& stated = driver.fAlgorithm.GetConvergence();
    EXPECT_THAT(stated.fReason,
                testing::AnyOf(MCConst::MC_CONV_HALVING, MCConst::MC_CONV_MAX_ITER));
    EXPECT_FALSE(stated.IsConverged());
    EXPECT_TRUE(stated.fbScoreIsZero);
    EXPECT_LE(stated.fExpectedGain, std::sqrt(static_cast<double>(kPlane.size())) * DBL_EPSILON *
                                        std::fabs(stated.fFinalLL));
  }
}

TEST(MCLogAlgorithmConvergence, AnErrorOfTheEstimationIsNoReason) {
  Driver driver{Table(kRereading)};
  driver.fSource.NullAt(kFirstIteration + 1, 2);
  ASSERT_EQ(driver.Run(), MCStatus(304, false));
  EXPECT_EQ(driver.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_NONE);
  EXPECT_EQ(driver.fAlgorithm.GetConvergence().fExpectedGain, MCMV::gMissingValue);
  EXPECT_FALSE(driver.fAlgorithm.GetConvergence().fbScoreIsZero);
}

TEST(MCLogAlgorithmConvergence, OddCovariatesNeverConvergeToEstimatesThatAreNotFinite) {
  const double odd[] = {std::numeric_limits<double>::quiet_NaN(),
                        std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity(),
                        1e300,
                        -1e300,
                        1e160,
                        std::numeric_limits<double>::max(),
                        std::numeric_limits<double>::denorm_min()};
  for (const Road road : kRoads) {
    for (const double value : odd) {
      for (std::size_t row = 0; row < kPlane.size(); ++row) {
        Rows rows = kPlane;
        rows[row][2] = value;
        Driver driver{Plane(road), rows};
        if (driver.Run().IsError()) continue;
        const bool isConverged = driver.fAlgorithm.GetConvergence().IsConverged();
        for (const double estimate : driver.Estimates()) {
          EXPECT_TRUE(!isConverged || std::isfinite(estimate)) << value << ' ' << row;
        }
      }
    }
  }
}

// The log odds of these weights, and the log-likelihood with them, are infinite.
TEST(MCLogAlgorithmConvergence, NoScoreIsZeroAtInfiniteEstimates) {
  for (const Road road : kRoads) {
    LogisticDesign design =
        LogisticDesign(0, {}, {}).FrequencyWeight(1).Rereading(road == kRereading);
    Driver driver{std::move(design), {{0, 1e-300}, {1, 1e300}}};
    ASSERT_TRUE(driver.Run().IsOK());
    ASSERT_EQ(driver.Estimates().front(), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(driver.fAlgorithm.GetConvergence().fReason, MCConst::MC_CONV_NOT_RUN);
    EXPECT_EQ(driver.fAlgorithm.GetConvergence().fExpectedGain, MCMV::gMissingValue);
    EXPECT_FALSE(driver.fAlgorithm.GetConvergence().fbScoreIsZero);
  }
}

// Finite estimates, but so much weight that the log-likelihood isn't.
TEST(MCLogAlgorithmConvergence, NoScoreIsZeroBesideAnInfiniteLogLikelihood) {
  LogisticDesign design = LogisticDesign(0, {}, {}).FrequencyWeight(1);
  Driver driver{std::move(design), {{0, 8e307}, {1, 8e307}, {0, 8e307}, {1, 8e307}}};
  ASSERT_TRUE(driver.Run().IsOK());
  ASSERT_EQ(driver.fAlgorithm.GetConvergence().fInitialLL,
            -std::numeric_limits<double>::infinity());
  EXPECT_FALSE(driver.fAlgorithm.GetConvergence().fbScoreIsZero);
}

// Sets an estimate to a value that no data are known to lead to at convergence, as the
// log-likelihood is NaN there: at the report of one iteration, under the hands of the estimator.
class Spoiler : public ProgressListener {
public:
  bool ReportProgress(ProgressReport* report) override {
    if (report->DiscreteMeasure("iterNum") == fIteration) {
      const auto* estimates =
          dynamic_cast<ProgressReportVect&>(*report).VectorMeasure("paramEstim");
      const_cast<std::vector<double>&>(*estimates).back() = fValue;
    }
    return true;
  }

  int fIteration = -1;
  double fValue = 0.0;
};

TEST(MCLogAlgorithmConvergence, IsNotStatedForEstimatesThatAreNotFinite) {
  const std::pair<double, bool> values[] = {{0.25, true},
                                            {std::numeric_limits<double>::quiet_NaN(), false},
                                            {std::numeric_limits<double>::infinity(), false},
                                            {-std::numeric_limits<double>::infinity(), false}};
  Driver plain{Plane(), kPlane};
  ASSERT_TRUE(plain.Run().IsOK());
  const MCConvergence& expected = plain.fAlgorithm.GetConvergence();
  ASSERT_EQ(expected.fReason, MCConst::MC_CONV_PARAM);
  for (const auto& [value, isFinite] : values) {
    Spoiler spoiler;
    spoiler.fIteration = expected.fIterations;
    spoiler.fValue = value;
    LogisticDesign design = Plane();
    design.Settings().SetProgressListener(&spoiler);
    Driver driver{std::move(design), kPlane};
    ASSERT_TRUE(driver.Run().IsOK());
    const MCConvergence& stated = driver.fAlgorithm.GetConvergence();
    EXPECT_EQ(driver.fAlgorithm.GetOptimizer()->GetConverCrit(), MCConst::MC_CONV_PARAM);
    EXPECT_EQ(stated.fReason, isFinite ? MCConst::MC_CONV_PARAM : MCConst::MC_CONV_SINGULAR);
    EXPECT_EQ(stated.IsConverged(), isFinite);
    EXPECT_EQ(stated.fExpectedGain, isFinite ? expected.fExpectedGain : MCMV::gMissingValue);
    EXPECT_EQ(stated.fbScoreIsZero, isFinite && expected.fbScoreIsZero);
    EXPECT_EQ(stated.fFinalLL, expected.fFinalLL);
  }
}

TEST(MCConvergence, OnlyTheFirstThreeReasonsAreConvergence) {
  for (int reason = -1; reason <= 10; ++reason) {
    MCConvergence stated;
    stated.fReason = reason;
    EXPECT_EQ(stated.IsConverged(), reason >= 1 && reason <= 3) << reason;
    EXPECT_EQ(MCConvergence::IsConverged(reason), stated.IsConverged());
  }
}

TEST(MCConvergence, StartsWithNothingKnown) {
  const MCConvergence stated;
  EXPECT_EQ(stated.fReason, MCConst::MC_CONV_NOT_RUN);
  EXPECT_EQ(stated.fIterations, 0);
  EXPECT_EQ(stated.fInitialLL, MCMV::gMissingValue);
  EXPECT_EQ(stated.fFinalLL, MCMV::gMissingValue);
  EXPECT_EQ(stated.fLLChange, 0.0);
  EXPECT_EQ(stated.fParamChange, 0.0);
  EXPECT_EQ(stated.fExpectedGain, MCMV::gMissingValue);
  EXPECT_FALSE(stated.fbScoreIsZero);
}

// --- Memory, display ----------------------------------------------------------------------------

TEST(MCLogAlgorithmMemory, ExhaustionAnywhereIsThrownOrAnErrorOrMadeGood) {
  for (const Road road : kRoads) {
    bool fired = true;
    std::size_t k = 0;
    while (fired) {
      Driver driver{Table(road)};
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
      EXPECT_TRUE(fired || status.IsOK()) << k;
      EXPECT_EQ(driver.fAlgorithm.IsModelBuilt(), !isThrown && !status.IsError()) << k;
      if (driver.fAlgorithm.IsModelBuilt()) {
        ExpectNear(ContingencyTable::Estimates(), driver.Estimates());
      }
    }
    EXPECT_GT(k, 20u) << "the build allocates";
  }
}

TEST(MCLogAlgorithmDisplay, ShowsItsPartsInOrder) {
  Driver driver{Table()};
  ASSERT_TRUE(driver.CreateParameters().IsOK());
  const std::string halfway = mctest::DisplayOf(driver.fAlgorithm);
  EXPECT_THAT(halfway, HasSubstr("\nfpPatternTabulator\nMCPatternTabulator display start"));
  EXPECT_THAT(halfway, Not(HasSubstr("fpOptimizer")));
  ASSERT_TRUE(driver.Build().IsOK());
  const std::string text = mctest::DisplayOf(driver.fAlgorithm);
  EXPECT_THAT(text, testing::StartsWith("\nMCLogAlgorithm display start\nfPatternExtractor"));
  EXPECT_THAT(text, HasSubstr("\nfFactorTables" +
                              mctest::DisplayOf(static_cast<const MCFactorTables&>(
                                  driver.fAlgorithm.GetFactorCounts())) +
                              "\nRecord Validator" +
                              mctest::DisplayOf(driver.fAlgorithm.GetRecordValidator()) +
                              "\nfMeanValues (size = 0)"));
  EXPECT_THAT(text, testing::EndsWith("\nfModel" + mctest::DisplayOf(driver.fAlgorithm.GetModel()) +
                                      "\nfpOptimizer" +
                                      mctest::DisplayOf(*driver.fAlgorithm.GetOptimizer()) +
                                      "\nfbFactorTableFilled = true"
                                      "\nfbParamsCreated = true"
                                      "\nfbModelBuilt = true"
                                      "\nMCLogAlgorithm display end"));
}

}  // namespace
