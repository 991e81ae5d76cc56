// SPDX-License-Identifier: Apache-2.0
#include "mcmath/linpack.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>

namespace MCCommonMath {

namespace {

// sums += R'b; b has an entry for each row, sums has one for each column.
void AddTransposedTimes(const MCRectMatrix& R, const std::vector<double>& b,
                        std::vector<double>& sums) {
  for (int i = 0; i < R.GetNRows(); ++i) {
    const double multiplier = b[static_cast<std::size_t>(i)];
    std::transform(sums.begin(), sums.end(), R.GetRowPtr(i), sums.begin(),
                   [multiplier](double sum, double element) { return sum + multiplier * element; });
  }
}

}  // namespace

bool MCRectMatrix::SolveLinearSquare(const std::vector<double>& b, std::vector<double>& x,
                                     double tol) const {
  if (fNRows < 1 || fNRows != fNCols || !(tol >= 0.0)) return false;
  const auto n = static_cast<std::size_t>(fNRows);
  if (b.size() < n) return false;
  // By columns, as it is read there: the estimate is then that of this matrix, not of its
  // transpose.
  MCRectMatrix columns(*this);
  if (!columns.IsValidMatrix()) return false;
  columns.Transpose();
  std::vector<int> pivots(n);
  std::vector<double> work(n);
  double reciprocalCondition = 0.0;
  Linpack::Dgeco(columns.fVec.data(), fNRows, fNRows, pivots.data(), &reciprocalCondition,
                 work.data());
  if (!(reciprocalCondition > tol)) return false;
  if (&x != &b) x = b;
  x.resize(n);
  Linpack::Dgesl(columns.fVec.data(), fNRows, fNRows, pivots.data(), x.data(), 0);
  return true;
}

int MCRectMatrix::EstimateLinearGI(const std::vector<double>& b, std::vector<double>& x, double tol,
                                   double solveTol) const {
  if (fNRows < 1 || fNCols < 1 || tol <= 0.0) return -1;
  if (b.size() < static_cast<std::size_t>(fNRows)) return -1;
  if (SolveLinearSquare(b, x, solveTol)) return 0;
  MCSymMatrix products;
  if (!products.ComputeRTransByR(*this)) return -1;
  std::vector<double> rightSide(static_cast<std::size_t>(fNCols));
  AddTransposedTimes(*this, b, rightSide);
  return products.LTSolve(rightSide, tol, x);
}

}  // namespace MCCommonMath
