// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcsweeprows.h"

#include "mcmath/detail/aligned.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/detail/sweepsteps.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cstddef>

namespace MCCommonMath {
namespace detail {

namespace {

/// Pivots of a group: many save walks over the triangle, few save work on the group's columns.
std::size_t GroupSize(std::size_t n) {
  if (n <= 100) return 8;
  return n <= 400 ? 16 : 32;
}

/// A group of neighbouring pivots, and the sweeps of a packed lower triangle by them. The columns
/// of the group, and the diagonal, on which the tolerances are tested, are brought up to date with
/// each pivot; all other elements take their updates, one for each pivot and in that order, when
/// the group is finished: S(i, j) += f[i] * s[j] for j <= i, with f the pivot column but for its
/// sign and s the pivot column divided by the pivot.
class PivotGroup {
public:
  PivotGroup(std::vector<double>& triangle, std::size_t n, VectorPath path);

  /// Takes up the columns `first` to first + GetSize() - 1, or as many as there are.
  void Begin(std::size_t first);

  std::size_t GetSize() const { return fSize; }
  double Diagonal(std::size_t i) const { return fDiagonal[i]; }

  /// S(i, k), for k of the group.
  double Element(std::size_t i, std::size_t k) const { return fColumns[i * fSize + k - fFirst]; }

  /// Sweeps row k of the group.
  void Sweep(std::size_t k);

  /// Brings the triangle up to date.
  void Finish();

private:
  void SplitColumn(std::size_t k, double c);
  void UpdateColumns(std::size_t k, double c);
  void UpdateGroupRows();
  void UpdateDiagonal(std::size_t k, double c);

  const VectorKernels& fKernels;
  double* fTriangle;
  std::size_t fNRows;
  std::size_t fSize;
  std::size_t fFirst = 0;
  std::size_t fEnd = 0;
  std::size_t fNSwept = 0;
  std::vector<double> fColumns;  // n rows of fSize entries
  std::vector<double> fDiagonal;
  std::vector<double> fPivotColumn;
  std::vector<double> fFactors;
  std::vector<double> fScaled;
  std::vector<double> fStorage;
  RowBlock fBlock;
};

PivotGroup::PivotGroup(std::vector<double>& triangle, std::size_t n, VectorPath path)
    : fKernels(KernelsOf(path)),
      fTriangle(triangle.data()),
      fNRows(n),
      fSize(GroupSize(n)),
      fColumns(n * fSize),
      fDiagonal(n),
      fPivotColumn(n),
      fFactors(n + fSize),
      fScaled(n + fSize),
      fBlock{n, fSize, nullptr, nullptr, nullptr, nullptr} {
  const std::size_t panels = RowBlock::PanelsSize(fKernels.panelColumns, n, fSize);
  fStorage.resize(2 * panels + fSize + kBandRows * fSize + kLineDoubles);
  fBlock.leftPanels = StartOfLine(fStorage.data());
  fBlock.rightPanels = fBlock.leftPanels + panels;
  fBlock.weights = fBlock.rightPanels + panels;
  fBlock.scratch = fBlock.weights + fSize;
  for (std::size_t i = 0; i < n; ++i) fDiagonal[i] = fTriangle[DiagonalIndex(i)];
}

void PivotGroup::Begin(std::size_t first) {
  fFirst = first;
  fEnd = std::min(first + fSize, fNRows);
  for (std::size_t k = first; k < fEnd; ++k) {
    PackedRow<const double> column(fTriangle, k);
    for (std::size_t i = 0; i < fNRows; ++i, ++column) fColumns[i * fSize + k - first] = *column;
  }
}

void PivotGroup::Sweep(std::size_t k) {
  const double c = -1.0 / fDiagonal[k];
  SplitColumn(k, c);
  fBlock.weights[fNSwept] = c < 0.0 ? -1.0 : 1.0;
  fKernels.stageRow(fBlock, fBlock.leftPanels, fNSwept, fPivotColumn.data(), 1.0);
  fKernels.stageRow(fBlock, fBlock.rightPanels, fNSwept, fScaled.data(), 1.0);
  ++fNSwept;
  UpdateColumns(k, c);
  UpdateDiagonal(k, c);
}

// Row and column k themselves are not updated but replaced, from the group's columns, so that
// what the updates make of them doesn't matter.
void PivotGroup::SplitColumn(std::size_t k, double c) {
  for (std::size_t i = 0; i < fNRows; ++i) {
    fPivotColumn[i] = fScaled[i] = Element(i, k);
    fFactors[i] = ScalePivotColumn(fScaled[i], c);
  }
  fPivotColumn[k] = fFactors[k] = fScaled[k] = 0.0;
}

void PivotGroup::UpdateColumns(std::size_t k, double c) {
  fKernels.addOuter(fColumns.data(), fFirst, fScaled.data(), fFactors.data() + fFirst, fSize);
  UpdateGroupRows();
  fKernels.addOuter(fColumns.data() + fEnd * fSize, fNRows - fEnd, fFactors.data() + fEnd,
                    fScaled.data() + fFirst, fSize);
  const std::size_t place = k - fFirst;
  for (std::size_t i = 0; i < fNRows; ++i) fColumns[i * fSize + place] = fScaled[i];
  std::copy(fScaled.begin() + static_cast<std::ptrdiff_t>(fFirst),
            fScaled.begin() + static_cast<std::ptrdiff_t>(fEnd),
            fColumns.begin() + static_cast<std::ptrdiff_t>(k * fSize));
  fColumns[k * fSize + place] = c;
}

// Here an element stands twice, and which of its rows gives the factor is a matter of the lower
// triangle.
void PivotGroup::UpdateGroupRows() {
  for (std::size_t i = fFirst; i < fEnd; ++i) {
    double* const row = fColumns.data() + i * fSize;
    for (std::size_t j = fFirst; j < fEnd; ++j) {
      row[j - fFirst] += fFactors[std::max(i, j)] * fScaled[std::min(i, j)];
    }
  }
}

void PivotGroup::UpdateDiagonal(std::size_t k, double c) {
  for (std::size_t i = 0; i < fNRows; ++i) fDiagonal[i] += fFactors[i] * fScaled[i];
  fDiagonal[k] = c;
}

void PivotGroup::Finish() {
  if (fNSwept == 0) return;
  fKernels.foldBlock(fBlock, fNSwept, fTriangle);
  fNSwept = 0;
  for (std::size_t k = fFirst; k < fEnd; ++k) {
    PackedRow<double> column(fTriangle, k);
    for (std::size_t i = 0; i < fNRows; ++i, ++column) *column = Element(i, k);
  }
}

bool IsSweepable(const MCSymMatrix& matrix, double tol, const std::vector<double>& scale,
                 const MCBitSet& pivots) {
  const int n = matrix.GetNRows();
  if (n < 1 || tol <= 0.0 || pivots.Size() < n) return false;
  if (scale.size() < static_cast<std::size_t>(n)) return false;
  return std::none_of(scale.begin(), scale.end(), [](double x) { return x < 0.0; });
}

/// The tolerance tests of a row that isn't swept.
bool IsAccepted(const PivotGroup& group, std::size_t k, double tol,
                const std::vector<double>& scale, const std::vector<char>& swept) {
  const double pivot = group.Diagonal(k);
  if (!IsPivot(pivot, tol, scale[k])) return false;
  for (std::size_t j = 0; j < swept.size(); ++j) {
    if (swept[j] == 0) continue;
    if (!StaysBounded(group.Diagonal(j), group.Element(j, k), pivot, tol, scale[j])) return false;
  }
  return true;
}

}  // namespace

int SweepRows(MCSymMatrix& matrix, int count, double tol, const std::vector<double>& scale,
              MCBitSet& pivots, const std::function<bool()>& stop, VectorPath path) {
  if (!IsSweepable(matrix, tol, scale, pivots)) {
    int k = 0;
    while (k < count && !stop()) ++k;
    return k;
  }
  const std::size_t n = static_cast<std::size_t>(matrix.GetNRows());
  std::vector<char> swept(n);
  for (std::size_t j = 0; j < n; ++j) swept[j] = pivots.IsIn(static_cast<int>(j)) ? 1 : 0;
  PivotGroup group(matrix.AsVector(), n, path);
  int k = 0;
  while (k < count) {
    const int end = std::min(count, k + static_cast<int>(group.GetSize()));
    group.Begin(static_cast<std::size_t>(k));
    for (; k < end; ++k) {
      if (stop()) {
        group.Finish();
        return k;
      }
      const std::size_t row = static_cast<std::size_t>(k);
      if (swept[row] == 0 && !IsAccepted(group, row, tol, scale, swept)) continue;
      group.Sweep(row);
      swept[row] = swept[row] == 0 ? 1 : 0;
      pivots.Set(k, swept[row] != 0);
    }
    group.Finish();
  }
  return k;
}

}  // namespace detail
}  // namespace MCCommonMath
