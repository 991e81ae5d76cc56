// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmmodel.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/linearmodel.h"
#include "support/scriptedcancel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace {
using MCCommon::MCStatus;
using mctest::LinearModel;
using mctest::RegressionDesign;
using mctest::Rows;
using mctest::ScriptedCancel;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Designs below have condition numbers of at most about 1e3, so that a few dozen roundings of
// 1.1e-16 leave at least 12 digits.
constexpr double kTolerance = 1e-12;

void ExpectNear(const std::vector<double>& values, const std::vector<double>& expected) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_NEAR(values[i], expected[i], kTolerance * (1.0 + std::fabs(expected[i]))) << i;
  }
}

// Factor a of three categories at position 1, factor b of two at 2, covariate x at 3; y at 0.
RegressionDesign TwoFactors() {
  return RegressionDesign(0, {{1, 3}, {2, 2}}, {3});
}

// Each case was solved by hand in rational numbers.
struct Fit {
  const char* fName;
  RegressionDesign (*fDesign)();
  Rows fRows;
  std::vector<double> fEstimates;
  std::vector<bool> fSwept;
  double fMeanSquaredResidual;
  double fRSquare;
};

void PrintTo(const Fit& fit, std::ostream* out) {
  *out << fit.fName;
}

const Fit kFits[] = {
    {"interceptOnly",
     [] { return RegressionDesign(0, {}, {}); },
     {{1}, {2}, {6}},
     {3},
     {true, false},
     14.0 / 3.0,
     0.0},
    {"interceptOnlyWithFrequencies",
     [] { return RegressionDesign(0, {}, {}).FrequencyWeight(1); },
     {{1, 1}, {2, 1}, {6, 2}},
     {15.0 / 4.0},
     {true, false},
     83.0 / 16.0,
     0.0},
    {"straightLine",
     [] { return RegressionDesign(0, {}, {1}).Effect({}, {1}); },
     {{2, 1}, {4, 2}, {5, 3}, {4, 4}, {5, 5}},
     {11.0 / 5.0, 3.0 / 5.0},
     {true, true, false},
     12.0 / 25.0,
     3.0 / 5.0},
    {"lineThroughTheOrigin",
     [] { return RegressionDesign(0, {}, {1}).NoIntercept().Effect({}, {1}); },
     {{2, 1}, {3, 2}},
     {8.0 / 5.0},
     {true, false},
     1.0 / 10.0,
     64.0 / 65.0},
    // Weights 1, 2, 1: sums over w, wx, wy, wxx, wxy are 4, 8, 14, 18, 30.
    {"weightedLine",
     [] { return RegressionDesign(0, {}, {1}).RegressionWeight(2).Effect({}, {1}); },
     {{2, 1, 1}, {3, 2, 2}, {6, 3, 1}},
     {-1.0 / 2.0, 2.0},
     {true, true, false},
     // Both sums are over the number of rows, 3: the weights' total counts frequencies alone.
     (0.25 + 2.0 * 0.25 + 0.25) / 3.0,
     1.0 - 1.0 / 9.0},
    {"parabola",
     [] {
       return RegressionDesign(0, {}, {1}).Effect({}, {1}).Effect({}, {1, 1});
     },
     {{1, -1}, {2, 0}, {5, 1}, {10, 2}},
     {2, 2, 1},
     {true, true, true, false},
     0.0,
     1.0},
    {"twoLevels",
     [] {
       return RegressionDesign(0, {{1, 2}}, {}).Effect({1});
     },
     {{1, 0}, {3, 0}, {5, 1}, {9, 1}},
     {7, -5, 0},
     {true, true, false, false},
     10.0 / 4.0,
     1.0 - 10.0 / 35.0},
    {"twoLevelsWithoutIntercept",
     [] {
       return RegressionDesign(0, {{1, 2}}, {}).NoIntercept().Effect({1});
     },
     {{1, 0}, {3, 0}, {5, 1}, {9, 1}},
     {2, 7},
     {true, true, false},
     10.0 / 4.0,
     1.0 - 10.0 / 116.0},
    {"twoFactorsWithoutIntercept",
     [] { return TwoFactors().NoIntercept().Effect({1}).Effect({2}); },
     {{1, 0, 0, 9}, {4, 0, 1, 9}, {3, 1, 0, 9}, {6, 1, 1, 9}},
     {4, 6, -3, 0},
     {true, true, true, false, false},
     0.0,
     1.0},
    // Cells (0,0), (0,1), (1,0), (1,1) with means 1, 2, 4, 9.
    {"interaction",
     [] {
       return TwoFactors().Effect({1}).Effect({2}).Effect({1, 2});
     },
     {{1, 0, 0, 9}, {2, 0, 1, 9}, {4, 1, 0, 9}, {9, 1, 1, 9}},
     {9, -7, 0, -5, 0, 4, 0, 0, 0},
     {true, true, false, true, false, true, false, false, false, false},
     0.0,
     1.0},
    // Lines 1 + 2x where a = 0, and 5 - x where a = 1.
    {"slopesByFactor",
     [] { return TwoFactors().NoIntercept().Effect({1}).Effect({1}, {3}); },
     {{1, 0, 0, 0}, {3, 0, 0, 1}, {5, 0, 0, 2}, {5, 1, 0, 0}, {4, 1, 0, 1}, {3, 1, 0, 2}},
     {1, 5, 2, -1},
     {true, true, true, true, false},
     0.0,
     1.0},
    // b within a: the order of columns is b's level first, as b stands at nesting level 0.
    {"nested",
     [] {
       return TwoFactors().NoIntercept().Nested({2, 1});
     },
     {{1, 0, 0, 9}, {2, 0, 1, 9}, {4, 1, 0, 9}, {9, 1, 1, 9}},
     {1, 4, 2, 9},
     {true, true, true, true, false},
     0.0,
     1.0},
    {"secondOfTwoEqualColumns",
     [] {
       return RegressionDesign(0, {}, {1, 2}).Effect({}, {1}).Effect({}, {2});
     },
     {{2, 1, 1}, {4, 2, 2}, {6, 3, 3}},
     {0, 2, 0},
     {true, true, false, false},
     0.0,
     1.0},
};

class MCGLMModelFit : public testing::TestWithParam<Fit> {};

TEST_P(MCGLMModelFit, GivesTheValuesWorkedByHand) {
  const Fit& fit = GetParam();
  LinearModel model(fit.fDesign());
  EXPECT_TRUE(model.Fit(fit.fRows).IsOK());
  ExpectNear(model.fModel.GetParamEstimates(), fit.fEstimates);
  EXPECT_EQ(model.Swept(), fit.fSwept);
  EXPECT_NEAR(model.fModel.GetRootMeanSquareError(), std::sqrt(fit.fMeanSquaredResidual),
              kTolerance);
  EXPECT_NEAR(model.fModel.GetMultipleRSquare(), fit.fRSquare, kTolerance);
}

INSTANTIATE_TEST_SUITE_P(ByHand, MCGLMModelFit, testing::ValuesIn(kFits),
                         [](const auto& test) { return std::string(test.param.fName); });

TEST(MCGLMModel, InterceptAloneMakesAMatrixOfTwoRowsAndTheWeightedMean) {
  LinearModel model(RegressionDesign(0, {}, {}).FrequencyWeight(1));
  EXPECT_TRUE(model.Accumulate({{1, 1}, {2, 1}, {6, 2}}).IsOK());
  EXPECT_EQ(model.fModel.GetZPrimeZ()->GetNRows(), 2);
  EXPECT_EQ(model.fModel.GetNParameters(), 1);
  EXPECT_TRUE(model.fModel.BuildModel().IsOK());
  EXPECT_EQ(model.fModel.GetParamEstimates()[0], 3.75);
}

TEST(MCGLMModel, SweptMatrixHoldsMinusTheInverseOfTheWeightedCrossProducts) {
  LinearModel model(RegressionDesign(0, {}, {1}).Effect({}, {1}));
  EXPECT_TRUE(model.Fit({{2, 1}, {4, 2}, {5, 3}, {4, 4}, {5, 5}}).IsOK());
  // n, sum of x, sum of x*x: 5, 15, 55, with determinant 50.
  ExpectNear(model.fModel.GetZPrimeZ()->AsVectorConst(), {-1.1, 0.3, -0.1, 0, 0, 0});
}

TEST(MCGLMModel, RowsAndColumnsOfAliasedParametersAndOfTheDependentAreZeroAfterTheBuild) {
  LinearModel model(RegressionDesign(0, {{1, 2}}, {}).Effect({1}));
  EXPECT_TRUE(model.Fit({{1, 0}, {3, 0}, {5, 1}, {9, 1}}).IsOK());
  ExpectNear(model.fModel.GetZPrimeZ()->AsVectorConst(), {-0.5, 0.5, -1, 0, 0, 0, 0, 0, 0, 0});
}

TEST(MCGLMModel, ACovariatePowerIsARepeatedProduct) {
  LinearModel model(RegressionDesign(0, {}, {1}).Effect({}, {1, 1, 1}));
  const double x = 1.1;
  EXPECT_TRUE(model.Accumulate({{1, x}}).IsOK());
  std::vector<double> row(3);
  EXPECT_TRUE(model.fModel.ExpandRow(row, std::vector<double>{7, x}.data()));
  EXPECT_THAT(row, ElementsAre(1.0, x * x * x, 7.0));
  EXPECT_NE(x * x * x, 1.331) << "the case distinguishes the product from the rounded power";
}

TEST(MCGLMModel, AConstantDependentHasNoRSquare) {
  LinearModel model(RegressionDesign(0, {}, {1}).Effect({}, {1}));
  EXPECT_TRUE(model.Fit({{3, 1}, {3, 2}, {3, 3}, {3, 4}}).IsOK());
  EXPECT_EQ(model.fModel.GetMultipleRSquare(), MCMV::gMissingValue);
  EXPECT_NEAR(model.fModel.GetRootMeanSquareError(), 0.0, kTolerance);
}

TEST(MCGLMModel, AFitWorseThanTheMeanHasAnRSquareOfExactlyZero) {
  // Polls: the intercept, the start of the build, then the only column, which is left unswept. The
  // estimate is 0, so the residuals are the values themselves.
  ScriptedCancel query(3, ScriptedCancel::kOnce);
  LinearModel model(RegressionDesign(0, {}, {}).CancelledBy(query));
  EXPECT_TRUE(model.Fit({{5}, {7}}).IsOK());
  EXPECT_THAT(model.fModel.GetParamEstimates(), ElementsAre(0.0));
  EXPECT_EQ(model.fModel.GetMultipleRSquare(), 0.0);
  EXPECT_EQ(model.fModel.GetRootMeanSquareError(), std::sqrt(37.0));
}

TEST(MCGLMModel, RSquareAndErrorAreMissingBeforeTheSumsAreClosed) {
  LinearModel model(RegressionDesign(0, {}, {}));
  EXPECT_TRUE(model.Accumulate({{1}, {2}}).IsOK());
  EXPECT_TRUE(model.fModel.BuildModel().IsOK());
  EXPECT_EQ(model.fModel.GetMultipleRSquare(), MCMV::gMissingValue);
  EXPECT_EQ(model.fModel.GetRootMeanSquareError(), MCMV::gMissingValue);
}

// --- Parameters ---------------------------------------------------------------------------------

TEST(MCGLMModel, AFreshModelHasNeitherParametersNorMatrix) {
  LinearModel model(TwoFactors().Effect({1}));
  EXPECT_FALSE(model.fModel.AreParamsCreated());
  EXPECT_FALSE(model.fModel.IsModelBuilt());
  EXPECT_EQ(model.fModel.GetNParameters(), 0);
  EXPECT_EQ(model.fModel.GetZPrimeZ(), nullptr);
  EXPECT_EQ(model.fModel.GetFactorTables(), nullptr);
  EXPECT_EQ(model.Swept(), std::vector<bool>{false});
  EXPECT_THAT(model.fModel.GetWarnings(), IsEmpty());
  EXPECT_EQ(model.fModel.GetMultipleRSquare(), MCMV::gMissingValue);
  EXPECT_EQ(model.fModel.GetRootMeanSquareError(), MCMV::gMissingValue);
}

TEST(MCGLMModel, ListsTheInterceptFirstAndThenEachCombinationThatOccurred) {
  LinearModel model(TwoFactors().Effect({}, {3}).Effect({1}).Effect({1, 2}, {3}));
  EXPECT_TRUE(model.Accumulate({{1, 2, 1, 5}, {2, 0, 1, 6}, {3, 2, 0, 7}}).IsOK());
  const std::vector<MCRegrParameter>& parameters = model.fModel.GetParameters();
  ASSERT_EQ(parameters.size(), 7u);
  EXPECT_TRUE(parameters[0].IsIntercept());
  const std::vector<int> effects = {-1, 0, 1, 1, 2, 2, 2};
  const std::vector<std::vector<int>> categories = {{}, {}, {0}, {2}, {0, 1}, {2, 0}, {2, 1}};
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    EXPECT_EQ(parameters[i].GetEffectIndex(), effects[i]) << i;
    EXPECT_EQ(parameters[i].GetCategories(), categories[i]) << i;
  }
  EXPECT_THAT(parameters[4].GetFactors(), ElementsAre(1, 2));
  EXPECT_THAT(parameters[4].GetCovariates(), ElementsAre(3));
  EXPECT_EQ(model.fModel.GetZPrimeZ()->GetNRows(), 8);
}

TEST(MCGLMModel, AnEmptyEffectAfterAnotherIsAColumnOfOnes) {
  LinearModel model(RegressionDesign(0, {}, {1}).NoIntercept().Effect({}, {1}).Effect({}));
  EXPECT_TRUE(model.Fit({{2, 1}, {4, 2}, {5, 3}, {4, 4}, {5, 5}}).IsOK());
  EXPECT_TRUE(model.fModel.GetParameters()[1].IsIntercept());
  EXPECT_EQ(model.fModel.GetParameters()[1].GetEffectIndex(), -1);
  ExpectNear(model.fModel.GetParamEstimates(), {0.6, 2.2});
}

TEST(MCGLMModel, TellsTheParametersOfEachEffect) {
  const Rows rows = {{1, 2, 1, 5}, {2, 0, 1, 6}, {3, 2, 0, 7}};
  struct Case {
    bool fIntercept;
    int fEffect;
    bool fFound;
    int fFirst;
    int fCount;
  };
  const Case cases[] = {
      {true, 0, true, 0, 1},
      {true, 1, true, 1, 2},
      {true, 2, true, 3, 1},
      {true, 3, false, -7, -7},
      {true, -1, false, -7, -7},
      {false, 0, true, 0, 2},
      {false, 1, true, 2, 1},
      {false, 2, false, -7, -7},
      {false, -1, false, -7, -7},
      {false, std::numeric_limits<int>::min(), false, -7, -7},
      {true, std::numeric_limits<int>::min(), false, -7, -7},
      {true, std::numeric_limits<int>::max(), false, -7, -7},
  };
  for (const Case& c : cases) {
    RegressionDesign design = TwoFactors().Effect({1}).Effect({}, {3});
    design.Settings().SetInterceptUse(c.fIntercept);
    LinearModel model(std::move(design));
    ASSERT_TRUE(model.Accumulate(rows).IsOK());
    int first = -7;
    int count = -7;
    EXPECT_EQ(model.fModel.GetParamsForEffect(c.fEffect, first, count), c.fFound) << c.fEffect;
    EXPECT_EQ(first, c.fFirst) << c.fEffect;
    EXPECT_EQ(count, c.fCount) << c.fEffect;
  }
}

TEST(MCGLMModel, ASecondCreateParametersChangesNothing) {
  LinearModel model(TwoFactors().Effect({1}));
  const Rows rows = {{1, 2, 1, 5}, {2, 0, 1, 6}};
  ASSERT_TRUE(model.Accumulate(rows).IsOK());
  const MCCommonMath::MCSymMatrix* matrix = model.fModel.GetZPrimeZ();
  EXPECT_TRUE(model.fModel.CreateParameters(&model.fTables).IsOK());
  EXPECT_EQ(model.fModel.GetNParameters(), 3);
  EXPECT_EQ(model.fModel.GetZPrimeZ(), matrix);
  EXPECT_TRUE(model.fModel.BuildModel().IsOK());
}

TEST(MCGLMModel, WithoutTablesThereAreNoParameters) {
  LinearModel model(TwoFactors().Effect({1}));
  EXPECT_EQ(model.fModel.CreateParameters(nullptr), MCStatus(309, false));
  EXPECT_FALSE(model.fModel.AreParamsCreated());
  model.Tabulate({{1, 0, 0, 0}});
  EXPECT_EQ(model.fModel.CreateParameters(&model.fTables), MCStatus(309, false)) << "it stays";
}

TEST(MCGLMModel, ACovariateThatIsNoneOfTheSettingsMakesARedundantColumn) {
  RegressionDesign design = RegressionDesign(0, {}, {1}).Effect({}, {1});
  const std::vector<int> others = {1, 999, 1};  // the effect is told against another list
  MCModelEffect effect(0, 3, &others);
  effect.AddCovariate(999);
  design.Settings().AddModelEffect(effect);
  LinearModel model(std::move(design));
  EXPECT_TRUE(model.Fit({{2, 1}, {4, 2}, {5, 3}, {4, 4}, {5, 5}}).IsOK());
  ExpectNear(model.fModel.GetParamEstimates(), {2.2, 0.6, 0});
  EXPECT_EQ(model.Swept(), (std::vector<bool>{true, true, false, false}));
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(std::vector<double>{2, 1}.data(),
                                                model.fModel.GetParameters()[2]),
            0.0);
}

TEST(MCGLMModel, AnUnknownCovariateBeatsAnInfiniteOneInTheSameColumn) {
  RegressionDesign design = RegressionDesign(0, {}, {1});
  const std::vector<int> others = {1, 2};
  MCModelEffect effect(0, 2, &others);
  effect.AddCovariate(1);
  effect.AddCovariate(2);
  design.Settings().AddModelEffect(effect);
  LinearModel model(std::move(design));
  ASSERT_TRUE(model.Accumulate({{1, kInf}}).IsOK());
  std::vector<double> row(3);
  EXPECT_TRUE(model.fModel.ExpandRow(row, std::vector<double>{1, kInf}.data()));
  EXPECT_THAT(row, ElementsAre(1.0, 0.0, 1.0));
}

TEST(MCGLMModel, AFactorThatIsNoneOfTheSettingsIsNeverFound) {
  RegressionDesign design = RegressionDesign(0, {{1, 2}}, {}).Effect({1});
  const std::vector<int> others = {7};
  MCModelEffect effect(1, 0, &others);
  effect.AddNewFactor(7, false);
  design.Settings().AddModelEffect(effect);
  LinearModel model(std::move(design));
  EXPECT_TRUE(model.Fit({{1, 0}, {3, 0}, {5, 1}, {9, 1}}).IsOK());
  EXPECT_EQ(model.fModel.GetNParameters(), 3) << "no column for the unknown factor";
  ExpectNear(model.fModel.GetParamEstimates(), {7, -5, 0});
  EXPECT_EQ(model.fModel.Score(std::vector<double>{0, 1}.data()), MCMV::gMissingValue);
}

// --- Limits and memory --------------------------------------------------------------------------

// One category for each row and no intercept: as many parameters as rows.
class ManyParameters {
public:
  explicit ManyParameters(int n)
      : fModel(RegressionDesign(0, {{1, n}}, {}).NoIntercept().Effect({1})) {
    Rows rows;
    for (int i = 0; i < n; ++i) rows.push_back({1.0, static_cast<double>(i)});
    fModel.Tabulate(rows);
  }

  LinearModel fModel;
};

TEST(MCGLMModelLimit, OneParameterTooManyIsRefusedWithCountAndLimit) {
  ManyParameters many(46340);
  MCStatus expected(305, false);
  expected.SetDiscreteDatum(0, 46340);
  expected.SetDiscreteDatum(1, 46339);
  EXPECT_EQ(many.fModel.fModel.CreateParameters(&many.fModel.fTables), expected);
  EXPECT_FALSE(many.fModel.fModel.AreParamsCreated());
  EXPECT_EQ(many.fModel.fModel.GetZPrimeZ(), nullptr);
  EXPECT_EQ(many.fModel.fModel.BuildModel(), expected) << "the error is stored";
}

// The matrix of 46340 rows would take 8.6 GB, so its allocation is the one that is made to fail:
// the first failure that CreateParameters() turns into a status instead of throwing.
TEST(MCGLMModelLimit, TheLargestModelPassesTheLimitAndAsksForItsMatrix) {
  std::size_t k = 0;
  {
    ManyParameters refused(46340);
    const std::size_t before = mctest::AllocationCount();
    EXPECT_TRUE(refused.fModel.fModel.CreateParameters(&refused.fModel.fTables).IsError());
    k = mctest::AllocationCount() - before - 50;
  }
  ManyParameters many(46339);
  MCStatus expected(305, false);
  expected.SetDiscreteDatum(0, 46339);
  for (bool isAbsorbed = false; !isAbsorbed; ++k) {
    const mctest::FailAllocation failure(k);
    try {
      EXPECT_EQ(many.fModel.fModel.CreateParameters(&many.fModel.fTables), expected);
      isAbsorbed = true;
    } catch (const std::bad_alloc&) {
      ASSERT_FALSE(many.fModel.fModel.AreParamsCreated());
    }
  }
  EXPECT_FALSE(many.fModel.fModel.AreParamsCreated());
}

TEST(MCGLMModelLimit, AMatrixWithoutMemoryIsTooLargeAndOtherExhaustionIsThrown) {
  int nAbsorbed = 0;
  for (std::size_t k = 1;; ++k) {
    LinearModel model(TwoFactors().Effect({1}).Effect({}, {3}));
    model.Tabulate({{1, 2, 1, 5}, {2, 0, 1, 6}});
    MCStatus status;
    bool thrown = false;
    bool fired = false;
    {
      const mctest::FailAllocation failure(k);
      try {
        status = model.fModel.CreateParameters(&model.fTables);
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      fired = failure.HasFired();
    }
    if (!fired) {
      EXPECT_TRUE(status.IsOK());
      break;
    }
    EXPECT_FALSE(model.fModel.AreParamsCreated()) << k;
    EXPECT_EQ(model.fModel.GetZPrimeZ(), nullptr) << k;
    if (thrown) continue;
    ++nAbsorbed;
    MCStatus expected(305, false);
    expected.SetDiscreteDatum(0, 4);
    EXPECT_EQ(status, expected) << k;
  }
  EXPECT_EQ(nAbsorbed, 2) << "the matrix and its triangle";
}

// --- Rows ---------------------------------------------------------------------------------------

TEST(MCGLMModelRow, ExpandsToOneColumnPerEffectAndTheDependent) {
  LinearModel model(TwoFactors().Effect({1}).Effect({1, 2}, {3}).Effect({}, {3, 3}));
  ASSERT_TRUE(model.Accumulate({{1, 2, 1, 5}, {2, 0, 1, 6}, {3, 2, 0, 7}}).IsOK());
  std::vector<double> row(8, 99.0);
  EXPECT_TRUE(model.fModel.ExpandRow(row, std::vector<double>{4, 2, 0, 3}.data()));
  EXPECT_THAT(row, ElementsAre(1, 0, 1, 0, 3, 0, 9, 4));
}

TEST(MCGLMModelRow, AnUnseenCombinationAnswersFalseWithTheOtherColumnsFilled) {
  LinearModel model(TwoFactors().Effect({1}).Effect({1, 2}).Effect({}, {3}));
  ASSERT_TRUE(model.Accumulate({{1, 2, 1, 5}, {2, 0, 1, 6}, {3, 2, 0, 7}}).IsOK());
  std::vector<double> row(8, 99.0);
  EXPECT_FALSE(model.fModel.ExpandRow(row, std::vector<double>{4, 0, 0, 8}.data()));
  EXPECT_THAT(row, ElementsAre(1, 1, 0, 0, 0, 0, 8, 4));
  EXPECT_FALSE(model.fModel.ExpandRow(row, std::vector<double>{4, 1, 0, 8}.data()));
  EXPECT_THAT(row, ElementsAre(1, 0, 0, 0, 0, 0, 8, 4));
}

TEST(MCGLMModelRow, KeepsTheSizeOfTheVectorItExpandsInto) {
  LinearModel model(TwoFactors().Effect({1}));
  ASSERT_TRUE(model.Accumulate({{1, 0, 0, 0}, {2, 1, 0, 0}}).IsOK());
  const std::vector<double> values = {7, 1, 0, 0};
  struct Case {
    std::size_t fSize;
    std::vector<double> fExpected;
  };
  // The last entry is written only where a column or the dependent falls on it.
  const Case cases[] = {{0, {}},        {1, {1}},          {2, {1, 99}},
                        {3, {1, 0, 1}}, {4, {1, 0, 1, 7}}, {6, {1, 0, 1, 7, 0, 99}}};
  for (const Case& c : cases) {
    std::vector<double> row(c.fSize, 99.0);
    EXPECT_TRUE(model.fModel.ExpandRow(row, values.data()));
    EXPECT_EQ(row, c.fExpected);
  }
}

TEST(MCGLMModelRow, NothingIsExpandedWithoutParametersOrFromANullRow) {
  LinearModel model(TwoFactors().Effect({1}));
  std::vector<double> row = {99, 99};
  EXPECT_FALSE(model.fModel.ExpandRow(row, std::vector<double>{1, 0, 0, 0}.data()));
  ASSERT_TRUE(model.Accumulate({{1, 0, 0, 0}}).IsOK());
  EXPECT_FALSE(model.fModel.ExpandRow(row, nullptr));
  EXPECT_THAT(row, ElementsAre(99, 99));
}

TEST(MCGLMModelRow, ADesignThatReadsNothingExpandsANullRow) {
  LinearModel model(RegressionDesign(0, {}, {}));
  ASSERT_TRUE(model.Fit({{1}, {3}}).IsOK());
  std::vector<double> row = {99};
  EXPECT_TRUE(model.fModel.ExpandRow(row, nullptr));
  EXPECT_THAT(row, ElementsAre(1.0));
  EXPECT_EQ(model.fModel.Score(nullptr), 2.0);
}

TEST(MCGLMModelRow, ScoresARowWithoutReadingItsDependent) {
  // The dependent stands behind the end of the scored row; the sanitizers watch.
  LinearModel model(RegressionDesign(2, {{0, 2}}, {1}).Effect({0}).Effect({}, {1}));
  ASSERT_TRUE(model.Fit({{0, 0, 1}, {0, 1, 3}, {1, 0, 5}, {1, 1, 7}}).IsOK());
  EXPECT_NEAR(model.fModel.Score(std::vector<double>{1, 3}.data()), 11.0, kTolerance);
  std::vector<double> row(4);
  EXPECT_TRUE(model.fModel.ExpandRow(row, std::vector<double>{1, 3}.data()));
  EXPECT_THAT(row, ElementsAre(1, 0, 1, 3));
}

TEST(MCGLMModelRow, AnUnseenLevelScoresAsTheMissingValue) {
  LinearModel model(RegressionDesign(0, {{1, 3}}, {}).Effect({1}));
  ASSERT_TRUE(model.Fit({{1, 0}, {3, 0}, {5, 2}, {9, 2}}).IsOK());
  EXPECT_NEAR(model.fModel.Score(std::vector<double>{0, 0}.data()), 2.0, kTolerance);
  EXPECT_NEAR(model.fModel.Score(std::vector<double>{0, 2}.data()), 7.0, kTolerance);
  for (const double level : {1.0, 3.0, -1.5, 1e300, kNaN, kInf}) {
    EXPECT_EQ(model.fModel.Score(std::vector<double>{0, level}.data()), MCMV::gMissingValue);
  }
}

TEST(MCGLMModelRow, ScoresNothingBeforeTheBuildAndFromANullRow) {
  LinearModel model(RegressionDesign(0, {}, {1}).Effect({}, {1}));
  ASSERT_TRUE(model.Accumulate({{2, 1}, {4, 2}}).IsOK());
  EXPECT_EQ(model.fModel.Score(std::vector<double>{0, 1}.data()), MCMV::gMissingValue);
  ASSERT_TRUE(model.fModel.BuildModel().IsOK());
  EXPECT_EQ(model.fModel.Score(nullptr), MCMV::gMissingValue);
  EXPECT_NEAR(model.fModel.Score(std::vector<double>{0, 5}.data()), 10.0, kTolerance);
}

TEST(MCGLMModelRow, TheGeneralFormTestsEachFactorOfAParameter) {
  LinearModel model(TwoFactors().Effect({1, 2}, {3, 3}));
  ASSERT_TRUE(model.Accumulate({{1, 2, 1, 5}}).IsOK());
  struct Case {
    double fA;
    double fB;
    double fX;
    double fValue;
  };
  const Case cases[] = {
      {2, 1, 5, 25},    {2, 1, -3, 9},      {2, 0, 5, 0},       {1, 1, 5, 0},
      {1.5, 1, 5, 25},  {2.4999, 1, 5, 25}, {2.5, 1, 5, 0},     {kNaN, 1, 5, 0},
      {1e300, 1, 5, 0}, {kInf, 1, 5, 0},    {2, 1, kInf, kInf}, {2, 0.75, 1, 1},
  };
  const MCRegrParameter& parameter = model.fModel.GetParameters()[1];
  for (const Case& c : cases) {
    const std::vector<double> row = {0, c.fA, c.fB, c.fX};
    EXPECT_EQ(model.fModel.ComputeDesignRowValue(row.data(), parameter), c.fValue)
        << c.fA << ' ' << c.fB << ' ' << c.fX;
  }
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(nullptr, MCRegrParameter()), 1.0);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(nullptr, MCRegrParameter()), 1.0);
}

TEST(MCGLMModelRow, TheGeneralFormAnswersZeroForAFactorOrCovariateItDoesNotKnow) {
  LinearModel model(TwoFactors().Effect({1}));
  ASSERT_TRUE(model.Accumulate({{1, 2, 1, 5}}).IsOK());
  const std::vector<double> row = {0, 2, 1, 5};
  MCRegrParameter unknownFactor;
  unknownFactor.AddFactor(77, 0, 0);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(row.data(), unknownFactor), 0.0);
  MCRegrParameter unknownCovariate;
  unknownCovariate.AddCovariate(2, 1);  // inside the lookup, but a factor
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(row.data(), unknownCovariate), 0.0);
  MCRegrParameter withoutCategory = model.fModel.GetParameters()[1];
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(row.data(), withoutCategory), 1.0);
  withoutCategory.GetCategories().clear();
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(row.data(), withoutCategory), 0.0);
}

TEST(MCGLMModelRow, OffsetsMapTheSettingsVariablesToPositionsOfTheRow) {
  LinearModel model(TwoFactors().Effect({1, 2}, {3}));
  model.fModel.SetOffsets({2, 0}, {1}, -1, -1, 3);
  EXPECT_THAT(model.fModel.GetFactorOffsets(), ElementsAre(2, 0));
  EXPECT_THAT(model.fModel.GetCovariateOffsets(), ElementsAre(1));
  MCRegrParameter parameter;
  parameter.AddFactor(1, 2, 0);
  parameter.AddFactor(2, 1, 0);
  parameter.AddCovariate(3, 2);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(std::vector<double>{1, 6, 2, 0}.data(), parameter),
            36.0);
  model.fModel.SetOffsets({2}, {}, -1, -1, 3);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(std::vector<double>{1, 6, 2, 0}.data(), parameter),
            0.0)
      << "lists that are too short leave variables unknown";
  model.fModel.SetOffsets({2, -1}, {1}, -1, -1, 3);
  const std::vector<double> inFrontOfTheRow = {1, 1, 6, 2, 0};
  EXPECT_EQ(model.fModel.ComputeDesignRowValue(inFrontOfTheRow.data() + 1, parameter), 0.0)
      << "and so do negative positions";
}

TEST(MCGLMModelRow, NewOffsetsHoldForLaterRows) {
  const std::vector<double> row = {2, 1, 1, 5, 7};
  RegressionDesign (*const designs[])() = {
      [] { return RegressionDesign(0, {}, {3}).Effect({}, {3}); },
      [] { return TwoFactors().Effect({1}).Effect({}, {3}); },
  };
  for (const auto& design : designs) {
    LinearModel model(design());
    ASSERT_TRUE(model.Accumulate({row}).IsOK());
    std::vector<double> expanded(static_cast<std::size_t>(model.fModel.GetNParameters()) + 1);
    model.fModel.SetOffsets(model.Settings().GetFactors(), {4}, -1, -1, 3);
    EXPECT_TRUE(model.fModel.ExpandRow(expanded, row.data()));
    EXPECT_EQ(expanded.back(), 5.0);
    EXPECT_EQ(expanded[expanded.size() - 2], 7.0);
    EXPECT_TRUE(model.fModel.UpdateZPrimeZ(row.data()));
    const MCCommonMath::MCSymMatrix& matrix = *model.fModel.GetZPrimeZ();
    const int last = matrix.GetNRows() - 1;
    EXPECT_EQ(matrix.GetElem(last, last), 2.0 * 2.0 + 5.0 * 5.0);
    EXPECT_EQ(matrix.GetElem(last - 1, last - 1), 5.0 * 5.0 + 7.0 * 7.0);
  }
}

TEST(MCGLMModelRow, IsAddedOnlyBetweenCreationAndBuild) {
  LinearModel model(RegressionDesign(0, {}, {}));
  const std::vector<double> row = {3};
  EXPECT_FALSE(model.fModel.UpdateZPrimeZ(row.data())) << "no parameters yet";
  ASSERT_TRUE(model.Accumulate({{3}}).IsOK());
  EXPECT_FALSE(model.fModel.UpdateZPrimeZ(nullptr));
  EXPECT_TRUE(model.fModel.UpdateZPrimeZ(row.data()));
  EXPECT_THAT(model.fModel.GetZPrimeZ()->AsVectorConst(), ElementsAre(2, 6, 18));
  ASSERT_TRUE(model.fModel.BuildModel().IsOK());
  EXPECT_FALSE(model.fModel.UpdateZPrimeZ(row.data())) << "built";
}

TEST(MCGLMModelRow, IsWeightedByBothWeightsOverTheTotal) {
  LinearModel model(RegressionDesign(0, {}, {}).FrequencyWeight(1).RegressionWeight(2));
  model.Tabulate({{3, 4, 1}});
  ASSERT_TRUE(model.fModel.CreateParameters(&model.fTables).IsOK());
  EXPECT_TRUE(model.fModel.UpdateZPrimeZ(std::vector<double>{3, 4, 0.5}.data()));
  EXPECT_THAT(model.fModel.GetZPrimeZ()->AsVectorConst(), ElementsAre(0.5, 1.5, 4.5));
}

TEST(MCGLMModelRow, CountsButAddsNothingWhereItsWeightIsNotAboveZero) {
  for (const double weight : {0.0, -1.0, kNaN}) {
    LinearModel model(RegressionDesign(0, {}, {}).FrequencyWeight(1));
    model.Tabulate({{3, 2}});
    ASSERT_TRUE(model.fModel.CreateParameters(&model.fTables).IsOK());
    EXPECT_TRUE(model.fModel.UpdateZPrimeZ(std::vector<double>{3, weight}.data()));
    EXPECT_THAT(model.fModel.GetZPrimeZ()->AsVectorConst(), ElementsAre(0, 0, 0));
    EXPECT_TRUE(model.fModel.BuildModel().IsOK()) << "a row was added";
    EXPECT_THAT(model.fModel.GetParamEstimates(), ElementsAre(0.0));
  }
}

TEST(MCGLMModelRow, AddsNothingBeforeTheTotalWeightIsKnown) {
  RegressionDesign design = RegressionDesign(0, {}, {});
  MCCancelInfo cancel(nullptr);
  MCFactorTables tables({}, {}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables.SetModelEffectFactors({{}}, {});
  tables.CreateParameterIndices();
  MCGLMModel model(design.Settings(), cancel);
  model.SetOffsets({}, {}, -1, -1, 0);
  ASSERT_TRUE(model.CreateParameters(&tables).IsOK());
  EXPECT_TRUE(model.UpdateZPrimeZ(std::vector<double>{3}.data()));
  EXPECT_THAT(model.GetZPrimeZ()->AsVectorConst(), ElementsAre(0, 0, 0));
  EXPECT_TRUE(model.BuildModel().IsOK());
}

TEST(MCGLMModelRow, AddsNothingUnderATotalWeightBelowZero) {
  for (const double total : {-1.0, -3.0, MCMV::gMissingValue}) {
    LinearModel model(RegressionDesign(0, {}, {}));
    ASSERT_TRUE(model.Accumulate({{3}}).IsOK());
    model.fModel.SetDepMeanAndTotalW(3.0, total);
    EXPECT_TRUE(model.fModel.UpdateZPrimeZ(std::vector<double>{5}.data()));
    ExpectNear(model.fModel.GetZPrimeZ()->AsVectorConst(), {1, 3, 9});
  }
}

TEST(MCGLMModelRow, KeepsTheWeightThatItCameWith) {
  LinearModel model(RegressionDesign(0, {}, {}));
  ASSERT_TRUE(model.Accumulate({{3}}).IsOK());
  model.fModel.SetDepMeanAndTotalW(3.0, 3.0);
  EXPECT_TRUE(model.fModel.UpdateZPrimeZ(std::vector<double>{6}.data()));
  model.fModel.SetDepMeanAndTotalW(3.0, 7.0);
  EXPECT_TRUE(model.fModel.UpdateZPrimeZ(std::vector<double>{4}.data()));
  // Rows 3, 6 and 4 with the weights 1, 1/3 and 1/7, whose sum is 31/21.
  ExpectNear(model.fModel.GetZPrimeZ()->AsVectorConst(), {31 / 21.0, 39 / 7.0, 163 / 7.0});
  ASSERT_TRUE(model.fModel.BuildModel().IsOK());
  ExpectNear(model.fModel.GetParamEstimates(), {117 / 31.0});
  ExpectNear(model.fModel.GetZPrimeZ()->AsVectorConst(), {-3 / 31.0, 0, 0});
}

TEST(MCGLMModelRow, ResidualsAreMultipliedByColumnAndWeight) {
  LinearModel model(RegressionDesign(0, {{1, 2}}, {}).FrequencyWeight(2).Effect({1}));
  ASSERT_TRUE(model.Accumulate({{1, 0, 1}, {4, 0, 1}, {6, 1, 2}}).IsOK());
  ASSERT_TRUE(model.fModel.BuildModel().IsOK());
  std::vector<double> out = {99, 99, 99, 99};
  model.fModel.GetDResiduals(out, std::vector<double>{4.5, 0, 2}.data());
  // The residual is 4.5 - 2.5 and the weight 2 / 4; the fourth entry is no parameter's.
  ExpectNear(out, {1, 1, 0, 99});
  std::vector<double> brief = {99};
  model.fModel.GetDResiduals(brief, std::vector<double>{4.5, 0, 2}.data());
  ExpectNear(brief, {1});
}

TEST(MCGLMModelRow, ResidualsAddUpAlikeWithAndWithoutTheirProducts) {
  const Rows rows = {{1, 0, 0, 2}, {4, 0, 1, 1}, {6, 1, 0, 3}, {2, 1, 1, 5}, {7, 2, 1, 4}};
  LinearModel with(TwoFactors().Effect({1}).Effect({}, {3}));
  LinearModel without(TwoFactors().Effect({1}).Effect({}, {3}));
  ASSERT_TRUE(with.Fit(rows).IsOK());
  ASSERT_TRUE(without.Accumulate(rows).IsOK());
  ASSERT_TRUE(without.fModel.BuildModel().IsOK());
  for (const std::vector<double>& row : rows) without.fModel.AddResidual(row.data());
  ASSERT_TRUE(without.fModel.FinishErrors().IsOK());
  EXPECT_EQ(with.fModel.GetRootMeanSquareError(), without.fModel.GetRootMeanSquareError());
  EXPECT_EQ(with.fModel.GetMultipleRSquare(), without.fModel.GetMultipleRSquare());
}

TEST(MCGLMModelRow, ResidualsOfManyRowsKeepTheirOrderHoweverTheyAreTaken) {
  Rows rows;
  for (int i = 0; i < 37; ++i) rows.push_back({1.0 / (i + 3), 0.1 * i, 0.7 * (i % 5) - 1.3});
  for (std::size_t productsEach : {1U, 3U, 5U, 40U}) {
    LinearModel all(RegressionDesign(0, {}, {1, 2}).Effect({}, {1}).Effect({}, {2}));
    LinearModel some(RegressionDesign(0, {}, {1, 2}).Effect({}, {1}).Effect({}, {2}));
    ASSERT_TRUE(all.Fit(rows).IsOK());
    ASSERT_TRUE(some.Accumulate(rows).IsOK());
    ASSERT_TRUE(some.fModel.BuildModel().IsOK());
    std::vector<double> out(3);
    for (std::size_t k = 0; k < rows.size(); ++k) {
      if (k % productsEach == productsEach - 1) {
        some.fModel.GetDResiduals(out, rows[k].data());
      } else {
        some.fModel.AddResidual(rows[k].data());
      }
    }
    ASSERT_TRUE(some.fModel.FinishErrors().IsOK());
    EXPECT_EQ(all.fModel.GetRootMeanSquareError(), some.fModel.GetRootMeanSquareError());
    EXPECT_EQ(all.fModel.GetMultipleRSquare(), some.fModel.GetMultipleRSquare());
  }
}

TEST(MCGLMModelRow, ResidualsAreMeasuredAgainstTheMeanThatHeldWhenTheyCame) {
  LinearModel model(RegressionDesign(0, {}, {}));
  ASSERT_TRUE(model.Accumulate({{1}, {3}}).IsOK());
  ASSERT_TRUE(model.fModel.BuildModel().IsOK());
  model.fModel.AddResidual(std::vector<double>{6}.data());  // off the estimate and the mean by 4
  model.fModel.SetDepMeanAndTotalW(100.0, 2.0);
  ASSERT_TRUE(model.fModel.FinishErrors().IsOK());
  EXPECT_EQ(model.fModel.GetMultipleRSquare(), 0.0) << "no better than the mean of 2";
}

TEST(MCGLMModelRow, ResidualsNeedABuiltModelARowAndNoCancel) {
  ScriptedCancel never;
  LinearModel model(RegressionDesign(0, {}, {}).CancelledBy(never));
  std::vector<double> out = {99};
  ASSERT_TRUE(model.Accumulate({{1}, {3}}).IsOK());
  model.fModel.GetDResiduals(out, std::vector<double>{5}.data());
  model.fModel.AddResidual(std::vector<double>{5}.data());
  ASSERT_TRUE(model.fModel.BuildModel().IsOK());
  model.fModel.GetDResiduals(out, nullptr);
  model.fModel.AddResidual(nullptr);
  const int polls = never.fPolls;
  model.fCancel.SetCancel();
  model.fModel.GetDResiduals(out, std::vector<double>{5}.data());
  model.fModel.AddResidual(std::vector<double>{5}.data());
  EXPECT_EQ(never.fPolls, polls);
  EXPECT_THAT(out, ElementsAre(99));
  EXPECT_EQ(model.fModel.FinishErrors(), MCStatus(308, false)) << "no row was taken";
}

TEST(MCGLMModelRow, AllocatesNothing) {
  struct Case {
    const char* fName;
    RegressionDesign fDesign;
  };
  Case cases[] = {
      {"dense", RegressionDesign(0, {}, {3}).Effect({}, {3}).Effect({}, {3, 3})},
      {"factors", TwoFactors().Effect({1}).Effect({1, 2}).Effect({}, {3})},
      {"sparse", RegressionDesign(0, {{1, 100}}, {3}).Effect({1}).Effect({}, {3})},
  };
  Rows rows;
  for (int i = 0; i < 600; ++i) {
    rows.push_back({i * 0.5, static_cast<double>(i % 100), 0.0, i * i * 0.25});
  }
  rows[1][1] = 0;
  for (Case& c : cases) {
    LinearModel model(std::move(c.fDesign));
    ASSERT_TRUE(model.Accumulate(rows).IsOK());  // the first row makes room for the block
    std::vector<double> out(static_cast<std::size_t>(model.fModel.GetNParameters()));
    const std::size_t before = mctest::AllocationCount();
    for (const std::vector<double>& row : rows) model.fModel.UpdateZPrimeZ(row.data());
    EXPECT_EQ(mctest::AllocationCount(), before) << c.fName;
    ASSERT_TRUE(model.fModel.BuildModel().IsOK());
    const std::size_t built = mctest::AllocationCount();
    for (const std::vector<double>& row : rows) {
      model.fModel.GetDResiduals(out, row.data());
      model.fModel.AddResidual(row.data());
      model.fModel.ExpandRow(out, row.data());
      model.fModel.Score(row.data());
    }
    EXPECT_EQ(mctest::AllocationCount(), built) << c.fName;
  }
}

// --- Build --------------------------------------------------------------------------------------

TEST(MCGLMModelBuild, WithoutRowsIsNotProcessedAndStaysSo) {
  LinearModel model(RegressionDesign(0, {}, {}));
  model.Tabulate({{1}});
  ASSERT_TRUE(model.fModel.CreateParameters(&model.fTables).IsOK());
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(309, false));
  EXPECT_FALSE(model.fModel.IsModelBuilt());
  model.fModel.UpdateZPrimeZ(std::vector<double>{1}.data());
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(309, false));
}

TEST(MCGLMModelBuild, IsRefusedASecondTime) {
  LinearModel model(RegressionDesign(0, {}, {}));
  ASSERT_TRUE(model.Fit({{1}, {3}}).IsOK());
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(310, false));
  EXPECT_TRUE(model.fModel.IsModelBuilt());
  EXPECT_EQ(model.fModel.FinishErrors(), MCStatus(310, false)) << "the error is stored";
}

TEST(MCGLMModelBuild, ALackOfRowsGoesBeforeACancel) {
  LinearModel model(RegressionDesign(0, {}, {}));
  model.Tabulate({{1}});
  ASSERT_TRUE(model.fModel.CreateParameters(&model.fTables).IsOK());
  model.fCancel.SetCancel();
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(309, false));
}

TEST(MCGLMModelBuild, ACancelThatStandsAtTheStartSweepsNothing) {
  LinearModel model(RegressionDesign(0, {}, {}));
  ASSERT_TRUE(model.Accumulate({{1}, {3}}).IsOK());
  model.fCancel.SetCancel();
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(1, false));
  EXPECT_FALSE(model.fModel.IsModelBuilt());
  EXPECT_THAT(model.fModel.GetParamEstimates(), IsEmpty());
}

// Polls of a build after two of the list (intercept, one effect): the start, one before each of
// the columns, the end.
TEST(MCGLMModelBuild, ACancelDuringTheSweepLeavesTheRestRedundantAndStillEndsTheBuild) {
  constexpr int kBefore = 3;
  const Rows rows = {{1, 0}, {3, 0}, {5, 1}, {9, 1}, {4, 2}};
  for (const auto duration : {ScriptedCancel::kOnce, ScriptedCancel::kForGood}) {
    for (int swept = 0; swept < 4; ++swept) {
      ScriptedCancel query(kBefore + 1 + swept, duration);
      LinearModel model(RegressionDesign(0, {{1, 3}}, {})
                            .NoIntercept()
                            .Effect({1})
                            .Effect({})
                            .CancelledBy(query));
      ASSERT_TRUE(model.Accumulate(rows).IsOK());
      const MCStatus status = model.fModel.BuildModel();
      EXPECT_EQ(status.IsError(), duration == ScriptedCancel::kForGood);
      EXPECT_EQ(status.GetErrorCode(), status.IsError() ? 1 : 0);
      EXPECT_EQ(query.fPolls, kBefore + swept + 2);
      EXPECT_TRUE(model.fModel.IsModelBuilt());
      const std::vector<double> means = {2, 7, 4, 0};
      for (std::size_t j = 0; j < 4; ++j) {
        const bool isSwept = j < static_cast<std::size_t>(swept);
        EXPECT_EQ(model.Swept()[j], isSwept);
        EXPECT_NEAR(model.fModel.GetParamEstimates()[j], isSwept ? means[j] : 0.0, kTolerance);
      }
    }
  }
}

TEST(MCGLMModelBuild, ManyColumnsAreSweptAsOneByOneWhereverACancelStops) {
  // More columns than any group of pivots, on a full positive definite matrix.
  constexpr int kColumns = 21;
  Rows rows;
  // 64, so that the matrix shown has the weights that are swept, which are powers of two.
  for (int i = 0; i < 64; ++i) {
    std::vector<double> row = {std::sin(i * 0.7)};
    for (int j = 0; j < kColumns; ++j) row.push_back(std::cos(i * 0.37 * (j + 1)) + (i == j));
    rows.push_back(row);
  }
  for (int swept = 0; swept <= kColumns; ++swept) {
    std::vector<int> covariates;
    for (int j = 0; j < kColumns; ++j) covariates.push_back(j + 1);
    RegressionDesign design = RegressionDesign(0, {}, covariates).NoIntercept();
    for (const int covariate : covariates) design = std::move(design).Effect({}, {covariate});
    LinearModel model(std::move(design));
    ASSERT_TRUE(model.Accumulate(rows).IsOK());

    MCCommonMath::MCSymMatrix expected = *model.fModel.GetZPrimeZ();
    std::vector<double> scale;
    expected.GetDiagonal(scale);
    MCCommonMath::MCBitSet pivots(kColumns + 1);
    for (int k = 0; k < swept; ++k) expected.Sweep(k, 1e-12, scale, pivots, true);
    std::vector<double> estimates;
    ASSERT_TRUE(expected.GetRegCoeffs(estimates, pivots));

    ScriptedCancel sweepQuery(swept < kColumns ? swept + 2 : 0, ScriptedCancel::kOnce);
    model.fCancel.SetCancelPtr(&sweepQuery);
    EXPECT_TRUE(model.fModel.BuildModel().IsOK());
    EXPECT_EQ(sweepQuery.fPolls, (swept < kColumns ? swept + 1 : swept) + 2);
    EXPECT_EQ(model.fModel.GetParamEstimates(), estimates);
    EXPECT_TRUE(model.fModel.GetRedundancyInfo() == pivots);
  }
}

TEST(MCGLMModelBuild, ACancelAtTheEndIsAnErrorOfABuiltModel) {
  ScriptedCancel query(4);  // intercept, start, one column, end
  LinearModel model(RegressionDesign(0, {}, {}).CancelledBy(query));
  ASSERT_TRUE(model.Accumulate({{1}, {3}}).IsOK());
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(1, false));
  EXPECT_TRUE(model.fModel.IsModelBuilt());
  EXPECT_THAT(model.fModel.GetParamEstimates(), ElementsAre(2.0));
}

// Polls of the list: the intercept, then one before each effect.
TEST(MCGLMModelBuild, AListThatACancelCutsShortIsNotUsed) {
  const Rows rows = {{1, 0, 0, 5}, {2, 1, 1, 6}, {3, 2, 0, 7}};
  for (int poll = 1; poll <= 3; ++poll) {
    ScriptedCancel query(poll, ScriptedCancel::kOnce);
    LinearModel model(TwoFactors().Effect({1}).Effect({}, {3}).CancelledBy(query));
    model.Tabulate(rows);
    EXPECT_EQ(model.fModel.CreateParameters(&model.fTables), MCStatus(1, false)) << poll;
    EXPECT_FALSE(model.fModel.AreParamsCreated());
    EXPECT_EQ(model.fModel.GetZPrimeZ(), nullptr);
    EXPECT_THAT(model.fModel.GetParameters(), IsEmpty());
    EXPECT_FALSE(model.fModel.UpdateZPrimeZ(rows[0].data()));
    EXPECT_EQ(model.fModel.BuildModel(), MCStatus(1, false)) << "the error is stored";
  }
}

TEST(MCGLMModelBuild, ASkippedInterceptIsFoundOutEvenWhereTheListIsLongEnough) {
  // The unknown factor has no parameters, so the effects, one out of step, fill the list.
  ScriptedCancel query(1, ScriptedCancel::kOnce);
  RegressionDesign design = RegressionDesign(0, {{1, 2}}, {}).Effect({1}).CancelledBy(query);
  const std::vector<int> others = {7};
  MCModelEffect effect(1, 0, &others);
  effect.AddNewFactor(7, false);
  design.Settings().AddModelEffect(effect);
  LinearModel model(std::move(design));
  model.Tabulate({{1, 0}, {2, 1}});
  EXPECT_EQ(model.fModel.CreateParameters(&model.fTables), MCStatus(1, false));
}

TEST(MCGLMModelBuild, SurvivesTablesThatAreNumberedAnewBehindItsBack) {
  LinearModel model(RegressionDesign(0, {{1, 50}}, {}).Effect({1}));
  model.Tabulate({{1, 0}, {2, 1}});
  ASSERT_TRUE(model.fModel.CreateParameters(&model.fTables).IsOK());
  Rows rows;
  for (int i = 0; i < 50; ++i) rows.push_back({1.0, static_cast<double>(i)});
  model.Tabulate(rows);
  std::vector<double> out(3);
  for (const std::vector<double>& row : rows) {
    EXPECT_TRUE(model.fModel.UpdateZPrimeZ(row.data()));
    model.fModel.ExpandRow(out, row.data());
  }
  EXPECT_TRUE(model.fModel.BuildModel().IsOK());
  for (const std::vector<double>& row : rows) model.fModel.GetDResiduals(out, row.data());
  EXPECT_TRUE(model.fModel.FinishErrors().IsOK());
}

TEST(MCGLMModelBuild, ATotalWeightThatIsNotAboveZeroHasNoUsableWeight) {
  for (const double total : {0.0, -1.0, kNaN, MCMV::gMissingValue}) {
    LinearModel model(RegressionDesign(0, {}, {}));
    ASSERT_TRUE(model.Accumulate({{1}, {3}}).IsOK());
    ASSERT_TRUE(model.fModel.BuildModel().IsOK());
    std::vector<double> out(1);
    model.fModel.GetDResiduals(out, std::vector<double>{1}.data());
    model.fModel.SetDepMeanAndTotalW(2.0, total);
    EXPECT_EQ(model.fModel.FinishErrors(), MCStatus(308, false));
    EXPECT_EQ(model.fModel.GetRootMeanSquareError(), MCMV::gMissingValue);
    EXPECT_EQ(model.fModel.GetMultipleRSquare(), 0.0) << "the sums themselves are there";
  }
}

TEST(MCGLMModelBuild, RowsOfWeightZeroAreNoUsableWeight) {
  LinearModel model(RegressionDesign(0, {}, {}).FrequencyWeight(1));
  ASSERT_TRUE(model.Accumulate({{1, 1}, {3, 1}}).IsOK());
  ASSERT_TRUE(model.fModel.BuildModel().IsOK());
  model.fModel.AddResidual(std::vector<double>{1, 0}.data());
  EXPECT_EQ(model.fModel.FinishErrors(), MCStatus(308, false));
  EXPECT_EQ(model.fModel.GetRootMeanSquareError(), 0.0);
  EXPECT_EQ(model.fModel.GetMultipleRSquare(), MCMV::gMissingValue);
}

TEST(MCGLMModelBuild, AClearedMatrixTakesItsRowsAlong) {
  LinearModel model(RegressionDesign(0, {}, {}));
  model.fModel.ClearZPrimeZMatrix();  // harmless
  ASSERT_TRUE(model.Accumulate({{1}, {3}}).IsOK());
  model.fModel.ClearZPrimeZMatrix();
  EXPECT_EQ(model.fModel.GetZPrimeZ(), nullptr);
  EXPECT_FALSE(model.fModel.UpdateZPrimeZ(std::vector<double>{1}.data()));
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(309, false));
}

TEST(MCGLMModelBuild, ABuiltModelScoresWithoutItsMatrix) {
  LinearModel model(RegressionDesign(0, {}, {}));
  ASSERT_TRUE(model.Fit({{1}, {3}}).IsOK());
  model.fModel.ClearZPrimeZMatrix();
  EXPECT_EQ(model.fModel.Score(std::vector<double>{0}.data()), 2.0);
  EXPECT_EQ(model.fModel.BuildModel(), MCStatus(310, false));
}

TEST(MCGLMModelBuild, WhereMemoryRunsOutItCanBeBuiltAgain) {
  const Rows rows = {{1, 0, 0, 2}, {4, 0, 1, 1}, {6, 1, 0, 3}, {2, 1, 1, 5}, {7, 2, 1, 4}};
  LinearModel undisturbed(TwoFactors().Effect({1}).Effect({}, {3}));
  ASSERT_TRUE(undisturbed.Fit(rows).IsOK());
  bool fired = true;
  for (std::size_t k = 1; fired; ++k) {
    LinearModel model(TwoFactors().Effect({1}).Effect({}, {3}));
    ASSERT_TRUE(model.Accumulate(rows).IsOK());
    {
      const mctest::FailAllocation failure(k);
      try {
        static_cast<void>(model.fModel.BuildModel());
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(failure.HasFired());
      }
      fired = failure.HasFired();
    }
    if (!fired) break;
    EXPECT_FALSE(model.fModel.IsModelBuilt()) << k;
    EXPECT_THAT(model.fModel.GetParamEstimates(), IsEmpty()) << k;
    EXPECT_EQ(model.Swept(), std::vector<bool>{false}) << k;
    EXPECT_TRUE(model.fModel.BuildModel().IsOK()) << k;
    EXPECT_EQ(model.fModel.GetParamEstimates(), undisturbed.fModel.GetParamEstimates()) << k;
  }
}

TEST(MCGLMModelBuild, InfiniteAndUndefinedValuesEnterAsTheyAre) {
  for (const double x : {kInf, -kInf, kNaN}) {
    LinearModel model(TwoFactors().Effect({1}).Effect({}, {3}).Effect({1}, {3, 3}));
    EXPECT_TRUE(model.Fit({{1, 0, 0, 2}, {4, 0, 1, x}, {6, 1, 0, 3}, {2, 1, 1, 5}}).IsOK());
    EXPECT_EQ(model.fModel.GetRedundancyInfo().Size(), 7);
  }
}

// --- Display ------------------------------------------------------------------------------------

TEST(MCGLMModelDisplay, ShowsAFreshModelWithoutMatrix) {
  LinearModel model(TwoFactors().Effect({1}));
  EXPECT_EQ(mctest::DisplayOf(model.fModel),
            "\nMCGLMModel display start"
            "\nCovariate offsets: (size = 0)\n"
            "\nFactor Tables pointer is non-zero = false"
            "\nVector of first parameter indices (size = 0)\n"
            "\nVector of numbers of parameters for each effect (size = 0)\n"
            "\nZPrimeZMatrix pointer is 0"
            "\nRecords added to matrix = 0"
            "\nRedundancy indicators"
            "\nMCBitSet display start"
            "\nfbVec (size = 1)"
            "\n false"
            "\nMCBitSet display end"
            "\nParameter estimates (size = 0)\n"
            "\nMultipleRSquare = miss"
            "\nRootMeanSquareError = miss"
            "\nMCGLMModel display end");
}

TEST(MCGLMModelDisplay, ShowsMatrixAndResultsOfABuiltModel) {
  LinearModel model(TwoFactors().Effect({1}).Effect({}, {3}));
  ASSERT_TRUE(model.Fit({{1, 0, 0, 0}, {2, 0, 0, 1}, {5, 2, 0, 0}, {6, 2, 0, 1}}).IsOK());
  EXPECT_EQ(mctest::DisplayOf(model.fModel),
            "\nMCGLMModel display start"
            "\nCovariate offsets: (size = 1)\n 3"
            "\nFactor Tables pointer is non-zero = true"
            "\nVector of first parameter indices (size = 2)\n 1 3"
            "\nVector of numbers of parameters for each effect (size = 2)\n 2 1"
            "\n\nZPrimeZMatrix:" +
                mctest::DisplayOf(*model.fModel.GetZPrimeZ()) +
                "\nRecords added to matrix = 4"
                "\nRedundancy indicators"
                "\nMCBitSet display start"
                "\nfbVec (size = 5)"
                "\n true true false true false"
                "\nMCBitSet display end"
                "\nParameter estimates (size = 4)"
                "\n 5 -4 0 1"
                "\nMultipleRSquare = 1"
                "\nRootMeanSquareError = 0"
                "\nMCGLMModel display end");
}

TEST(MCGLMModelDisplay, ShowsRowsThatWereHeldBack) {
  LinearModel model(RegressionDesign(0, {}, {}));
  ASSERT_TRUE(model.Accumulate({{3}}).IsOK());
  EXPECT_THAT(mctest::DisplayOf(model.fModel), testing::HasSubstr("(1,1) 9"));
}

}  // namespace
