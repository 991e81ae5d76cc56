// SPDX-License-Identifier: Apache-2.0
// The public operations of the level-1 routines and of LINPACK with their exact types: what is
// missing or has another type doesn't compile.
#include "mcmath/blas1.h"
#include "mcmath/linpack.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

namespace {
using mctest::Is;
using namespace MCCommonMath;

using In = const double*;
using Out = double*;
using Pivots = const int*;
using Ints = int*;

static_assert(Is<double (*)(double)>(&Blas1::D_Abs));
static_assert(Is<double (*)(double, double)>(&Blas1::D_Max));
static_assert(Is<double (*)(double, double)>(&Blas1::D_Sign));
static_assert(Is<int (*)(int, int)>(&Blas1::I_Max));
static_assert(Is<int (*)(int, int)>(&Blas1::I_Min));
static_assert(Is<bool (*)(char, char)>(&Blas1::LSame));
static_assert(Is<double (*)(int, In, int)>(&Blas1::DASum));
static_assert(Is<void (*)(int, double, In, int, Out, int)>(&Blas1::Daxpy));
static_assert(Is<void (*)(int, In, int, Out, int)>(&Blas1::DCopy));
static_assert(Is<double (*)(int, In, int, In, int)>(&Blas1::DDot));
static_assert(Is<void (*)(int, Out, int, Out, int, double, double)>(&Blas1::DRot));
static_assert(Is<void (*)(Out, Out, Out, Out)>(&Blas1::DRotG));
static_assert(Is<double (*)(int, In, int)>(&Blas1::DNrm2));
static_assert(Is<void (*)(int, double, Out, int)>(&Blas1::DScal));
static_assert(Is<void (*)(int, Out, int, Out, int)>(&Blas1::DSwap));
static_assert(Is<int (*)(int, In, int)>(&Blas1::IDAMax));
static_assert(Is<void (*)(const char*, int)>(&Blas1::XErBla));
static_assert(Is<double (*)(int)>(&Blas1::DMach));

static_assert(Is<void (*)(Out, int, int, Ints, Ints)>(&Linpack::Dgefa));
static_assert(Is<void (*)(Out, int, int, Ints, Out, Out)>(&Linpack::Dgeco));
static_assert(Is<void (*)(In, int, int, Pivots, Out, int)>(&Linpack::Dgesl));
static_assert(Is<void (*)(Out, int, int, Pivots, Out, Out, int)>(&Linpack::Dgedi));
static_assert(Is<void (*)(Out, int, int, int, int, Ints, Ints)>(&Linpack::Dgbfa));
static_assert(Is<void (*)(Out, int, int, int, int, Ints, Out, Out)>(&Linpack::Dgbco));
static_assert(Is<void (*)(In, int, int, int, int, Pivots, Out, int)>(&Linpack::Dgbsl));
static_assert(Is<void (*)(In, int, int, int, int, Pivots, Out)>(&Linpack::Dgbdi));
static_assert(Is<void (*)(int, Out, Out, Out, Out, Ints)>(&Linpack::Dgtsl));
static_assert(Is<void (*)(Out, int, int, Ints)>(&Linpack::Dpofa));
static_assert(Is<void (*)(Out, int, int, Out, Out, Ints)>(&Linpack::Dpoco));
static_assert(Is<void (*)(In, int, int, Out)>(&Linpack::Dposl));
static_assert(Is<void (*)(Out, int, int, Out, int)>(&Linpack::Dpodi));
static_assert(Is<void (*)(Out, int, Ints)>(&Linpack::Dppfa));
static_assert(Is<void (*)(Out, int, Out, Out, Ints)>(&Linpack::Dppco));
static_assert(Is<void (*)(In, int, Out)>(&Linpack::Dppsl));
static_assert(Is<void (*)(Out, int, Out, int)>(&Linpack::Dppdi));
static_assert(Is<void (*)(Out, int, int, int, Ints)>(&Linpack::Dpbfa));
static_assert(Is<void (*)(Out, int, int, int, Out, Out, Ints)>(&Linpack::Dpbco));
static_assert(Is<void (*)(In, int, int, int, Out)>(&Linpack::Dpbsl));
static_assert(Is<void (*)(In, int, int, int, Out)>(&Linpack::Dpbdi));
static_assert(Is<void (*)(int, Out, In, Out)>(&Linpack::Dptsl));
static_assert(Is<void (*)(Out, int, int, Ints, Ints)>(&Linpack::Dsifa));
static_assert(Is<void (*)(Out, int, int, Ints, Out, Out)>(&Linpack::Dsico));
static_assert(Is<void (*)(In, int, int, Pivots, Out)>(&Linpack::Dsisl));
static_assert(Is<void (*)(Out, int, int, Pivots, Out, Ints, Out, int)>(&Linpack::Dsidi));
static_assert(Is<void (*)(Out, int, Ints, Ints)>(&Linpack::Dspfa));
static_assert(Is<void (*)(Out, int, Ints, Out, Out)>(&Linpack::Dspco));
static_assert(Is<void (*)(In, int, Pivots, Out)>(&Linpack::Dspsl));
static_assert(Is<void (*)(Out, int, Pivots, Out, Ints, Out, int)>(&Linpack::Dspdi));
static_assert(Is<void (*)(In, int, int, Out, Out, int)>(&Linpack::Dtrco));
static_assert(Is<void (*)(In, int, int, Out, int, Ints)>(&Linpack::Dtrsl));
static_assert(Is<void (*)(Out, int, int, Out, int, Ints)>(&Linpack::Dtrdi));
static_assert(Is<void (*)(Out, int, int, int, Out, Ints, Out, int)>(&Linpack::Dqrdc));
static_assert(
    Is<void (*)(Out, int, int, int, Out, In, Out, Out, Out, Out, Out, int, Ints)>(&Linpack::Dqrsl));
static_assert(Is<void (*)(Out, int, int, int, Out, Out, Out, int, Out, int, Out, int, Ints)>(
    &Linpack::Dsvdc));
static_assert(Is<void (*)(Out, int, int, Out, Ints, int, Ints)>(&Linpack::Dchdc));
static_assert(Is<void (*)(Out, int, int, In, Out, int, int, In, Out, Out, Out)>(&Linpack::Dchud));
static_assert(
    Is<void (*)(Out, int, int, In, Out, int, int, In, Out, Out, Out, Ints)>(&Linpack::Dchdd));
static_assert(Is<void (*)(Out, int, int, int, int, Out, int, int, Out, Out, int)>(&Linpack::Dchex));

TEST(SurfaceOfLinpack, IsExportedByTheLibrary) {
  double one = 1.0;
  int info = -1;
  Linpack::Dpofa(&one, 1, 1, &info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(Blas1::DASum(1, &one, 1), 1.0);
}

}  // namespace
