// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/setbits.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace MCCommonMath {

namespace {

bool ComputeCrossProducts(const MCRectMatrix& R, bool byRows, MCSymMatrix& products) {
  return byRows ? products.ComputeRByRTrans(R) : products.ComputeRTransByR(R);
}

// Cross-products of the columns of A and B side by side. False where the rows don't fit or memory
// runs out.
bool ComputeJointProducts(const MCRectMatrix& A, const MCRectMatrix& B, MCSymMatrix& products) {
  const std::int64_t nColumns = std::int64_t{A.GetNCols()} + B.GetNCols();
  if (nColumns > std::numeric_limits<int>::max()) return false;
  products.SetNRows(static_cast<int>(nColumns));
  return products.UpdateXXMat2(A, B, 1.0);
}

bool IsListBelow(const std::vector<int>& indices, int limit) {
  if (indices.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return false;
  return std::all_of(indices.begin(), indices.end(),
                     [limit](int i) { return i >= 0 && i < limit; });
}

// Whether L times the entries of `row` at `positions` gives the row again.
bool IsReproduced(const double* row, double norm, const MCRectMatrix& L,
                  const std::vector<int>& positions, double tol) {
  double squares = 0.0;
  for (int j = 0; j < L.GetNRows(); ++j) {
    double image = 0.0;
    const double* generator = L.GetRowPtr(j);
    for (const int k : positions) image += *generator++ * row[k];
    const double difference = image / norm - row[j] / norm;
    squares += difference * difference;
  }
  // In this direction, so that a sum that is NaN passes.
  return !(squares > tol * tol);
}

}  // namespace

bool MCRectMatrix::ExtractRows(const std::vector<int>& indices, MCRectMatrix& out) const {
  if (!IsValidMatrix() || !IsListBelow(indices, fNRows)) return false;
  MCRectMatrix result(static_cast<int>(indices.size()), fNCols);
  for (int i = 0; i < result.fNRows; ++i) {
    result.CopyRowToRow(i, *this, indices[static_cast<std::size_t>(i)]);
  }
  out = std::move(result);
  return out.IsValidMatrix();
}

bool MCRectMatrix::ExtractColumns(const std::vector<int>& indices, MCRectMatrix& out) const {
  if (!IsValidMatrix() || !IsListBelow(indices, fNCols)) return false;
  MCRectMatrix result(fNRows, static_cast<int>(indices.size()));
  for (int i = 0; i < result.fNRows; ++i) {
    std::transform(indices.begin(), indices.end(), result.Row(i),
                   [from = Row(i)](int j) { return from[j]; });
  }
  out = std::move(result);
  return out.IsValidMatrix();
}

int MCRectMatrix::FindRedundancies(double tol, MCBitSet& nonRedundant, bool byRows) const {
  MCSymMatrix products;
  if (tol < 0.0 || !ComputeCrossProducts(*this, byRows, products)) return -1;
  std::vector<double> scale;
  products.GetDiagonal(scale);
  return products.LTChol(scale, tol * tol, nonRedundant, false);
}

int MCRectMatrix::FindNonRedunIndices(double tol, std::vector<int>& indices, bool byRows) const {
  MCSymMatrix products;
  if (tol < 0.0 || !ComputeCrossProducts(*this, byRows, products)) return -1;
  return products.CholIndNonRed(0, tol * tol, indices);
}

int MCRectMatrix::ExtractFullRank(double tol, MCRectMatrix& result, std::vector<int>& indices,
                                  bool byRows) const {
  const int count = FindNonRedunIndices(tol, indices, byRows);
  if (count < 0) return -1;
  const bool done = byRows ? ExtractRows(indices, result) : ExtractColumns(indices, result);
  return done ? count : -1;
}

bool MCRectMatrix::ResidOfOrthProjection(const MCRectMatrix& Z, double tol, MCBitSet& zKept,
                                         MCBitSet& resultKept) {
  if (fNRows != Z.fNRows || fNRows < 1 || fNCols < 1 || Z.fNCols < 1 || !(tol > 0.0)) return false;
  if (&Z == this) return ResidOfOrthProjection(MCRectMatrix(Z), tol, zKept, resultKept);
  MCSymMatrix products;
  if (!ComputeJointProducts(Z, *this, products)) return false;
  std::vector<double> scale;
  products.GetDiagonal(scale);
  const int q = Z.fNCols;
  zKept.Resize(q, false);
  resultKept.Resize(fNCols, false);

  for (int b = 0; b < q; ++b) products.Sweep(b, tol, scale, zKept, false);
  for (const int r : detail::SetBits(zKept, q)) {
    for (int b = 0; b < fNCols; ++b) AddToColumn(b, Z, r, -products.GetElem(q + b, r));
  }
  for (int b = 0; b < fNCols; ++b) {
    const double floor = tol * scale[static_cast<std::size_t>(q) + static_cast<std::size_t>(b)];
    resultKept.Set(b, DotProductCol(b, b) > floor);
  }
  return true;
}

int MCRectMatrix::CheckAddColRedundancies(const MCRectMatrix& added, double zeroTol, double tol,
                                          MCBitSet& nonRedundant) const {
  MCSymMatrix products;
  if (!(zeroTol >= 0.0) || !(tol >= 0.0) || !ComputeJointProducts(*this, added, products)) {
    return -1;
  }
  for (int j = 0; j < added.fNCols; ++j) {
    if (added.ColNorm(j) <= zeroTol) products.ZeroOut(fNCols + j);
  }
  std::vector<double> scale;
  products.GetDiagonal(scale);
  MCBitSet kept;
  products.LTChol(scale, tol * tol, kept, false);
  nonRedundant = kept.GetSubset(fNCols, kept.Size() - 1);
  return added.fNCols - nonRedundant.InSet();
}

bool MCRectMatrix::IsEstimable(const MCRectMatrix& L, const MCBitSet& mask, double tol) const {
  if (fNRows < 1 || fNCols < 1 || !(tol > 0.0) || mask.Size() < fNCols) return false;
  const std::vector<int> positions = detail::SetBits(mask, fNCols);
  if (L.fNRows != fNCols || static_cast<std::size_t>(L.fNCols) < positions.size()) return false;
  for (int i = 0; i < fNRows; ++i) {
    const double norm = RowNorm(i);
    if (norm > 0.0 && !IsReproduced(Row(i), norm, L, positions, tol)) return false;
  }
  return true;
}

}  // namespace MCCommonMath
