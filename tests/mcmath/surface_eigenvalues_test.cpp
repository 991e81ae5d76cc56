// SPDX-License-Identifier: Apache-2.0
// Names every public operation on eigenvalues with its exact type: one that is missing or has
// another type doesn't compile.
#include "mcmath/mceigenvalues.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {
using MCCommonMath::MCEigenValues;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using Eigen = MCEigenValues;
using Sym = const MCSymMatrix&;
using Pair = const std::pair<double, int>&;
using Values = std::vector<double>&;

static_assert(std::is_default_constructible_v<Eigen>);
static_assert(std::is_constructible_v<Eigen, double, int>);
static_assert(std::is_constructible_v<Eigen, Sym, double, int>);
static_assert(std::is_constructible_v<Eigen, Sym, Sym, double, int>);
static_assert(std::is_copy_constructible_v<Eigen> && std::is_copy_assignable_v<Eigen>);
static_assert(!std::is_polymorphic_v<Eigen>);

[[maybe_unused]] void Surface() {
  [[maybe_unused]] bool (Eigen::*setTolerance)(double) = &Eigen::SetTolerance;
  [[maybe_unused]] double (Eigen::*tolerance)() const = &Eigen::GetTolerance;
  [[maybe_unused]] bool (Eigen::*setMaxIter)(int) = &Eigen::SetMaxIter;
  [[maybe_unused]] int (Eigen::*maxIter)() const = &Eigen::GetMaxIter;
  [[maybe_unused]] bool (Eigen::*setMatrix[])(Sym) = {&Eigen::SetHMatrix, &Eigen::SetEMatrix};
  [[maybe_unused]] bool (Eigen::*isValid)() const = &Eigen::IsValidEMatrix;
  [[maybe_unused]] int (Eigen::*compute)(Values) = &Eigen::Compute;
  [[maybe_unused]] int (Eigen::*computeVectors)(Values, MCRectMatrix&) = &Eigen::Compute;
  [[maybe_unused]] int (Eigen::*sorted)(Values, bool) = &Eigen::GetSorted;
  [[maybe_unused]] int (Eigen::*sortedVectors)(Values, MCRectMatrix&, bool) = &Eigen::GetSorted;
  [[maybe_unused]] bool (*compare[])(double, double) = {&Eigen::CompareD, &Eigen::CompareA};
  [[maybe_unused]] bool (*comparePairs[])(Pair, Pair) = {&Eigen::PCompareD, &Eigen::PCompareA};
  [[maybe_unused]] void (Eigen::*display)() const = &Eigen::Display;
}

TEST(SurfaceMCEigenValues, OperationsAreReachableThroughTheSharedLibrary) {
  Surface();
}
}  // namespace
