// SPDX-License-Identifier: Apache-2.0
// What each function refuses, argument by argument: a NaN, an infinity, a negative count, the
// neighbours of its range.
#include "mcmath/mcdistfun.h"
#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {
using D = MCCommonMath::MCDistFun;
using Doubles = std::vector<double>;
constexpr double kMissing = MCMV::gMissingValue;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();
constexpr double kAbove1 = 1.0 + 0x1p-52;

// What is refused beside NaN, named by what isn't.
const Doubles kAny;
const Doubles kFinite{-kInf, kInf};
const Doubles kPositive{0.0, -0.0, -kLeast, -1.0, -kInf};
const Doubles kFinitePositive{0.0, -0.0, -kLeast, -1.0, -kInf, kInf};
const Doubles kZeroToOne{-kLeast, -1.0, kAbove1, -kInf, kInf};
const Doubles kZeroToBelowOne{-kLeast, -1.0, 1.0, kAbove1, -kInf, kInf};
const Doubles kBetweenZeroAndOne{0.0, -0.0, -1.0, 1.0, kAbove1, -kInf, kInf};
const Doubles kTrials{0.0, -1.0, 2.5, -kInf, kInf};
const Doubles kWholeOrInfinite{1.5, -0.5, kLeast};
const Doubles kCountTo10{-1.0, 4.5, 11.0, -kInf, kInf};

using A = const Doubles&;

struct Function {
  const char* fName;
  double (*fCall)(A arguments, long& error);
  Doubles fGood;                  // arguments in the range
  std::vector<Doubles> fRefused;  // for each of them
};

// Functions without an error tell it by the missing value.
double Of(double value, long& error) {
  error = value == kMissing ? 1 : 0;
  return value;
}

double Hyper(A x, long& error) {
  int flag = 7;
  const double value = D::CDFHyper(x[0], x[1], x[2], x[3], flag);
  error = flag;
  return value;
}

const std::vector<Function> kFunctions{
    {"derf", [](A x, long& e) { return Of(D::derf(x[0]), e); }, {0.5}, {kAny}},
    {"derfc", [](A x, long& e) { return Of(D::derfc(x[0]), e); }, {0.5}, {kAny}},
    {"prbnrm", [](A x, long& e) { return Of(D::prbnrm(x[0]), e); }, {0.5}, {kAny}},
    {"CdfStdNorm", [](A x, long& e) { return Of(D::CdfStdNorm(x[0]), e); }, {0.5}, {kAny}},
    {"CdfNorm",
     [](A x, long& e) { return Of(D::CdfNorm(x[0], x[1], x[2]), e); },
     {0.5, 1.0, 2.0},
     {kAny, kFinite, kFinitePositive}},
    {"probit", [](A x, long& e) { return Of(D::probit(x[0]), e); }, {0.3}, {kBetweenZeroAndOne}},
    {"IdfStdNorm",
     [](A x, long& e) { return Of(D::IdfStdNorm(x[0]), e); },
     {0.3},
     {kBetweenZeroAndOne}},
    {"IdfNorm",
     [](A x, long& e) { return Of(D::IdfNorm(x[0], x[1], x[2]), e); },
     {0.3, 1.0, 2.0},
     {kBetweenZeroAndOne, kFinite, kFinitePositive}},
    {"dnlgam", [](A x, long& e) { return Of(D::dnlgam(x[0]), e); }, {0.5}, {kPositive}},
    {"veskdnlgam", [](A x, long& e) { return Of(D::veskdnlgam(x[0]), e); }, {0.5}, {kPositive}},
    {"cbtaux", [](A x, long& e) { return Of(D::cbtaux(x[0]), e); }, {0.5}, {kPositive}},
    {"dnlbnc",
     [](A x, long& e) { return D::dnlbnc(x[0], x[1], e); },
     {7.0, 3.0},
     {{-1.0, 2.5, -kInf, kInf}, {-kLeast, -1.0, 7.5, -kInf, kInf}}},
    {"gammad, lower",
     [](A x, long& e) { return D::gammad(x[0], x[1], false, e); },
     {1.0, 2.0},
     {kAny, kPositive}},
    {"gammad, upper",
     [](A x, long& e) { return D::gammad(x[0], x[1], true, e); },
     {1.0, 2.0},
     {kAny, kPositive}},
    {"cdfbet",
     [](A x, long& e) { return D::cdfbet(x[0], x[1], x[2], e); },
     {0.3, 2.0, 3.0},
     {kZeroToOne, kFinitePositive, kFinitePositive}},
    {"betinv",
     [](A x, long& e) { return Of(D::betinv(x[0], x[1], x[2]), e); },
     {0.3, 2.0, 3.0},
     {kZeroToOne, kFinitePositive, kFinitePositive}},
    {"IdfBeta",
     [](A x, long& e) { return Of(D::IdfBeta(x[0], x[1], x[2]), e); },
     {0.3, 2.0, 3.0},
     {kZeroToOne, kFinitePositive, kFinitePositive}},
    {"veskcdft",
     [](A x, long& e) { return D::veskcdft(x[0], x[1], e); },
     {1.0, 3.0},
     {kAny, kPositive}},
    {"CdfT",
     [](A x, long& e) { return Of(D::CdfT(x[0], x[1]), e); },
     {1.0, 3.0},
     {kAny, kPositive}},
    {"SigT",
     [](A x, long& e) { return Of(D::SigT(x[0], x[1]), e); },
     {1.0, 3.0},
     {kAny, kPositive}},
    {"veskidft",
     [](A x, long& e) { return D::veskidft(x[0], x[1], e); },
     {0.3, 3.0},
     {kBetweenZeroAndOne, kPositive}},
    {"IdfT",
     [](A x, long& e) { return Of(D::IdfT(x[0], x[1]), e); },
     {0.3, 3.0},
     {kBetweenZeroAndOne, kPositive}},
    {"veskcdff",
     [](A x, long& e) { return D::veskcdff(x[0], x[1], x[2], e); },
     {1.0, 2.0, 3.0},
     {kAny, kFinitePositive, kFinitePositive}},
    {"CdfF",
     [](A x, long& e) { return Of(D::CdfF(x[0], x[1], x[2]), e); },
     {1.0, 2.0, 3.0},
     {kAny, kFinitePositive, kFinitePositive}},
    {"SigF",
     [](A x, long& e) { return Of(D::SigF(x[0], x[1], x[2]), e); },
     {1.0, 2.0, 3.0},
     {kAny, kFinitePositive, kFinitePositive}},
    {"veskidff",
     [](A x, long& e) { return D::veskidff(x[0], x[1], x[2], e); },
     {0.3, 2.0, 3.0},
     {kZeroToBelowOne, kFinitePositive, kFinitePositive}},
    {"IdfF",
     [](A x, long& e) { return Of(D::IdfF(x[0], x[1], x[2]), e); },
     {0.3, 2.0, 3.0},
     {kZeroToBelowOne, kFinitePositive, kFinitePositive}},
    {"CdfChi",
     [](A x, long& e) { return Of(D::CdfChi(x[0], x[1]), e); },
     {1.0, 3.0},
     {kAny, kPositive}},
    {"SigChi",
     [](A x, long& e) { return Of(D::SigChi(x[0], x[1]), e); },
     {1.0, 3.0},
     {kAny, kPositive}},
    {"veskidfchi",
     [](A x, long& e) { return D::veskidfchi(x[0], x[1], e); },
     {0.3, 3.0},
     {kZeroToBelowOne, kFinitePositive}},
    {"IdfChi",
     [](A x, long& e) { return Of(D::IdfChi(x[0], x[1]), e); },
     {0.3, 3.0},
     {kZeroToBelowOne, kFinitePositive}},
    {"idfchb",
     [](A x, long& e) { return D::idfchb(x[0], x[1], x[2], e); },
     {0.3, 3.0, 1.0},
     {kZeroToBelowOne, kFinitePositive, kAny}},
    {"CdfBin",
     [](A x, long& e) { return D::CdfBin(x[0], x[1], x[2], e); },
     {1.0, 3.0, 0.3},
     {kAny, kTrials, kZeroToOne}},
    {"PdfBin",
     [](A x, long& e) { return D::PdfBin(x[0], x[1], x[2], e); },
     {1.0, 3.0, 0.3},
     {kWholeOrInfinite, kTrials, kZeroToOne}},
    {"IdfBin",
     [](A x, long& e) { return D::IdfBin(x[0], x[1], x[2], e); },
     {0.3, 3.0, 0.3},
     {kZeroToOne, kTrials, kZeroToOne}},
    {"CDFHyper",
     Hyper,
     {1.0, 10.0, 4.0, 5.0},
     {kAny, {-1.0, 3.0, 4.0, 10.5, 0x1p53 + 2.0, -kInf, kInf}, kCountTo10, kCountTo10}},
};

struct Answer {
  double fValue;
  long fError;
};

// The answer where argument `i` is `x` and the others are in their range.
Answer With(const Function& function, std::size_t i, double x) {
  Doubles arguments = function.fGood;
  arguments[i] = x;
  Answer answer{0.0, 7};
  answer.fValue = function.fCall(arguments, answer.fError);
  return answer;
}

TEST(MCDistFunRanges, EveryArgumentOutOfItsRangeIsRefused) {
  for (const Function& function : kFunctions) {
    ASSERT_EQ(function.fGood.size(), function.fRefused.size()) << function.fName;
    for (std::size_t i = 0; i < function.fGood.size(); ++i) {
      Doubles refused = function.fRefused[i];
      refused.push_back(kNaN);
      for (const double x : refused) {
        const Answer answer = With(function, i, x);
        EXPECT_EQ(answer.fValue, kMissing) << function.fName << ", argument " << i << ": " << x;
        EXPECT_EQ(answer.fError, 1) << function.fName << ", argument " << i << ": " << x;
      }
    }
  }
}

TEST(MCDistFunRanges, ArgumentsInTheirRangesHaveAnAnswer) {
  for (const Function& function : kFunctions) {
    for (std::size_t i = 0; i < function.fGood.size(); ++i) {
      const Doubles& refused = function.fRefused[i];
      for (const double x : {function.fGood[i], -kInf, kInf}) {
        if (std::find(refused.begin(), refused.end(), x) != refused.end()) continue;
        const Answer answer = With(function, i, x);
        EXPECT_NE(answer.fValue, kMissing) << function.fName << ", argument " << i << ": " << x;
        EXPECT_FALSE(std::isnan(answer.fValue)) << function.fName << ", argument " << i;
        EXPECT_EQ(answer.fError, 0) << function.fName << ", argument " << i << ": " << x;
      }
    }
  }
}
}  // namespace
