// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/setbits.h"
#include "mcmath/linpack.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>

namespace MCCommonMath {

namespace {

// Solves S x = b in place, by LINPACK, whose packed upper triangle by columns is that of S by rows.
// `S` becomes its factors. False, with b untouched, for a matrix that is exactly singular, or all
// but so.
bool SolvePacked(MCSymMatrix& S, std::vector<double>& b) {
  std::vector<int> pivots(b.size());
  std::vector<double> work(b.size());
  double reciprocalCondition = 0.0;
  double* const packed = S.AsVector().data();
  Linpack::Dspco(packed, S.GetNRows(), pivots.data(), &reciprocalCondition, work.data());
  if (!(reciprocalCondition > 0.0)) return false;
  Linpack::Dspsl(packed, S.GetNRows(), pivots.data(), b.data());
  return true;
}

// Solves on the rows listed, which ascend; x is 0 in the others.
bool SolveOnRows(const MCSymMatrix& S, const std::vector<int>& rows, const std::vector<double>& b,
                 std::vector<double>& x) {
  MCSymMatrix part;
  if (rows.empty() || !S.ExtractSubmatrix(rows, part)) return false;
  std::vector<double> solution(rows.size());
  std::transform(rows.begin(), rows.end(), solution.begin(),
                 [&b](int i) { return b[static_cast<std::size_t>(i)]; });
  if (!SolvePacked(part, solution)) return false;
  x.assign(static_cast<std::size_t>(S.GetNRows()), 0.0);
  for (std::size_t k = 0; k < rows.size(); ++k) x[static_cast<std::size_t>(rows[k])] = solution[k];
  return true;
}

}  // namespace

bool MCSymMatrix::SolveIndefinite(double tol, const std::vector<double>& b,
                                  std::vector<double>& x) const {
  if (fNRows < 1 || !(tol >= 0.0) || b.size() < Rows()) return false;
  MCSymMatrix squared;
  if (!ComputeSTransS(squared)) return false;
  std::vector<int> rows;
  squared.CholIndNonRed(fNRows, 2.0 * tol, rows);
  return SolveOnRows(*this, rows, b, x);
}

bool MCSymMatrix::SolveIndefinite(const MCBitSet& keep, const std::vector<double>& b,
                                  std::vector<double>& x) const {
  if (fNRows < 1 || keep.Size() < fNRows || b.size() < Rows()) return false;
  return SolveOnRows(*this, detail::SetBits(keep, fNRows), b, x);
}

}  // namespace MCCommonMath
