// SPDX-License-Identifier: Apache-2.0
//
// Eigenvalues of the tridiagonal matrix, and its vectors.
#include "mcmath/detail/vectorpanels.h"
#include "mcmath/mceigenvalues.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace MCCommonMath {

namespace {

// Vectors in the rows of panels, which rotations turn. Rotations are gathered until there are many:
// a panel takes them all while it stays in the cache.
class RotatedVectors {
public:
  // The vectors of the identity.
  explicit RotatedVectors(std::size_t n) : fN(n), fPanels(n, n) {
    for (std::size_t i = 0; i < n; ++i) fPanels.Element(i, i) = 1.0;
    fRotations.reserve(2 * (kGatheredRuns + 1) * n);
  }

  // Opens a run that begins with rows top and top - 1.
  void Begin(std::size_t top) {
    if (fRotations.size() >= 2 * kGatheredRuns * fN) Flush();
    fRuns.push_back({top, 0, fRotations.size() / 2});
  }

  void Add(double cosine, double sine) {
    fRotations.push_back(cosine);
    fRotations.push_back(sine);
    ++fRuns.back().count;
  }

  // One column for each vector.
  void StoreColumns(MCRectMatrix& vectors) {
    Flush();
    for (std::size_t p = 0; p < fPanels.Count(); ++p) {
      for (std::size_t k = 0; k < fN; ++k) {
        const double* const from = fPanels.Row(p, k);
        double* to = vectors.AsVector().data() + p * fPanels.Width() * fN + k;
        for (std::size_t c = 0; c < fPanels.ColumnsOf(p); ++c, to += fN) *to = from[c];
      }
    }
  }

private:
  // Rotations worth one walk over a panel, in units of its rows.
  static constexpr std::size_t kGatheredRuns = 16;

  void Flush() {
    for (std::size_t p = 0; p < fPanels.Count(); ++p) {
      fPanels.Kernels().rotateRows(fPanels.Panel(p), fRuns.data(), fRuns.size(), fRotations.data());
    }
    fRuns.clear();
    fRotations.clear();
  }

  std::size_t fN;
  detail::VectorPanels fPanels;
  std::vector<detail::RotationRun> fRuns;
  std::vector<double> fRotations;
};

// Length of the vector (x, y), both far from overflow.
double Length(double x, double y) {
  const double square = x * x + y * y;
  return square > 0x1p-900 ? std::sqrt(square) : std::hypot(x, y);
}

// Implicit QL iteration (Dubrulle, Martin and Wilkinson 1968; Dubrulle 1970). `diagonal` turns into
// the eigenvalues; entry i of `subdiagonal` couples rows i and i + 1.
class ImplicitQL {
public:
  ImplicitQL(std::vector<double>& diagonal, std::vector<double>& subdiagonal,
             RotatedVectors* vectors)
      : fD(diagonal), fE(subdiagonal), fpVectors(vectors) {
    for (const double x : fD) fLargest = std::max(fLargest, std::abs(x));
    for (const double x : fE) fLargest = std::max(fLargest, std::abs(x));
  }

  // Turns diagonal element `row` into an eigenvalue. False if that takes more than maxIter steps.
  bool Isolate(std::size_t row, int maxIter) {
    for (int iteration = 0;; ++iteration) {
      const std::size_t end = BlockEnd(row, iteration < kPatience ? 0x1p-500 : kUnit);
      if (end == row) return true;
      if (iteration == maxIter) return false;
      Step(row, end);
    }
  }

private:
  static constexpr double kUnit = std::numeric_limits<double>::epsilon() / 2.0;

  // Small values of a graded matrix keep their digits if couplings count as zero only beside their
  // own diagonal elements. Among what rounding has left of zeros, over many orders of magnitude,
  // that may take long: then it is enough that they are small beside the matrix.
  static constexpr int kPatience = 8;

  // Last row of the block that begins at `row`: the first that isn't coupled to the next. What is
  // `negligible` times the largest element is no coupling.
  std::size_t BlockEnd(std::size_t row, double negligible) const {
    const double floor = negligible * fLargest;
    std::size_t end = row;
    for (; end + 1 < fD.size(); ++end) {
      const double coupling = std::abs(fE[end]);
      if (coupling <= floor) break;
      if (coupling <= kUnit * (std::abs(fD[end]) + std::abs(fD[end + 1]))) break;
    }
    return end;
  }

  // The eigenvalue nearer to its first element of the leading two rows of the block, from that
  // element.
  double Shift(std::size_t row) const {
    const double g = (fD[row + 1] - fD[row]) / (2.0 * fE[row]);
    return fE[row] / (g + std::copysign(Length(g, 1.0), g));
  }

  // One QL step on rows `row` to `end`, the bulge moving up.
  void Step(std::size_t row, std::size_t end) {
    double g = fD[end] - fD[row] + Shift(row);
    double sine = 1.0;
    double cosine = 1.0;
    double p = 0.0;
    if (fpVectors != nullptr) fpVectors->Begin(end);
    for (std::size_t i = end; i-- > row;) {
      const double f = sine * fE[i];
      const double b = cosine * fE[i];
      const double length = Length(f, g);
      fE[i + 1] = length;
      if (length == 0.0) {  // by underflow: the matrix falls apart here
        fD[i + 1] -= p;
        fE[end] = 0.0;
        return;
      }
      sine = f / length;
      cosine = g / length;
      g = fD[i + 1] - p;
      const double r = (fD[i] - g) * sine + 2.0 * cosine * b;
      p = sine * r;
      fD[i + 1] = g + p;
      g = cosine * r - b;
      if (fpVectors != nullptr) fpVectors->Add(cosine, sine);
    }
    fD[row] -= p;
    fE[row] = g;
    fE[end] = 0.0;
  }

  std::vector<double>& fD;
  std::vector<double>& fE;
  RotatedVectors* fpVectors;
  double fLargest = 0.0;
};

}  // namespace

bool MCEigenValues::EigenValuesTQLI() {
  const std::size_t n = fvDiag3.size();
  fvEigenVal = fvDiag3;
  // From "couples to the row before" to "couples to the row behind"; a last entry as scratch.
  std::vector<double> subdiagonal(n, 0.0);
  if (n > 0) std::copy(fvSubdiag3.begin() + 1, fvSubdiag3.end(), subdiagonal.begin());
  std::unique_ptr<RotatedVectors> vectors;
  if (fbVectors) vectors = std::make_unique<RotatedVectors>(n);
  ImplicitQL iteration(fvEigenVal, subdiagonal, vectors.get());
  for (std::size_t row = 0; row < n; ++row) {
    if (!iteration.Isolate(row, fMaxIter)) return false;
  }
  if (!vectors) return true;
  if (!fmEigenVectors.SetNRowsCols(fmOrthInfo.GetNRows(), fmOrthInfo.GetNRows())) return false;
  vectors->StoreColumns(fmEigenVectors);
  return true;
}

}  // namespace MCCommonMath
