// SPDX-License-Identifier: Apache-2.0
//
// The matrix and the residuals have the bits of the plain definition: each row written out over
// all columns, added by UpdateXX(), and summed over all columns in order. Rows are added to the
// matrix with the total weight rounded up to a power of two; the matrix shown takes the rest.
#include "regression/linear/mcglmmodel.h"
#include "support/linearmodel.h"
#include "support/samebits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {
using MCCommonMath::MCSymMatrix;
using mctest::LinearModel;
using mctest::RegressionDesign;
using mctest::Rows;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void ExpectSameBits(const std::vector<double>& values, const std::vector<double>& expected) {
  EXPECT_TRUE(mctest::SameBitsOrNaN(expected, values));
}

// Rows of y, a (of 3), b (of 40), x1, x2, frequency, regression weight. Some covariates are zero;
// with `wild` a few are infinite, NaN or minus zero, and some dependents too large to square.
Rows MakeRows(int n, bool wild) {
  std::mt19937 random(20261121);
  std::normal_distribution<double> normal;
  const std::vector<double> odd = {kInf, -kInf, kNaN, -0.0, 1e300, 5e-324};
  Rows rows;
  for (int i = 0; i < n; ++i) {
    const auto pick = [&random](unsigned k) { return static_cast<double>(random() % k); };
    std::vector<double> row = {normal(random), pick(3),       pick(40),     normal(random),
                               normal(random), pick(3) + 1.0, 0.5 + pick(4)};
    if (random() % 4 == 0) row[3] = 0.0;
    if (wild && random() % 16 == 0) row[3] = odd[random() % odd.size()];
    if (wild && random() % 64 == 0) row[0] = 1e200;
    rows.push_back(row);
  }
  return rows;
}

struct Design {
  const char* fName;
  RegressionDesign (*fMake)();
};

RegressionDesign Base() {
  return RegressionDesign(0, {{1, 3}, {2, 40}}, {3, 4}).FrequencyWeight(5).RegressionWeight(6);
}

const Design kDesigns[] = {
    {"covariates",
     [] {
       return Base().Effect({}, {3}).Effect({}, {4}).Effect({}, {3, 4, 4});
     }},
    {"covariatesWithoutIntercept",
     [] { return Base().NoIntercept().Effect({}, {4}).Effect({}, {3}); }},
    {"fewLevels", [] { return Base().Effect({1}).Effect({1}, {3}).Effect({}, {4}); }},
    {"manyLevels", [] { return Base().Effect({2}).Effect({}, {3}); }},
    {"interaction",
     [] {
       return Base().Effect({1}).Effect({2}).Effect({1, 2}, {3, 3}).Effect({}, {4});
     }},
};

struct Case {
  Design fDesign;
  bool fWild;
};

void PrintTo(const Case& c, std::ostream* out) {
  *out << c.fDesign.fName;
}

class MCGLMModelBits : public testing::TestWithParam<Case> {
protected:
  MCGLMModelBits() : fModel(GetParam().fDesign.fMake()), fRows(MakeRows(700, GetParam().fWild)) {}

  double Weight(const std::vector<double>& row) const {
    return 1.0 / fModel.fTables.GetTotalWeight() * row[5] * row[6];
  }

  // By the general form, which looks at the parameters' own lists and not at the tables.
  std::vector<double> WriteOut(const std::vector<double>& row) const {
    std::vector<double> columns;
    for (const MCRegrParameter& parameter : fModel.fModel.GetParameters()) {
      columns.push_back(fModel.fModel.ComputeDesignRowValue(row.data(), parameter));
    }
    columns.push_back(row[0]);
    return columns;
  }

  double Predict(const std::vector<double>& columns) const {
    const std::vector<double>& estimates = fModel.fModel.GetParamEstimates();
    double sum = 0.0;
    for (std::size_t j = 0; j < estimates.size(); ++j) sum += columns[j] * estimates[j];
    return sum;
  }

  LinearModel fModel;
  Rows fRows;
};

TEST_P(MCGLMModelBits, OfTheMatrixAreThoseOfOneUpdatePerRow) {
  ASSERT_TRUE(fModel.Accumulate(fRows).IsOK());
  MCSymMatrix expected(fModel.fModel.GetNParameters() + 1);
  int exponent = 0;
  const double rest = std::frexp(fModel.fTables.GetTotalWeight(), &exponent);
  for (const std::vector<double>& row : fRows) {
    expected.UpdateXX(WriteOut(row), std::ldexp(1.0, -exponent) * row[5] * row[6]);
  }
  expected.MultiplyByNumber(1.0 / rest);
  ExpectSameBits(fModel.fModel.GetZPrimeZ()->AsVectorConst(), expected.AsVectorConst());
}

// The told weights to rounding: 700 sums of positive terms.
TEST_P(MCGLMModelBits, TheMatrixIsThatOfWeightsDividedByTheirSum) {
  ASSERT_TRUE(fModel.Accumulate(fRows).IsOK());
  MCSymMatrix expected(fModel.fModel.GetNParameters() + 1);
  for (const std::vector<double>& row : fRows) expected.UpdateXX(WriteOut(row), Weight(row));
  const MCSymMatrix& matrix = *fModel.fModel.GetZPrimeZ();
  for (int i = 0; i < expected.GetNRows(); ++i) {
    const double value = expected.GetElem(i, i);
    if (!std::isfinite(value)) continue;
    EXPECT_NEAR(matrix.GetElem(i, i), value, 700 * 2.3e-16 * value) << i;
  }
}

TEST_P(MCGLMModelBits, OfTheMatrixDoNotDependOnLooksInBetween) {
  LinearModel watched(GetParam().fDesign.fMake());
  watched.Tabulate(fRows);
  ASSERT_TRUE(watched.fModel.CreateParameters(&watched.fTables).IsOK());
  for (std::size_t i = 0; i < fRows.size(); ++i) {
    ASSERT_TRUE(watched.fModel.UpdateZPrimeZ(fRows[i].data()));
    if (i % 7 == 0) watched.fModel.GetZPrimeZ();
  }
  ASSERT_TRUE(fModel.Accumulate(fRows).IsOK());
  ExpectSameBits(watched.fModel.GetZPrimeZ()->AsVectorConst(),
                 fModel.fModel.GetZPrimeZ()->AsVectorConst());
}

TEST_P(MCGLMModelBits, OfRowsScoresAndResidualsAreThoseOfAllColumnsInOrder) {
  ASSERT_TRUE(fModel.Accumulate(fRows).IsOK());
  ASSERT_TRUE(fModel.fModel.BuildModel().IsOK());
  const auto p = static_cast<std::size_t>(fModel.fModel.GetNParameters());
  double squares = 0.0;
  for (const std::vector<double>& row : fRows) {
    const std::vector<double> columns = WriteOut(row);
    std::vector<double> expanded(p + 1, 99.0);
    EXPECT_TRUE(fModel.fModel.ExpandRow(expanded, row.data()));
    ExpectSameBits(expanded, columns);

    const double predicted = Predict(columns);
    ExpectSameBits({fModel.fModel.Score(row.data())}, {predicted});
    const double residual = row[0] - predicted;
    std::vector<double> products(p, 99.0);
    fModel.fModel.GetDResiduals(products, row.data());
    std::vector<double> expected(p);
    for (std::size_t j = 0; j < p; ++j) expected[j] = residual * columns[j] * Weight(row);
    ExpectSameBits(products, expected);
    squares += Weight(row) * (residual * residual);
  }
  ASSERT_TRUE(fModel.fModel.FinishErrors().IsOK());
  ExpectSameBits({fModel.fModel.GetRootMeanSquareError()}, {std::sqrt(squares)});
}

std::vector<Case> AllCases() {
  std::vector<Case> cases;
  for (const Design& design : kDesigns) {
    for (const bool wild : {false, true}) cases.push_back({design, wild});
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(Designs, MCGLMModelBits, testing::ValuesIn(AllCases()),
                         [](const auto& test) {
                           return std::string(test.param.fDesign.fName) +
                                  (test.param.fWild ? "Wild" : "");
                         });

// Sums of 1 / 449,999 round the same way 449,999 times over: by more than a tolerance of 1e-12, so
// that nothing would be left out.
TEST(MCGLMModelRedundancy, TheLastLevelIsRedundantHoweverManyRowsThereAre) {
  Rows rows;
  for (int i = 0; i < 449999; ++i) rows.push_back({i % 7 * 1.0, i % 13 * 1.0, i % 101 * 1.0});
  LinearModel model(RegressionDesign(0, {{1, 13}}, {2}).Effect({1}).Effect({}, {2}));
  ASSERT_TRUE(model.Fit(rows).IsOK());
  const MCCommonMath::MCBitSet& kept = model.fModel.GetRedundancyInfo();
  for (int column = 0; column < 15; ++column) EXPECT_EQ(kept.IsIn(column), column != 13) << column;
}

// Only level 17 has an infinite dependent, so its estimate alone isn't finite; a row of another
// level meets it as 0 times infinity.
TEST(MCGLMModelEstimates, AnInfiniteEstimateReachesRowsThatDoNotSelectIt) {
  Rows rows;
  for (int i = 0; i < 40; ++i) rows.push_back({i == 17 ? 1e308 * 10.0 : 1.0, i * 1.0});
  LinearModel model(RegressionDesign(0, {{1, 40}}, {}).NoIntercept().Effect({1}));
  ASSERT_TRUE(model.Fit(rows).IsOK());
  EXPECT_FALSE(std::isfinite(model.fModel.GetParamEstimates()[17]));
  EXPECT_TRUE(std::isnan(model.fModel.Score(rows[3].data())));
}

}  // namespace
