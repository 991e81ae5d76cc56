// SPDX-License-Identifier: Apache-2.0
#include "mcmath/blas1.h"

#include "mcmath/detail/columnoperations.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::Index;

/// Where element 0 of a vector lies in its array.
Index StartOf(int n, int inc) {
  return inc < 0 ? (1 - static_cast<Index>(n)) * inc : 0;
}

/// Visits the n pairs of elements of two vectors.
template <class X, class Y, class Visit>
void ForEachPair(int n, X* dx, int incx, Y* dy, int incy, const Visit& visit) {
  Index ix = StartOf(n, incx);
  Index iy = StartOf(n, incy);
  for (int i = 0; i < n; ++i, ix += incx, iy += incy) visit(dx[ix], dy[iy]);
}

/// Element i of a vector whose increment is positive.
auto ElementsOf(const double* dx, int incx) {
  return [dx, incx](std::size_t i) { return dx[static_cast<Index>(i) * incx]; };
}

}  // namespace

double Blas1::D_Abs(double x) {
  return std::fabs(x);
}

double Blas1::D_Max(double a, double b) {
  return a > b ? a : b;
}

double Blas1::D_Sign(double a, double b) {
  return std::copysign(a, b);
}

int Blas1::I_Max(int a, int b) {
  return std::max(a, b);
}

int Blas1::I_Min(int a, int b) {
  return std::min(a, b);
}

bool Blas1::LSame(char a, char b) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : int{c}; };
  return upper(a) == upper(b);
}

double Blas1::DASum(int n, const double* dx, int incx) {
  if (n < 1 || incx < 1) return 0.0;
  if (incx == 1) return detail::SumOfMagnitudes(n, dx);
  const auto elements = ElementsOf(dx, incx);
  return detail::SumInLanes(static_cast<std::size_t>(n),
                            [elements](std::size_t i) { return std::fabs(elements(i)); });
}

void Blas1::Daxpy(int n, double da, const double* dx, int incx, double* dy, int incy) {
  if (da == 0.0) return;
  if (incx == 1 && incy == 1) return detail::AddScaled(n, da, dx, dy);
  ForEachPair(n, dx, incx, dy, incy, [da](double x, double& y) { y += da * x; });
}

void Blas1::DCopy(int n, const double* dx, int incx, double* dy, int incy) {
  ForEachPair(n, dx, incx, dy, incy, [](double x, double& y) { y = x; });
}

double Blas1::DDot(int n, const double* dx, int incx, const double* dy, int incy) {
  if (incx == 1 && incy == 1) return detail::DotProduct(n, dx, dy);
  if (n < 1) return 0.0;
  const double* const x = dx + StartOf(n, incx);
  const double* const y = dy + StartOf(n, incy);
  return detail::SumInLanes(static_cast<std::size_t>(n), [=](std::size_t i) {
    return x[static_cast<Index>(i) * incx] * y[static_cast<Index>(i) * incy];
  });
}

void Blas1::DRot(int n, double* dx, int incx, double* dy, int incy, double c, double s) {
  if (incx == 1 && incy == 1) return detail::Rotate(n, dx, dy, c, s);
  ForEachPair(n, dx, incx, dy, incy, [c, s](double& x, double& y) { detail::Rotate(x, y, c, s); });
}

void Blas1::DRotG(double* da, double* db, double* c, double* s) {
  const double a = *da;
  const double b = *db;
  if (a == 0.0 && b == 0.0) {
    *c = 1.0;
    *s = *da = *db = 0.0;
    return;
  }
  const bool bFirstIsLarger = std::fabs(a) > std::fabs(b);
  const double scale = bFirstIsLarger ? a : b;
  // The quotients go by the scaled length, as r may be infinite or a denormal number.
  const double length = std::sqrt((a / scale) * (a / scale) + (b / scale) * (b / scale));
  *c = a / scale / length;
  *s = b / scale / length;
  *da = scale * length;
  if (bFirstIsLarger) {
    *db = *s;
  } else {
    *db = *c == 0.0 ? 1.0 : 1.0 / *c;
  }
}

double Blas1::DNrm2(int n, const double* dx, int incx) {
  if (n < 1 || incx < 1) return 0.0;
  if (incx == 1) return detail::NormOf(n, dx);
  return detail::EuclideanNorm(static_cast<std::size_t>(n), ElementsOf(dx, incx));
}

void Blas1::DScal(int n, double da, double* dx, int incx) {
  if (incx == 1) return detail::MultiplyBy(n, da, dx);
  if (incx < 1) return;
  for (Index i = 0; i < n; ++i) dx[i * incx] *= da;
}

void Blas1::DSwap(int n, double* dx, int incx, double* dy, int incy) {
  ForEachPair(n, dx, incx, dy, incy, [](double& x, double& y) { std::swap(x, y); });
}

int Blas1::IDAMax(int n, const double* dx, int incx) {
  if (n < 1 || incx < 1) return 0;
  return static_cast<int>(detail::LargestMagnitude(n, dx, incx)) + 1;
}

void Blas1::XErBla(const char* routine, int parameter) {
  std::printf(
      "XERBLA - Fatal error!\n  On entry to routine %s\n  input parameter number %d had an illegal "
      "value.\n",
      routine, parameter);
  std::fflush(stdout);
  std::exit(1);
}

double Blas1::DMach(int job) {
  double eps = 1.0;
  while (1.0 + eps / 2.0 > 1.0) eps /= 2.0;
  double least = 1.0;
  while (least / 16.0 != 0.0) least /= 16.0;
  const double small = least / eps * 100.0;
  switch (job) {
    case 1:
      return eps;
    case 2:
      return small;
    case 3:
      return 1.0 / small;
    default:
      XErBla("DMACH", 1);
  }
}

}  // namespace MCCommonMath
