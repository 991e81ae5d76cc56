// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcsymmatrix.h"
#include "support/countingallocator.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using MCCommonMath::MCSymMatrix;
using MCCommonMath::MCSymMatrixData;

constexpr int kHuge = std::numeric_limits<int>::max();

struct Shape {
  int nRows;
  int nBlocks;
  int blockSize;
};

void ExpectShape(const MCSymMatrixData& matrix, const Shape& want) {
  EXPECT_EQ(matrix.GetNRows(), want.nRows);
  EXPECT_EQ(matrix.GetNBlocks(), want.nBlocks);
  EXPECT_EQ(matrix.GetBlockSize(), want.blockSize);
  EXPECT_EQ(matrix.IsValidMatrix(), want.nRows >= 0);
  const auto n = static_cast<std::size_t>(want.nRows < 0 ? 0 : want.nRows);
  EXPECT_EQ(matrix.AsVectorConst().size(), n * (n + 1) / 2);
}

std::vector<double> Ascending(std::size_t n) {
  std::vector<double> values(n);
  for (std::size_t k = 0; k < n; ++k) values[k] = static_cast<double>(k + 1);
  return values;
}

MCSymMatrix Counted(int n) {
  MCSymMatrix matrix(n);
  matrix.AsVector() = Ascending(matrix.AsVectorConst().size());
  return matrix;
}

TEST(MCSymMatrixShape, TheDefaultHasNoRowsAndNoBlocks) {
  ExpectShape(MCSymMatrixData(), {0, 0, 0});
  ExpectShape(MCSymMatrix(), {0, 0, 0});
}

TEST(MCSymMatrixShape, ConstructorsSizeAndZero) {
  const struct {
    int n;
    Shape want;
  } byRows[] = {{3, {3, 1, 3}},         {1, {1, 1, 1}},          {0, {0, 1, 0}},
                {-1, {0, 1, 0}},        {-kHuge - 1, {0, 1, 0}}, {65536, {-1, 1, 65536}},
                {kHuge, {-1, 1, kHuge}}};
  for (const auto& row : byRows) {
    ExpectShape(MCSymMatrixData(row.n), row.want);
    ExpectShape(MCSymMatrix(row.n), row.want);
  }
  const struct {
    int nBlocks, blockSize;
    Shape want;
  } byBlocks[] = {{2, 3, {6, 2, 3}},
                  {0, 3, {0, 0, 0}},
                  {3, 0, {0, 0, 0}},
                  {-2, -3, {0, 0, 0}},
                  {256, 256, {-1, 256, 256}},
                  {65536, 65536, {-1, 65536, 65536}},
                  {kHuge, kHuge, {-1, kHuge, kHuge}}};
  for (const auto& row : byBlocks) {
    ExpectShape(MCSymMatrixData(row.nBlocks, row.blockSize), row.want);
    ExpectShape(MCSymMatrix(row.nBlocks, row.blockSize), row.want);
  }
  EXPECT_EQ(MCSymMatrix(2, 2).AsVectorConst(), std::vector<double>(10, 0.0));
}

TEST(MCSymMatrixShape, AFailedAllocationLeavesAnInvalidMatrixWithItsBlocksAsAskedFor) {
  {
    const mctest::FailAllocation fail(1);
    const MCSymMatrix matrix(3);
    ExpectShape(matrix, {-1, 1, 3});
  }
  const mctest::FailAllocation fail(1);
  const MCSymMatrixData matrix(2, 3);
  ExpectShape(matrix, {-1, 2, 3});
}

TEST(MCSymMatrixShape, TooManyRowsAreRefusedWithoutAnAllocation) {
  const std::size_t before = mctest::AllocationCount();
  const MCSymMatrix matrix(65536);
  EXPECT_EQ(mctest::AllocationCount(), before);
  EXPECT_FALSE(matrix.IsValidMatrix());
}

TEST(MCSymMatrixShape, TheLargestMatrixIsAskedForAndItsIndicesFit31Bits) {
  static_assert(MCCommonMath::detail::PackedIndex(65534, 65534) == 2147450879);
  static_assert(MCCommonMath::detail::PackedIndex(3, 65534) == 2147385348);
  std::vector<double> v(3);
  int n = 65535;
  const mctest::FailAllocation fail(1);
  EXPECT_FALSE(MCSymMatrixData::ResizeNRows(v, n));
  EXPECT_TRUE(fail.HasFired());
  EXPECT_EQ(n, -1);
  EXPECT_TRUE(v.empty());
}

TEST(MCSymMatrixShape, ResizeNRowsKeepsWhatStaysAndZeroesWhatIsNew) {
  std::vector<double> v = {1.0, 2.0, 3.0};
  int n = 3;
  EXPECT_TRUE(MCSymMatrixData::ResizeNRows(v, n));
  EXPECT_EQ(n, 3);
  EXPECT_EQ(v, (std::vector<double>{1.0, 2.0, 3.0, 0.0, 0.0, 0.0}));
  n = 1;
  EXPECT_TRUE(MCSymMatrixData::ResizeNRows(v, n));
  EXPECT_EQ(v, std::vector<double>{1.0});
}

TEST(MCSymMatrixShape, ResizeNRowsEmptiesForNoRowsAndKeepsANegativeCount) {
  for (const int rows : {0, -1, -7}) {
    std::vector<double> v = {1.0};
    int n = rows;
    EXPECT_EQ(MCSymMatrixData::ResizeNRows(v, n), rows == 0);
    EXPECT_EQ(n, rows);
    EXPECT_TRUE(v.empty());
  }
}

TEST(MCSymMatrixShape, CopiesTakeShapeAndContents) {
  MCSymMatrix source = Counted(4);
  ASSERT_TRUE(source.SetNBlocks(2));
  const MCSymMatrix copy(source);
  MCSymMatrix assigned(7);
  assigned = source;
  const MCSymMatrixData base(source);
  for (const MCSymMatrixData* matrix : {static_cast<const MCSymMatrixData*>(&copy),
                                        static_cast<const MCSymMatrixData*>(&assigned), &base}) {
    ExpectShape(*matrix, {4, 2, 2});
    EXPECT_EQ(matrix->AsVectorConst(), Ascending(10));
  }
  MCSymMatrixData other;
  other = base;
  EXPECT_EQ(other.AsVectorConst(), Ascending(10));
}

TEST(MCSymMatrixShape, SelfAssignmentDoesNothing) {
  MCSymMatrix matrix = Counted(3);
  const MCSymMatrix& same = matrix;
  matrix = same;
  matrix.SetData(same);
  ExpectShape(matrix, {3, 1, 3});
  EXPECT_EQ(matrix.AsVectorConst(), Ascending(6));
}

TEST(MCSymMatrixShape, ACopyThatCanNotBeAllocatedIsInvalid) {
  const MCSymMatrix source = Counted(3);
  MCSymMatrix assigned(1);
  {
    const mctest::FailAllocation fail(1);
    const MCSymMatrix copy(source);
    ExpectShape(copy, {-1, 1, 3});
  }
  {
    const mctest::FailAllocation fail(1);
    assigned = source;
  }
  ExpectShape(assigned, {-1, 1, 3});
  const MCSymMatrix copyOfInvalid(assigned);
  ExpectShape(copyOfInvalid, {-1, 1, 3});
  assigned = source;
  EXPECT_EQ(assigned.AsVectorConst(), Ascending(6));
}

TEST(MCSymMatrixShape, SetNRowsZeroesAll) {
  const struct {
    int n;
    Shape want;
  } cases[] = {{5, {5, 1, 5}},  {2, {2, 1, 2}},          {3, {3, 1, 3}}, {0, {0, 1, 0}},
               {-4, {0, 0, 0}}, {65536, {-1, 1, 65536}}, {1, {1, 1, 1}}, {kHuge, {-1, 1, kHuge}}};
  for (const auto& row : cases) {
    MCSymMatrix matrix = Counted(3);
    matrix.SetNBlocks(3);
    matrix.SetNRows(row.n);
    ExpectShape(matrix, row.want);
    for (const double x : matrix.AsVectorConst()) EXPECT_EQ(x, 0.0);
  }
}

TEST(MCSymMatrixShape, ResizeKeepsTheTopLeftTriangle) {
  MCSymMatrix matrix = Counted(3);
  matrix.SetNBlocks(3);
  matrix.Resize(4);
  ExpectShape(matrix, {4, 1, 4});
  EXPECT_EQ(matrix.GetElem(2, 1), 5.0);
  EXPECT_EQ(matrix.GetElem(2, 2), 6.0);
  matrix.Resize(2);
  ExpectShape(matrix, {2, 1, 2});
  EXPECT_EQ(matrix.AsVectorConst(), Ascending(3));
  matrix.Resize(0);
  ExpectShape(matrix, {0, 1, 0});
  matrix.Resize(-3);
  ExpectShape(matrix, {0, 1, 0});
}

TEST(MCSymMatrixShape, AnInvalidMatrixComesBackByTakingANewShape) {
  MCSymMatrix matrix = Counted(3);
  {
    const mctest::FailAllocation fail(1);
    matrix.Resize(9);
  }
  ExpectShape(matrix, {-1, 1, 9});
  matrix.SetNRows(2);
  ExpectShape(matrix, {2, 1, 2});
  EXPECT_EQ(matrix.AsVectorConst(), std::vector<double>(3, 0.0));
}

TEST(MCSymMatrixShape, BlocksMustDivideTheRows) {
  MCSymMatrix matrix = Counted(6);
  const struct {
    int blocks;
    bool want;
  } cases[] = {{1, true},  {2, true},  {3, true},  {6, true},
               {4, false}, {7, false}, {0, false}, {-2, false}};
  for (const auto& row : cases) {
    ASSERT_TRUE(matrix.SetNBlocks(2));
    EXPECT_EQ(matrix.SetNBlocks(row.blocks), row.want) << row.blocks;
    const int blocks = row.want ? row.blocks : 2;
    ExpectShape(matrix, {6, blocks, 6 / blocks});
  }
  EXPECT_EQ(matrix.AsVectorConst(), Ascending(21));
  EXPECT_FALSE(MCSymMatrix(0).SetNBlocks(1));
}

TEST(MCSymMatrixShape, SetDataTakesShapeAndContents) {
  MCSymMatrixData data(2, 2);
  MCSymMatrix matrix = Counted(3);
  matrix.SetData(data);
  ExpectShape(matrix, {4, 2, 2});
  EXPECT_EQ(matrix.AsVectorConst(), std::vector<double>(10, 0.0));
}

TEST(MCSymMatrixShape, ClearKeepsTheShape) {
  MCSymMatrix matrix = Counted(4);
  matrix.SetNBlocks(2);
  matrix.Clear();
  ExpectShape(matrix, {4, 2, 2});
  EXPECT_EQ(matrix.AsVectorConst(), std::vector<double>(10, 0.0));
}

}  // namespace
