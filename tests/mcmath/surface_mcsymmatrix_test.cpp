// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using Data = MCCommonMath::MCSymMatrixData;
using Sym = MCCommonMath::MCSymMatrix;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;

// Names a member with its exact type; what is missing or misnamed doesn't compile or link.
template <class Member>
bool Has(Member member) {
  return member != nullptr;
}

template <class T>
constexpr bool kHasConstructors =
    std::is_nothrow_destructible_v<T>&& std::is_default_constructible_v<T>&&
        std::is_constructible_v<T, int> &&
    !std::is_convertible_v<int, T> && std::is_constructible_v<T, int, int> &&
    std::is_copy_constructible_v<T> && std::is_copy_assignable_v<T> && !std::is_polymorphic_v<T>;

static_assert(kHasConstructors<Data>);
static_assert(kHasConstructors<Sym>);
static_assert(std::is_base_of_v<Data, Sym>);
static_assert(sizeof(Sym) == sizeof(Data));
static_assert(std::is_same_v<decltype(std::declval<Data&>() = std::declval<const Data&>()), Data&>);
static_assert(std::is_same_v<decltype(std::declval<Sym&>() = std::declval<const Sym&>()), Sym&>);

TEST(SurfaceOfMCSymMatrix, Storage) {
  EXPECT_TRUE((Has<bool (*)(Doubles&, int&)>(&Data::ResizeNRows)));
  EXPECT_TRUE((Has<bool (Data::*)() const>(&Data::IsValidMatrix)));
  EXPECT_TRUE((Has<int (Data::*)() const>(&Data::GetNRows)));
  EXPECT_TRUE((Has<int (Data::*)() const>(&Data::GetNBlocks)));
  EXPECT_TRUE((Has<int (Data::*)() const>(&Data::GetBlockSize)));
  EXPECT_TRUE((Has<const Doubles& (Data::*)() const>(&Data::AsVectorConst)));
  EXPECT_TRUE((Has<double (Data::*)(int, int) const>(&Data::GetElem)));
  EXPECT_TRUE((Has<double (Data::*)(int, int, int, int) const>(&Data::GetElem)));
  EXPECT_TRUE((Has<bool (Data::*)(int, Doubles&) const>(&Data::GetRow)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, Doubles&) const>(&Sym::GetRow)));
  EXPECT_TRUE((Has<void (Data::*)(Doubles&) const>(&Data::GetDiagonal)));
  EXPECT_TRUE((Has<void (Data::*)() const>(&Data::Display)));
  EXPECT_TRUE((Has<void (Sym::*)() const>(&Sym::DisplayF)));
}

TEST(SurfaceOfMCSymMatrix, ShapeAndAccess) {
  EXPECT_TRUE((Has<Doubles& (Sym::*)()>(&Sym::AsVector)));
  EXPECT_TRUE((Has<void (Sym::*)(int)>(&Sym::SetNRows)));
  EXPECT_TRUE((Has<void (Sym::*)(int)>(&Sym::Resize)));
  EXPECT_TRUE((Has<bool (Sym::*)(int)>(&Sym::SetNBlocks)));
  EXPECT_TRUE((Has<void (Sym::*)(const Data&)>(&Sym::SetData)));
  EXPECT_TRUE((Has<void (Sym::*)()>(&Sym::Clear)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, int, double)>(&Sym::SetElem)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, double)>(&Sym::SetElem)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, const Doubles&)>(&Sym::PutRow)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, int, int, Doubles&, int) const>(&Sym::GetPCol)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, MCRectMatrix&, int, int) const>(&Sym::CopyRowToRColumn)));
}

TEST(SurfaceOfMCSymMatrix, ElementwiseAndReductions) {
  EXPECT_TRUE((Has<void (Sym::*)(double)>(&Sym::AddToDiagonal)));
  EXPECT_TRUE((Has<void (Sym::*)()>(&Sym::ChangeSign)));
  EXPECT_TRUE((Has<void (Sym::*)(double)>(&Sym::MultiplyByNumber)));
  EXPECT_TRUE((Has<bool (Sym::*)(double, const Sym&)>(&Sym::ComputeAXpY)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, double)>(&Sym::SetRowColToConst)));
  EXPECT_TRUE((Has<bool (Sym::*)(int)>(&Sym::ZeroOut)));
  EXPECT_TRUE((Has<void (Sym::*)(double)>(&Sym::ZeroOutAllSmall)));
  EXPECT_TRUE((Has<void (Sym::*)(double)>(&Sym::ZeroOutRowsForSmallDiag)));
  EXPECT_TRUE((Has<void (Sym::*)(double)>(&Sym::ZeroOutNonDiag)));
  EXPECT_TRUE((Has<bool (Sym::*)(double)>(&Sym::AdjustOffDiagCorr)));
  EXPECT_TRUE((Has<bool (Sym::*)(Sym&)>(&Sym::SetCovarZeros)));
  EXPECT_TRUE((Has<void (Sym::*)(const Doubles&)>(&Sym::SetToVV)));
  EXPECT_TRUE((Has<bool (Sym::*)(const Sym&, int)>(&Sym::ReplaceFirstRows)));
  EXPECT_TRUE((Has<void (Sym::*)(Sym&) const>(&Sym::ExtractFirstNRows)));
  EXPECT_TRUE((Has<double (Sym::*)() const>(&Sym::Trace)));
  EXPECT_TRUE((Has<void (Sym::*)(double&, double&) const>(&Sym::MaxMinDiag)));
  EXPECT_TRUE(
      (Has<void (Sym::*)(double&, double&, double&, double&) const>(&Sym::MaxMinDiagOffDiag)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, const MCBitSet&) const>(&Sym::IsZeroRow)));
  EXPECT_TRUE((Has<void (Sym::*)(Doubles&, double, double) const>(&Sym::GetNCheckDiagonal)));
}

TEST(SurfaceOfMCSymMatrix, Updates) {
  using Rects = bool (Sym::*)(const MCRectMatrix&);
  EXPECT_TRUE((Has<bool (Sym::*)(const Doubles&, double)>(&Sym::UpdateXX)));
  EXPECT_TRUE((Has<bool (Sym::*)(const Doubles&, double)>(&Sym::UpdateXXPosNegW)));
  EXPECT_TRUE(
      (Has<bool (Sym::*)(const Doubles&, const MCBitSet&, double)>(&Sym::UpdateXXNonRedun)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, const Ints&, const Doubles&, double)>(&Sym::UpdateXXSparse)));
  EXPECT_TRUE(
      (Has<bool (Sym::*)(const MCRectMatrix&, const MCRectMatrix&, double)>(&Sym::UpdateXXMat2)));
  EXPECT_TRUE((Has<Rects>(&Sym::ComputeRTransByR)));
  EXPECT_TRUE((Has<Rects>(&Sym::ComputeRByRTrans)));
}

TEST(SurfaceOfMCSymMatrix, RowAndVectorProducts) {
  using Product = bool (Sym::*)(const Doubles&, Doubles&) const;
  EXPECT_TRUE((Has<double (Sym::*)(int, int) const>(&Sym::ComputeDotProduct2Rows)));
  EXPECT_TRUE((Has<double (Sym::*)(int, const Doubles&, int) const>(&Sym::ComputeRowDotProductS)));
  EXPECT_TRUE((Has<double (Sym::*)(int, const Sym&, int) const>(&Sym::ComputeRowDotProductS)));
  EXPECT_TRUE((Has<double (Sym::*)(int, const double*, int) const>(&Sym::ComputeRVD)));
  EXPECT_TRUE((Has<double (Sym::*)(int, const Doubles&, int) const>(&Sym::ComputeRVD)));
  EXPECT_TRUE(
      (Has<bool (Sym::*)(int, Doubles&, int, int, double, bool) const>(&Sym::IncrVecByRow)));
  EXPECT_TRUE((Has<Product>(&Sym::ComputeSV)));
  EXPECT_TRUE((Has<bool (Sym::*)(int, const Doubles&, Doubles&) const>(&Sym::ComputeSV)));
  EXPECT_TRUE((Has<Product>(&Sym::ComputeLV)));
  EXPECT_TRUE((Has<Product>(&Sym::ComputeLTransV)));
}

TEST(SurfaceOfMCSymMatrix, Forms) {
  EXPECT_TRUE((Has<double (Sym::*)(const Doubles&, const Doubles&) const>(&Sym::ComputeVSW)));
  EXPECT_TRUE(
      (Has<double (Sym::*)(const double*, int, const double*, int) const>(&Sym::ComputeVSW)));
  EXPECT_TRUE((Has<double (Sym::*)(const Doubles&, int, int, int) const>(&Sym::ComputeVSW)));
  EXPECT_TRUE((Has<double (Sym::*)(const Doubles&) const>(&Sym::ComputeVSV)));
  EXPECT_TRUE((Has<double (Sym::*)(const MCRectMatrix&, int) const>(&Sym::ComputeVSV)));
  EXPECT_TRUE((
      Has<double (Sym::*)(const Doubles&, int, const Doubles&, int) const>(&Sym::ComputeVSWParts)));
  EXPECT_TRUE(
      (Has<double (Sym::*)(const double*, int, const double*, int) const>(&Sym::ComputeVSWParts)));
  EXPECT_TRUE((
      Has<double (Sym::*)(int, int, const Doubles&, const Doubles&) const>(&Sym::ComputeBlockVSW)));
  EXPECT_TRUE((Has<double (Sym::*)(int, int, const Doubles&) const>(&Sym::ComputeBlockVSV)));
  EXPECT_TRUE((Has<double (Sym::*)(const Doubles&) const>(&Sym::SquareRootVSV)));
  EXPECT_TRUE((Has<double (Sym::*)(const Sym&) const>(&Sym::TraceOfProduct)));
  EXPECT_TRUE((Has<double (Sym::*)(const Sym&, const Sym&) const>(&Sym::TraceOfProductOfThree)));
}

TEST(SurfaceOfMCSymMatrix, MatrixProductsAndSubmatrices) {
  using ToSym = bool (Sym::*)(const MCRectMatrix&, Sym&) const;
  using ToRect = bool (Sym::*)(const MCRectMatrix&, MCRectMatrix&) const;
  EXPECT_TRUE((Has<bool (Sym::*)(Sym&) const>(&Sym::ComputeSTransS)));
  EXPECT_TRUE((Has<bool (Sym::*)(const Sym&, MCRectMatrix&) const>(&Sym::ComputeSS)));
  EXPECT_TRUE((Has<ToRect>(&Sym::ComputeRS)));
  EXPECT_TRUE((Has<ToSym>(&Sym::ComputeRSRTrans)));
  EXPECT_TRUE((Has<ToSym>(&Sym::ComputeRTransSR)));
  EXPECT_TRUE((Has<bool (Sym::*)(const Doubles&, Sym&) const>(&Sym::ComputeGMG)));
  EXPECT_TRUE((Has<bool (Sym::*)(const Sym&, Sym&) const>(&Sym::ComputeLSLTrans)));
  EXPECT_TRUE((Has<ToSym>(&Sym::ExpandSym)));
  EXPECT_TRUE((Has<ToRect>(&Sym::ExpandSymToRect)));
  EXPECT_TRUE((Has<bool (Sym::*)(const Ints&, Sym&) const>(&Sym::ExtractSubmatrix)));
}

}  // namespace
