// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsparsevector.h"

#include "mcmath/detail/mcmultinomial.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>

namespace MCCommonMath {

namespace {

int ClampToInt(std::int64_t n) {
  return static_cast<int>(std::min<std::int64_t>(n, std::numeric_limits<int>::max()));
}

std::int64_t SizeOf(const std::vector<double>& v) {
  return static_cast<std::int64_t>(v.size());
}

/// The elements of a view as the inner loops take them.
struct Elements {
  explicit Elements(const MCSparseVector& x)
      : count(x.GetIndices().size()),
        positions(x.GetIndices().data()),
        values(x.GetValues().data()) {}

  std::size_t Position(std::size_t e) const { return static_cast<std::size_t>(positions[e]); }

  std::size_t count;
  const int* positions;
  const double* values;
};

double Dot(const Elements& x, const double* v) {
  double sum = 0.0;
  for (std::size_t e = 0; e < x.count; ++e) sum += x.values[e] * v[x.Position(e)];
  return sum;
}

void AddOuterProduct(const Elements& x, double* triangle, std::size_t offset, double w) {
  for (std::size_t d = 0; d < x.count; ++d) {
    const double factor = w * x.values[d];
    double* row = triangle + detail::RowStart(offset + x.Position(d)) + offset;
    for (std::size_t e = 0; e <= d; ++e) row[x.Position(e)] += factor * x.values[e];
  }
}

}  // namespace

MCSparseVector::MCSparseVector(const std::vector<int>& idx, const std::vector<double>& val)
    : fNElements(ClampToInt(static_cast<std::int64_t>(idx.size()))),
      fIndices(&idx),
      fValues(&val),
      fValid(!idx.empty() && idx.size() == val.size() && idx.front() >= 0 &&
             std::adjacent_find(idx.begin(), idx.end(), std::greater_equal<>()) == idx.end()) {}

std::int64_t MCSparseVector::MinSize() const {
  return fIndices->empty() ? 0 : std::int64_t{fIndices->back()} + 1;
}

bool MCSparseVector::FitsAt(std::int64_t offset, std::int64_t size) const {
  return fValid && offset >= 0 && offset + MinSize() <= size;
}

int MCSparseVector::GetMinVecSize() const {
  return ClampToInt(MinSize());
}

int MCSparseVector::GetIndex(int i) const {
  if (!fValid || i < 0 || i >= fNElements) return -1;
  return (*fIndices)[static_cast<std::size_t>(i)];
}

double MCSparseVector::GetValue(int i) const {
  if (!fValid || i < 0 || i >= fNElements) return MCMV::gMissingValue;
  return (*fValues)[static_cast<std::size_t>(i)];
}

bool MCSparseVector::IncrementPart(std::vector<double>& v, int offset, double a) const {
  if (!FitsAt(offset, SizeOf(v))) return false;
  const Elements x(*this);
  double* part = v.data() + offset;
  for (std::size_t e = 0; e < x.count; ++e) part[x.Position(e)] += a * x.values[e];
  return true;
}

double MCSparseVector::InnerProductWithPart(const std::vector<double>& v, int offset) const {
  if (fIndices->empty() && offset >= 0 && offset <= SizeOf(v)) return 0.0;
  if (!FitsAt(offset, SizeOf(v))) return MCMV::gMissingValue;
  return Dot(Elements(*this), v.data() + offset);
}

double MCSparseVector::InnerProduct(const int* i1, const double* v1, int n1, const int* i2,
                                    const double* v2, int n2) {
  if (i1 == nullptr || v1 == nullptr || i2 == nullptr || v2 == nullptr) return MCMV::gMissingValue;
  if (n1 < 0 || n2 < 0) return MCMV::gMissingValue;
  double sum = 0.0;
  for (int a = 0, b = 0; a < n1 && b < n2;) {
    if (i1[a] < i2[b]) {
      ++a;
    } else if (i2[b] < i1[a]) {
      ++b;
    } else {
      sum += v1[a++] * v2[b++];
    }
  }
  return sum;
}

bool MCSparseVector::IncrementRowPart(MCSymMatrix& S, int row, int offset, double a) const {
  if (row < 0 || row >= S.GetNRows() || !FitsAt(offset, S.GetNRows())) return false;
  const Elements x(*this);
  const std::size_t i = static_cast<std::size_t>(row);
  const std::size_t from = static_cast<std::size_t>(offset);
  double* triangle = S.AsVector().data();
  for (std::size_t e = 0; e < x.count; ++e) {
    triangle[detail::PackedIndex(i, from + x.Position(e))] += a * x.values[e];
  }
  return true;
}

void MCSparseVector::QuadraticOuterProduct(MCSymMatrix& S) const {
  if (!fValid) return;
  S.Clear();
  QuadraticOuterProductIncr(S, 1.0);
}

void MCSparseVector::QuadraticOuterProductIncr(MCSymMatrix& S, double w) const {
  if (!fValid) return;
  if (S.GetNRows() < MinSize()) S.SetNRows(GetMinVecSize());
  QuadraticOuterProductPartIncr(S, 0, w);
}

bool MCSparseVector::QuadraticOuterProductPartIncr(MCSymMatrix& S, int offset, double w) const {
  if (!FitsAt(offset, S.GetNRows())) return false;
  AddOuterProduct(Elements(*this), S.AsVector().data(), static_cast<std::size_t>(offset), w);
  return true;
}

int MCSparseVector::ConvertToRegularVector(std::vector<double>& v) const {
  if (!fValid) return -1;
  const Elements x(*this);
  v.assign(std::max(v.size(), static_cast<std::size_t>(MinSize())), 0.0);
  for (std::size_t e = 0; e < x.count; ++e) v[x.Position(e)] = x.values[e];
  return ClampToInt(SizeOf(v));
}

bool MCSparseVector::ComputeProbabilities(const std::vector<double>& beta, int nCat, int blockSize,
                                          std::vector<double>& probs, double& logLast) const {
  if (nCat < 1 || blockSize < 1 || !FitsAt(0, blockSize)) return false;
  if ((std::int64_t{nCat} - 1) * blockSize > SizeOf(beta)) return false;
  const std::size_t m = static_cast<std::size_t>(nCat - 1);
  if (probs.size() <= m) probs.resize(m + 1);
  const Elements x(*this);
  const double* block = beta.data();
  for (std::size_t j = 0; j < m; ++j, block += blockSize) probs[j] = Dot(x, block);
  logLast = detail::MultinomialProbabilities(probs.data(), m, 1, probs.data());
  return true;
}

void MCSparseVector::Display() const {
  MCComponentDisplay::DisplayText(1, "MCSparseVector display start");
  MCComponentDisplay::DisplayI("Number of sparse vector elements", fNElements);
  MCComponentDisplay::DisplayIV("Vector of indices", *fIndices);
  MCComponentDisplay::DisplayDV("Vector of values", *fValues, false);
  MCComponentDisplay::DisplayB("Validity indicator", fValid);
  MCComponentDisplay::DisplayText(1, "MCSparseVector display end");
}

}  // namespace MCCommonMath
