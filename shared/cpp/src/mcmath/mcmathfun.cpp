// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcmathfun.h"

#include "mcmath/detail/euclideannorm.h"
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/mcparametertransform.h"
#include "mcmath/detail/packedtriangle.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace MCCommonMath {

namespace {

std::size_t Index(int position) {
  return static_cast<std::size_t>(position);
}

// Calls visit(position) for n positions that are inc apart.
template <class Visitor>
void ForStrided(int n, int pos, int inc, Visitor visit) {
  std::int64_t position = pos;
  for (int i = 0; i < n; ++i, position += inc) visit(static_cast<std::size_t>(position));
}

// Calls visit(position) for n positions down a column of a packed triangle.
template <class Visitor>
void ForColumn(int n, int pos, int inc, Visitor visit) {
  std::int64_t position = pos;
  for (int i = 0; i < n; ++i) {
    visit(static_cast<std::size_t>(position));
    position += std::int64_t{i} + inc;
  }
}

// The same for two columns at once.
template <class Visitor>
void ForColumns(int n, int xPos, int xInc, int yPos, int yInc, Visitor visit) {
  const std::int64_t apart = std::int64_t{yInc} - xInc;
  std::int64_t distance = std::int64_t{yPos} - xPos;
  ForColumn(n, xPos, xInc, [&](std::size_t position) {
    visit(position, static_cast<std::size_t>(static_cast<std::int64_t>(position) + distance));
    distance += apart;
  });
}

// Element i of a strided walk; 64 bits, as i * inc may not fit an int.
class Strided {
public:
  Strided(const std::vector<double>& x, int pos, int inc) : fX(x.data()), fPos(pos), fInc(inc) {}
  double operator[](std::size_t i) const {
    return fX[fPos + static_cast<std::ptrdiff_t>(i) * fInc];
  }

private:
  const double* fX;
  std::ptrdiff_t fPos;
  std::ptrdiff_t fInc;
};

template <class Term>
double Sum(int n, Term term) {
  return n < 1 ? 0.0 : detail::SumInLanes(static_cast<std::size_t>(n), term);
}

template <class T>
int Search(const std::vector<T>& v, int lo, int hi, T x, bool right) {
  if (lo < 0 || hi < lo || Index(hi) >= v.size()) return -2;
  const T top = v[Index(hi)];
  if (x > top || (x == top && right)) return -1;
  if (lo > 0) {
    const T below = v[Index(lo - 1)];
    if (below > x || (below == x && !right)) return -1;
  }
  while (lo < hi) {
    const int middle = lo + (hi - lo) / 2;
    const T value = v[Index(middle)];
    if (value == x) return right ? middle + 1 : middle;
    if (value < x) {
      lo = middle + 1;
    } else {
      hi = middle;
    }
  }
  return lo;
}

}  // namespace

double MCMathFun::DASum(int n, const std::vector<double>& x, int pos, int inc) {
  const Strided elements(x, pos, inc);
  return Sum(n, [&elements](std::size_t i) { return std::fabs(elements[i]); });
}

void MCMathFun::Daxpy(int n, double a, const std::vector<double>& x, int xPos, int xInc,
                      std::vector<double>& y, int yPos, int yInc) {
  if (n < 1) return;
  const Strided from(x, xPos, xInc);
  std::size_t i = 0;
  ForStrided(n, yPos, yInc, [&](std::size_t position) { y[position] += a * from[i++]; });
}

double MCMathFun::DDot(int n, const std::vector<double>& x, int xPos, int xInc,
                       const std::vector<double>& y, int yPos, int yInc) {
  if (n < 1) return 0.0;
  if (xInc == 1 && yInc == 1) return detail::Dot(x.data() + xPos, y.data() + yPos, Index(n));
  const Strided left(x, xPos, xInc);
  const Strided right(y, yPos, yInc);
  return Sum(n, [&](std::size_t i) { return left[i] * right[i]; });
}

void MCMathFun::DLoad(int n, double a, std::vector<double>& x, int pos, int inc) {
  ForStrided(n, pos, inc, [&x, a](std::size_t position) { x[position] = a; });
}

void MCMathFun::DScal(int n, double a, std::vector<double>& x, int pos, int inc) {
  ForStrided(n, pos, inc, [&x, a](std::size_t position) { x[position] *= a; });
}

double MCMathFun::DSum(int n, const std::vector<double>& x, int pos) {
  const Strided elements(x, pos, 1);
  return Sum(n, [&elements](std::size_t i) { return elements[i]; });
}

double MCMathFun::DNrm2(int n, const std::vector<double>& x, int pos, int inc) {
  const Strided elements(x, pos, inc);
  return n < 1 ? 0.0
               : detail::EuclideanNorm(Index(n), [elements](std::size_t i) { return elements[i]; });
}

void MCMathFun::IIAxpy(int n, double a, const std::vector<double>& x, int xPos, int xInc,
                       std::vector<double>& y, int yPos, int yInc) {
  ForColumns(n, xPos, xInc, yPos, yInc,
             [&](std::size_t from, std::size_t to) { y[to] += a * x[from]; });
}

double MCMathFun::IIDot(int n, const std::vector<double>& x, int xPos, int xInc,
                        const std::vector<double>& y, int yPos, int yInc) {
  double sum = 0.0;
  ForColumns(n, xPos, xInc, yPos, yInc,
             [&](std::size_t left, std::size_t right) { sum += x[left] * y[right]; });
  return sum;
}

void MCMathFun::IIInit(int n, double a, std::vector<double>& x, int pos, int inc) {
  ForColumn(n, pos, inc, [&x, a](std::size_t position) { x[position] = a; });
}

void MCMathFun::IIScal(int n, double a, std::vector<double>& x, int pos, int inc) {
  ForColumn(n, pos, inc, [&x, a](std::size_t position) { x[position] *= a; });
}

void MCMathFun::LRZero(std::vector<double>& x, int pos, int n) {
  DLoad(n, 0.0, x, pos, 1);
}

void MCMathFun::LTGltl(int n, std::vector<double>& x) {
  // Row r of L adds its products to all rows above, then becomes row r of the result itself: the
  // sums of IIDot in its order, but along contiguous rows.
  double* row = x.data();
  for (int r = 0; r < n; ++r) {
    double* out = x.data();
    for (int i = 0; i < r; ++i) {
      const double a = row[i];
      for (int j = 0; j <= i; ++j) out[j] += a * row[j];
      out += i + 1;
    }
    const double diagonal = row[r];
    for (int j = 0; j <= r; ++j) row[j] = 0.0 + diagonal * row[j];
    row += r + 1;
  }
}

bool MCMathFun::QLReps(double x, double y) {
  return y > 0.0 && y * std::numeric_limits<double>::epsilon() > std::fabs(x);
}

double MCMathFun::RVD(const std::vector<double>& S, int n, int row, const std::vector<double>& v,
                      int stride) {
  if (n < 1 || row < 0 || row >= n) return MCMV::gMissingValue;
  return detail::RowTimes(detail::PackedRow<const double>(S.data(), Index(row)), Index(n),
                          detail::StridedVector{v.data(), stride});
}

double MCMathFun::VSV(const std::vector<double>& S, int n, const std::vector<double>& v) {
  if (n < 0) return MCMV::gMissingValue;
  const std::size_t size = Index(n);
  if (v.size() < size || S.size() < size * (size + 1) / 2) return MCMV::gMissingValue;
  const double* row = S.data();
  double form = 0.0;
  for (std::size_t i = 0; i < size; ++i) {
    const double below = detail::Dot(row, v.data(), i);
    form += v[i] * (2.0 * below + row[i] * v[i]);
    row += i + 1;
  }
  return form;
}

double MCMathFun::VMaxRelDiff(const std::vector<double>& a, const std::vector<double>& b,
                              double d) {
  const double c = d > 0.0 ? d : 1e-06;
  double largest = 0.0;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    const double difference = std::fabs(a[i] - b[i]) / (std::fabs(b[i]) + c);
    if (difference > largest) largest = difference;
  }
  return largest;
}

double MCMathFun::VNrm1Diff(const std::vector<double>& a, const std::vector<double>& b) {
  double largest = 0.0;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    const double difference = std::fabs(a[i] - b[i]);
    if (difference > largest) largest = difference;
  }
  return largest;
}

int MCMathFun::BinSearch(const std::vector<double>& v, int lo, int hi, double x, bool right) {
  return Search(v, lo, hi, x, right);
}

int MCMathFun::BinSearch(const std::vector<int>& v, int lo, int hi, int x, bool right) {
  return Search(v, lo, hi, x, right);
}

bool MCMathFun::IsValidDouble(double x) {
  return x >= std::numeric_limits<double>::lowest() && x <= std::numeric_limits<double>::max();
}

bool MCMathFun::TransformParameters(std::vector<double>& beta, const std::vector<double>& shift,
                                    const std::vector<double>& scale, int nBlocks, int nIntercepts,
                                    bool negateShift, bool reciprocal) {
  detail::ParameterTransform map;
  if (!map.Setup(beta.size(), shift, scale, nBlocks, nIntercepts, negateShift, reciprocal)) {
    return false;
  }
  const std::size_t p = scale.size();
  const std::size_t k = Index(nIntercepts);
  double* block = beta.data();
  for (int m = 0; m < nBlocks; ++m, block += p) {
    const double share = detail::Dot(map.fB.data() + k, block + k, p - k);
    for (std::size_t l = 0; l < k; ++l) block[l] += share;
    for (std::size_t i = k; i < p; ++i) block[i] /= map.fA[i];
  }
  return true;
}

}  // namespace MCCommonMath
