// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogmodel.h"
#include "support/countingallocator.h"
#include "support/logisticmodel.h"
#include "support/scriptedcancel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace {
using MCCommon::MCStatus;
using mctest::BitsOf;
using mctest::LogisticDesign;
using mctest::LogisticModel;
using mctest::Rows;
using mctest::ScriptedCancel;
using testing::ElementsAre;
using testing::IsEmpty;

// Dependent at position 0, factor a of three categories at 1, b of two at 2, covariate x at 3.
LogisticDesign TwoFactors() {
  return LogisticDesign(0, {{1, 3}, {2, 2}}, {3}).Categories(3);
}

const Rows kRows = {{0, 2, 1, 5}, {1, 0, 1, 6}, {2, 2, 0, 7}, {1, 2, 1, 8}};

MCStatus TooLarge(std::int64_t nParameters, long limit) {
  MCStatus status(305, false);
  status.SetDiscreteDatum(0, nParameters);
  status.SetDiscreteDatum(1, limit);
  return status;
}

Rows RowsOfCategories(const std::vector<int>& categories) {
  Rows rows;
  for (const int category : categories) rows.push_back({static_cast<double>(category)});
  return rows;
}

// --- Categories ---------------------------------------------------------------------------------

struct ReferenceCase {
  const char* fName;
  std::vector<int> fSeen;
  int fNCategories;
  int fWanted;
  std::vector<int> fCategories;
  std::vector<int> fLocalInds;
  bool fWarns;
};

void PrintTo(const ReferenceCase& c, std::ostream* out) {
  *out << c.fName;
}

const ReferenceCase kReferences[] = {
    {"lastByDefault", {0, 1, 2}, 3, -1, {0, 1, 2}, {0, 1, 2}, false},
    {"lastSeenByDefault", {0, 1}, 4, -1, {0, 1}, {0, 1, -1, -1}, false},
    {"first", {0, 1, 2}, 3, -2, {1, 2, 0}, {2, 0, 1}, false},
    {"firstSeen", {2, 3}, 4, -2, {3, 2}, {-1, -1, 1, 0}, false},
    {"named", {0, 1, 3}, 4, 1, {0, 3, 1}, {0, 2, -1, 1}, false},
    {"namedAndLast", {0, 1, 3}, 4, 3, {0, 1, 3}, {0, 1, -1, 2}, false},
    {"namedButUnseen", {0, 1, 3}, 6, 5, {0, 1, 3}, {0, 1, -1, 2, -1, -1}, true},
    {"namedBetweenButUnseen", {0, 1, 3}, 4, 2, {0, 1, 3}, {0, 1, -1, 2}, true},
    {"binary", {0, 1}, 2, 0, {1, 0}, {1, 0}, false},
};

class MCLogModelReference : public testing::TestWithParam<ReferenceCase> {};

TEST_P(MCLogModelReference, IsTakenFromTheCategoriesSeen) {
  const ReferenceCase& c = GetParam();
  LogisticModel model(LogisticDesign(0, {}, {}).Categories(c.fNCategories, c.fWanted));
  model.Tabulate(RowsOfCategories(c.fSeen));
  const MCStatus expected = c.fWarns ? MCStatus(319, true) : MCStatus();
  EXPECT_EQ(model.fModel.SetDepCatInfo(&model.fTables), expected);
  EXPECT_EQ(model.fModel.GetStatus(), expected);
  EXPECT_EQ(model.fModel.GetDependCategories(), c.fCategories);
  EXPECT_EQ(model.fModel.GetDepCatLocalInds(), c.fLocalInds);
  EXPECT_EQ(model.fModel.GetDependentNCategs(), static_cast<int>(c.fSeen.size()));
  EXPECT_EQ(model.fModel.GetDependentRefCateg(), c.fCategories.back());
  EXPECT_EQ(model.fModel.GetFactorTables(), &model.fTables);
  EXPECT_EQ(model.fModel.CreateParameters(), expected) << "the status is the stored one";
  EXPECT_TRUE(model.fModel.AreParamsCreated());
}

INSTANTIATE_TEST_SUITE_P(Requests, MCLogModelReference, testing::ValuesIn(kReferences),
                         [](const auto& test) { return std::string(test.param.fName); });

TEST(MCLogModelCategories, ComeWithTheirCountsInTheirOrder) {
  LogisticModel model(LogisticDesign(0, {}, {}).Categories(3, 0).FrequencyWeight(1));
  model.Tabulate({{0, 1.5}, {1, 2}, {0, 4}, {2, 8}, {2, 16}, {2, 32}});
  EXPECT_TRUE(model.fModel.SetDepCatInfo(&model.fTables).IsOK());
  EXPECT_THAT(model.fModel.GetDependCategories(), ElementsAre(1, 2, 0));
  EXPECT_THAT(model.fModel.GetDependCatCounts(), ElementsAre(2.0, 56.0, 5.5));
  EXPECT_THAT(model.fModel.GetDependCatNCases(), ElementsAre(1.0, 3.0, 2.0));
}

TEST(MCLogModelCategories, WithoutWeightAboveZeroAreNotSeen) {
  LogisticModel model(LogisticDesign(0, {}, {}).Categories(4).FrequencyWeight(1));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  model.Tabulate({{0, 1}, {1, 0}, {2, 3}, {3, nan}});
  EXPECT_TRUE(model.fModel.SetDepCatInfo(&model.fTables).IsOK());
  EXPECT_THAT(model.fModel.GetDependCategories(), ElementsAre(0, 2));
  EXPECT_THAT(model.fModel.GetDepCatLocalInds(), ElementsAre(0, -1, 1, -1));
}

TEST(MCLogModelCategories, FewerThanTwoAreAnErrorThatStays) {
  const std::vector<int> few[] = {{}, {1}, {1, 1}};
  for (const std::vector<int>& seen : few) {
    LogisticModel model(LogisticDesign(0, {}, {}).Categories(3, 2));
    model.Tabulate(RowsOfCategories(seen));
    const MCStatus error(318, false);
    EXPECT_EQ(model.fModel.SetDepCatInfo(&model.fTables), error) << "and not the warning 319";
    EXPECT_EQ(model.fModel.GetDependentNCategs(), 0);
    EXPECT_EQ(model.fModel.GetDependentRefCateg(), 0);
    EXPECT_EQ(model.fModel.CreateParameters(), error);
    EXPECT_FALSE(model.fModel.AreParamsCreated());
    model.Tabulate(RowsOfCategories({0, 1, 2}));
    EXPECT_EQ(model.fModel.SetDepCatInfo(&model.fTables), error);
  }
}

TEST(MCLogModelCategories, CannotComeFromTablesThatDoNotCountThem) {
  LogisticModel model(TwoFactors());
  MCFactorTables plain({}, {}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  EXPECT_EQ(model.fModel.SetDepCatInfo(&plain), MCStatus(318, false));
  LogisticModel other(TwoFactors());
  EXPECT_EQ(other.fModel.SetDepCatInfo(nullptr), MCStatus(318, false));
  EXPECT_EQ(other.fModel.CreateParameters(), MCStatus(318, false));
}

TEST(MCLogModelCategories, AreTakenAnewByASecondCallWhichDropsTheParameters) {
  LogisticModel model(LogisticDesign(0, {}, {}).Categories(3, 2));
  ASSERT_EQ(model.Accumulate(RowsOfCategories({0, 1})), MCStatus(319, true));
  model.Tabulate(RowsOfCategories({2}));
  EXPECT_TRUE(model.fModel.SetDepCatInfo(&model.fTables).IsOK()) << "the warning no longer holds";
  EXPECT_THAT(model.fModel.GetDependCategories(), ElementsAre(0, 1, 2));
  EXPECT_THAT(model.fModel.GetDepCatLocalInds(), ElementsAre(0, 1, 2));
  EXPECT_FALSE(model.fModel.AreParamsCreated());
  EXPECT_EQ(model.fModel.GetXPrimeX(), nullptr);
  std::vector<double> probabilities;
  int predicted = 7;
  EXPECT_TRUE(model.fModel.Score(std::vector<double>{0}.data(), probabilities, predicted).IsOK());
  EXPECT_EQ(predicted, -1);
  EXPECT_TRUE(model.fModel.CreateParameters().IsOK());
  EXPECT_EQ(model.fModel.GetNParameters(), 2);
}

// --- Parameters ---------------------------------------------------------------------------------

TEST(MCLogModel, AFreshModelHasNothing) {
  LogisticModel model(TwoFactors().Effect({1}));
  const MCLogModel& fresh = model.fModel;
  EXPECT_FALSE(fresh.AreParamsCreated());
  EXPECT_FALSE(fresh.IsModelBuilt());
  EXPECT_TRUE(fresh.GetStatus().IsOK());
  EXPECT_EQ(fresh.GetFactorTables(), nullptr);
  EXPECT_EQ(fresh.GetXPrimeX(), nullptr);
  EXPECT_EQ(fresh.GetHessianGI(), nullptr);
  EXPECT_EQ(fresh.GetClassificationTable(), nullptr);
  EXPECT_EQ(fresh.GetNParameters(), 0);
  EXPECT_EQ(fresh.GetNNonRedParams(), 0);
  EXPECT_EQ(fresh.GetNBasicParameters(), 0);
  EXPECT_EQ(fresh.GetNBasicNonRed(), 0);
  EXPECT_EQ(fresh.GetBasicRedundInfo().Size(), 0);
  EXPECT_EQ(fresh.GetRedundancyInfo().Size(), 0);
  EXPECT_EQ(fresh.GetDependentRefCateg(), 0);
  EXPECT_EQ(MCLogModel::GetMaxNMatrixRows(), 46340);
}

TEST(MCLogModel, ListsOneBlockOfTheDesignForEachCategoryButTheReference) {
  LogisticModel model(TwoFactors().Categories(3, 1).Effect({}, {3}).Effect({1}).Effect({1, 2}));
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  const std::vector<int> effects = {-1, 0, 1, 1, 2, 2, 2};
  const std::vector<std::vector<int>> categories = {{}, {}, {0}, {2}, {0, 1}, {2, 0}, {2, 1}};
  const std::vector<MCRegrParameter>& all = model.fModel.GetParameters();
  const std::vector<MCRegrParameter>& basic = model.fModel.GetBasicParams();
  EXPECT_EQ(model.fModel.GetNBasicParameters(), 7);
  EXPECT_EQ(model.fModel.GetNParameters(), 14);
  ASSERT_EQ(basic.size(), 7u);
  ASSERT_EQ(all.size(), 14u);
  for (std::size_t i = 0; i < all.size(); ++i) {
    EXPECT_EQ(all[i].GetTargetCategory(), i < 7 ? 0 : 2) << "the reference is nobody's target";
    EXPECT_EQ(all[i].GetEffectIndex(), effects[i % 7]) << i;
    EXPECT_EQ(all[i].GetCategories(), categories[i % 7]) << i;
  }
  EXPECT_TRUE(std::equal(basic.begin(), basic.end(), all.begin())) << "the first block";
  EXPECT_EQ(model.fModel.GetXPrimeX()->GetNRows(), 7);
  EXPECT_THAT(model.fModel.GetParamEstimates(), testing::ElementsAreArray(std::vector<double>(14)));
  EXPECT_EQ(model.fModel.GetClassificationTable()->GetNRows(), 3);
  EXPECT_EQ(model.fModel.GetClassificationTable()->GetNCols(), 3);
}

TEST(MCLogModel, OfTwoCategoriesHasASingleBlock) {
  LogisticModel model(LogisticDesign(0, {{1, 3}}, {}).Categories(2).Effect({1}));
  ASSERT_TRUE(model.Prepare({{0, 0}, {1, 1}, {1, 2}}).IsOK());
  EXPECT_EQ(model.fModel.GetNParameters(), 4);
  EXPECT_EQ(model.fModel.GetParameters(), model.fModel.GetBasicParams());
}

TEST(MCLogModel, MakesItsParametersAnewAtASecondCall) {
  LogisticModel model(TwoFactors().Effect({1}));
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  ASSERT_GT(model.fModel.GetNNonRedParams(), 0);
  EXPECT_TRUE(model.fModel.CreateParameters().IsOK());
  EXPECT_EQ(model.fModel.GetNParameters(), 6);
  EXPECT_EQ(model.fModel.GetNBasicParameters(), 3);
  EXPECT_EQ(model.fModel.GetNNonRedParams(), 0);
  EXPECT_EQ(model.fModel.GetXPrimeX()->AsVectorConst(), std::vector<double>(6));
  int first = -7;
  int count = -7;
  EXPECT_FALSE(model.fModel.GetParamsForEffect(2, first, count)) << "effects aren't listed twice";
  EXPECT_EQ(model.fModel.IdentifyRedundancy(), MCStatus(309, false)) << "there is no row";
}

TEST(MCLogModel, NeedsCategoriesForItsParameters) {
  LogisticModel model(TwoFactors().Effect({1}));
  EXPECT_EQ(model.fModel.CreateParameters(), MCStatus(318, false));
  EXPECT_EQ(model.fModel.GetStatus(), MCStatus(318, false));
  EXPECT_EQ(model.fModel.GetXPrimeX(), nullptr);
}

TEST(MCLogModel, TellsTheBasicParametersOfEachEffect) {
  struct Case {
    bool fIntercept;
    int fEffect;
    bool fFound;
    int fFirst;
    int fCount;
  };
  const Case cases[] = {
      {true, 0, true, 0, 1},           {true, 1, true, 1, 2},
      {true, 2, true, 3, 1},           {true, 3, false, -7, -7},
      {true, -1, false, -7, -7},       {false, 0, true, 0, 2},
      {false, 1, true, 2, 1},          {false, 2, false, -7, -7},
      {false, -1, false, -7, -7},      {true, std::numeric_limits<int>::min(), false, -7, -7},
      {false, 1 << 30, false, -7, -7},
  };
  for (const Case& c : cases) {
    LogisticDesign design = TwoFactors().Effect({1}).Effect({}, {3});
    design.Settings().SetInterceptUse(c.fIntercept);
    LogisticModel model(std::move(design));
    ASSERT_TRUE(model.Prepare(kRows).IsOK());
    int first = -7;
    int count = -7;
    EXPECT_EQ(model.fModel.GetParamsForEffect(c.fEffect, first, count), c.fFound) << c.fEffect;
    EXPECT_EQ(first, c.fFirst) << c.fEffect;
    EXPECT_EQ(count, c.fCount) << c.fEffect;
  }
}

TEST(MCLogModel, ListsNoParameterForAFactorThatIsNoneOfTheSettings) {
  LogisticDesign design = TwoFactors().Effect({1});
  const std::vector<int> others = {7};
  MCModelEffect effect(1, 0, &others);
  effect.AddNewFactor(7, false);
  design.Settings().AddModelEffect(effect);
  LogisticModel model(std::move(design));
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  EXPECT_EQ(model.fModel.GetNBasicParameters(), 3);
  EXPECT_FALSE(model.fModel.UpdateXPrimeX(kRows[0].data())) << "its combination is never found";
  std::vector<double> probabilities;
  int predicted = 7;
  EXPECT_TRUE(model.fModel.Score(kRows[0].data(), probabilities, predicted).IsOK());
  EXPECT_EQ(predicted, -1);
}

// --- Limits, cancels, memory --------------------------------------------------------------------

// One column for each of n levels, and k categories.
class ManyParameters {
public:
  ManyParameters(int n, int k)
      : fModel(LogisticDesign(0, {{1, n}}, {}).NoIntercept().Categories(k).Effect({1})) {
    Rows rows;
    for (int i = 0; i < std::max(n, k); ++i) {
      rows.push_back({static_cast<double>(i % k), static_cast<double>(i % n)});
    }
    fModel.Tabulate(rows);
    static_cast<void>(fModel.fModel.SetDepCatInfo(&fModel.fTables));
  }

  LogisticModel fModel;
};

TEST(MCLogModelLimit, OneParameterTooManyIsRefusedWithCountAndLimit) {
  ManyParameters many(3, 15448);
  const MCStatus expected = TooLarge(46341, 46340);
  EXPECT_EQ(many.fModel.fModel.CreateParameters(), expected);
  EXPECT_FALSE(many.fModel.fModel.AreParamsCreated());
  EXPECT_EQ(many.fModel.fModel.GetXPrimeX(), nullptr);
  EXPECT_EQ(many.fModel.fModel.GetNParameters(), 0);
  EXPECT_EQ(many.fModel.fModel.GetStatus(), expected) << "the error is stored";
  EXPECT_EQ(many.fModel.fModel.CreateParameters(), expected);
}

TEST(MCLogModelLimit, ExactlyAsManyPass) {
  ManyParameters many(2317, 21);
  EXPECT_TRUE(many.fModel.fModel.CreateParameters().IsOK());
  EXPECT_EQ(many.fModel.fModel.GetNParameters(), 46340);
  EXPECT_TRUE(many.fModel.fModel.AreParamsCreated());
}

TEST(MCLogModelLimit, ACountThatNoIntHoldsIsTold) {
  ManyParameters many(65536, 65537);
  EXPECT_EQ(many.fModel.fModel.CreateParameters(), TooLarge(4294967296, 46340));
  EXPECT_EQ(many.fModel.fModel.GetNParameters(), 0);
}

TEST(MCLogModelCancel, ThatCutsTheListShortIsAnErrorEvenIfTheQueryChangesItsMind) {
  // Polls: the intercept, then each of the two effects.
  for (int poll = 1; poll <= 3; ++poll) {
    ScriptedCancel query(poll, ScriptedCancel::kOnce);
    LogisticModel model(TwoFactors().CancelledBy(query).Effect({1}).Effect({}, {3}));
    EXPECT_EQ(model.Prepare(kRows), MCStatus(1, false)) << poll;
    EXPECT_EQ(model.fModel.GetStatus(), MCStatus(1, false)) << poll;
    EXPECT_FALSE(model.fModel.AreParamsCreated()) << poll;
    EXPECT_EQ(model.fModel.GetXPrimeX(), nullptr) << poll;
    EXPECT_THAT(model.fModel.GetParameters(), IsEmpty()) << poll;
    std::vector<double> row(9);
    EXPECT_FALSE(model.fModel.ExpandRow(row, kRows[0].data())) << poll;
  }
  ScriptedCancel query;
  LogisticModel model(TwoFactors().CancelledBy(query).Effect({1}).Effect({}, {3}));
  EXPECT_TRUE(model.Prepare(kRows).IsOK());
  EXPECT_EQ(query.fPolls, 3);
}

TEST(MCLogModelMemory, ForAMatrixIsTooLargeAndOtherExhaustionIsThrown) {
  int nAbsorbed = 0;
  for (std::size_t k = 1;; ++k) {
    LogisticModel model(TwoFactors().Effect({1}).Effect({}, {3}));
    model.Tabulate(kRows);
    ASSERT_TRUE(model.fModel.SetDepCatInfo(&model.fTables).IsOK());
    MCStatus status;
    bool thrown = false;
    bool fired = false;
    {
      const mctest::FailAllocation failure(k);
      try {
        status = model.fModel.CreateParameters();
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
    EXPECT_EQ(model.fModel.GetXPrimeX(), nullptr) << k;
    EXPECT_FALSE(model.fModel.UpdateXPrimeX(kRows[0].data())) << k;
    std::vector<double> row(9);
    EXPECT_FALSE(model.fModel.ExpandRow(row, kRows[0].data())) << k;
    if (thrown) {
      EXPECT_TRUE(model.fModel.CreateParameters().IsOK()) << k << ": it can be tried again";
      EXPECT_EQ(model.fModel.GetNParameters(), 8) << k;
      continue;
    }
    ++nAbsorbed;
    EXPECT_EQ(status, TooLarge(8, 0)) << k;
  }
  EXPECT_EQ(nAbsorbed, 4) << "the matrix, its triangle, the table, its elements";
}

TEST(MCLogModelMemory, RunningOutAmongTheCategoriesLeavesNone) {
  for (std::size_t k = 1;; ++k) {
    LogisticModel model(TwoFactors().Effect({1}));
    model.Tabulate(kRows);
    bool fired = false;
    {
      const mctest::FailAllocation failure(k);
      try {
        static_cast<void>(model.fModel.SetDepCatInfo(&model.fTables));
      } catch (const std::bad_alloc&) {
        EXPECT_THAT(model.fModel.GetDependCategories(), IsEmpty()) << k;
      }
      fired = failure.HasFired();
    }
    EXPECT_EQ(model.fModel.GetDependentNCategs(), fired ? 0 : 3) << k;
    if (!fired) break;
    EXPECT_TRUE(model.fModel.SetDepCatInfo(&model.fTables).IsOK()) << k;
    EXPECT_EQ(model.fModel.GetDependentNCategs(), 3) << k;
  }
}

// --- Positions ----------------------------------------------------------------------------------

TEST(MCLogModelOffsets, AreKeptForEitherKindOfRow) {
  LogisticModel model(TwoFactors());
  model.fModel.SetOffsets({5, 6}, {7}, -1, -1, 8);
  model.fModel.SetPatternOffsets({1}, -1, -1, 0);
  EXPECT_THAT(model.fModel.GetFactorOffsets(), ElementsAre(5, 6));
  EXPECT_THAT(model.fModel.GetCovariateOffsets(false), ElementsAre(7));
  EXPECT_THAT(model.fModel.GetCovariateOffsets(true), ElementsAre(1));
}

// Three variables, whose positions go up to 40.
TEST(MCLogModelOffsets, ReachEveryPositionThatHasARole) {
  LogisticModel model(LogisticDesign(0, {}, {7, 40}).Effect({}, {40}).Effect({}, {7}));
  model.fModel.SetOffsets({}, {1, 2}, -1, -1, 0);
  model.fModel.SetPatternOffsets({2, 1}, -1, -1, 0);
  const std::vector<double> row = {0, 3, 5};
  MCRegrParameter parameter;
  parameter.AddCovariate(40, 2);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(row.data(), parameter, false), 25.0);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(row.data(), parameter, true), 9.0);
}

TEST(MCLogModelOffsets, ThatComeLaterHoldForTheRowsFromThenOn) {
  LogisticModel model(LogisticDesign(0, {}, {1}).Effect({}, {1}));
  ASSERT_TRUE(model.Identify({{0, 2}, {1, 3}}).IsOK());
  const std::vector<double> row = {0, 2, 5, 7};
  model.fModel.SetOffsets({}, {2}, -1, -1, 0);
  model.fModel.SetPatternOffsets({3}, -1, -1, 0);
  std::vector<double> designRow(2);
  EXPECT_TRUE(model.fModel.ExpandRow(designRow, row.data()));
  EXPECT_THAT(designRow, ElementsAre(1.0, 5.0));
  int n = 0;
  std::vector<int> indices;
  std::vector<double> values;
  EXPECT_TRUE(model.fModel.ExpandAndCompressRow(row.data(), n, indices, values));
  EXPECT_THAT(values, ElementsAre(1.0, 7.0));
}

// --- Copies -------------------------------------------------------------------------------------

TEST(MCLogModelCopy, ScoresAsTheOriginalAndIsNoSecondFit) {
  LogisticModel model(TwoFactors().Effect({1}).Effect({}, {3}));
  ASSERT_TRUE(model.Estimate(kRows, {0.5, -1, 0.25, 2, 1, -0.5}).IsOK());
  model.fModel.SetTotalWeight(4, 4);
  std::vector<double> out;
  model.fModel.GetDResiduals(out, kRows[0].data());
  ASSERT_TRUE(model.fModel.FinishErrors().IsOK());
  MCLogModel copy(model.fModel);
  EXPECT_FALSE(copy.AreParamsCreated());
  EXPECT_FALSE(copy.IsModelBuilt());
  EXPECT_EQ(copy.GetXPrimeX(), nullptr);
  EXPECT_EQ(copy.GetHessianGI(), nullptr);
  EXPECT_EQ(copy.GetClassificationTable(), nullptr);
  EXPECT_EQ(copy.GetFactorTables(), model.fModel.GetFactorTables());
  EXPECT_EQ(copy.GetParameters(), model.fModel.GetParameters());
  EXPECT_EQ(copy.GetBasicParams(), model.fModel.GetBasicParams());
  EXPECT_EQ(copy.GetParamEstimates(), model.fModel.GetParamEstimates());
  EXPECT_EQ(copy.GetRedundancyInfo(), model.fModel.GetRedundancyInfo());
  EXPECT_EQ(copy.GetBasicRedundInfo(), model.fModel.GetBasicRedundInfo());
  EXPECT_EQ(copy.GetNNonRedParams(), model.fModel.GetNNonRedParams());
  EXPECT_EQ(copy.GetDependCatCounts(), model.fModel.GetDependCatCounts());
  EXPECT_EQ(copy.GetDependCatNCases(), model.fModel.GetDependCatNCases());
  for (const std::vector<double>& row : kRows) {
    std::vector<double> expected;
    std::vector<double> probabilities;
    int predicted = -1;
    int predictedByCopy = -1;
    EXPECT_TRUE(model.fModel.Score(row.data(), expected, predicted).IsOK());
    EXPECT_TRUE(copy.Score(row.data(), probabilities, predictedByCopy).IsOK());
    EXPECT_EQ(probabilities, expected);
    EXPECT_EQ(predictedByCopy, predicted);
    EXPECT_FALSE(copy.UpdateXPrimeX(row.data()));
    std::vector<double> untouched = {7};
    copy.GetDResiduals(untouched, row.data());
    EXPECT_THAT(untouched, ElementsAre(7));
  }
  EXPECT_EQ(copy.IdentifyRedundancy(), MCStatus(309, false)) << "it has no matrix";
}

TEST(MCLogModelCopy, OfAFreshModelIsFresh) {
  LogisticModel model(TwoFactors());
  const MCLogModel copy(model.fModel);
  std::vector<double> probabilities;
  int predicted = 7;
  EXPECT_TRUE(copy.Score(kRows[0].data(), probabilities, predicted).IsOK());
  EXPECT_EQ(predicted, -1);
  EXPECT_THAT(probabilities, IsEmpty());
}

}  // namespace
