// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/mcparametertransform.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::PackedIndex;
using detail::ParameterTransform;

// S times the vector that holds `shares` in block r and zeros elsewhere, for each r: the
// covariances of all parameters with the new intercept of block r.
std::vector<std::vector<double>> InterceptCovariances(const MCSymMatrix& S,
                                                      const std::vector<double>& shares) {
  const std::size_t n = static_cast<std::size_t>(S.GetNRows());
  const std::size_t p = shares.size();
  std::vector<std::vector<double>> covariances(n / p);
  std::vector<double> u;
  for (std::size_t r = 0; r < covariances.size(); ++r) {
    u.assign(r * p, 0.0);
    u.insert(u.end(), shares.begin(), shares.end());
    u.resize(n);
    S.ComputeSV(u, covariances[r]);
  }
  return covariances;
}

// The intercept in front of each block takes up its shares of the slopes.
void TransformBlockIntercepts(const ParameterTransform& map, MCSymMatrix& S) {
  std::vector<double> shares(map.fB);
  shares[0] = 1.0;
  const std::vector<std::vector<double>> covariances = InterceptCovariances(S, shares);
  const std::size_t p = shares.size();
  double* const triangle = S.AsVector().data();
  for (std::size_t r = 0; r < covariances.size(); ++r) {
    for (std::size_t q = 0; q < covariances.size(); ++q) {
      const double* const w = covariances[r].data() + q * p;
      if (q >= r) triangle[PackedIndex(r * p, q * p)] = detail::Dot(shares.data(), w, p);
      for (std::size_t j = 1; j < p; ++j) triangle[PackedIndex(r * p, q * p + j)] = w[j];
    }
  }
}

// The k intercepts in front of a single block take up the same shares of the slopes.
void TransformIntercepts(const ParameterTransform& map, std::size_t k, MCSymMatrix& S) {
  std::vector<double> shared;
  S.ComputeSV(map.fB, shared);
  const std::size_t p = shared.size();
  double* const triangle = S.AsVector().data();
  std::vector<double> row;
  for (std::size_t l = 0; l < k; ++l) {
    S.GetRow(static_cast<int>(l), row);
    for (std::size_t j = 0; j < p; ++j) row[j] += shared[j];
    const double common = detail::Dot(map.fB.data() + k, row.data() + k, p - k);
    for (std::size_t j = l; j < p; ++j) {
      triangle[PackedIndex(l, j)] = j < k ? common + row[j] : row[j];
    }
  }
}

// Divides by the divisors of both parameters; those of intercepts are 1.
void DivideElements(const ParameterTransform& map, std::size_t n, double* element) {
  const std::size_t p = map.fA.size();
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j <= i; ++j) *element++ /= map.fA[i % p] * map.fA[j % p];
  }
}

// Neutralises parameter i, which is outside the mask, in the shifts and scales of the others.
// Answers whether there was anything to neutralise.
bool Neutralise(double& shift, double& scale) {
  if (scale != 1.0) {
    scale = 1.0 / scale;
  } else if (shift == 0.0) {
    return false;
  }
  shift = 0.0;
  return true;
}

}  // namespace

bool MCSymMatrix::TransformParameterMatrix(const std::vector<double>& shift,
                                           const std::vector<double>& scale, int nBlocks,
                                           int nIntercepts, bool negateShift, bool reciprocal) {
  ParameterTransform map;
  if (!IsValidMatrix() ||
      !map.Setup(Rows(), shift, scale, nBlocks, nIntercepts, negateShift, reciprocal)) {
    return false;
  }
  if (nIntercepts == 1) TransformBlockIntercepts(map, *this);
  if (nIntercepts > 1) TransformIntercepts(map, static_cast<std::size_t>(nIntercepts), *this);
  DivideElements(map, Rows(), fVec.data());
  return true;
}

bool MCSymMatrix::TransformParameterMatrix(const std::vector<double>& shift,
                                           const std::vector<double>& scale, const MCBitSet& mask,
                                           int nIntercepts, bool negateShift, bool reciprocal) {
  if (!FitsRows(shift) || !FitsRows(scale) || fNRows > mask.Size()) return false;
  if (std::find(scale.begin(), scale.end(), 0.0) != scale.end()) return false;
  std::vector<double> ownShift(shift);
  std::vector<double> ownScale(scale);
  std::vector<std::pair<int, double>> takenShifts;
  for (int i = 0; i < fNRows; ++i) {
    if (mask.IsIn(i)) continue;
    const std::size_t at = static_cast<std::size_t>(i);
    if (Neutralise(ownShift[at], ownScale[at])) takenShifts.emplace_back(i, shift[at]);
  }
  if (!TransformParameterMatrix(ownShift, ownScale, 1, nIntercepts, negateShift, reciprocal)) {
    return false;
  }
  if (nIntercepts < 1) return true;
  for (const auto& [i, taken] : takenShifts) {
    fVec[PackedIndex(static_cast<std::size_t>(i), 0)] += taken;
  }
  return true;
}

}  // namespace MCCommonMath
