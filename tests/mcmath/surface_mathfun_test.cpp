// SPDX-License-Identifier: Apache-2.0
// The public operations of vector functions, safe arithmetic and running statistics, with their
// exact types: what is missing or has another type doesn't compile.
#include "mcmath/mccontstats.h"
#include "mcmath/mcextremenum.h"
#include "mcmath/mcmathfun.h"
#include "mcmath/mcpower.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace {
using mctest::Is;
using namespace MCCommonMath;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;

using Reduce = double (*)(int, const Doubles&, int, int);
using Dot = double (*)(int, const Doubles&, int, int, const Doubles&, int, int);
using Axpy = void (*)(int, double, const Doubles&, int, int, Doubles&, int, int);
using Change = void (*)(int, double, Doubles&, int, int);
using Function = double (*)(double);

static_assert(Is<Reduce>(&MCMathFun::DASum));
static_assert(Is<Axpy>(&MCMathFun::Daxpy));
static_assert(Is<Dot>(&MCMathFun::DDot));
static_assert(Is<Change>(&MCMathFun::DLoad));
static_assert(Is<Change>(&MCMathFun::DScal));
static_assert(Is<double (*)(int, const Doubles&, int)>(&MCMathFun::DSum));
static_assert(Is<Reduce>(&MCMathFun::DNrm2));
static_assert(Is<Axpy>(&MCMathFun::IIAxpy));
static_assert(Is<Dot>(&MCMathFun::IIDot));
static_assert(Is<Change>(&MCMathFun::IIInit));
static_assert(Is<Change>(&MCMathFun::IIScal));
static_assert(Is<void (*)(Doubles&, int, int)>(&MCMathFun::LRZero));
static_assert(Is<void (*)(int, Doubles&)>(&MCMathFun::LTGltl));
static_assert(Is<bool (*)(double, double)>(&MCMathFun::QLReps));
static_assert(Is<double (*)(const Doubles&, int, int, const Doubles&, int)>(&MCMathFun::RVD));
static_assert(Is<double (*)(const Doubles&, int, const Doubles&)>(&MCMathFun::VSV));
static_assert(Is<double (*)(const Doubles&, const Doubles&, double)>(&MCMathFun::VMaxRelDiff));
static_assert(Is<double (*)(const Doubles&, const Doubles&)>(&MCMathFun::VNrm1Diff));
static_assert(Is<Function>(&MCMathFun::Digamma));
static_assert(Is<Function>(&MCMathFun::Trigamma));
static_assert(Is<bool (*)(double)>(&MCMathFun::IsValidDouble));
static_assert(Is<bool (*)(Doubles&, const Doubles&, const Doubles&, int, int, bool, bool)>(
    &MCMathFun::TransformParameters));
// The two overloads, each chosen by its type.
[[maybe_unused]] constexpr int (*kSearchDoubles)(const Doubles&, int, int, double,
                                                 bool) = &MCMathFun::BinSearch;
[[maybe_unused]] constexpr int (*kSearchInts)(const Ints&, int, int, int,
                                              bool) = &MCMathFun::BinSearch;

static_assert(Is<bool (*)(double, double, double, double, double&)>(&MCExtremeNum::SumSqRoot));

static_assert(std::is_same_v<decltype(MCPower::gMachineMaxExp), const double>);
static_assert(std::is_same_v<decltype(MCPower::gMachineMinExp), const double>);
static_assert(std::is_same_v<decltype(MCPower::gMachineMaxInt), const double>);
static_assert(std::is_same_v<decltype(MCPower::gMachineEpsilon), const double>);
static_assert(Is<bool (*)(double, double, double)>(&MCPower::AlmostEqual));
static_assert(Is<bool (*)(double, double)>(&MCPower::IsOneOverOddInteger));
static_assert(Is<bool (*)(double, double)>(&MCPower::IsOneOverEvenInteger));
static_assert(Is<int (*)(double, double&)>(&MCPower::Exponent));
static_assert(Is<double (*)(double, double)>(&MCPower::Multiply));
static_assert(Is<int (*)(double, double, double&)>(&MCPower::Power));

static_assert(std::is_default_constructible_v<MCContStats>);
static_assert(std::is_copy_constructible_v<MCContStats> && std::is_copy_assignable_v<MCContStats>);
[[maybe_unused]] constexpr bool (MCContStats::*kUpdate)(double) = &MCContStats::Update;
[[maybe_unused]] constexpr bool (MCContStats::*kUpdateWeighted)(double, double,
                                                                double) = &MCContStats::Update;
static_assert(Is<void (MCContStats::*)(const MCContStats&)>(&MCContStats::Pool));
static_assert(Is<std::pair<double, double> (MCContStats::*)() const>(&MCContStats::GetExtrema));
static_assert(Is<double (MCContStats::*)() const>(&MCContStats::GetMean));
static_assert(Is<double (MCContStats::*)() const>(&MCContStats::GetVariance));
static_assert(Is<double (MCContStats::*)() const>(&MCContStats::GetSumFreqWeights));
static_assert(Is<void (MCContStats::*)() const>(&MCContStats::Display));

TEST(SurfaceOfMathFun, IsExportedByTheLibrary) {
  // What the assertions above name must also link.
  double out = 0.0;
  EXPECT_TRUE(MCExtremeNum::SumSqRoot(3.0, 1.0, 4.0, 1.0, out));
  EXPECT_EQ(MCPower::Exponent(0.0, out), 0);
  EXPECT_TRUE(MCContStats().Update(1.0));
  EXPECT_TRUE(MCMathFun::IsValidDouble(out));
}
}  // namespace
