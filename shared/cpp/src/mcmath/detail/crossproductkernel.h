// SPDX-License-Identifier: Apache-2.0
#pragma once

// Cross-products of a block of rows in a packed lower triangle: row i at i(i+1)/2. The block is
// stored in panels, see vectorkernels.h. A tile of R rows and C columns of the triangle stays in
// registers while the rows of the block run through it in order, multiply then add.

#include "mcmath/detail/lanes.h"
#include "mcmath/detail/vectorkernels.h"

namespace {

using MCCommonMath::detail::kBlockRows;
using MCCommonMath::detail::kPanelColumns;
using MCCommonMath::detail::PanelsOf;

constexpr std::size_t kPanelSize = kPanelColumns * kBlockRows;

/// Adds the products of `count` block rows to a tile whose row r starts at tile[r]. `factors`
/// points at the R weighted columns, `columns` at the C columns, each within one panel or, for
/// C of two panels, at the start of the first. The loops over the tile must unroll completely,
/// the loading and storing ones too, or the compiler keeps the tile in memory.
template <std::size_t W, std::size_t R, std::size_t C>
inline void FoldTile(double* const (&tile)[R], const double* factors, const double* columns,
                     std::size_t count) {
  constexpr std::size_t kVectors = C / W;
  using Vec = typename Lanes<W>::Vec;
  Vec sums[R][kVectors];
#pragma GCC unroll 16
  for (std::size_t r = 0; r < R; ++r) {
#pragma GCC unroll 16
    for (std::size_t v = 0; v < kVectors; ++v) LoadLanes<W>(sums[r][v], tile[r] + v * W);
  }
#pragma GCC unroll 2
  for (std::size_t k = 0; k < count; ++k) {
    Vec column[kVectors];
#pragma GCC unroll 16
    for (std::size_t v = 0; v < kVectors; ++v) {
      constexpr std::size_t kPerPanel = kPanelColumns / W;
      LoadLanes<W>(column[v], columns + (v / kPerPanel) * kPanelSize + (v % kPerPanel) * W);
      PinLanes<W>(column[v]);
    }
#pragma GCC unroll 16
    for (std::size_t r = 0; r < R; ++r) {
      Vec factor;
      FillLanes<W>(factor, factors[r]);
#pragma GCC unroll 16
      for (std::size_t v = 0; v < kVectors; ++v) sums[r][v] += factor * column[v];
    }
    factors += kPanelColumns;
    columns += kPanelColumns;
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

/// One block folded into one triangle.
template <std::size_t W>
class BlockFold {
public:
  BlockFold(double* triangle, std::size_t n, std::size_t count, const double* rows,
            const double* weightedRows)
      : fTriangle(triangle), fNRows(n), fCount(count), fRows(rows), fWeightedRows(weightedRows) {}

  void Run() const {
    for (std::size_t row = 0; row < fNRows; row += kTileRows) FoldRows(row);
  }

private:
  static constexpr std::size_t kTileRows = W == 8 ? 8 : 4;
  static constexpr std::size_t kNarrow = W == 2 ? 4 : 8;
  static constexpr std::size_t kWide = W == 8 ? 16 : kNarrow;

  /// Rows row to row + kTileRows - 1, from column 0 to the diagonal.
  void FoldRows(std::size_t row) const {
    const std::size_t columns = row + kTileRows;
    std::size_t column = 0;
    for (; column + kWide <= columns; column += kWide) FoldAt<kWide>(row, column);
    for (; column < columns; column += kNarrow) FoldAt<kNarrow>(row, column);
  }

  template <std::size_t C>
  void FoldAt(std::size_t row, std::size_t column) const {
    const double* factors =
        fWeightedRows + (row / kPanelColumns) * kPanelSize + row % kPanelColumns;
    const double* columns = fRows + (column / kPanelColumns) * kPanelSize + column % kPanelColumns;
    double* tile[kTileRows];
    if (row + kTileRows <= fNRows && column + C <= row + 1) {
      for (std::size_t r = 0; r < kTileRows; ++r) {
        tile[r] = fTriangle + RowStart(row + r) + column;
      }
      FoldTile<W, kTileRows, C>(tile, factors, columns, fCount);
    } else {
      FoldEdge<C>(row, column, factors, columns);
    }
  }

  /// A tile that reaches over the diagonal or below the last row is worked on in a copy.
  template <std::size_t C>
  void FoldEdge(std::size_t row, std::size_t column, const double* factors,
                const double* columns) const {
    double copy[kTileRows][C] = {};
    double* tile[kTileRows];
    for (std::size_t r = 0; r < kTileRows; ++r) {
      tile[r] = copy[r];
      const std::size_t start = RowStart(row + r) + column;
      const std::size_t length = LengthInside<C>(row + r, column);
      for (std::size_t c = 0; c < length; ++c) copy[r][c] = fTriangle[start + c];
    }
    FoldTile<W, kTileRows, C>(tile, factors, columns, fCount);
    for (std::size_t r = 0; r < kTileRows; ++r) {
      const std::size_t start = RowStart(row + r) + column;
      const std::size_t length = LengthInside<C>(row + r, column);
      for (std::size_t c = 0; c < length; ++c) fTriangle[start + c] = copy[r][c];
    }
  }

  /// How many of the C elements from (row, column) on belong to the triangle.
  template <std::size_t C>
  std::size_t LengthInside(std::size_t row, std::size_t column) const {
    if (row >= fNRows || column > row) return 0;
    const std::size_t length = row + 1 - column;
    return length < C ? length : C;
  }

  double* fTriangle;
  std::size_t fNRows;
  std::size_t fCount;
  const double* fRows;
  const double* fWeightedRows;
};

template <std::size_t W>
void FoldBlock(double* triangle, std::size_t n, std::size_t count, const double* rows,
               const double* weightedRows) {
  BlockFold<W>(triangle, n, count, rows, weightedRows).Run();
}

/// A finite value times 0 is 0, and NaN else, so the sum of these tells of all entries.
template <std::size_t W>
bool StageRow(const double* x, double w, std::size_t n, std::size_t slot, double* rows,
              double* weightedRows) {
  using Vec = typename Lanes<W>::Vec;
  double* to = rows + slot * kPanelColumns;
  double* weightedTo = weightedRows + slot * kPanelColumns;
  Vec notFinite = {};
  std::size_t j = 0;
  for (; j + kPanelColumns <= n; j += kPanelColumns) {
#pragma GCC unroll 4
    for (std::size_t lane = 0; lane < kPanelColumns; lane += W) {
      Vec value;
      LoadLanes<W>(value, x + j + lane);
      const Vec weighted = w * value;
      StoreLanes<W>(to + lane, value);
      StoreLanes<W>(weightedTo + lane, weighted);
      notFinite += weighted * 0.0;
    }
    to += kPanelSize;
    weightedTo += kPanelSize;
  }
  double sum = 0.0;
  for (std::size_t c = 0; j + c < n; ++c) {
    to[c] = x[j + c];
    weightedTo[c] = w * x[j + c];
    sum += weightedTo[c] * 0.0;
  }
  for (std::size_t lane = 0; lane < W; ++lane) sum += notFinite[lane];
  return sum == 0.0;
}

}  // namespace
