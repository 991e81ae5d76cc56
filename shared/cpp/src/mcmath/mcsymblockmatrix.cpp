// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymblockmatrix.h"

#include "mcmath/detail/packedtriangle.h"
#include "regression/frame/detail/mcassert.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

namespace MCCommonMath {

namespace {

// Beyond it, the index of the last block would not fit 31 bits.
constexpr int kMaxRowsSS = 65535;

bool AreValid(const std::vector<MCSymMatrix>& blocks) {
  return std::all_of(blocks.begin(), blocks.end(),
                     [](const MCSymMatrix& block) { return block.IsValidMatrix(); });
}

}  // namespace

MCSymBlockMatrix::MCSymBlockMatrix(const MCSymBlockMatrix& other) {
  *this = other;
}

MCSymBlockMatrix& MCSymBlockMatrix::operator=(const MCSymBlockMatrix& other) {
  if (this == &other) return *this;
  fNRowsSS = other.fNRowsSS;
  fBlockRows = other.fBlockRows;
  try {
    fBlocks = other.fBlocks;
  } catch (const std::bad_alloc&) {
    Invalidate();
  }
  if (!AreValid(fBlocks)) Invalidate();
  return *this;
}

void MCSymBlockMatrix::Invalidate() {
  fNRowsSS = -1;
  fBlockRows = -1;
  fBlocks.clear();
}

bool MCSymBlockMatrix::SetNRows(int nRowsSS, int blockRows) {
  fNRowsSS = std::max(nRowsSS, 0);
  fBlockRows = std::max(blockRows, 0);
  fBlocks.clear();
  ResizeNRows(fBlocks, fNRowsSS);
  MCSymMatrix zeros;
  zeros.SetNRows(fBlockRows);
  if (!zeros.IsValidMatrix()) fBlockRows = -1;
  if (IsValidStruct()) {
    std::fill(fBlocks.begin(), fBlocks.end(), zeros);
    if (!AreValid(fBlocks)) Invalidate();
  }
  if (!IsValidStruct()) fBlocks.clear();
  return IsValidStruct();
}

bool MCSymBlockMatrix::ResizeNRows(std::vector<MCSymMatrix>& blocks, int& nRowsSS) {
  if (nRowsSS > kMaxRowsSS) nRowsSS = -1;
  if (nRowsSS > 0) {
    const std::size_t size = detail::RowStart(static_cast<std::size_t>(nRowsSS));
    try {
      blocks.reserve(size);  // resize alone may take twice the memory
      blocks.resize(size);
    } catch (const std::bad_alloc&) {
      nRowsSS = -1;
    }
    // A block that couldn't be carried over to the larger vector.
    if (!AreValid(blocks)) nRowsSS = -1;
  }
  if (nRowsSS <= 0) blocks.clear();
  return nRowsSS >= 0;
}

void MCSymBlockMatrix::FailAssertion(const char* assertion) {
  MCCommon::detail::FailAssertion(assertion, "mcmath/mcsymblockmatrix");
}

void MCSymBlockMatrix::Clear() {
  for (MCSymMatrix& block : fBlocks) block.Clear();
}

bool MCSymBlockMatrix::AreBlocksWhole() const {
  return IsValidStruct() && std::all_of(fBlocks.begin(), fBlocks.end(), [this](const auto& block) {
           return block.GetNRows() == fBlockRows;
         });
}

int MCSymBlockMatrix::CopyToSymMatrix(MCSymMatrix& out) const {
  if (!AreBlocksWhole()) return -1;
  const std::int64_t wanted = std::int64_t{fNRowsSS} * fBlockRows;
  const int nRows =
      static_cast<int>(std::min<std::int64_t>(wanted, std::numeric_limits<int>::max()));
  if (out.GetNRows() != nRows) out.SetNRows(nRows);
  if (out.IsValidMatrix() && fNRowsSS == 1) out = fBlocks.front();
  if (!out.IsValidMatrix()) {
    out.Resize(0);
    return -1;
  }
  for (int I = 0; fNRowsSS > 1 && I < fNRowsSS; ++I) {
    for (int J = 0; J <= I; ++J) CopyBlock(I, J, out);
  }
  return nRows;
}

void MCSymBlockMatrix::CopyBlock(int I, int J, MCSymMatrix& out) const {
  const std::size_t n = static_cast<std::size_t>(fBlockRows);
  const std::size_t firstRow = static_cast<std::size_t>(I) * n;
  const std::size_t firstColumn = static_cast<std::size_t>(J) * n;
  const double* block = GetElemSSRef(I, J).AsVectorConst().data();
  double* triangle = out.AsVector().data();
  for (std::size_t r = 0; r < n; ++r) {
    double* to = triangle + detail::RowStart(firstRow + r) + firstColumn;
    detail::PackedRow<const double> from(block, r);
    const std::size_t count = I == J ? r + 1 : n;
    for (std::size_t c = 0; c < count; ++c, ++from) to[c] = *from;
  }
}

void MCSymBlockMatrix::Display() const {
  MCComponentDisplay::DisplayText(1, "MCSymBlockMatrix display start");
  MCComponentDisplay::DisplayI("The number of rows in the MCSymBlockMatrix", fNRowsSS);
  MCComponentDisplay::DisplayI("The number of rows in each MCMATH_NAMESPACE::MCSymMatrix matrix",
                               fBlockRows);
  int row = 0;
  int column = 0;
  for (const MCSymMatrix& block : fBlocks) {
    MCComponentDisplay::DisplayI("Row number in the MCSymBlockMatrix", row);
    MCComponentDisplay::DisplayI("Column number in the MCSymBlockMatrix", column);
    MCComponentDisplay::DisplayText(1, "MCMATH_NAMESPACE::MCSymMatrix matrix:");
    block.Display();
    if (++column > row) {
      column = 0;
      ++row;
    }
  }
  MCComponentDisplay::DisplayText(1, "MCSymBlockMatrix display end");
}

}  // namespace MCCommonMath
