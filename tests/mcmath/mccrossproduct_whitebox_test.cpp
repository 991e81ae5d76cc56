// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/makekernels.h"
#include "mcmath/detail/mccrossproduct.h"
#include "mcmath/detail/vectorkernels.h"
#include "support/samebits.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using MCCommonMath::detail::AddRankOne;
using MCCommonMath::detail::MCCrossProduct;
using MCCommonMath::detail::RowBlock;
using MCCommonMath::detail::VectorKernels;
using MCCommonMath::detail::VectorPath;
using mctest::SameBitsOrNaN;
using mctest::SupportedPaths;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Rows of a block of a small matrix.
constexpr std::size_t kBlockRows = 128;

struct Row {
  std::vector<double> values;
  double weight;
};

std::size_t TriangleSize(int n) {
  return static_cast<std::size_t>(n) * static_cast<std::size_t>(n + 1) / 2;
}

/// The definition, element by element.
void AddPlainly(std::vector<double>& triangle, const Row& row) {
  if (!(row.weight > 0.0)) return;
  for (std::size_t i = 0; i < row.values.size(); ++i) {
    if (row.values[i] == 0.0) continue;
    const double factor = row.weight * row.values[i];
    for (std::size_t j = 0; j <= i; ++j) {
      const double product = factor * row.values[j];
      triangle[i * (i + 1) / 2 + j] += product;
    }
  }
}

/// Rows of mixed magnitudes, `zeroShare` of the entries 0.
std::vector<Row> RandomRows(int n, std::size_t count, double zeroShare, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.3, 2.0);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  std::vector<Row> rows(count);
  for (Row& row : rows) {
    row.weight = 0.01 + uniform(engine);
    row.values.resize(static_cast<std::size_t>(n));
    for (double& x : row.values) x = uniform(engine) < zeroShare ? 0.0 : normal(engine);
  }
  return rows;
}

void AddAsSparse(MCCrossProduct& accumulator, const Row& row) {
  std::vector<int> positions;
  std::vector<double> values;
  for (std::size_t i = 0; i < row.values.size(); ++i) {
    if (row.values[i] == 0.0) continue;
    positions.push_back(static_cast<int>(i));
    values.push_back(row.values[i]);
  }
  accumulator.AddSparseRow(static_cast<int>(positions.size()), positions.data(), values.data(),
                           row.weight);
}

/// Every supported path, rows added densely, sparsely and in turn, against the definition.
void ExpectSameBits(int n, const std::vector<Row>& rows, const std::vector<double>& start) {
  std::vector<double> expected = start;
  for (const Row& row : rows) AddPlainly(expected, row);
  for (VectorPath path : SupportedPaths()) {
    for (int sparseShare : {0, 1, 3}) {
      std::vector<double> triangle = start;
      MCCrossProduct accumulator(n, triangle, path);
      for (std::size_t k = 0; k < rows.size(); ++k) {
        if (sparseShare > 0 && k % static_cast<std::size_t>(sparseShare) == 0) {
          AddAsSparse(accumulator, rows[k]);
        } else {
          accumulator.AddRow(rows[k].values.data(), rows[k].weight);
        }
      }
      accumulator.Flush();
      EXPECT_TRUE(SameBitsOrNaN(expected, triangle))
          << "n " << n << ", " << rows.size() << " rows, path " << static_cast<int>(path)
          << ", sparse " << sparseShare;
    }
  }
}

void ExpectSameBits(int n, const std::vector<Row>& rows) {
  ExpectSameBits(n, rows, std::vector<double>(TriangleSize(n), 0.0));
}

TEST(MCCrossProduct, GivesTheBitsOfRowByRowUpdatesAtEveryOrderTo200) {
  for (int n = 1; n <= 200; ++n) {
    ExpectSameBits(n, RandomRows(n, n % 10 == 0 ? 2 * kBlockRows + 3 : 5, 0.1,
                                 1000U + static_cast<unsigned>(n)));
  }
}

TEST(MCCrossProduct, GivesTheSameBitsAroundTheBordersOfABlock) {
  for (std::size_t count : {std::size_t{0}, std::size_t{1}, kBlockRows - 1, kBlockRows,
                            kBlockRows + 1, 2 * kBlockRows, 3 * kBlockRows + 7}) {
    ExpectSameBits(13, RandomRows(13, count, 0.2, 7U));
  }
}

TEST(MCCrossProduct, GivesTheSameBitsForMostlyZeroRows) {
  for (int n : {3, 11, 50, 97}) ExpectSameBits(n, RandomRows(n, 300, 0.9, 11U));
}

TEST(MCCrossProduct, AddsOntoWhatTheTargetHolds) {
  std::vector<double> start(TriangleSize(21));
  for (std::size_t k = 0; k < start.size(); ++k) start[k] = 0.1 * static_cast<double>(k) - 7.0;
  ExpectSameBits(21, RandomRows(21, 200, 0.1, 3U), start);
}

TEST(MCCrossProduct, SkipsZeroRowsOfInfinitiesAndNaNAsTheDefinitionDoes) {
  for (double special : {kInfinity, -kInfinity, kNaN, 1e308, 5e-324, -0.0}) {
    for (int n : {1, 2, 8, 9, 33}) {
      std::vector<Row> rows = RandomRows(n, kBlockRows + 20, 0.3, 5U);
      for (std::size_t k : {std::size_t{0}, std::size_t{17}, kBlockRows - 1, kBlockRows}) {
        rows[k].values[k % static_cast<std::size_t>(n)] = special;
      }
      ExpectSameBits(n, rows);
    }
  }
}

TEST(MCCrossProduct, MeetsWeightsThatOverflowTheProductOrAreInfinite) {
  for (double weight : {1e308, kInfinity, 5e-324}) {
    std::vector<Row> rows = RandomRows(10, 40, 0.3, 9U);
    rows[8].weight = weight;
    rows[30].weight = weight;
    ExpectSameBits(10, rows);
  }
}

TEST(MCCrossProduct, KeepsNegativeZerosOfTheTargetThatNoRowTouches) {
  std::vector<double> start(TriangleSize(19), -0.0);
  std::vector<Row> rows = RandomRows(19, kBlockRows + 5, 0.7, 13U);
  for (Row& row : rows) row.values[4] = 0.0;
  ExpectSameBits(19, rows, start);
}

TEST(MCCrossProduct, LeavesASignalingNaNOfTheTargetThatNoRowTouches) {
  const std::vector<double> start(TriangleSize(2), std::numeric_limits<double>::signaling_NaN());
  const double row[] = {0.0, 0.0};
  const int position = 1;
  std::vector<double> triangle = start;
  MCCrossProduct accumulator(2, triangle);
  accumulator.AddRow(row, 1.0);
  accumulator.AddSparseRow(1, &position, row, 1.0);
  accumulator.Flush();
  // SameBitsOrNaN takes all NaN as one.
  EXPECT_EQ(std::memcmp(start.data(), triangle.data(), start.size() * sizeof(double)), 0);
}

TEST(MCCrossProduct, RefusesAWeightThatIsNotPositive) {
  std::vector<double> triangle(3, 1.5);
  MCCrossProduct accumulator(2, triangle);
  const double row[] = {1.0, 2.0};
  const int positions[] = {0, 1};
  for (double weight : {0.0, -0.0, -1.0, -kInfinity, kNaN}) {
    EXPECT_FALSE(accumulator.AddRow(row, weight));
    EXPECT_FALSE(accumulator.AddSparseRow(2, positions, row, weight));
    EXPECT_FALSE(accumulator.HasPending());
  }
  accumulator.Flush();
  EXPECT_EQ(triangle, std::vector<double>(3, 1.5));
}

TEST(MCCrossProduct, HoldsRowsBackUntilFlushedOrTheBlockIsFull) {
  std::vector<double> triangle(1, 0.0);
  MCCrossProduct accumulator(1, triangle);
  const double x = 2.0;
  for (std::size_t k = 1; k < kBlockRows; ++k) {
    EXPECT_TRUE(accumulator.AddRow(&x, 1.0));
    EXPECT_TRUE(accumulator.HasPending());
  }
  EXPECT_EQ(triangle[0], 0.0);
  EXPECT_TRUE(accumulator.AddRow(&x, 1.0));
  EXPECT_FALSE(accumulator.HasPending());
  EXPECT_EQ(triangle[0], 4.0 * static_cast<double>(kBlockRows));
  EXPECT_TRUE(accumulator.AddRow(&x, 0.5));
  accumulator.Flush();
  EXPECT_FALSE(accumulator.HasPending());
  EXPECT_EQ(triangle[0], 4.0 * static_cast<double>(kBlockRows) + 2.0);
}

TEST(MCCrossProduct, LooksAtTheTargetAnewAfterAFlush) {
  std::vector<double> triangle(TriangleSize(2), 0.0);
  MCCrossProduct accumulator(2, triangle);
  const double row[] = {0.0, 1.0};
  accumulator.AddRow(row, 1.0);
  accumulator.Flush();
  triangle.assign(3, -0.0);
  accumulator.AddRow(row, 1.0);
  accumulator.Flush();
  EXPECT_TRUE(SameBitsOrNaN({-0.0, 0.0, 1.0}, triangle));
}

TEST(MCCrossProduct, TakesAMatrixWithoutRows) {
  std::vector<double> triangle;
  MCCrossProduct accumulator(0, triangle);
  EXPECT_TRUE(accumulator.AddRow(nullptr, 1.0));
  EXPECT_TRUE(accumulator.AddSparseRow(0, nullptr, nullptr, 1.0));
  accumulator.Flush();
  EXPECT_TRUE(triangle.empty());
}

TEST(MCCrossProduct, CallsARowSparseByTheSquareOfItsNonZeros) {
  EXPECT_TRUE(MCCrossProduct::IsSparse(287, 11));
  EXPECT_FALSE(MCCrossProduct::IsSparse(51, 51));
  EXPECT_FALSE(MCCrossProduct::IsSparse(51, 25));
}

TEST(AddRankOne, IsTheDefinition) {
  for (const Row& row : RandomRows(14, 20, 0.3, 21U)) {
    std::vector<double> expected(TriangleSize(14), 0.25);
    std::vector<double> actual = expected;
    AddPlainly(expected, row);
    AddRankOne(actual.data(), 14, row.values.data(), row.weight);
    EXPECT_TRUE(SameBitsOrNaN(expected, actual));
  }
}

/// The kernels of width W, compiled here for the plain processor, so that also the logic of
/// widths that this machine lacks is tested.
template <std::size_t W>
struct Kernels {
  static constexpr VectorKernels kTable = MakeKernels<W>();
  static constexpr std::size_t kCapacity = 32;

  explicit Kernels(std::size_t n)
      : panels(RowBlock::PanelsSize(kTable.panelColumns, n, kCapacity)),
        weights(kCapacity),
        scratch(MCCommonMath::detail::kBandRows * kCapacity),
        block{n, kCapacity, panels.data(), panels.data(), weights.data(), scratch.data()} {}

  std::vector<double> panels;
  std::vector<double> weights;
  std::vector<double> scratch;
  RowBlock block;
};

template <std::size_t W>
void ExpectKernelsAgree(int n) {
  const Kernels<W> kernels(static_cast<std::size_t>(n));
  std::vector<double> expected(TriangleSize(n), 0.0);
  std::vector<double> actual = expected;
  const std::vector<Row> data = RandomRows(n, Kernels<W>::kCapacity - 5, 0.1, 17U);
  for (std::size_t k = 0; k < data.size(); ++k) {
    kernels.block.weights[k] = data[k].weight;
    ASSERT_TRUE(kernels.kTable.stageRow(kernels.block, kernels.block.leftPanels, k,
                                        data[k].values.data(), data[k].weight));
    AddPlainly(expected, data[k]);
  }
  kernels.kTable.foldBlock(kernels.block, data.size(), actual.data());
  EXPECT_TRUE(SameBitsOrNaN(expected, actual)) << "width " << W << ", n " << n;
}

TEST(CrossProductKernel, AgreesAtEveryWidthOnAnyProcessor) {
  for (int n = 1; n <= 70; ++n) {
    ExpectKernelsAgree<2>(n);
    ExpectKernelsAgree<4>(n);
    ExpectKernelsAgree<8>(n);
  }
}

template <std::size_t W>
void ExpectNotFiniteReported(const std::vector<double>& row) {
  const Kernels<W> kernels(row.size());
  EXPECT_FALSE(
      kernels.kTable.stageRow(kernels.block, kernels.block.leftPanels, 3, row.data(), 1.0));
}

TEST(CrossProductKernel, ReportsAnEntryThatIsNotFiniteWhereverItStands) {
  for (std::size_t position = 0; position < 19; ++position) {
    for (double special : {kInfinity, -kInfinity, kNaN}) {
      std::vector<double> row(19, 1.0);
      row[position] = special;
      ExpectNotFiniteReported<2>(row);
      ExpectNotFiniteReported<4>(row);
      ExpectNotFiniteReported<8>(row);
    }
  }
}

}  // namespace
