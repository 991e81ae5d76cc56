// SPDX-License-Identifier: Apache-2.0
#pragma once

// Outer products of a block of rows, added to a packed lower triangle: row i at i(i+1)/2. The
// block is stored in panels, see RowBlock. A tile of the triangle, kTileRows by kTileColumns, stays
// in registers while the rows of the block run through it in order, multiply then add.

#include "mcmath/detail/lanes.h"
#include "mcmath/detail/vectorkernels.h"

namespace {

using MCCommonMath::detail::kBandRows;
using MCCommonMath::detail::RowBlock;

/// Tile sizes that fill the registers: 16 of 16 or 32 bytes, or 32 of 64 bytes.
template <std::size_t W>
struct TileShape {
  static constexpr std::size_t kRows = W == 8 ? 8 : 4;
  static constexpr std::size_t kColumns = 2 * W;
};

/// Adds the products of `count` rows to a tile whose row r starts at tile[r]. `factors` and
/// `columns` are panels of as many columns as the tile has rows and columns. The loops over the
/// tile must unroll completely, the loading and storing ones too, or the compiler keeps the tile
/// in memory.
template <std::size_t W, std::size_t R, std::size_t C>
[[gnu::noinline]] void FoldTile(double* const (&tile)[R], const double* factors,
                                const double* columns, std::size_t count) {
  constexpr std::size_t kVectors = C / W;
  using Vec = typename Lanes<W>::Vec;
  Vec sums[R][kVectors];
#pragma GCC unroll 16
  for (std::size_t r = 0; r < R; ++r) {
#pragma GCC unroll 16
    for (std::size_t v = 0; v < kVectors; ++v) LoadLanes<W>(sums[r][v], tile[r] + v * W);
  }
#pragma GCC unroll 4
  for (std::size_t k = 0; k < count; ++k) {
    Vec column[kVectors];
#pragma GCC unroll 16
    for (std::size_t v = 0; v < kVectors; ++v) {
      LoadLanes<W>(column[v], columns + v * W);
      PinLanes<W>(column[v]);
    }
#pragma GCC unroll 16
    for (std::size_t r = 0; r < R; ++r) {
      Vec factor;
      FillLanes<W>(factor, factors[r]);
#pragma GCC unroll 16
      for (std::size_t v = 0; v < kVectors; ++v) sums[r][v] += factor * column[v];
    }
    factors += R;
    columns += C;
  }
#pragma GCC unroll 16
  for (std::size_t r = 0; r < R; ++r) {
#pragma GCC unroll 16
    for (std::size_t v = 0; v < kVectors; ++v) StoreLanes<W>(tile[r] + v * W, sums[r][v]);
  }
}

/// Start of row i of a packed lower triangle.
inline std::size_t RowStart(std::size_t i) {
  return i * (i + 1) / 2;
}

/// One block folded into one triangle, band by band. A panel of columns meets all tiles of a band
/// while both are in the nearest cache.
template <std::size_t W>
class BlockFold {
public:
  BlockFold(const RowBlock& block, std::size_t count, double* triangle)
      : fBlock(block),
        fNRows(block.nColumns),
        fCount(count),
        fPanelStride(RowBlock::PanelStride(kColumns, block.capacity)),
        fTriangle(triangle) {}

  void Run() const {
    for (std::size_t band = 0; band < fNRows; band += kBandRows) {
      const std::size_t end = band + kBandRows < fNRows ? band + kBandRows : fNRows;
      for (std::size_t row = band; row < end; row += kRows) WeightColumns(row, FactorsOf(row));
      for (std::size_t column = 0; column < end; column += kColumns) {
        FoldPanel(column > band ? column : band, end, column);
      }
    }
  }

private:
  static constexpr std::size_t kRows = TileShape<W>::kRows;
  static constexpr std::size_t kColumns = TileShape<W>::kColumns;
  static_assert(kColumns % kRows == 0, "panels hold whole tiles, bands whole panels");

  /// The weighted columns row to row + kRows - 1 of the current band, as a panel of their own.
  double* FactorsOf(std::size_t row) const {
    return fBlock.scratch + row % kBandRows * fBlock.capacity;
  }

  const double* PanelOf(const double* panels, std::size_t column) const {
    return panels + column / kColumns * fPanelStride;
  }

  void WeightColumns(std::size_t row, double* factors) const {
    constexpr std::size_t kLanes = kRows < W ? kRows : W;
    const double* columns = PanelOf(fBlock.leftPanels, row) + row % kColumns;
    for (std::size_t k = 0; k < fCount; ++k) {
#pragma GCC unroll 8
      for (std::size_t r = 0; r < kRows; r += kLanes) {
        typename Lanes<kLanes>::Vec entries;
        LoadLanes<kLanes>(entries, columns + r);
        entries *= fBlock.weights[k];
        StoreLanes<kLanes>(factors + r, entries);
      }
      columns += kColumns;
      factors += kRows;
    }
  }

  void FoldPanel(std::size_t row, std::size_t end, std::size_t column) const {
    const double* columns = PanelOf(fBlock.rightPanels, column);
    for (; row < end; row += kRows) {
      if (row + kRows <= fNRows && column + kColumns <= row + 1) {
        FoldInside(row, column, FactorsOf(row), columns);
      } else {
        FoldEdge(row, column, FactorsOf(row), columns);
      }
    }
  }

  void FoldInside(std::size_t row, std::size_t column, const double* factors,
                  const double* columns) const {
    double* tile[kRows];
    for (std::size_t r = 0; r < kRows; ++r) {
      tile[r] = fTriangle + RowStart(row + r) + column;
      // What the next panel will need here.
      __builtin_prefetch(tile[r] + 2 * kColumns - 1, 1);
    }
    FoldTile<W, kRows, kColumns>(tile, factors, columns, fCount);
  }

  /// A tile that reaches over the diagonal or below the last row is worked on in a copy.
  void FoldEdge(std::size_t row, std::size_t column, const double* factors,
                const double* columns) const {
    double copy[kRows][kColumns];
    double* tile[kRows];
    for (std::size_t r = 0; r < kRows; ++r) {
      tile[r] = copy[r];
#pragma GCC unroll 16
      for (std::size_t c = 0; c < kColumns; c += W)
        StoreLanes<W>(copy[r] + c, typename Lanes<W>::Vec{});
      const std::size_t length = LengthInside(row + r, column);
      if (length > 0) CopyShort(copy[r], fTriangle + RowStart(row + r) + column, length);
    }
    FoldTile<W, kRows, kColumns>(tile, factors, columns, fCount);
    for (std::size_t r = 0; r < kRows; ++r) {
      const std::size_t length = LengthInside(row + r, column);
      if (length > 0) CopyShort(fTriangle + RowStart(row + r) + column, copy[r], length);
    }
  }

  /// Copies at most kColumns doubles, in pieces of fixed sizes that need no call.
  static void CopyShort(double* to, const double* from, std::size_t length) {
#pragma GCC unroll 8
    for (std::size_t piece = kColumns; piece > 0; piece /= 2) {
      if ((length & piece) == 0) continue;
      __builtin_memcpy(to, from, piece * sizeof(double));
      to += piece;
      from += piece;
    }
  }

  /// How many of a tile's elements from (row, column) on belong to the triangle.
  std::size_t LengthInside(std::size_t row, std::size_t column) const {
    if (row >= fNRows || column > row) return 0;
    const std::size_t length = row + 1 - column;
    return length < kColumns ? length : kColumns;
  }

  const RowBlock& fBlock;
  std::size_t fNRows;
  std::size_t fCount;
  std::size_t fPanelStride;
  double* fTriangle;
};

template <std::size_t W>
void FoldBlock(const RowBlock& block, std::size_t count, double* triangle) {
  BlockFold<W>(block, count, triangle).Run();
}

/// A finite value times 0 is 0, any other NaN, so that a sum of these tells of all entries.
template <std::size_t W>
bool StageRow(const RowBlock& block, double* panels, std::size_t slot, const double* x, double w) {
  using Vec = typename Lanes<W>::Vec;
  constexpr std::size_t kColumns = TileShape<W>::kColumns;
  const std::size_t n = block.nColumns;
  const std::size_t stride = RowBlock::PanelStride(kColumns, block.capacity);
  double* to = panels + slot * kColumns;
  Vec notFinite[kColumns / W] = {};
  std::size_t j = 0;
  for (; j + kColumns <= n; j += kColumns, to += stride) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kColumns / W; ++v) {
      Vec entries;
      LoadLanes<W>(entries, x + j + v * W);
      StoreLanes<W>(to + v * W, entries);
      notFinite[v] += w * entries * 0.0;
    }
  }
  double sum = 0.0;
  for (std::size_t c = 0; j + c < n; ++c) {
    to[c] = x[j + c];
    sum += w * to[c] * 0.0;
  }
  notFinite[0] += notFinite[1];
  for (std::size_t lane = 0; lane < W; ++lane) sum += notFinite[0][lane];
  return sum == 0.0;
}

}  // namespace
