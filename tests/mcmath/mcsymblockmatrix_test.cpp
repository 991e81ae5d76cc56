// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymblockmatrix.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using MCCommonMath::MCSymBlockMatrix;
using MCCommonMath::MCSymMatrix;

constexpr int kHuge = std::numeric_limits<int>::max();

/// Element (r, c) of block (I, J) tells its place.
double Entry(int I, int J, int r, int c) {
  return 1000.0 * I + 100.0 * J + 10.0 * r + c + 1.0;
}

MCSymBlockMatrix Filled(int nRowsSS, int blockRows) {
  MCSymBlockMatrix blocks(nRowsSS, blockRows);
  for (int I = 0; I < nRowsSS; ++I) {
    for (int J = 0; J <= I; ++J) {
      for (int r = 0; r < blockRows; ++r) {
        for (int c = 0; c <= r; ++c) blocks.GetElemSSRef(I, J).SetElem(r, c, Entry(I, J, r, c));
      }
    }
  }
  return blocks;
}

void ExpectCounts(const MCSymBlockMatrix& blocks, int nRowsSS, int blockRows) {
  EXPECT_EQ(blocks.GetNRowsSS(), nRowsSS);
  EXPECT_EQ(blocks.GetBlockRows(), blockRows);
  EXPECT_EQ(blocks.IsValidStruct(), nRowsSS >= 0 && blockRows >= 0);
}

TEST(MCSymBlockMatrix, StartsEmpty) {
  ExpectCounts(MCSymBlockMatrix(), 0, 0);
}

TEST(MCSymBlockMatrix, IsMadeOfZerosAndNegativeCountsAreNone) {
  const MCSymBlockMatrix blocks(2, 3);
  ExpectCounts(blocks, 2, 3);
  for (int I = 0; I < 2; ++I) {
    for (int J = 0; J < 2; ++J) {
      EXPECT_EQ(blocks.GetElemSSRef(I, J).AsVectorConst(), std::vector<double>(6, 0.0));
    }
  }
  ExpectCounts(MCSymBlockMatrix(-1, 3), 0, 3);
  ExpectCounts(MCSymBlockMatrix(2, -4), 2, 0);
  MCSymBlockMatrix reused = Filled(3, 2);
  EXPECT_TRUE(reused.SetNRows(2, 3));
  ExpectCounts(reused, 2, 3);
  EXPECT_EQ(reused.GetElemSSRef(1, 0).AsVectorConst(), std::vector<double>(6, 0.0));
  EXPECT_TRUE(reused.SetNRows(-1, -1));
  ExpectCounts(reused, 0, 0);
}

TEST(MCSymBlockMatrix, ReadsABlockAboveTheDiagonalAsTheOneBelow) {
  MCSymBlockMatrix blocks = Filled(3, 2);
  for (int I = 0; I < 3; ++I) {
    for (int J = 0; J <= I; ++J) {
      EXPECT_EQ(&blocks.GetElemSSRef(I, J), &blocks.GetElemSSRef(J, I));
      EXPECT_EQ(blocks.GetElemSSRef(J, I).GetElem(1, 0), Entry(I, J, 1, 0));
    }
  }
  EXPECT_EQ(&std::as_const(blocks).GetElemSSRef(0, 2), &blocks.GetElemSSRef(2, 0));
}

TEST(MCSymBlockMatrix, ClearsEveryBlock) {
  MCSymBlockMatrix blocks = Filled(2, 2);
  blocks.Clear();
  for (const auto& [I, J] : {std::pair{0, 0}, std::pair{1, 0}, std::pair{1, 1}}) {
    EXPECT_EQ(blocks.GetElemSSRef(I, J).AsVectorConst(), std::vector<double>(3, 0.0));
  }
}

TEST(MCSymBlockMatrix, CopiesDeeply) {
  MCSymBlockMatrix blocks = Filled(2, 2);
  const MCSymBlockMatrix copy(blocks);
  MCSymBlockMatrix assigned(5, 1);
  assigned = blocks;
  blocks.Clear();
  for (const MCSymBlockMatrix* other : {&copy, &std::as_const(assigned)}) {
    ExpectCounts(*other, 2, 2);
    EXPECT_EQ(other->GetElemSSRef(1, 0).GetElem(1, 1), Entry(1, 0, 1, 1));
  }
  MCSymBlockMatrix& self = assigned;
  assigned = self;
  EXPECT_EQ(assigned.GetElemSSRef(1, 1).GetElem(1, 0), Entry(1, 1, 1, 0));
}

TEST(MCSymBlockMatrix, WritesTheWholeOut) {
  for (int nRowsSS : {2, 3, 5}) {
    for (int b : {1, 2, 4}) {
      MCSymMatrix out(7);
      ASSERT_EQ(Filled(nRowsSS, b).CopyToSymMatrix(out), nRowsSS * b);
      ASSERT_EQ(out.GetNRows(), nRowsSS * b);
      for (int i = 0; i < nRowsSS * b; ++i) {
        for (int j = 0; j <= i; ++j) {
          const int r = i % b;
          const int c = j % b;
          EXPECT_EQ(out.GetElem(i, j), Entry(i / b, j / b, r > c ? r : c, r > c ? c : r));
        }
      }
    }
  }
}

TEST(MCSymBlockMatrix, OverwritesAMatrixOfTheRightSize) {
  MCSymMatrix out(4);
  out.AddToDiagonal(5.0);
  EXPECT_EQ(MCSymBlockMatrix(2, 2).CopyToSymMatrix(out), 4);
  EXPECT_EQ(out.AsVectorConst(), std::vector<double>(10, 0.0));
}

TEST(MCSymBlockMatrix, WritesASingleBlockOutByAssignment) {
  const MCSymBlockMatrix blocks = Filled(1, 3);
  MCSymMatrix out(2, 3);
  EXPECT_EQ(blocks.CopyToSymMatrix(out), 3);
  EXPECT_EQ(out.AsVectorConst(), blocks.GetElemSSRef(0, 0).AsVectorConst());
  EXPECT_EQ(out.GetNBlocks(), 1);
}

TEST(MCSymBlockMatrix, WritesNothingOutAsNoRows) {
  for (const auto& [nRowsSS, b] : {std::pair{0, 3}, std::pair{3, 0}, std::pair{1, 0}}) {
    MCSymMatrix out(4);
    EXPECT_EQ(MCSymBlockMatrix(nRowsSS, b).CopyToSymMatrix(out), 0);
    EXPECT_EQ(out.GetNRows(), 0);
  }
}

TEST(MCSymBlockMatrix, RefusesToWriteOutWhatIsNotWhole) {
  MCSymMatrix out(2);
  out.AddToDiagonal(5.0);
  const std::vector<double> before = out.AsVectorConst();
  EXPECT_EQ(MCSymBlockMatrix(kHuge, 1).CopyToSymMatrix(out), -1);
  EXPECT_EQ(MCSymBlockMatrix(1, kHuge).CopyToSymMatrix(out), -1);
  for (int nRowsSS : {1, 2}) {
    MCSymBlockMatrix blocks(nRowsSS, 3);
    blocks.GetElemSSRef(0, 0).Resize(2);
    EXPECT_EQ(blocks.CopyToSymMatrix(out), -1);
  }
  EXPECT_EQ(out.AsVectorConst(), before);
  EXPECT_EQ(out.GetNRows(), 2);
}

TEST(MCSymBlockMatrix, RefusesSizesBeyondMemory) {
  // One count too large for a triangle, the other or both.
  ExpectCounts(MCSymBlockMatrix(kHuge, 2), -1, 2);
  ExpectCounts(MCSymBlockMatrix(2, kHuge), 2, -1);
  ExpectCounts(MCSymBlockMatrix(kHuge, kHuge), -1, -1);
  MCSymBlockMatrix blocks(2, 2);
  EXPECT_FALSE(blocks.SetNRows(65536, 1));
  ExpectCounts(blocks, -1, 1);
  EXPECT_TRUE(blocks.SetNRows(1, 1));
  ExpectCounts(blocks, 1, 1);
}

TEST(MCSymBlockMatrix, TurnsExhaustionIntoNegativeCounts) {
  std::size_t nFailures = 0;
  for (std::size_t k = 1;; ++k) {
    MCSymBlockMatrix blocks(1, 1);
    const mctest::FailAllocation failure(k);
    const bool isDone = blocks.SetNRows(3, 4);
    EXPECT_EQ(isDone, !failure.HasFired());
    EXPECT_EQ(isDone, blocks.IsValidStruct());
    if (!failure.HasFired()) break;
    ++nFailures;
    // The list of blocks, the template, then each of the six blocks.
    const std::pair<int, int> counts = k == 1   ? std::pair{-1, 4}
                                       : k == 2 ? std::pair{3, -1}
                                                : std::pair{-1, -1};
    ExpectCounts(blocks, counts.first, counts.second);
    MCSymMatrix out(1);
    EXPECT_EQ(blocks.CopyToSymMatrix(out), -1);
    EXPECT_EQ(out.GetNRows(), 1);
    EXPECT_EQ(mctest::DisplayOf(blocks).find("Row number"), std::string::npos);
  }
  EXPECT_EQ(nFailures, 8U);
}

TEST(MCSymBlockMatrix, TurnsAnExhaustedCopyIntoAnInvalidOne) {
  const MCSymBlockMatrix blocks = Filled(2, 2);
  std::size_t nFailures = 0;
  for (std::size_t k = 1;; ++k) {
    MCSymBlockMatrix assigned(1, 1);
    const mctest::FailAllocation failure(k);
    assigned = blocks;
    if (!failure.HasFired()) break;
    ++nFailures;
    ExpectCounts(assigned, -1, -1);
  }
  EXPECT_EQ(nFailures, 4U);
  const mctest::FailAllocation failure(1);
  const MCSymBlockMatrix copy(blocks);
  ExpectCounts(copy, -1, -1);
}

TEST(MCSymBlockMatrix, EmptiesAnOutputThatCantBeAllocated) {
  for (int nRowsSS : {1, 2}) {
    const MCSymBlockMatrix blocks = Filled(nRowsSS, 3);
    MCSymMatrix out(1);
    const mctest::FailAllocation failure(1);
    EXPECT_EQ(blocks.CopyToSymMatrix(out), -1);
    EXPECT_TRUE(failure.HasFired());
    EXPECT_TRUE(out.IsValidMatrix());
    EXPECT_EQ(out.GetNRows(), 0);
  }
}

TEST(MCSymBlockMatrix, ResizesAListOfBlocks) {
  std::vector<MCSymMatrix> blocks(1, MCSymMatrix(2));
  int nRowsSS = 3;
  EXPECT_TRUE(MCSymBlockMatrix::ResizeNRows(blocks, nRowsSS));
  EXPECT_EQ(nRowsSS, 3);
  ASSERT_EQ(blocks.size(), 6U);
  EXPECT_EQ(blocks[0].GetNRows(), 2);
  EXPECT_EQ(blocks[5].GetNRows(), 0);
  nRowsSS = 1;
  EXPECT_TRUE(MCSymBlockMatrix::ResizeNRows(blocks, nRowsSS));
  EXPECT_EQ(blocks.size(), 1U);
  nRowsSS = 0;
  EXPECT_TRUE(MCSymBlockMatrix::ResizeNRows(blocks, nRowsSS));
  EXPECT_TRUE(blocks.empty());
  for (int refused : {65536, kHuge, -5}) {
    blocks.resize(1);
    nRowsSS = refused;
    EXPECT_FALSE(MCSymBlockMatrix::ResizeNRows(blocks, nRowsSS));
    EXPECT_LT(nRowsSS, 0);
    EXPECT_TRUE(blocks.empty());
  }
}

TEST(MCSymBlockMatrix, EmptiesAListOfBlocksThatCantGrow) {
  std::size_t nFailures = 0;
  for (std::size_t k = 1;; ++k) {
    std::vector<MCSymMatrix> blocks(1, MCSymMatrix(2));
    int nRowsSS = 2;
    const mctest::FailAllocation failure(k);
    const bool isDone = MCSymBlockMatrix::ResizeNRows(blocks, nRowsSS);
    EXPECT_EQ(isDone, !failure.HasFired());
    if (!failure.HasFired()) break;
    ++nFailures;
    EXPECT_EQ(nRowsSS, -1);
    EXPECT_TRUE(blocks.empty());
  }
  EXPECT_EQ(nFailures, 2U);  // the list, and the block carried over
}

TEST(MCSymBlockMatrixDeathTest, EndsTheProcessForAnIndexOutOfRangeInThisOrder) {
  struct Case {
    int row;
    int column;
    const char* text;
  };
  MCSymBlockMatrix blocks(2, 1);
  for (const Case& c :
       {Case{-1, -1, "iRowSS >= 0"}, Case{2, -1, "iRowSS < fNRowsSS"}, Case{0, -1, "iColSS >= 0"},
        Case{1, 2, "iColSS < fNRowsSS"}, Case{kHuge, 0, "iRowSS < fNRowsSS"}}) {
    const std::string message = std::string(c.text) + ".*mcmath/mcsymblockmatrix";
    EXPECT_EXIT(blocks.GetElemSSRef(c.row, c.column), testing::KilledBySignal(SIGABRT), message);
    EXPECT_EXIT(std::as_const(blocks).GetElemSSRef(c.row, c.column),
                testing::KilledBySignal(SIGABRT), message);
  }
}

TEST(MCSymBlockMatrixDeathTest, EndsTheProcessForAnyBlockOfAnInvalidStructure) {
  MCSymBlockMatrix noList(kHuge, 1);
  MCSymBlockMatrix noBlock(2, kHuge);
  EXPECT_EXIT(noList.GetElemSSRef(0, 0), testing::KilledBySignal(SIGABRT), "iRowSS < fNRowsSS");
  EXPECT_EXIT(noBlock.GetElemSSRef(0, 0), testing::KilledBySignal(SIGABRT), "iRowSS < fNRowsSS");
}

TEST(MCSymBlockMatrix, DisplaysItsBlocks) {
  const MCSymBlockMatrix blocks = Filled(2, 1);
  const auto block = [&blocks](int I, int J) {
    return "\nRow number in the MCSymBlockMatrix = " + std::to_string(I) +
           "\nColumn number in the MCSymBlockMatrix = " + std::to_string(J) +
           "\nMCMATH_NAMESPACE::MCSymMatrix matrix:" + mctest::DisplayOf(blocks.GetElemSSRef(I, J));
  };
  EXPECT_EQ(mctest::DisplayOf(blocks),
            "\nMCSymBlockMatrix display start"
            "\nThe number of rows in the MCSymBlockMatrix = 2"
            "\nThe number of rows in each MCMATH_NAMESPACE::MCSymMatrix matrix = 1" +
                block(0, 0) + block(1, 0) + block(1, 1) + "\nMCSymBlockMatrix display end");
}

}  // namespace
