// SPDX-License-Identifier: Apache-2.0
#pragma once

// The inner loops of the symmetric eigenproblem: the rank-two update of the reduction to a
// tridiagonal matrix with the product that its next step needs, and plane rotations and
// reflections of vectors.

#include "mcmath/detail/lanes.h"
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/vectorkernels.h"

namespace {

using MCCommonMath::detail::kLineDoubles;
using MCCommonMath::detail::RotationRun;
using MCCommonMath::detail::SymmetricStep;

/// R rows of a band, from `row` on.
template <std::size_t W, std::size_t R>
class BandRows {
public:
  BandRows(double* rows, std::size_t width, std::size_t row, const SymmetricStep& step)
      : fRows(rows), fWidth(width), fRow(row), fStep(step) {
    for (std::size_t r = 0; r < R; ++r) {
      FillLanes<W>(fU[r], step.u[row + r]);
      FillLanes<W>(fQ[r], step.q[row + r]);
      FillLanes<W>(fNext[r], step.next[row + r]);
    }
  }

  /// Columns left of the diagonal block stand for those above it as well.
  void Update() {
    std::size_t column = 0;
    for (; column + kLineDoubles < fWidth; column += kLineDoubles) UpdateLine<true>(column);
    UpdateLine<false>(column);
    for (std::size_t r = 0; r < R; ++r) {
      double lanes[kLineDoubles];
      for (std::size_t v = 0; v < kVectors; ++v) StoreLanes<W>(lanes + v * W, fDots[r][v]);
      fStep.product[fRow + r] += MCCommonMath::detail::AddLanes(lanes);
    }
  }

private:
  using Vec = typename Lanes<W>::Vec;
  static constexpr std::size_t kVectors = kLineDoubles / W;

  template <bool IsMirrored>
  [[gnu::always_inline]] void UpdateLine(std::size_t line) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kVectors; ++v) {
      const std::size_t column = line + v * W;
      Vec u;
      Vec q;
      Vec next;
      Vec product;
      LoadLanes<W>(u, fStep.u + column);
      LoadLanes<W>(q, fStep.q + column);
      LoadLanes<W>(next, fStep.next + column);
      if constexpr (IsMirrored) LoadLanes<W>(product, fStep.product + column);
#pragma GCC unroll 4
      for (std::size_t r = 0; r < R; ++r) {
        double* const place = fRows + r * fWidth + column;
        Vec elements;
        LoadLanes<W>(elements, place);
        elements -= fU[r] * q + fQ[r] * u;
        StoreLanes<W>(place, elements);
        fDots[r][v] += elements * next;
        if constexpr (IsMirrored) product += elements * fNext[r];
      }
      if constexpr (IsMirrored) StoreLanes<W>(fStep.product + column, product);
    }
  }

  double* fRows;
  std::size_t fWidth;
  std::size_t fRow;
  SymmetricStep fStep;
  Vec fU[R];
  Vec fQ[R];
  Vec fNext[R];
  Vec fDots[R][kVectors] = {};
};

template <std::size_t W>
void UpdateBands(double* bands, std::size_t nBands, const SymmetricStep& step) {
  // As many rows at a time as the registers hold multipliers and sums of.
  constexpr std::size_t kAtOnce = W / 2;
  for (std::size_t b = 0; b < nBands; ++b) {
    const std::size_t width = (b + 1) * kLineDoubles;
    for (std::size_t r = 0; r < kLineDoubles; r += kAtOnce, bands += kAtOnce * width) {
      BandRows<W, kAtOnce>(bands, width, b * kLineDoubles + r, step).Update();
    }
  }
}

/// Vectors that make a row of a panel: enough to have one at work while others wait for a result.
constexpr std::size_t kPanelVectors = 4;

/// A row of a panel.
template <std::size_t W>
struct PanelRow {
  typename Lanes<W>::Vec vectors[kPanelVectors];

  [[gnu::always_inline]] void Load(const double* from) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kPanelVectors; ++v) LoadLanes<W>(vectors[v], from + v * W);
  }
  [[gnu::always_inline]] void Store(double* to) const {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kPanelVectors; ++v) StoreLanes<W>(to + v * W, vectors[v]);
  }
  [[gnu::always_inline]] void Add(double a, const PanelRow& x) {
    typename Lanes<W>::Vec factor;
    FillLanes<W>(factor, a);
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kPanelVectors; ++v) vectors[v] += factor * x.vectors[v];
  }
};

template <std::size_t W>
void RotateRows(double* panel, const RotationRun* runs, std::size_t nRuns,
                const double* rotations) {
  constexpr std::size_t kColumns = kPanelVectors * W;
  for (const RotationRun* run = runs; run != runs + nRuns; ++run) {
    double* row = panel + run->top * kColumns;
    const double* rotation = rotations + 2 * run->first;
    PanelRow<W> lower;
    lower.Load(row);
    for (std::size_t k = 0; k < run->count; ++k, rotation += 2, row -= kColumns) {
      typename Lanes<W>::Vec cosine;
      typename Lanes<W>::Vec sine;
      FillLanes<W>(cosine, rotation[0]);
      FillLanes<W>(sine, rotation[1]);
      PanelRow<W> upper;
      upper.Load(row - kColumns);
      PanelRow<W> rotated;
#pragma GCC unroll 4
      for (std::size_t v = 0; v < kPanelVectors; ++v) {
        rotated.vectors[v] = sine * upper.vectors[v] + cosine * lower.vectors[v];
        lower.vectors[v] = cosine * upper.vectors[v] - sine * lower.vectors[v];
      }
      rotated.Store(row);
    }
    lower.Store(row);
  }
}

template <std::size_t W>
void ReflectRows(double* panel, std::size_t nRows, const double* u, const double* v,
                 double overlap) {
  constexpr std::size_t kColumns = kPanelVectors * W;
  PanelRow<W> alongU = {};
  PanelRow<W> alongV = {};
  for (std::size_t j = 0; j < nRows; ++j) {
    PanelRow<W> row;
    row.Load(panel + j * kColumns);
    alongU.Add(u[j], row);
    alongV.Add(v[j], row);
  }
  alongV.Add(-overlap, alongU);
  for (std::size_t j = 0; j < nRows; ++j) {
    PanelRow<W> row;
    row.Load(panel + j * kColumns);
    row.Add(-u[j], alongU);
    row.Add(-v[j], alongV);
    row.Store(panel + j * kColumns);
  }
}

}  // namespace
