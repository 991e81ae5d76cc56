// SPDX-License-Identifier: Apache-2.0
//
// From the reduced matrix to a tridiagonal one, and the vectors on the way back.
#include "mcmath/detail/aligned.h"
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpanels.h"
#include "mcmath/detail/vectorpath.h"
#include "mcmath/mceigenvalues.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::kLineDoubles;
using detail::RowStart;

double LargestMagnitude(const double* x, std::size_t n) {
  double largest = 0.0;
  for (std::size_t j = 0; j < n; ++j) largest = std::max(largest, std::abs(x[j]));
  return largest;
}

// Householder reduction of a packed triangle, the last row first (Martin, Reinsch and Wilkinson
// 1968). A step reflects row i of what is left, by I - u u' with u'u = 2, so that only its last
// element before the diagonal remains; the triangle above turns into A - u q' - q u' with
// q = A u - (u'A u / 2) u. That update waits for the next step: then one walk over the triangle
// makes it and forms the next A u. The triangle is kept in bands, see VectorKernels::updateBands,
// in which all rows begin at a cache line. 2 n^3 / 3 multiply-adds.
class HouseholderReduction {
public:
  HouseholderReduction(const std::vector<double>& triangle, std::size_t n)
      : fKernels(detail::KernelsOf(detail::WidestVectorPath())),
        fNBands((n + kLineDoubles - 1) / kLineDoubles),
        // What is as small as that beside the largest element counts as zero: squares of anything
        // scaled by what isn't are safe.
        fFloor(LargestMagnitude(triangle.data(), triangle.size()) * 0x1p-500) {
    fBands.Grow(BandStart(fNBands));
    for (detail::LineBuffer* vector : {&fU, &fQ, &fNext, &fProduct}) {
      vector->Grow(fNBands * kLineDoubles);
    }
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j <= i; ++j) Put(i, j, triangle[RowStart(i) + j]);
    }
  }

  // Takes row i, the last one left. `u` gets the vector of its reflection, i entries and a zero in
  // place of the diagonal.
  void ReduceRow(std::size_t i, double* u, double& diagonal, double& subdiagonal) {
    double* const row = Row(i);
    UpdateRow(i);
    diagonal = row[i];
    const bool isReflected = i > 0 && MakeReflection(row, i, subdiagonal);
    const std::size_t bandEnd = (i / kLineDoubles + 1) * kLineDoubles;
    std::fill(fNext.Data() + (isReflected ? i : 0), fNext.Data() + bandEnd, 0.0);
    std::copy_n(fNext.Data(), i + 1, u);
    if (isReflected || fbIsPending) Multiply(i);
    fbIsPending = isReflected;
  }

private:
  static std::size_t BandStart(std::size_t band) {
    return kLineDoubles * kLineDoubles * RowStart(band);
  }

  double* Row(std::size_t i) {
    const std::size_t band = i / kLineDoubles;
    return fBands.Data() + BandStart(band) + i % kLineDoubles * (band + 1) * kLineDoubles;
  }

  void Put(std::size_t i, std::size_t j, double x) {
    Row(i)[j] = x;
    if (j / kLineDoubles == i / kLineDoubles) Row(j)[i] = x;
  }

  // Row i alone comes up to date before the triangle above it.
  void UpdateRow(std::size_t i) {
    if (!fbIsPending) return;
    double* const row = Row(i);
    const double* const u = fU.Data();
    const double* const q = fQ.Data();
    for (std::size_t j = 0; j <= i; ++j) row[j] -= u[i] * q[j] + q[i] * u[j];
  }

  // False if the row is as it should be already. Scaled by its largest element first.
  bool MakeReflection(const double* row, std::size_t i, double& subdiagonal) {
    subdiagonal = row[i - 1];
    if (LargestMagnitude(row, i - 1) <= fFloor) return false;
    const double scale = LargestMagnitude(row, i);
    double* const u = fNext.Data();
    for (std::size_t j = 0; j < i; ++j) u[j] = row[j] / scale;
    const double square = detail::Dot(u, u, i);
    const double last = -std::copysign(std::sqrt(square), u[i - 1]);
    const double halfSquare = square - u[i - 1] * last;  // of u as it is about to be
    u[i - 1] -= last;
    const double factor = 1.0 / std::sqrt(halfSquare);
    for (std::size_t j = 0; j < i; ++j) u[j] *= factor;
    subdiagonal = scale * last;
    return true;
  }

  // Brings the triangle above row i up to date and makes the update that waits next.
  void Multiply(std::size_t i) {
    const std::size_t nBands = (i + kLineDoubles - 1) / kLineDoubles;
    double* const product = fProduct.Data();
    std::fill_n(product, nBands * kLineDoubles, 0.0);
    fKernels.updateBands(fBands.Data(), nBands, {fU.Data(), fQ.Data(), fNext.Data(), product});
    std::swap(fU, fNext);
    std::swap(fQ, fProduct);
    const double* const u = fU.Data();
    double* const q = fQ.Data();
    const double along = detail::Dot(u, q, i) / 2.0;
    for (std::size_t j = 0; j < i; ++j) q[j] -= along * u[j];
    std::fill(q + i, q + nBands * kLineDoubles, 0.0);
  }

  const detail::VectorKernels& fKernels;
  std::size_t fNBands;
  double fFloor;
  bool fbIsPending = false;
  detail::LineBuffer fBands;
  detail::LineBuffer fU;
  detail::LineBuffer fQ;
  detail::LineBuffer fNext;
  detail::LineBuffer fProduct;
};

// Turns the vectors of the tridiagonal matrix, one in each column, into those of the matrix that
// was reduced: the reflections come back in the order opposite to that in which they were found,
// two at a time. `info` holds that of row i in its row i, before a zero diagonal. n^3
// multiply-adds.
void ReflectBack(const std::vector<double>& info, std::size_t n, detail::VectorPanels& vectors) {
  // The reflection of row 1 is none.
  for (std::size_t i = n % 2 == 0 ? 2 : 1; i + 1 < n; i += 2) {
    const double* const first = info.data() + RowStart(i);
    const double* const second = info.data() + RowStart(i + 1);
    const double overlap = detail::Dot(first, second, i + 1);
    for (std::size_t p = 0; p < vectors.Count(); ++p) {
      vectors.Kernels().reflectRows(vectors.Panel(p), i + 1, first, second, overlap);
    }
  }
}

// Multiplies the vectors by V', V being a packed lower triangle of n rows, in place.
void MultiplyByTransposed(const std::vector<double>& V, std::size_t n,
                          detail::VectorPanels& vectors) {
  for (std::size_t p = 0; p < vectors.Count(); ++p) {
    for (std::size_t i = 0; i < n; ++i) {
      double* const row = vectors.Row(p, i);
      const double* const factors = V.data() + RowStart(i);
      vectors.Kernels().addOuter(vectors.Panel(p), i, factors, row, vectors.Width());
      for (std::size_t k = 0; k < vectors.Width(); ++k) row[k] *= factors[i];
    }
  }
}

}  // namespace

void MCEigenValues::Tred3() {
  const std::size_t n = static_cast<std::size_t>(fmOrthInfo.GetNRows());
  std::vector<double>& info = fmOrthInfo.AsVector();
  fvDiag3.assign(n, 0.0);
  fvSubdiag3.assign(n, 0.0);
  HouseholderReduction reduction(info, n);
  for (std::size_t i = n; i-- > 0;) {
    reduction.ReduceRow(i, info.data() + RowStart(i), fvDiag3[i], fvSubdiag3[i]);
  }
}

bool MCEigenValues::BackTransVectors() {
  const std::size_t rank = static_cast<std::size_t>(fmOrthInfo.GetNRows());
  detail::VectorPanels panels(rank, rank);
  for (std::size_t i = 0; i < rank; ++i) {
    panels.LoadRow(i, fmEigenVectors.AsVectorConst().data() + i * rank);
  }
  ReflectBack(fmOrthInfo.AsVectorConst(), rank, panels);
  if (fbEMatrix) {
    MCSymMatrix V;
    if (!fmCholGI.ExtractSubmatrix(fvKeptRows, V)) return false;
    MultiplyByTransposed(V.AsVectorConst(), rank, panels);
  }

  if (!fmEigenVectors.SetNRowsCols(fmH.GetNRows(), static_cast<int>(rank))) return false;
  for (std::size_t i = 0; i < rank; ++i) {
    const std::size_t row = fbEMatrix ? static_cast<std::size_t>(fvKeptRows[i]) : i;
    double* const to = fmEigenVectors.AsVector().data() + row * rank;
    panels.StoreRow(i, to);
    if (fvExponentsE.empty()) continue;
    std::transform(to, to + rank, to,
                   [exponent = -fvExponentsE[i]](double x) { return std::ldexp(x, exponent); });
  }
  return true;
}

}  // namespace MCCommonMath
