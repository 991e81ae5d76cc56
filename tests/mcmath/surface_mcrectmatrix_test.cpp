// SPDX-License-Identifier: Apache-2.0
// Names every public operation of the rectangular matrix with its exact type: one that is missing
// or has another type doesn't compile.
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCRectMatrixData;
using Data = MCRectMatrixData;
using Rect = MCRectMatrix;
using Other = const MCRectMatrix&;

static_assert(std::is_base_of_v<Data, Rect>);
static_assert(!std::is_polymorphic_v<Rect>);
static_assert(sizeof(Rect) == sizeof(Data));
static_assert(std::is_default_constructible_v<Data> && std::is_default_constructible_v<Rect>);
static_assert(std::is_constructible_v<Data, int, int> && std::is_constructible_v<Rect, int, int>);
static_assert(std::is_copy_constructible_v<Data> && std::is_copy_constructible_v<Rect>);
static_assert(std::is_copy_assignable_v<Data> && std::is_copy_assignable_v<Rect>);
static_assert(std::is_nothrow_move_constructible_v<Rect> &&
              std::is_nothrow_move_assignable_v<Rect>);

[[maybe_unused]] void DataSurface() {
  [[maybe_unused]] bool (Data::*isValid)() const = &Data::IsValidMatrix;
  [[maybe_unused]] int (Data::*rows)() const = &Data::GetNRows;
  [[maybe_unused]] int (Data::*cols)() const = &Data::GetNCols;
  [[maybe_unused]] double (Data::*elem)(int, int) const = &Data::GetElem;
  [[maybe_unused]] const double* (Data::*rowPtr)(int) const = &Data::GetRowPtr;
  [[maybe_unused]] const double* (Data::*colPtr)(int) const = &Data::GetColPtr;
  [[maybe_unused]] const std::vector<double>& (Data::*vector)() const = &Data::AsVectorConst;
  [[maybe_unused]] void (Data::*display)() const = &Data::Display;
}

[[maybe_unused]] void MatrixSurface() {
  [[maybe_unused]] bool (Rect::*shapes[])(int, int) = {&Rect::SetNRowsCols, &Rect::Resize};
  [[maybe_unused]] bool (Rect::*grow[])() = {&Rect::AddRow, &Rect::AddColumn};
  [[maybe_unused]] void (Rect::*inPlace[])() = {&Rect::Transpose, &Rect::Clear};
  [[maybe_unused]] std::vector<double>& (Rect::*vector)() = &Rect::AsVector;
  [[maybe_unused]] bool (Rect::*setElem)(int, int, double) = &Rect::SetElem;

  [[maybe_unused]] bool (Rect::*isZero[])(int) const = {&Rect::IsColZero, &Rect::IsRowZero};
  [[maybe_unused]] bool (Rect::*zeroButOne)(int, const MCBitSet&, int&) const =
      &Rect::IsRowZeroButOne;
  [[maybe_unused]] int (Rect::*find)(int, double) const = &Rect::FindFirstNonZeroInRow;
  [[maybe_unused]] bool (Rect::*multiple)(int, int, double, double, double&) const =
      &Rect::IsERowMultipleOfAnother;
  [[maybe_unused]] bool (Rect::*ones)(double) const = &Rect::CheckForOnes;

  [[maybe_unused]] double (Rect::*ownDots[])(int, int)
      const = {&Rect::DotProductCol, &Rect::DotProductRows};
  [[maybe_unused]] double (Rect::*dots[])(int, Other, int)
      const = {&Rect::DotProductRowCol, &Rect::DotProductColCol, &Rect::DotProductRowRow};
  [[maybe_unused]] double (Rect::*norms[])(int) const = {&Rect::RowNorm, &Rect::ColNorm};

  [[maybe_unused]] bool (Rect::*withNumber[])(int, double) = {&Rect::ColScale, &Rect::ColClean};
  [[maybe_unused]] bool (Rect::*zeroOutCol)(int) = &Rect::ZeroOutCol;
  [[maybe_unused]] bool (Rect::*zeroOutRowPart)(int, int, int) = &Rect::ZeroOutRowPart;
  [[maybe_unused]] bool (Rect::*addToColumn)(int, Other, int, double) = &Rect::AddToColumn;
  [[maybe_unused]] bool (Rect::*pivotRow)(int, double, int&) = &Rect::ZeroOutPivotRow;

  [[maybe_unused]] bool (Rect::*copies[])(int, Other, int) = {
      &Rect::CopyRowToRow, &Rect::CopyColToRow, &Rect::CopyColToCol};
  [[maybe_unused]] bool (Rect::*copiesOfMany[])(int, Other, int, int) = {&Rect::CopyColumns,
                                                                         &Rect::CopyRows};
  [[maybe_unused]] bool (Rect::*counted[])(int, Rect&)
      const = {&Rect::ShiftRows, &Rect::ShiftColumns, &Rect::CreateBlockDiagonal};
  [[maybe_unused]] bool (Rect::*binary[])(Other, Rect&)
      const = {&Rect::ExpandSquare, &Rect::ComputeMatrixProduct, &Rect::ComputeProductMatrixTrans};
  [[maybe_unused]] bool (Rect::*expand)(const MCBitSet&, bool, Rect&) const = &Rect::Expand;
  [[maybe_unused]] void (Rect::*displays[])() const = {&Rect::Display, &Rect::DisplayF};
}

TEST(SurfaceMCRectMatrix, OperationsAreReachableThroughTheSharedLibrary) {
  MatrixSurface();
  DataSurface();
}
}  // namespace
