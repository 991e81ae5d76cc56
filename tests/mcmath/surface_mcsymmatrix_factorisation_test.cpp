// SPDX-License-Identifier: Apache-2.0
// Names every factorising operation of the symmetric matrix with its exact type: one that is
// missing or has another type doesn't compile.
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <gtest/gtest.h>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using Sym = MCSymMatrix;
using Vector = const std::vector<double>&;
using Bits = const MCBitSet&;

[[maybe_unused]] void Surface() {
  [[maybe_unused]] bool (Sym::*sweep)(int, double, Vector, MCBitSet&, bool) = &Sym::Sweep;
  [[maybe_unused]] int (Sym::*factor)(Vector, double, bool) = &Sym::LTChol;
  [[maybe_unused]] int (Sym::*factorMarking)(Vector, double, MCBitSet&, bool) = &Sym::LTChol;
  [[maybe_unused]] int (Sym::*factorScaling)(double, double&, bool) = &Sym::LTChol;
  [[maybe_unused]] int (Sym::*indices)(int, double, std::vector<int>&) = &Sym::CholIndNonRed;
  [[maybe_unused]] int (Sym::*detInverse)(double*, int) = &Sym::LTDetInverse;
  [[maybe_unused]] void (Sym::*inPlace[])() = {&Sym::LTInverse, &Sym::LTLTransL, &Sym::LTLLTrans};
  [[maybe_unused]] int (Sym::*substitute)(Vector, std::vector<double>&) const = &Sym::LTSubstitute;
  [[maybe_unused]] int (Sym::*solve)(Vector, double, std::vector<double>&) = &Sym::LTSolve;
  [[maybe_unused]] int (Sym::*inverse)(Vector, double, Sym&) const = &Sym::CholInverse;
  [[maybe_unused]] int (Sym::*inverseMin)(Vector, double, Sym&, double&) const = &Sym::CholInverse;
  [[maybe_unused]] int (Sym::*inverseMarking)(Vector, double, Sym&, MCBitSet&) const =
      &Sym::CholInverse;
  [[maybe_unused]] bool (Sym::*determinant)(double, double*) const = &Sym::ComputeDeterminant;
  [[maybe_unused]] int (Sym::*dependent)(int, Vector, Bits, double) = &Sym::CheckMDependent;
  [[maybe_unused]] int (Sym::*definite)(double, bool&, double&) = &Sym::TransformToPositiveDefinite;
  [[maybe_unused]] bool (Sym::*coefficients)(std::vector<double>&, Bits) const = &Sym::GetRegCoeffs;
  [[maybe_unused]] bool (Sym::*zeroOut)(Bits) = &Sym::ZeroOutRedundant;
  [[maybe_unused]] void (Sym::*expand)(Bits, Sym&) const = &Sym::Expand;
  [[maybe_unused]] bool (Sym::*extract)(int, int, Bits, MCRectMatrix&, int&, MCBitSet&, int) const =
      &Sym::ExtractH;
  [[maybe_unused]] bool (Sym::*screen)(Vector, Bits, Sym&, MCBitSet&, bool&, int&) const =
      &Sym::CheckGMG;
  [[maybe_unused]] bool (Sym::*solveIndefinite)(double, Vector, std::vector<double>&) =
      &Sym::SolveIndefiniteGI;
  [[maybe_unused]] bool (Sym::*transform)(Vector, Vector, int, int, bool, bool) =
      &Sym::TransformParameterMatrix;
  [[maybe_unused]] bool (Sym::*transformMasked)(Vector, Vector, Bits, int, bool, bool) =
      &Sym::TransformParameterMatrix;
}

TEST(SurfaceMCSymMatrixFactorisation, OperationsAreReachableThroughTheSharedLibrary) {
  Surface();
}
}  // namespace
