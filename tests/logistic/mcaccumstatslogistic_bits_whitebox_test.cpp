// SPDX-License-Identifier: Apache-2.0
//
// Rows of a pattern that are added together give the bits that they give one by one.
#include "regression/logistic/detail/mcpatterncolumns.h"
#include "regression/logistic/mcaccumstatslogistic.h"
#include "regression/settings/mclogregsettings.h"
#include "support/samebits.h"
#include "support/scriptedcancel.h"
#include "support/splitmix64.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

using MCCommon::detail::MCPatternColumns;
using MCCommon::detail::MCPatternLayout;
using MCCommonMath::MCSymMatrix;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Numbers in [0, n), and noise in [-1, 1).
class Random {
public:
  explicit Random(std::uint64_t seed) : fBits(seed) {}
  std::size_t Below(std::size_t n) { return static_cast<std::size_t>(fBits.Next() % n); }
  int IntBelow(int n) { return static_cast<int>(Below(static_cast<std::size_t>(n))); }
  double Noise() { return static_cast<double>(fBits.Next() >> 11U) * 0x1p-52 - 1.0; }

private:
  mctest::SplitMix64 fBits;
};

/// A model, a pattern of it and its stored rows: two values that columns are made of come first in
/// each, then the covariates, dependent, frequency weight and regression weight.
struct Problem {
  int nParams = 0;
  int nCategs = 2;
  MCPatternColumns columns;
  MCPatternLayout layout{};
  std::vector<double> rows;
  std::vector<double> estimates;
  bool checkSeparation = false;

  std::size_t NRows() const { return rows.size() / layout.fStride; }
  double* Row(std::size_t r) { return rows.data() + r * layout.fStride; }
  double& Value(std::size_t r, int position) { return Row(r)[position]; }
};

struct Shape {
  int nParams;
  int nColumns;
  int nCategs;
  std::size_t nRows;
};

void AddColumn(Problem& problem, int index, const std::vector<MCPatternColumns::Term>& terms) {
  problem.columns.fIndices.push_back(index);
  problem.columns.fTerms.insert(problem.columns.fTerms.end(), terms.begin(), terms.end());
  problem.columns.fTermBegin.push_back(problem.columns.fTerms.size());
}

// Which columns are constant, copies or products goes by chance, so that a model without intercept
// and one with its constants in the middle come up too.
void MakeColumns(Problem& problem, int nColumns, int nValues, Random& random) {
  std::vector<int> indices;
  for (int i = 0; i < problem.nParams; ++i) indices.push_back(i);
  while (static_cast<int>(indices.size()) > nColumns) {
    indices.erase(indices.begin() + random.IntBelow(static_cast<int>(indices.size())));
  }
  const int leading = random.IntBelow(3);
  for (int c = 0; c < nColumns; ++c) {
    const int position = random.IntBelow(nValues);
    const int kind = c < leading ? 0 : random.IntBelow(8);
    if (kind == 0) {
      AddColumn(problem, indices[static_cast<std::size_t>(c)], {});
    } else if (kind == 1) {
      AddColumn(problem, indices[static_cast<std::size_t>(c)],
                {{position, 1 + random.IntBelow(3)}, {random.IntBelow(nValues), 1}});
    } else {
      AddColumn(problem, indices[static_cast<std::size_t>(c)], {{position, 1}});
    }
  }
}

Problem MakeProblem(const Shape& shape, std::uint64_t seed) {
  Random random(seed);
  Problem problem;
  problem.nParams = shape.nParams;
  problem.nCategs = shape.nCategs;
  const int nValues = std::max(shape.nColumns, 1);
  MakeColumns(problem, shape.nColumns, nValues, random);
  problem.layout = {static_cast<std::size_t>(nValues) + 3, nValues,
                    random.IntBelow(2) == 0 ? nValues + 1 : -1,
                    random.IntBelow(2) == 0 ? nValues + 2 : -1};
  for (std::size_t r = 0; r < shape.nRows; ++r) {
    for (int v = 0; v < nValues; ++v) {
      problem.rows.push_back(random.IntBelow(6) == 0 ? 0.0 : 3.0 * random.Noise());
    }
    problem.rows.push_back(random.IntBelow(shape.nCategs));
    problem.rows.push_back(1.0 + random.IntBelow(3));
    problem.rows.push_back(1.5 + random.Noise());
  }
  for (int i = 0; i < (shape.nCategs - 1) * shape.nParams; ++i) {
    problem.estimates.push_back(random.Noise());
  }
  problem.checkSeparation = random.IntBelow(2) == 0;
  return problem;
}

/// All that an accumulator can be asked, and how its rows ended.
struct Sums {
  int answer = 0;
  int polls = 0;
  int valid = 0;
  int invalid = 0;
  std::vector<double> numbers;
  std::vector<double> scores;
  MCSymMatrix hessian;

  explicit Sums(const MCAccumStatsLogistic& accumulator) : scores(accumulator.GetScores()) {
    numbers.resize(5);
    numbers[0] = accumulator.GetLL();
    accumulator.GetCounts(valid, invalid, numbers[1]);
    accumulator.GetMinMaxProbabilities(numbers[2], numbers[3], numbers[4]);
    accumulator.GetHessian(hessian);
  }
};

void ExpectSame(const Sums& expected, const Sums& actual) {
  EXPECT_EQ(expected.answer, actual.answer);
  EXPECT_EQ(expected.polls, actual.polls);
  EXPECT_EQ(expected.valid, actual.valid);
  EXPECT_EQ(expected.invalid, actual.invalid);
  EXPECT_TRUE(mctest::SameBitsOrNaN(expected.numbers, actual.numbers));
  EXPECT_TRUE(mctest::SameBitsOrNaN(expected.scores, actual.scores));
  EXPECT_TRUE(mctest::SameBitsOrNaN(expected.hessian, actual.hessian));
}

/// A value of a column, from its terms and nothing of the library's.
double ValueOf(const MCPatternColumns& columns, std::size_t column, const double* row) {
  double value = 1.0;
  for (std::size_t t = columns.fTermBegin[column]; t < columns.fTermBegin[column + 1]; ++t) {
    if (columns.fTerms[t].fPosition < 0) return 0.0;
    for (int k = 0; k < columns.fTerms[t].fPower; ++k) value *= row[columns.fTerms[t].fPosition];
  }
  return value;
}

double WeightOf(const MCPatternLayout& layout, const double* row) {
  const double frequency = layout.fFreqWeightOffset < 0 ? 1.0 : row[layout.fFreqWeightOffset];
  return layout.fRegrWeightOffset < 0 ? frequency : frequency * row[layout.fRegrWeightOffset];
}

/// The loop that the rows together must equal.
int AddOneByOne(Problem& problem, MCAccumStatsLogistic& accumulator, const MCCancelInfo& cancel,
                bool likelihoodOnly) {
  for (std::size_t r = 0; r < problem.NRows(); ++r) {
    if (cancel.WillCancel()) return 1;
    const double* row = problem.Row(r);
    std::vector<int> indices;
    std::vector<double> values;
    for (std::size_t c = 0; c < problem.columns.NColumns(); ++c) {
      const double value = ValueOf(problem.columns, c, row);
      if (value == 0.0) continue;
      indices.push_back(problem.columns.fIndices[c]);
      values.push_back(value);
    }
    const double y = row[problem.layout.fDependentOffset] + 0.5;
    const int category = std::abs(y) < 1e9 ? static_cast<int>(y) : -1;
    if (accumulator.UpdateForRow(indices, values, category, WeightOf(problem.layout, row),
                                 likelihoodOnly) < 0) {
      return -1;
    }
  }
  return 0;
}

struct Run {
  bool isTogether;
  bool likelihoodOnly;
  int cancelAt;
  int nPasses;
};

Sums SumsOf(Problem& problem, const Run& run) {
  const MCLogRegSettings settings;
  mctest::ScriptedCancel query(run.cancelAt);
  const MCCancelInfo cancel(&query);
  MCAccumStatsLogistic accumulator(settings, problem.nParams, problem.nCategs, problem.estimates);
  accumulator.Reset(MCConst::MC_EST_NEWTON, problem.checkSeparation);
  int answer = 0;
  for (int pass = 0; pass < run.nPasses; ++pass) {
    answer = run.isTogether ? accumulator.UpdateForPattern(problem.columns, problem.layout,
                                                           problem.rows.data(), problem.NRows(),
                                                           cancel, run.likelihoodOnly)
                            : AddOneByOne(problem, accumulator, cancel, run.likelihoodOnly);
  }
  Sums sums(accumulator);
  sums.answer = answer;
  sums.polls = query.fPolls;
  return sums;
}

void ExpectSameTogetherAndOneByOne(Problem& problem, int cancelAt = 0) {
  for (const bool likelihoodOnly : {false, true}) {
    const Sums expected = SumsOf(problem, {false, likelihoodOnly, cancelAt, 2});
    for (const auto path : mctest::SupportedPaths()) {
      SCOPED_TRACE(testing::Message() << "path " << static_cast<int>(path) << " likelihood only "
                                      << likelihoodOnly << " cancel at " << cancelAt);
      const mctest::NarrowedVectorPath narrowed(path);
      ExpectSame(expected, SumsOf(problem, {true, likelihoodOnly, cancelAt, 2}));
    }
  }
}

class Shapes : public testing::TestWithParam<int> {};

TEST_P(Shapes, HaveTheSameBitsTogetherAndOneByOne) {
  const int nParams = GetParam();
  std::uint64_t seed = static_cast<std::uint64_t>(nParams) * 1000;
  for (const int nColumns : {0, 1, 2, nParams / 3, nParams / 2, nParams - 1, nParams}) {
    if (nColumns < 0 || nColumns > nParams) continue;
    for (int nCategs = 2; nCategs <= 6; ++nCategs) {
      for (const std::size_t nRows : {1U, 3U, 4U, 5U, 8U, 13U, 63U, 64U, 65U, 130U, 300U}) {
        SCOPED_TRACE(testing::Message() << nColumns << " columns of " << nParams << ", " << nCategs
                                        << " categories, " << nRows << " rows");
        Problem problem = MakeProblem({nParams, nColumns, nCategs, nRows}, ++seed);
        ExpectSameTogetherAndOneByOne(problem);
        if (HasFailure()) return;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(MCAccumStatsLogisticBits, Shapes,
                         testing::Values(0, 1, 2, 3, 5, 6, 7, 8, 9, 11, 15, 16, 17, 21, 24, 25, 31,
                                         32, 33, 40));

}  // namespace
