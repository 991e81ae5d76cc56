// SPDX-License-Identifier: Apache-2.0
//
// Rows of a pattern that are added together give the bits that they give one by one.
#include "regression/logistic/detail/mcpatterncolumns.h"
#include "regression/logistic/mcaccumstatslogistic.h"
#include "regression/settings/mclogregsettings.h"
#include "support/countingallocator.h"
#include "support/samebits.h"
#include "support/scriptedcancel.h"
#include "support/splitmix64.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
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
    for (const std::size_t nRows : {1U, 3U, 4U, 5U, 8U, 13U, 63U, 64U, 65U, 130U, 300U}) {
      const int nCategs = 2 + static_cast<int>(++seed % 5);
      SCOPED_TRACE(testing::Message() << nColumns << " columns of " << nParams << ", " << nCategs
                                      << " categories, " << nRows << " rows");
      Problem problem = MakeProblem({nParams, nColumns, nCategs, nRows}, seed);
      ExpectSameTogetherAndOneByOne(problem);
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(MCAccumStatsLogisticBits, Shapes, testing::Range(0, 41));

/// Something out of the ordinary in one row.
struct Oddity {
  const char* what;
  void (*spoil)(Problem&, std::size_t row);
};

void PrintTo(const Oddity& oddity, std::ostream* out) {
  *out << oddity.what;
}

void SetValues(Problem& problem, std::size_t row, double value) {
  for (int v = 0; v < problem.layout.fDependentOffset; ++v) problem.Value(row, v) = value;
}

/// Frequency weight and regression weight.
void SetWeights(Problem& problem, std::size_t row, double frequency, double regression) {
  problem.layout.fFreqWeightOffset = problem.layout.fDependentOffset + 1;
  problem.layout.fRegrWeightOffset = problem.layout.fDependentOffset + 2;
  problem.Value(row, problem.layout.fFreqWeightOffset) = frequency;
  problem.Value(row, problem.layout.fRegrWeightOffset) = regression;
}

void SetDependent(Problem& problem, std::size_t row, double value) {
  problem.Value(row, problem.layout.fDependentOffset) = value;
}

class OddRows : public testing::TestWithParam<Oddity> {};

TEST_P(OddRows, HaveTheSameBitsTogetherAndOneByOne) {
  std::uint64_t seed = 77;
  for (const int nParams : {1, 4, 9, 21}) {
    for (const int nCategs : {2, 4}) {
      for (const std::size_t row : {0U, 1U, 63U, 64U, 90U, 129U}) {
        SCOPED_TRACE(testing::Message()
                     << nParams << " columns, " << nCategs << " categories, row " << row);
        Problem problem = MakeProblem({nParams, nParams, nCategs, 130}, ++seed);
        GetParam().spoil(problem, row);
        GetParam().spoil(problem, row / 2);
        ExpectSameTogetherAndOneByOne(problem);
        if (HasFailure()) return;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    MCAccumStatsLogisticBits, OddRows,
    testing::Values(
        Oddity{"zeros", [](Problem& p, std::size_t r) { SetValues(p, r, 0.0); }},
        Oddity{"negative zeros", [](Problem& p, std::size_t r) { SetValues(p, r, -0.0); }},
        Oddity{"NaN", [](Problem& p, std::size_t r) { p.Value(r, 0) = kNaN; }},
        Oddity{"infinity", [](Problem& p, std::size_t r) { p.Value(r, 0) = kInfinity; }},
        Oddity{"minus infinities", [](Problem& p, std::size_t r) { SetValues(p, r, -kInfinity); }},
        Oddity{"the limit", [](Problem& p, std::size_t r) { p.Value(r, 0) = 1e75; }},
        Oddity{"beyond the limit", [](Problem& p, std::size_t r) { p.Value(r, 0) = -1.1e75; }},
        Oddity{"huge", [](Problem& p, std::size_t r) { SetValues(p, r, 1e300); }},
        Oddity{"tiny", [](Problem& p, std::size_t r) { SetValues(p, r, 1e-300); }},
        Oddity{"huge weight", [](Problem& p, std::size_t r) { SetWeights(p, r, 1e300, 1.0); }},
        Oddity{"product of weights that overflows",
               [](Problem& p, std::size_t r) { SetWeights(p, r, 1e200, 1e200); }},
        Oddity{"tiny weight", [](Problem& p, std::size_t r) { SetWeights(p, r, 1e-300, 1.0); }},
        Oddity{"weight that vanishes",
               [](Problem& p, std::size_t r) { SetWeights(p, r, 1e-300, 1e-300); }},
        Oddity{"negative weight", [](Problem& p, std::size_t r) { SetWeights(p, r, -1.0, 1.0); }},
        Oddity{"NaN weight", [](Problem& p, std::size_t r) { SetWeights(p, r, 1.0, kNaN); }},
        Oddity{"category K", [](Problem& p, std::size_t r) { SetDependent(p, r, p.nCategs); }},
        Oddity{"negative category", [](Problem& p, std::size_t r) { SetDependent(p, r, -1.0); }},
        Oddity{"category that no int holds",
               [](Problem& p, std::size_t r) { SetDependent(p, r, 1e300); }},
        Oddity{"category NaN", [](Problem& p, std::size_t r) { SetDependent(p, r, kNaN); }},
        Oddity{"category between two",
               [](Problem& p, std::size_t r) { SetDependent(p, r, 0.4999); }}));

/// Something out of the ordinary in the whole problem.
struct Setting {
  const char* what;
  void (*change)(Problem&);
};

void PrintTo(const Setting& setting, std::ostream* out) {
  *out << setting.what;
}

class OddPatterns : public testing::TestWithParam<Setting> {};

TEST_P(OddPatterns, HaveTheSameBitsTogetherAndOneByOne) {
  for (const std::uint64_t seed : {1U, 2U, 3U, 4U}) {
    Problem problem = MakeProblem({9, 6, 3, 100}, seed);
    GetParam().change(problem);
    ExpectSameTogetherAndOneByOne(problem);
  }
}

INSTANTIATE_TEST_SUITE_P(
    MCAccumStatsLogisticBits, OddPatterns,
    testing::Values(
        Setting{"estimate at the limit", [](Problem& p) { p.estimates[0] = 1e75; }},
        Setting{"huge estimates",
                [](Problem& p) { std::fill(p.estimates.begin(), p.estimates.end(), 1e200); }},
        Setting{"infinite estimate", [](Problem& p) { p.estimates[3] = -kInfinity; }},
        Setting{"estimates that are NaN",
                [](Problem& p) { std::fill(p.estimates.begin(), p.estimates.end(), kNaN); }},
        Setting{"large predictors",
                [](Problem& p) {
                  for (double& b : p.estimates) b *= 1e9;
                }},
        Setting{"too few estimates for an accumulator", [](Problem& p) { p.estimates.pop_back(); }},
        Setting{"index beyond the parameters", [](Problem& p) { p.columns.fIndices.back() = 9; }},
        Setting{"negative index", [](Problem& p) { p.columns.fIndices.front() = -1; }},
        Setting{"indices out of order",
                [](Problem& p) { std::swap(p.columns.fIndices[1], p.columns.fIndices[2]); }},
        Setting{"column that stands nowhere",
                [](Problem& p) {
                  for (auto& term : p.columns.fTerms) term.fPosition = -1;
                }},
        Setting{"powers of 0", [](Problem& p) {
                  for (auto& term : p.columns.fTerms) term.fPower = 0;
                }}));

TEST(MCAccumStatsLogisticBits, WidePatternsHaveTheSameBitsTogetherAndOneByOne) {
  std::uint64_t seed = 5;
  for (const int nColumns : {63, 64, 65, 70, 99, 100}) {
    SCOPED_TRACE(testing::Message() << nColumns << " columns of 100");
    Problem problem = MakeProblem({100, nColumns, 3, 300}, ++seed);
    ExpectSameTogetherAndOneByOne(problem);
  }
}

// Too many blocks to be gathered in bands.
TEST(MCAccumStatsLogisticBits, ManyCategoriesHaveTheSameBitsTogetherAndOneByOne) {
  std::uint64_t seed = 60;
  for (const int nColumns : {5, 6}) {
    SCOPED_TRACE(testing::Message() << nColumns << " columns of 6");
    Problem problem = MakeProblem({6, nColumns, 220, 15}, ++seed);
    ExpectSameTogetherAndOneByOne(problem);
  }
}

// A copy of its blocks for the vectors, whole lines instead of one element each, would take 30 MB
// or more.
TEST(MCAccumStatsLogisticBits, ManyCategoriesTakeLittleMemoryBesideTheHessian) {
  constexpr int kCategories = 700;
  Problem problem = MakeProblem({1, 1, kCategories, 5}, 3);
  for (std::size_t r = 0; r < problem.NRows(); ++r) problem.Value(r, 0) = 1.0;
  const MCLogRegSettings settings;
  const MCCancelInfo cancel(nullptr);
  MCAccumStatsLogistic accumulator(settings, 1, kCategories, problem.estimates);
  mctest::ResetLargestAllocation();
  EXPECT_EQ(accumulator.UpdateForPattern(problem.columns, problem.layout, problem.rows.data(),
                                         problem.NRows(), cancel, false),
            0);
  EXPECT_LT(mctest::LargestAllocation(), 16U << 20U);
}

TEST(MCAccumStatsLogisticBits, CancelsEndAtTheSamePoll) {
  Problem problem = MakeProblem({5, 4, 3, 150}, 9);
  Problem refused = problem;
  SetDependent(refused, 70, 3.0);
  for (const int cancelAt : {1, 2, 3, 63, 64, 65, 70, 71, 72, 128, 129, 149, 150, 151, 200}) {
    ExpectSameTogetherAndOneByOne(problem, cancelAt);
    ExpectSameTogetherAndOneByOne(refused, cancelAt);
  }
}

TEST(MCAccumStatsLogisticBits, EstimatesThatShrinkAreRefused) {
  Problem problem = MakeProblem({3, 3, 3, 20}, 4);
  const MCLogRegSettings settings;
  const MCCancelInfo cancel(nullptr);
  MCAccumStatsLogistic accumulator(settings, 3, 3, problem.estimates);
  problem.estimates.pop_back();
  EXPECT_EQ(accumulator.UpdateForPattern(problem.columns, problem.layout, problem.rows.data(), 20,
                                         cancel, false),
            -1);
  const Sums sums(accumulator);
  EXPECT_EQ(sums.invalid, 1);
  EXPECT_EQ(sums.valid, 0);
}

// After patterns of other widths, each must find nothing that they left.
TEST(MCAccumStatsLogisticBits, PatternsOfDifferentWidthsFollowEachOther) {
  const MCLogRegSettings settings;
  const MCCancelInfo cancel(nullptr);
  std::vector<Problem> problems;
  for (const int nColumns : {3, 12, 1, 20, 7, 0, 70, 12}) {
    problems.push_back(MakeProblem({80, nColumns, 4, 90}, static_cast<std::uint64_t>(nColumns)));
  }
  const std::vector<double> estimates = problems.front().estimates;
  MCAccumStatsLogistic together(settings, 80, 4, estimates);
  MCAccumStatsLogistic oneByOne(settings, 80, 4, estimates);
  for (Problem& problem : problems) {
    const int answer = together.UpdateForPattern(
        problem.columns, problem.layout, problem.rows.data(), problem.NRows(), cancel, false);
    EXPECT_EQ(answer, AddOneByOne(problem, oneByOne, cancel, false));
    ExpectSame(Sums(oneByOne), Sums(together));
  }
}

TEST(MCAccumStatsLogisticBits, APatternLikeOneBeforeAllocatesNothing) {
  Problem problem = MakeProblem({9, 6, 3, 100}, 2);
  const MCLogRegSettings settings;
  const MCCancelInfo cancel(nullptr);
  MCAccumStatsLogistic accumulator(settings, 9, 3, problem.estimates);
  const auto add = [&] {
    return accumulator.UpdateForPattern(problem.columns, problem.layout, problem.rows.data(),
                                        problem.NRows(), cancel, false);
  };
  EXPECT_EQ(add(), 0);
  const std::size_t before = mctest::AllocationCount();
  EXPECT_EQ(add(), 0);
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCAccumStatsLogisticBits, NothingIsAddedWhereMemoryRunsOut) {
  Problem problem = MakeProblem({9, 6, 3, 100}, 2);
  const MCLogRegSettings settings;
  const MCCancelInfo cancel(nullptr);
  const Sums expected = SumsOf(problem, {true, false, 0, 1});
  bool hasFired = true;
  for (std::size_t k = 1; hasFired; ++k) {
    MCAccumStatsLogistic accumulator(settings, 9, 3, problem.estimates);
    accumulator.Reset(MCConst::MC_EST_NEWTON, problem.checkSeparation);
    const Sums start(accumulator);
    const auto add = [&] {
      return accumulator.UpdateForPattern(problem.columns, problem.layout, problem.rows.data(),
                                          problem.NRows(), cancel, false);
    };
    try {
      const mctest::FailAllocation fail(k);
      EXPECT_EQ(add(), 0);
      hasFired = fail.HasFired();
    } catch (const std::bad_alloc&) {
      ExpectSame(start, Sums(accumulator));
      EXPECT_EQ(add(), 0);
    }
    const Sums actual(accumulator);
    EXPECT_EQ(expected.valid, actual.valid);
    EXPECT_TRUE(mctest::SameBits(expected.hessian, actual.hessian));
  }
}

}  // namespace
