// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"

#include "mcmath/detail/aligned.h"
#include "mcmath/detail/packedtriangle.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace MCCommonMath {
namespace detail {

namespace {

/// Rows that a block holds: few keep it in the nearest caches, many amortise the reading and
/// writing of the triangle.
std::size_t BlockRows(std::size_t n) {
  return n <= 24 ? 128 : 256;
}

std::uint64_t BitsOf(double x) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

// Whether adding 0.0 changes the bits of x: so for -0.0, and for a NaN that is still signaling.
bool ChangesByAddingZero(double x) {
  return BitsOf(x + 0.0) != BitsOf(x);
}

}  // namespace

void AddRankOne(double* triangle, std::size_t n, const double* x, double w) {
  double* row = triangle;
  for (std::size_t i = 0; i < n; ++i) {
    if (x[i] != 0.0) {
      const double factor = w * x[i];
      for (std::size_t j = 0; j <= i; ++j) row[j] += factor * x[j];
    }
    row += i + 1;
  }
}

MCCrossProduct::MCCrossProduct(int n, std::vector<double>& triangle, VectorPath path)
    : fBlock{static_cast<std::size_t>(n),
             BlockRows(static_cast<std::size_t>(n)),
             nullptr,
             nullptr,
             nullptr,
             nullptr},
      fTriangle(triangle),
      fKernels(KernelsOf(path)) {}

bool MCCrossProduct::IsSparse(int n, int nonZeros) {
  // A scattered addition costs as much as some thirty of a dense block.
  constexpr double kScatterCost = 30.0;
  return kScatterCost * nonZeros * nonZeros < static_cast<double>(n) * n;
}

void MCCrossProduct::AllocateBlock() {
  const std::size_t capacity = fBlock.capacity;
  const std::size_t panels = RowBlock::PanelsSize(fKernels.panelColumns, fBlock.nColumns, capacity);
  fStorage.assign(panels + capacity + kBandRows * capacity + kLineDoubles, 0.0);
  fBlock.leftPanels = fBlock.rightPanels = StartOfLine(fStorage.data());
  fBlock.weights = fBlock.leftPanels + panels;
  fBlock.scratch = fBlock.weights + capacity;
}

bool MCCrossProduct::StageRow(const double* x, double w) {
  if (fbTargetMindsZeros) return false;
  fBlock.weights[fNPending] = w;
  return fKernels.stageRow(fBlock, fBlock.leftPanels, fNPending, x, w);
}

// The block adds also the products of zeros, which the definition skips. As long as all factors are
// finite, that changes no bit of a sum that isn't -0.0 or a signaling NaN, and a sum becomes
// neither of them unless it started so. All else takes the plain way.
bool MCCrossProduct::AddRow(const double* x, double w) {
  if (!(w > 0.0)) return false;
  if (fStorage.empty()) AllocateBlock();
  CheckTarget();
  if (StageRow(x, w)) {
    if (++fNPending == fBlock.capacity) FoldBlock();
  } else {
    AddPlainRow(x, w);
  }
  return true;
}

bool MCCrossProduct::AddSparseRow(int m, const int* idx, const double* val, double w) {
  if (!(w > 0.0)) return false;
  CheckTarget();
  double notFinite = 0.0;
  for (int a = 0; a < m; ++a) notFinite += w * val[a] * 0.0;
  if (fbTargetMindsZeros || !(notFinite == 0.0)) {
    AddWrittenOut(m, idx, val, w);
    return true;
  }
  FoldBlock();
  double* triangle = fTriangle.data();
  for (int a = 0; a < m; ++a) {
    const std::size_t i = static_cast<std::size_t>(idx[a]);
    double* row = triangle + RowStart(i);
    const double factor = w * val[a];
    for (int b = 0; b <= a; ++b) row[idx[b]] += factor * val[b];
  }
  return true;
}

void MCCrossProduct::AddWrittenOut(int m, const int* idx, const double* val, double w) {
  fWrittenOut.resize(fBlock.nColumns);
  for (int a = 0; a < m; ++a) fWrittenOut[static_cast<std::size_t>(idx[a])] = val[a];
  AddPlainRow(fWrittenOut.data(), w);
  for (int a = 0; a < m; ++a) fWrittenOut[static_cast<std::size_t>(idx[a])] = 0.0;
}

void MCCrossProduct::AddPlainRow(const double* x, double w) {
  FoldBlock();
  AddRankOne(fTriangle.data(), fBlock.nColumns, x, w);
}

void MCCrossProduct::CheckTarget() {
  if (fbTargetChecked) return;
  fbTargetMindsZeros = std::any_of(fTriangle.begin(), fTriangle.end(), ChangesByAddingZero);
  fbTargetChecked = true;
}

void MCCrossProduct::FoldBlock() {
  if (fNPending == 0) return;
  fKernels.foldBlock(fBlock, fNPending, fTriangle.data());
  fNPending = 0;
}

void MCCrossProduct::Flush() {
  FoldBlock();
  fbTargetChecked = false;
}

}  // namespace detail
}  // namespace MCCommonMath
