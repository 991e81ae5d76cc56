// SPDX-License-Identifier: Apache-2.0
// The public operations of sparse vectors and block matrices, with their exact types: what is
// missing or has another type doesn't compile.
#include "mcmath/mcsparsevector.h"
#include "mcmath/mcsymblockmatrix.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {
using mctest::Is;
using namespace MCCommonMath;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;

using Sparse = MCSparseVector;
static_assert(!std::is_default_constructible_v<Sparse>);
static_assert(std::is_constructible_v<Sparse, const Ints&, const Doubles&>);
static_assert(!std::is_polymorphic_v<Sparse>);
static_assert(std::is_trivially_destructible_v<Sparse>);
static_assert(Is<bool (Sparse::*)() const>(&Sparse::IsValid));
static_assert(Is<int (Sparse::*)() const>(&Sparse::GetNElements));
static_assert(Is<const Ints& (Sparse::*)() const>(&Sparse::GetIndices));
static_assert(Is<const Doubles& (Sparse::*)() const>(&Sparse::GetValues));
static_assert(Is<int (Sparse::*)() const>(&Sparse::GetMinVecSize));
static_assert(Is<int (Sparse::*)(int) const>(&Sparse::GetIndex));
static_assert(Is<double (Sparse::*)(int) const>(&Sparse::GetValue));
static_assert(Is<bool (Sparse::*)(Doubles&, int, double) const>(&Sparse::IncrementPart));
static_assert(Is<double (Sparse::*)(const Doubles&, int) const>(&Sparse::InnerProductWithPart));
static_assert(Is<double (*)(const int*, const double*, int, const int*, const double*, int)>(
    &Sparse::InnerProduct));
static_assert(
    Is<bool (Sparse::*)(MCSymMatrix&, int, int, double) const>(&Sparse::IncrementRowPart));
static_assert(Is<void (Sparse::*)(MCSymMatrix&) const>(&Sparse::QuadraticOuterProduct));
static_assert(Is<void (Sparse::*)(MCSymMatrix&, double) const>(&Sparse::QuadraticOuterProductIncr));
static_assert(
    Is<bool (Sparse::*)(MCSymMatrix&, int, double) const>(&Sparse::QuadraticOuterProductPartIncr));
static_assert(Is<int (Sparse::*)(Doubles&) const>(&Sparse::ConvertToRegularVector));
static_assert(Is<bool (Sparse::*)(const Doubles&, int, int, Doubles&, double&) const>(
    &Sparse::ComputeProbabilities));
static_assert(Is<void (Sparse::*)() const>(&Sparse::Display));

using Blocks = MCSymBlockMatrix;
using BlockRef = MCSymMatrix& (Blocks::*)(int, int);
using ConstBlockRef = const MCSymMatrix& (Blocks::*)(int, int) const;
static_assert(std::is_default_constructible_v<Blocks>);
static_assert(std::is_constructible_v<Blocks, int, int>);
static_assert(std::is_copy_constructible_v<Blocks> && std::is_copy_assignable_v<Blocks>);
static_assert(Is<bool (Blocks::*)() const>(&Blocks::IsValidStruct));
static_assert(Is<int (Blocks::*)() const>(&Blocks::GetNRowsSS));
static_assert(Is<int (Blocks::*)() const>(&Blocks::GetBlockRows));
static_assert(Is<bool (Blocks::*)(int, int)>(&Blocks::SetNRows));
static_assert(Is<bool (*)(std::vector<MCSymMatrix>&, int&)>(&Blocks::ResizeNRows));
[[maybe_unused]] constexpr BlockRef kBlockRef = &Blocks::GetElemSSRef;
[[maybe_unused]] constexpr ConstBlockRef kConstBlockRef = &Blocks::GetElemSSRef;
static_assert(Is<void (Blocks::*)()>(&Blocks::Clear));
static_assert(Is<int (Blocks::*)(MCSymMatrix&) const>(&Blocks::CopyToSymMatrix));
static_assert(Is<void (Blocks::*)() const>(&Blocks::Display));

TEST(SurfaceOfSparse, IsExportedByTheLibrary) {
  // What the assertions above name must also link.
  const Ints indices = {1};
  const Doubles values = {2.0};
  MCSymBlockMatrix blocks(1, 2);
  MCSparseVector(indices, values).QuadraticOuterProduct(blocks.GetElemSSRef(0, 0));
  MCSymMatrix out;
  EXPECT_EQ(blocks.CopyToSymMatrix(out), 2);
  EXPECT_EQ(out.GetElem(1, 1), 4.0);
}
}  // namespace
