// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcsymmatrix.h"

namespace MCCommonMath {

namespace {

using detail::DiagonalIndex;
using detail::RowStart;

// Packed lower triangle L, row i at i(i+1)/2. Turns x from b into the solution of L y = b, with
// y[i] = 0 on redundant rows.
void SubstituteForward(const std::vector<double>& triangle, std::size_t n, double* x) {
  for (std::size_t i = 0; i < n; ++i) {
    const double* const row = triangle.data() + RowStart(i);
    x[i] = row[i] != 0.0 ? (x[i] - detail::Dot(row, x, i)) / row[i] : 0.0;
  }
}

// Turns x from y into the solution of L'x = y, with x[i] = 0 on redundant rows.
void SubstituteBackward(const std::vector<double>& triangle, std::size_t n, double* x) {
  for (std::size_t i = n; i-- > 0;) {
    const double diagonal = triangle[DiagonalIndex(i)];
    double sum = 0.0;
    for (std::size_t r = i + 1; r < n; ++r) sum += triangle[RowStart(r) + i] * x[r];
    x[i] = diagonal != 0.0 ? (x[i] - sum) / diagonal : 0.0;
  }
}

}  // namespace

int MCSymMatrix::LTSubstitute(const std::vector<double>& b, std::vector<double>& x) const {
  if (!IsValidMatrix() || b.size() < Rows()) return -1;
  if (&b != &x) x = b;
  x.resize(Rows());
  SubstituteForward(fVec, Rows(), x.data());
  SubstituteBackward(fVec, Rows(), x.data());
  return 0;
}

int MCSymMatrix::LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x) {
  if (!IsValidMatrix() || !(tol > 0.0) || b.size() < Rows()) return -1;
  if (&b == &fVec) return LTSolve(std::vector<double>(b), tol, x);
  std::vector<double> scale;
  GetDiagonal(scale);
  const int nRedundant = LTChol(scale, tol, true);
  if (nRedundant >= 0) LTSubstitute(b, x);
  return nRedundant;
}

bool MCSymMatrix::SolveIndefiniteGI(double tol, const std::vector<double>& b,
                                    std::vector<double>& x) {
  if (fNRows < 1 || !(tol >= 0.0)) return false;
  std::vector<double> rightSide;
  MCSymMatrix squared;
  if (!ComputeSV(fNRows, b, rightSide) || !ComputeSTransS(squared)) return false;
  const int nRedundant = squared.LTSolve(rightSide, tol, x);
  return nRedundant >= 0 && nRedundant < fNRows;
}

}  // namespace MCCommonMath
