// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcexport.h"

#include <cstddef>
#include <vector>

namespace MCCommonMath {

/// Symmetric matrix kept as a triangle of blocks, which are symmetric matrices of one size each:
/// the Hessian of a multinomial logit, with a block for each pair of categories but the reference.
/// Rows accumulate into the blocks; CopyToSymMatrix then makes the one matrix that is factored.
///
/// With R block rows, block (I, J), 0 <= J <= I < R, is number I(I+1)/2 + J of R(R+1)/2, and (J, I)
/// is the same block. Each block has b rows and stores its own lower triangle only, the blocks off
/// the diagonal too. All counts and indices count from 0.
///
/// Memory exhaustion doesn't throw: it leaves an invalid structure, with a negative count and
/// without blocks. The same holds beyond 65,535 block rows, or rows in a block, where a triangle
/// index would pass 2^31. Test it with IsValidStruct().
class MC_EXPORT MCSymBlockMatrix {
public:
  /// No block rows, block size 0.
  MCSymBlockMatrix() = default;
  /// The same as SetNRows.
  MCSymBlockMatrix(int nRowsSS, int blockRows) { SetNRows(nRowsSS, blockRows); }
  /// A copy that can't be allocated is invalid, with both counts -1.
  MCSymBlockMatrix(const MCSymBlockMatrix& other);
  MCSymBlockMatrix& operator=(const MCSymBlockMatrix& other);
  ~MCSymBlockMatrix() = default;

  /// False after an allocation that failed.
  bool IsValidStruct() const { return fNRowsSS >= 0 && fBlockRows >= 0; }

  /// Number of block rows, and of rows in each block; negative as SetNRows tells.
  int GetNRowsSS() const { return fNRowsSS; }
  int GetBlockRows() const { return fBlockRows; }

  /// Becomes nRowsSS block rows with blocks of `blockRows` rows, all zero; a negative count counts
  /// as 0. False if memory runs out: then there are no blocks, and the number of block rows is -1
  /// if the list of blocks was too much, the block size if a single block was, both if all the
  /// blocks together were.
  bool SetNRows(int nRowsSS, int blockRows);

  /// Sizes `blocks` to nRowsSS(nRowsSS+1)/2 matrices; those in both sizes stay, new ones have no
  /// rows. For nRowsSS <= 0 the vector is emptied. If memory runs out, if nRowsSS exceeds 65,535,
  /// or if one of the blocks is invalid then, nRowsSS becomes -1 and the vector is emptied. True if
  /// nRowsSS >= 0 then.
  static bool ResizeNRows(std::vector<MCSymMatrix>& blocks, int& nRowsSS);

  /// Block (iRowSS, iColSS), in any order of the two, owned by this structure; valid until SetNRows
  /// or assignment. Its number of rows must stay as it is. An index out of range, which is any for
  /// a structure that isn't valid, ends the process by std::abort, in every build, after a message
  /// on the standard error: one test costs less than the access, and there is no block to answer.
  MCSymMatrix& GetElemSSRef(int iRowSS, int iColSS) { return fBlocks[BlockIndex(iRowSS, iColSS)]; }
  const MCSymMatrix& GetElemSSRef(int iRowSS, int iColSS) const {
    return fBlocks[BlockIndex(iRowSS, iColSS)];
  }

  /// Zeroes every block.
  void Clear();

  /// Writes the whole out: element (I*b + r, J*b + c) of `out` is (r, c) of block (I, J), for r and
  /// c < b, and c <= r where I = J. `out` gets N = R*b rows in 1 block if it has another number of
  /// rows, and takes the shape of the block where there is a single one. Answers N. -1, with out
  /// untouched, if the structure is invalid or a block has lost its size; -1, with 0 rows in out,
  /// if out can't be allocated. `out` must not be one of the blocks.
  int CopyToSymMatrix(MCSymMatrix& out) const;

  /// Writes counts and blocks to the diagnostic display.
  void Display() const;

private:
  [[noreturn]] static void FailAssertion(const char* assertion);

  std::size_t BlockIndex(int iRowSS, int iColSS) const {
    if (iRowSS < 0) FailAssertion("iRowSS >= 0");
    if (iRowSS >= fNRowsSS || fBlockRows < 0) FailAssertion("iRowSS < fNRowsSS");
    if (iColSS < 0) FailAssertion("iColSS >= 0");
    if (iColSS >= fNRowsSS) FailAssertion("iColSS < fNRowsSS");
    const std::size_t i = static_cast<std::size_t>(iRowSS < iColSS ? iColSS : iRowSS);
    const std::size_t j = static_cast<std::size_t>(iRowSS < iColSS ? iRowSS : iColSS);
    return i * (i + 1) / 2 + j;
  }

  void Invalidate();
  bool AreBlocksWhole() const;
  void CopyBlock(int I, int J, MCSymMatrix& out) const;

  int fNRowsSS = 0;
  int fBlockRows = 0;
  std::vector<MCSymMatrix> fBlocks;
};

}  // namespace MCCommonMath
