// SPDX-License-Identifier: Apache-2.0
// The public operations of MCDistFun with their exact types: what is missing or has another type
// doesn't compile.
#include "mcmath/mcdistfun.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <vector>

namespace {
using D = MCCommonMath::MCDistFun;
using mctest::Is;
using Doubles = std::vector<double>;

using One = double (*)(double);
using Two = double (*)(double, double);
using Three = double (*)(double, double, double);
using LowTwo = double (*)(const double&, const double&, long&);
using LowThree = double (*)(const double&, const double&, const double&, long&);

static_assert(Is<One>(&D::derf) && Is<One>(&D::derfc));
static_assert(Is<One>(&D::prbnrm) && Is<One>(&D::probit));
static_assert(Is<One>(&D::CdfStdNorm) && Is<One>(&D::IdfStdNorm));
static_assert(Is<Three>(&D::CdfNorm) && Is<Three>(&D::IdfNorm));
static_assert(Is<One>(&D::dnlgam) && Is<One>(&D::veskdnlgam) && Is<One>(&D::cbtaux));
static_assert(Is<LowTwo>(&D::dnlbnc));
static_assert(Is<double (*)(const double&, const double&, bool, long&)>(&D::gammad));
static_assert(Is<LowThree>(&D::cdfbet));
static_assert(Is<Three>(&D::betinv) && Is<Three>(&D::IdfBeta));
static_assert(Is<LowTwo>(&D::veskcdft) && Is<LowTwo>(&D::veskidft));
static_assert(Is<Two>(&D::CdfT) && Is<Two>(&D::SigT) && Is<Two>(&D::IdfT));
static_assert(Is<LowThree>(&D::veskcdff) && Is<LowThree>(&D::veskidff));
static_assert(Is<Three>(&D::CdfF) && Is<Three>(&D::SigF) && Is<Three>(&D::IdfF));
static_assert(Is<Two>(&D::CdfChi) && Is<Two>(&D::SigChi) && Is<Two>(&D::IdfChi));
static_assert(Is<LowTwo>(&D::veskidfchi));
static_assert(Is<LowThree>(&D::idfchb));
static_assert(Is<LowThree>(&D::CdfBin) && Is<LowThree>(&D::PdfBin) && Is<LowThree>(&D::IdfBin));
static_assert(Is<double (*)(double, double, double, double, int&)>(&D::CDFHyper));
static_assert(Is<double (*)(long, double, const Doubles&, const Doubles&)>(&D::GPTile));
static_assert(Is<double (*)(long, double, const Doubles&, double&, double&)>(&D::Mednci));

TEST(SurfaceOfMCDistFun, IsExportedByTheLibrary) {
  EXPECT_EQ(D::derf(0.0), 0.0);
  EXPECT_EQ(D::CdfT(0.0, 3.0), 0.5);
}
}  // namespace
