// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "regression/logistic/detail/mcpatterncolumns.h"
#include "regression/logistic/mclogmodel.h"
#include "support/countingallocator.h"
#include "support/logisticmodel.h"
#include "support/samebits.h"
#include "support/scriptedcancel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {
using MCCommon::MCStatus;
using MCCommon::detail::MCPatternColumns;
using MCCommonMath::MCSymMatrix;
using mctest::LogisticDesign;
using mctest::LogisticModel;
using mctest::Rows;
using mctest::ScriptedCancel;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();

// Dependent at position 0, factor a of three categories at 1, covariates x at 2 and z at 3.
// Columns: intercept; a = 0, 1, 2; x; x*x*z where a = 0, 1, 2.
LogisticDesign Slopes() {
  return LogisticDesign(0, {{1, 3}}, {2, 3})
      .Categories(2)
      .Effect({1})
      .Effect({}, {2})
      .Effect({1}, {2, 2, 3});
}

const Rows kRows = {{0, 0, 1, 2}, {1, 1, 3, 1}, {0, 2, 2, 5}, {1, 0, 7, 3},
                    {0, 1, 4, 6}, {1, 2, 1, 1}, {0, 0, 5, 9}, {1, 1, 2, 2}};

struct SparseRow {
  int fN = -7;
  std::vector<int> fIndices;
  std::vector<double> fValues;
};

SparseRow Compress(const MCLogModel& model, const std::vector<double>& row,
                   const std::vector<int>& indices) {
  SparseRow sparse;
  EXPECT_TRUE(
      model.ExpandAndCompressRow(row.data(), indices, sparse.fN, sparse.fIndices, sparse.fValues));
  EXPECT_EQ(static_cast<std::size_t>(sparse.fN), sparse.fIndices.size());
  EXPECT_EQ(sparse.fIndices.size(), sparse.fValues.size());
  return sparse;
}

// --- Values -------------------------------------------------------------------------------------

TEST(MCLogModelValue, IsTheProductOfTheCovariatesOfEitherLayout) {
  LogisticModel model(Slopes());
  model.fModel.SetOffsets({1}, {2, 3}, -1, -1, 0);
  model.fModel.SetPatternOffsets({0, 1}, -1, -1, 4);
  const std::vector<double> row = {1.1, 3, 5, 7};
  MCRegrParameter parameter;
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(row.data(), parameter, true), 1.0);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(nullptr, parameter, false), 1.0);
  parameter.AddCovariate(2, 3);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(row.data(), parameter, true), 1.1 * 1.1 * 1.1)
      << "repeated products";
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(row.data(), parameter, false), 125.0);
  parameter.AddCovariate(3, 1);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(row.data(), parameter, false), 875.0);
  parameter.AddCovariate(999, 1);
  EXPECT_EQ(model.fModel.ComputeDesignRowValue2(row.data(), parameter, true), 0.0)
      << "none of the settings' covariates";
}

TEST(MCLogModelValue, OfAnUnknownCovariateMakesARedundantColumn) {
  LogisticDesign design = LogisticDesign(0, {}, {1}).Effect({}, {1});
  const std::vector<int> others = {1, 999, 1};  // the effect is told against another list
  MCModelEffect effect(0, 3, &others);
  effect.AddCovariate(999);
  design.Settings().AddModelEffect(effect);
  LogisticModel model(std::move(design));
  ASSERT_TRUE(model.Identify({{0, 2}, {1, 3}, {1, 5}}).IsOK());
  EXPECT_EQ(mctest::BitsOf(model.fModel.GetBasicRedundInfo()),
            (std::vector<bool>{true, true, false}));
}

// --- Dense and index form -----------------------------------------------------------------------

TEST(MCLogModelExpandRow, WritesTheColumnsOfTheRowAndZeroElsewhere) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  std::vector<double> row(8, 99.0);
  EXPECT_TRUE(model.fModel.ExpandRow(row, kRows[1].data()));
  EXPECT_THAT(row, ElementsAre(1, 0, 1, 0, 3, 0, 9, 0));
  row.assign(10, 99.0);
  EXPECT_TRUE(model.fModel.ExpandRow(row, kRows[2].data()));
  EXPECT_THAT(row, ElementsAre(1, 0, 0, 1, 2, 0, 0, 20, 0, 0)) << "a longer vector keeps its size";
}

TEST(MCLogModelExpandRow, TellsOneParameterAndValuePerEffect) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  std::vector<int> indices(9, 99);
  std::vector<double> values;
  EXPECT_TRUE(model.fModel.ExpandRow(kRows[2].data(), indices, values));
  EXPECT_THAT(indices, ElementsAre(0, 3, 4, 7));
  EXPECT_THAT(values, ElementsAre(1.0, 1.0, 2.0, 20.0));
}

TEST(MCLogModelExpandRow, ReadsARecordAndNotAPattern) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  model.fModel.SetPatternOffsets({0, 0}, -1, -1, 0);
  std::vector<double> row(8);
  EXPECT_TRUE(model.fModel.ExpandRow(row, kRows[1].data()));
  EXPECT_EQ(row[4], 3.0);
}

TEST(MCLogModelExpandRow, RefusesWithNothingWritten) {
  struct Case {
    const char* fName;
    std::size_t fSize;
    std::vector<double> fRow;
  };
  const Case cases[] = {
      {"one entry short", 7, kRows[0]}, {"no entry", 0, kRows[0]}, {"unseen", 8, {0, 3, 1, 1}},
      {"absurd", 8, {0, kNaN, 1, 1}},   {"null row", 8, {}},
  };
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  for (const Case& c : cases) {
    const double* row = c.fRow.empty() ? nullptr : c.fRow.data();
    std::vector<double> designRow(c.fSize, 99.0);
    EXPECT_FALSE(model.fModel.ExpandRow(designRow, row)) << c.fName;
    EXPECT_EQ(designRow, std::vector<double>(c.fSize, 99.0)) << c.fName;
    if (c.fSize < 8) continue;
    std::vector<int> indices = {99};
    std::vector<double> values = {99.0};
    EXPECT_FALSE(model.fModel.ExpandRow(row, indices, values)) << c.fName;
    EXPECT_THAT(indices, ElementsAre(99)) << c.fName;
    EXPECT_THAT(values, ElementsAre(99.0)) << c.fName;
  }
}

TEST(MCLogModelExpandRow, RefusesBeforeThereAreParametersAndWhileACancelIsPending) {
  LogisticModel fresh(Slopes());
  std::vector<double> designRow(8, 99.0);
  std::vector<int> indices = {99};
  std::vector<double> values = {99.0};
  EXPECT_FALSE(fresh.fModel.ExpandRow(designRow, kRows[0].data()));
  EXPECT_FALSE(fresh.fModel.ExpandRow(kRows[0].data(), indices, values));
  LogisticModel cancelled(Slopes());
  ASSERT_TRUE(cancelled.Prepare(kRows).IsOK());
  cancelled.fCancel.SetCancel();
  EXPECT_FALSE(cancelled.fModel.ExpandRow(designRow, kRows[0].data()));
  EXPECT_FALSE(cancelled.fModel.ExpandRow(kRows[0].data(), indices, values));
  EXPECT_EQ(designRow, std::vector<double>(8, 99.0));
  EXPECT_THAT(indices, ElementsAre(99));
}

// --- Sparse rows --------------------------------------------------------------------------------

// Column a = 2 is redundant; so the others are numbered 0, 1, 2, -, 3, 4, 5, 6.
TEST(MCLogModelSparseRow, HoldsTheNonRedundantColumnsByTheirOwnNumbers) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  ASSERT_EQ(mctest::BitsOf(model.fModel.GetBasicRedundInfo()),
            (std::vector<bool>{true, true, true, false, true, true, true, true}));
  const SparseRow first = Compress(model.fModel, kRows[0], {0, 1, 4, 5});
  EXPECT_THAT(first.fIndices, ElementsAre(0, 1, 3, 4));
  EXPECT_THAT(first.fValues, ElementsAre(1.0, 1.0, 1.0, 2.0));
  const SparseRow third = Compress(model.fModel, kRows[2], {0, 3, 4, 7});
  EXPECT_THAT(third.fIndices, ElementsAre(0, 3, 6));
  EXPECT_THAT(third.fValues, ElementsAre(1.0, 2.0, 20.0));
}

TEST(MCLogModelSparseRow, LeavesOutZerosOfEitherSignAndNothingElse) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  const std::vector<int> indices = {0, 1, 4, 5};
  EXPECT_THAT(Compress(model.fModel, {0, 0, 0.0, 2}, indices).fIndices, ElementsAre(0, 1));
  EXPECT_THAT(Compress(model.fModel, {0, 0, -0.0, 2}, indices).fIndices, ElementsAre(0, 1));
  EXPECT_THAT(Compress(model.fModel, {0, 0, 3, 0.0}, indices).fIndices, ElementsAre(0, 1, 3));
  EXPECT_THAT(Compress(model.fModel, {0, 0, kNaN, 2}, indices).fIndices, ElementsAre(0, 1, 3, 4));
  EXPECT_THAT(Compress(model.fModel, {0, 0, kInf, 0.0}, indices).fIndices, ElementsAre(0, 1, 3, 4));
}

TEST(MCLogModelSparseRow, ReplacesWhatTheVectorsHeldAndNeedsNoMoreMemory) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  int n = 99;
  std::vector<int> indices(4, 99);
  std::vector<double> values(4, 99.0);
  const std::vector<int> pattern = {0, 1, 4, 5};
  const std::size_t before = mctest::AllocationCount();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_TRUE(model.fModel.ExpandAndCompressRow(kRows[0].data(), pattern, n, indices, values));
    EXPECT_TRUE(model.fModel.ExpandAndCompressRow(kRows[1].data(), n, indices, values));
  }
  EXPECT_EQ(mctest::AllocationCount(), before);
  EXPECT_EQ(n, 4);
  EXPECT_THAT(indices, ElementsAre(0, 2, 3, 5));
}

TEST(MCLogModelSparseRow, PassesOverIndicesThatAreNoParameters) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  EXPECT_THAT(Compress(model.fModel, kRows[0], {-1, 1, 8, kMost}).fIndices, ElementsAre(1));
  EXPECT_THAT(Compress(model.fModel, kRows[0], {kLeast, 1}).fIndices, ElementsAre(1));
  EXPECT_THAT(Compress(model.fModel, kRows[0], {}).fIndices, IsEmpty());
  EXPECT_THAT(Compress(model.fModel, kRows[0], {0, 1, 4, 5, 6}).fIndices, ElementsAre(0, 1, 3, 4))
      << "one index for each effect";
}

TEST(MCLogModelSparseRow, IsEmptyBeforeRedundancyIsKnown) {
  LogisticModel model(Slopes());
  EXPECT_THAT(Compress(model.fModel, kRows[0], {0, 1, 4, 5}).fIndices, IsEmpty());
  ASSERT_TRUE(model.Accumulate(kRows).IsOK());
  EXPECT_THAT(Compress(model.fModel, kRows[0], {0, 1, 4, 5}).fIndices, IsEmpty());
}

TEST(MCLogModelSparseRow, IsRefusedForARowThatSelectsNoColumn) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  int n = 99;
  std::vector<int> indices = {99};
  std::vector<double> values = {99.0};
  const std::vector<double> unseen = {0, 7, 1, 1};
  EXPECT_FALSE(model.fModel.ExpandAndCompressRow(unseen.data(), n, indices, values));
  EXPECT_EQ(n, 0);
  EXPECT_THAT(indices, IsEmpty());
  EXPECT_THAT(values, IsEmpty());
  EXPECT_FALSE(model.fModel.ExpandAndCompressRow(nullptr, n, indices, values));
  EXPECT_TRUE(model.fModel.ExpandAndCompressRow(nullptr, {0, 1, 4, 5}, n, indices, values));
  EXPECT_EQ(n, 0);
  LogisticModel fresh(Slopes());
  EXPECT_FALSE(fresh.fModel.ExpandAndCompressRow(kRows[0].data(), n, indices, values));
}

// A pattern row holds the dependent, x and z, and no factors.
TEST(MCLogModelSparseRow, ReadsAPatternRow) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  model.fModel.SetPatternOffsets({1, 2}, -1, -1, 0);
  const SparseRow sparse = Compress(model.fModel, {0, 3, 5}, {0, 2, 4, 6});
  EXPECT_THAT(sparse.fIndices, ElementsAre(0, 2, 3, 5));
  EXPECT_THAT(sparse.fValues, ElementsAre(1.0, 1.0, 3.0, 45.0));
}

// --- Patterns -----------------------------------------------------------------------------------

TEST(MCLogModelPattern, ColumnsGiveTheSparseRowWithItsZeros) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  model.fModel.SetPatternOffsets({1, 2}, -1, -1, 0);
  MCPatternColumns columns;
  model.fModel.DescribePattern({0, 3, 4, 7}, columns);
  EXPECT_THAT(columns.fIndices, ElementsAre(0, 3, 6));
  ASSERT_THAT(columns.fTermBegin, ElementsAre(0u, 0u, 1u, 3u));
  ASSERT_EQ(columns.fTerms.size(), 3u);
  EXPECT_EQ(columns.fTerms[1].fPosition, 1);
  EXPECT_EQ(columns.fTerms[1].fPower, 2);
  EXPECT_EQ(columns.fTerms[2].fPosition, 2);
  EXPECT_EQ(columns.fTerms[2].fPower, 1);
  const std::vector<double> row = {0, 1.1, 0.7};
  std::vector<double> values;
  for (std::size_t c = 0; c < columns.NColumns(); ++c) {
    values.push_back(
        MCCommon::detail::ColumnValue(row.data(), columns.fTerms.data() + columns.fTermBegin[c],
                                      columns.fTerms.data() + columns.fTermBegin[c + 1]));
  }
  EXPECT_TRUE(mctest::SameBits(Compress(model.fModel, row, {0, 3, 4, 7}).fValues, values));
}

TEST(MCLogModelPattern, IsDescribedAnewInTheRoomThatThereIs) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  MCPatternColumns columns;
  const std::vector<int> pattern = {0, 1, 4, 5};
  model.fModel.DescribePattern(pattern, columns);
  const std::size_t before = mctest::AllocationCount();
  model.fModel.DescribePattern(pattern, columns);
  EXPECT_EQ(mctest::AllocationCount(), before);
  EXPECT_THAT(columns.fIndices, ElementsAre(0, 1, 3, 4));
  EXPECT_EQ(columns.fTerms.size(), 3u);
}

TEST(MCLogModelPattern, LeavesOutWhatIsNoParameterAndAllBeforeRedundancyIsKnown) {
  LogisticModel model(Slopes());
  MCPatternColumns columns;
  columns.fIndices = {99};
  model.fModel.DescribePattern({0, 1, 4, 5}, columns);
  EXPECT_EQ(columns.NColumns(), 0u);
  EXPECT_THAT(columns.fTermBegin, ElementsAre(0u));
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  model.fModel.DescribePattern({kLeast, 1, 8, kMost}, columns);
  EXPECT_THAT(columns.fIndices, ElementsAre(1));
}

TEST(MCLogModelPattern, KnowsACovariateWithoutAPosition) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  model.fModel.SetPatternOffsets({1}, -1, -1, 0);
  MCPatternColumns columns;
  model.fModel.DescribePattern({0, 1, 4, 5}, columns);
  EXPECT_LT(columns.fTerms.back().fPosition, 0);
}

// --- Cross-products -----------------------------------------------------------------------------

TEST(MCLogModelUpdate, IsRefusedWhereNothingCanBeAdded) {
  LogisticModel fresh(Slopes());
  const std::vector<int> indices = {0, 1, 4, 5};
  EXPECT_FALSE(fresh.fModel.UpdateXPrimeX(kRows[0].data(), indices));
  EXPECT_FALSE(fresh.fModel.UpdateXPrimeX(kRows[0].data()));
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  EXPECT_FALSE(model.fModel.UpdateXPrimeX(nullptr, indices));
  EXPECT_FALSE(model.fModel.UpdateXPrimeX(nullptr));
  EXPECT_FALSE(model.fModel.UpdateXPrimeX(kRows[0].data(), {0, 1, 4})) << "fewer than effects";
  EXPECT_FALSE(model.fModel.UpdateXPrimeX(std::vector<double>{0, 9, 1, 1}.data())) << "unseen";
  model.fCancel.SetCancel();
  EXPECT_FALSE(model.fModel.UpdateXPrimeX(kRows[0].data(), indices));
  EXPECT_FALSE(model.fModel.UpdateXPrimeX(kRows[0].data()));
  EXPECT_EQ(model.fModel.GetXPrimeX()->AsVectorConst(), std::vector<double>(36));
  EXPECT_EQ(model.fModel.IdentifyRedundancy(), MCStatus(309, false)) << "no row has been added";
}

TEST(MCLogModelUpdate, IsRefusedWithoutAMatrixAndAfterTheBuild) {
  LogisticModel cleared(Slopes());
  ASSERT_TRUE(cleared.Accumulate(kRows).IsOK());
  cleared.fModel.ClearXPrimeXMatrix();
  cleared.fModel.ClearXPrimeXMatrix();
  EXPECT_EQ(cleared.fModel.GetXPrimeX(), nullptr);
  EXPECT_FALSE(cleared.fModel.UpdateXPrimeX(kRows[0].data()));
  LogisticModel built(Slopes());
  ASSERT_TRUE(built.Accumulate(kRows).IsOK());
  std::vector<double> out;
  built.fModel.GetDResiduals(out, kRows[0].data());
  built.fModel.SetTotalWeight(8, 8);
  ASSERT_TRUE(built.fModel.FinishErrors().IsOK());
  EXPECT_FALSE(built.fModel.UpdateXPrimeX(kRows[0].data()));
}

TEST(MCLogModelUpdate, CountsARowThatHasNoWeight) {
  for (const double weight : {0.0, -1.0, kNaN}) {
    LogisticModel model(LogisticDesign(0, {}, {}).RegressionWeight(1));
    ASSERT_TRUE(model.Prepare({{0, 1}, {1, 1}}).IsOK());
    EXPECT_TRUE(model.fModel.UpdateXPrimeX(std::vector<double>{0, weight}.data()));
    EXPECT_EQ(model.fModel.GetXPrimeX()->AsVectorConst(), std::vector<double>{0.0});
    EXPECT_TRUE(model.fModel.IdentifyRedundancy().IsOK()) << "there was a row";
    EXPECT_EQ(model.fModel.GetNNonRedParams(), 0);
  }
}

TEST(MCLogModelUpdate, WeighsByBothWeightsOfThePatternRow) {
  LogisticModel model(
      LogisticDesign(0, {}, {3}).FrequencyWeight(1).RegressionWeight(2).Effect({}, {3}));
  ASSERT_TRUE(model.Prepare({{0, 1, 1, 1}, {1, 1, 1, 2}}).IsOK());
  model.fModel.SetPatternOffsets({0}, 2, 1, 3);
  EXPECT_TRUE(model.fModel.UpdateXPrimeX(std::vector<double>{5, 3, 2, 1}.data(), {0, 1}));
  EXPECT_EQ(model.fModel.GetXPrimeX()->AsVectorConst(), (std::vector<double>{6, 30, 150}));
  model.fModel.SetPatternOffsets({0}, 2, -1, 3);
  EXPECT_TRUE(model.fModel.UpdateXPrimeX(std::vector<double>{5, 3, 2, 1}.data(), {0, 1}));
  EXPECT_EQ(model.fModel.GetXPrimeX()->AsVectorConst(), (std::vector<double>{8, 40, 200}));
}

TEST(MCLogModelUpdate, TakesAnIndexThatIsNoParameterForAZero) {
  LogisticModel model(Slopes());
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  EXPECT_TRUE(model.fModel.UpdateXPrimeX(kRows[0].data(), {0, -1, 4, 8}));
  MCSymMatrix expected(8);
  expected.UpdateXXSparse(2, {0, 4}, {1.0, 1.0}, 1.0);
  EXPECT_TRUE(mctest::SameBits(expected, *model.fModel.GetXPrimeX()));
}

// Rows of y, a (of 3), b (of 40), x1, x2, frequency, regression weight; with `wild` some values
// and weights are infinite, NaN, huge or minus zero.
Rows MakeRows(int n, bool wild) {
  std::mt19937 random(20261121);
  std::normal_distribution<double> normal;
  const std::vector<double> odd = {kInf, -kInf, kNaN, -0.0, 1e300, 5e-324};
  Rows rows;
  for (int i = 0; i < n; ++i) {
    const auto pick = [&random](unsigned k) { return static_cast<double>(random() % k); };
    std::vector<double> row = {pick(2),        pick(3),       pick(40),     normal(random),
                               normal(random), pick(3) + 1.0, 0.5 + pick(4)};
    if (random() % 4 == 0) row[3] = 0.0;
    if (wild && random() % 64 == 0) row[3] = odd[random() % odd.size()];
    if (wild && random() % 64 == 0) row[6] = odd[random() % odd.size()];
    if (wild && random() % 64 == 0) row[6] = 0.0;
    rows.push_back(row);
  }
  return rows;
}

LogisticDesign Base() {
  return LogisticDesign(0, {{1, 3}, {2, 40}}, {3, 4}).FrequencyWeight(5).RegressionWeight(6);
}

struct Case {
  const char* fName;
  LogisticDesign (*fMake)();
  bool fWild;
};

void PrintTo(const Case& c, std::ostream* out) {
  *out << c.fName;
}

LogisticDesign Covariates() {
  return Base().Effect({}, {3}).Effect({}, {4}).Effect({}, {3, 4, 4});
}
LogisticDesign FewLevels() {
  return Base().NoIntercept().Effect({1}).Effect({1}, {3}).Effect({}, {4});
}
LogisticDesign ManyLevels() {
  return Base().Effect({2}).Effect({}, {3}).Effect({1, 2}, {4, 4});
}

const Case kCases[] = {
    {"covariates", Covariates, false},  {"fewLevels", FewLevels, false},
    {"manyLevels", ManyLevels, false},  {"covariatesWild", Covariates, true},
    {"fewLevelsWild", FewLevels, true}, {"manyLevelsWild", ManyLevels, true},
};

class MCLogModelBits : public testing::TestWithParam<Case> {};

TEST_P(MCLogModelBits, OfTheMatrixAreThoseOfOneSparseUpdatePerRow) {
  const Rows rows = MakeRows(700, GetParam().fWild);
  LogisticModel model(GetParam().fMake());
  ASSERT_TRUE(model.Prepare(rows).IsOK());
  MCSymMatrix expected(model.fModel.GetNBasicParameters());
  std::vector<int> indices;
  std::vector<double> values;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double* row = rows[i].data();
    ASSERT_TRUE(model.fModel.ExpandRow(row, indices, values));
    expected.UpdateXXSparse(static_cast<int>(indices.size()), indices, values, row[5] * row[6]);
    EXPECT_TRUE(i % 2 == 0 ? model.fModel.UpdateXPrimeX(row)
                           : model.fModel.UpdateXPrimeX(row, indices));
    if (i % 97 == 0) model.fModel.GetXPrimeX();  // a look changes nothing
  }
  EXPECT_TRUE(mctest::SameBitsOrNaN(expected, *model.fModel.GetXPrimeX()));
}

INSTANTIATE_TEST_SUITE_P(Designs, MCLogModelBits, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.fName); });

TEST(MCLogModelUpdate, AllocatesNothingPerRow) {
  for (const Case& c : kCases) {
    const Rows rows = MakeRows(300, false);
    LogisticModel model(c.fMake());
    ASSERT_TRUE(model.Prepare(rows).IsOK());
    model.fModel.UpdateXPrimeX(rows[0].data());  // the first makes the block
    std::vector<double> row(static_cast<std::size_t>(model.fModel.GetNBasicParameters()));
    std::vector<double> probabilities(2);
    std::vector<double> out(row.size());
    int predicted = 0;
    const std::size_t before = mctest::AllocationCount();
    for (const std::vector<double>& record : rows) {
      model.fModel.UpdateXPrimeX(record.data());
      model.fModel.ExpandRow(row, record.data());
      static_cast<void>(model.fModel.Score(record.data(), probabilities, predicted));
      model.fModel.GetDResiduals(out, record.data());
    }
    EXPECT_EQ(mctest::AllocationCount(), before) << c.fName;
  }
}

}  // namespace
