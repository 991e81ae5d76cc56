// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/productbounds.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <new>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using MCMV::gMissingValue;
using mctest::ExpectSameBits;
using mctest::Numbers;

// A matrix of 3 rows whose growth failed.
class InvalidSymMatrix : public testing::Test {
protected:
  void SetUp() override {
    const mctest::FailAllocation fail(1);
    invalid.SetNRows(3);
  }

  // No call has changed the operand, whatever it answered.
  void TearDown() override {
    EXPECT_FALSE(invalid.IsValidMatrix());
    EXPECT_EQ(invalid.GetNRows(), -1);
    EXPECT_TRUE(invalid.AsVectorConst().empty());
    EXPECT_EQ(vector, kept);
    EXPECT_EQ(valid.AsVectorConst(), std::vector<double>(6, 1.0));
    EXPECT_EQ(rect.GetNRows(), 3);
  }

  static MCSymMatrix Ones() {
    MCSymMatrix matrix(3);
    for (double& x : matrix.AsVector()) x = 1.0;
    return matrix;
  }

  MCSymMatrix invalid;
  MCSymMatrix valid = Ones();
  MCRectMatrix rect{3, 3};
  const MCBitSet mask{3};
  const std::vector<double> kept = {1.0, 2.0, 3.0};
  std::vector<double> vector = kept;
  const std::vector<double> none;
};

TEST_F(InvalidSymMatrix, AccessFindsNoRows) {
  EXPECT_EQ(invalid.GetElem(0, 0), gMissingValue);
  EXPECT_EQ(invalid.GetElem(0, 0, 0, 0), gMissingValue);
  EXPECT_EQ(invalid.GetElem(-1, -1), gMissingValue);
  EXPECT_FALSE(invalid.GetRow(0, vector));
  invalid.GetDiagonal(vector);
  EXPECT_FALSE(invalid.SetElem(0, 0, 1.0));
  EXPECT_FALSE(invalid.SetElem(0, 1.0));
  EXPECT_FALSE(invalid.PutRow(0, vector));
  EXPECT_FALSE(invalid.GetPCol(0, 0, 0, vector, 1));
  EXPECT_FALSE(invalid.CopyRowToRColumn(0, rect, 0, -1));
  EXPECT_FALSE(invalid.SetNBlocks(1));
}

TEST_F(InvalidSymMatrix, ElementwiseOperationsDoNothing) {
  invalid.Clear();
  invalid.AddToDiagonal(1.0);
  invalid.ChangeSign();
  invalid.MultiplyByNumber(2.0);
  invalid.ZeroOutAllSmall(1.0);
  invalid.ZeroOutRowsForSmallDiag(1.0);
  invalid.ZeroOutNonDiag(1.0);
  EXPECT_TRUE(invalid.AdjustOffDiagCorr(0.5));
  EXPECT_FALSE(invalid.ComputeAXpY(1.0, valid));
  EXPECT_FALSE(invalid.ComputeAXpY(1.0, MCSymMatrix(invalid)));
  EXPECT_FALSE(valid.ComputeAXpY(1.0, invalid));
  EXPECT_FALSE(invalid.SetRowColToConst(0, 1.0));
  EXPECT_FALSE(invalid.ZeroOut(0));
  EXPECT_FALSE(invalid.SetCovarZeros(valid));
  EXPECT_FALSE(valid.SetCovarZeros(invalid));
  EXPECT_FALSE(invalid.ReplaceFirstRows(valid, 1));
  EXPECT_FALSE(valid.ReplaceFirstRows(invalid, 1));
  MCSymMatrix out(3);
  invalid.ExtractFirstNRows(out);
  EXPECT_EQ(out.GetNRows(), 0);
}

TEST_F(InvalidSymMatrix, ReductionsLeaveTheirArgumentsAlone) {
  EXPECT_EQ(invalid.Trace(), 0.0);
  invalid.MaxMinDiag(vector[0], vector[1]);
  invalid.MaxMinDiagOffDiag(vector[0], vector[1], vector[2], vector[0]);
  EXPECT_FALSE(invalid.IsZeroRow(0, mask));
  invalid.GetNCheckDiagonal(vector, 10.0, 5.0);
}

TEST_F(InvalidSymMatrix, UpdatesAreRefused) {
  for (const std::vector<double>& x : {vector, none}) {
    EXPECT_FALSE(invalid.UpdateXX(x, 1.0));
    EXPECT_FALSE(invalid.UpdateXXPosNegW(x, 1.0));
    EXPECT_FALSE(invalid.UpdateXXNonRedun(x, mask, 1.0));
  }
  EXPECT_FALSE(invalid.UpdateXXSparse(0, {}, {}, 1.0));
  EXPECT_FALSE(invalid.UpdateXXMat2(MCRectMatrix(), MCRectMatrix(), 1.0));
  EXPECT_FALSE(invalid.UpdateXXMat2(rect, MCRectMatrix(3, 0), 1.0));
}

TEST_F(InvalidSymMatrix, FormsAreMissing) {
  for (const double form : {invalid.ComputeDotProduct2Rows(0, 0),
                            invalid.ComputeRowDotProductS(0, valid, 0),
                            valid.ComputeRowDotProductS(0, invalid, 0),
                            invalid.ComputeRVD(0, vector, 1),
                            invalid.ComputeRVD(0, vector.data(), 1),
                            invalid.ComputeVSW(vector, vector),
                            invalid.ComputeVSW(none, none),
                            invalid.ComputeVSV(none),
                            invalid.ComputeVSV(rect, 0),
                            invalid.ComputeVSW(vector.data(), 1, vector.data(), 1),
                            invalid.ComputeVSW(none, -1, 0, 0),
                            invalid.ComputeBlockVSW(0, 0, vector, vector),
                            invalid.ComputeBlockVSV(0, 0, none),
                            invalid.SquareRootVSV(none),
                            invalid.TraceOfProduct(valid),
                            valid.TraceOfProduct(invalid),
                            invalid.TraceOfProduct(invalid),
                            invalid.TraceOfProductOfThree(valid, valid),
                            valid.TraceOfProductOfThree(invalid, valid),
                            valid.TraceOfProductOfThree(valid, invalid)}) {
    EXPECT_EQ(form, gMissingValue);
  }
  EXPECT_EQ(invalid.ComputeVSWParts(vector, 3, vector, 3), 0.0);
}

TEST_F(InvalidSymMatrix, ProductsAreRefused) {
  EXPECT_FALSE(invalid.IncrVecByRow(0, vector, 0, 1, 1.0, true));
  EXPECT_FALSE(invalid.IncrVecByRow(0, vector, 0, 1, 1.0, false));
  EXPECT_FALSE(invalid.ComputeSV(none, vector));
  EXPECT_FALSE(invalid.ComputeSV(0, none, vector));
  EXPECT_FALSE(invalid.ComputeLV(none, vector));
  EXPECT_FALSE(invalid.ComputeLTransV(none, vector));
  EXPECT_FALSE(invalid.ComputeSTransS(valid));
  EXPECT_FALSE(invalid.ComputeSS(valid, rect));
  EXPECT_FALSE(valid.ComputeSS(invalid, rect));
  EXPECT_FALSE(invalid.ComputeRS(rect, rect));
  EXPECT_FALSE(invalid.ComputeRSRTrans(rect, valid));
  EXPECT_FALSE(invalid.ComputeRTransSR(rect, valid));
  EXPECT_FALSE(invalid.ComputeLSLTrans(valid, valid));
  EXPECT_FALSE(valid.ComputeLSLTrans(invalid, valid));
  EXPECT_FALSE(invalid.ExpandSym(rect, valid));
  EXPECT_FALSE(invalid.ExpandSymToRect(rect, rect));
  EXPECT_FALSE(invalid.ExtractSubmatrix({}, valid));
  MCSymMatrix out(3);
  EXPECT_FALSE(invalid.ComputeGMG(vector, out));
  EXPECT_EQ(out.GetNRows(), 0);
}

TEST_F(InvalidSymMatrix, FactorisingFindsNoRows) {
  MCBitSet pivots(3);
  double number = 9.0;
  int count = 9;
  bool flag = true;
  std::vector<int> indices;
  EXPECT_FALSE(invalid.Sweep(0, 1e-12, vector, pivots, true));
  EXPECT_EQ(invalid.LTChol(vector, 1e-12, true), 0);
  EXPECT_EQ(invalid.LTChol(1e-12, number, true), 0);
  EXPECT_EQ(number, gMissingValue);
  EXPECT_EQ(invalid.CholIndNonRed(0, 1e-12, indices), 0);
  EXPECT_EQ(invalid.LTDetInverse(nullptr, 10), 0);
  invalid.LTInverse();
  invalid.LTLLTrans();
  EXPECT_EQ(invalid.LTSubstitute(vector, vector), -1);
  EXPECT_EQ(invalid.LTSolve(vector, 1e-12, vector), -1);
  EXPECT_FALSE(invalid.SolveIndefiniteGI(1e-12, vector, vector));
  EXPECT_FALSE(invalid.ComputeDeterminant(1e-12, vector.data()));
  EXPECT_EQ(invalid.TransformToPositiveDefinite(1e-6, flag, number), -1);
  EXPECT_FALSE(invalid.GetRegCoeffs(vector, mask));
  EXPECT_FALSE(invalid.ZeroOutRedundant(mask));
  EXPECT_FALSE(invalid.ExtractH(0, 0, mask, rect, count, pivots, -1));
  EXPECT_FALSE(invalid.CheckGMG(none, mask, valid, pivots, flag, count));
  EXPECT_EQ(count, 9);
  EXPECT_FALSE(invalid.TransformParameterMatrix(none, none, 1, 0, false, false));
  EXPECT_FALSE(invalid.TransformParameterMatrix(none, none, mask, 0, false, false));
  MCSymMatrix inverse(3);
  EXPECT_EQ(invalid.CholInverse(vector, 1e-12, inverse), -1);
  EXPECT_FALSE(inverse.IsValidMatrix());
}

TEST(InvalidRectOperand, IsRefused) {
  MCRectMatrix invalid;
  {
    const mctest::FailAllocation fail(1);
    EXPECT_FALSE(invalid.SetNRowsCols(2, 2));
  }
  ASSERT_FALSE(invalid.IsValidMatrix());
  Numbers numbers(1);
  const MCSymMatrix before = numbers.Sym(2);
  MCSymMatrix S(before);
  MCSymMatrix sym(before);
  MCRectMatrix rect(1, 1);
  EXPECT_FALSE(S.CopyRowToRColumn(0, invalid, 0, -1));
  EXPECT_FALSE(S.UpdateXXMat2(invalid, MCRectMatrix(2, 0), 1.0));
  EXPECT_FALSE(S.UpdateXXMat2(invalid, invalid, 1.0));
  EXPECT_FALSE(S.ComputeRTransByR(invalid));
  EXPECT_FALSE(S.ComputeRByRTrans(invalid));
  EXPECT_FALSE(S.ComputeRS(invalid, rect));
  EXPECT_FALSE(S.ComputeRSRTrans(invalid, sym));
  EXPECT_FALSE(S.ComputeRTransSR(invalid, sym));
  EXPECT_FALSE(S.ExpandSym(invalid, sym));
  EXPECT_FALSE(S.ExpandSymToRect(invalid, rect));
  EXPECT_EQ(S.ComputeVSV(invalid, 0), gMissingValue);
  ExpectSameBits(S.AsVectorConst(), before.AsVectorConst());
  ExpectSameBits(sym.AsVectorConst(), before.AsVectorConst());
  EXPECT_EQ(rect.GetNRows(), 1);
}

// Every operation that allocates, run with its k-th allocation failing: it throws, or answers false
// or the missing value, and nothing but a failure makes it do so.
TEST(SymMatrixMemory, EachAllocationMayFail) {
  Numbers numbers(9);
  const MCSymMatrix S = numbers.Sym(4);
  const MCSymMatrix T = numbers.Sym(4);
  const MCRectMatrix R = numbers.Rect(4, 4);
  const std::vector<int> idx = {0, 2};
  const std::vector<double> operand = numbers.Vector(4);
  MCSymMatrix own;
  MCSymMatrix out;
  MCRectMatrix rect;
  std::vector<double> vector;
  const std::function<bool()> operations[] = {
      [&] { return S.ComputeSTransS(out); },
      [&] { return own.ComputeSTransS(own); },
      [&] { return S.ComputeSS(T, rect); },
      [&] { return S.ComputeRS(R, rect); },
      [&] { return S.ComputeRSRTrans(R, out); },
      [&] { return own.ComputeRSRTrans(R, own); },
      [&] { return S.ComputeRTransSR(R, out); },
      [&] { return own.ComputeRTransSR(R, own); },
      [&] { return S.ComputeGMG(T.AsVectorConst(), out); },
      [&] { return own.ComputeGMG(own.AsVectorConst(), own); },
      [&] { return S.ComputeLSLTrans(T, out); },
      [&] { return own.ComputeLSLTrans(own, own); },
      [&] { return S.ExpandSym(R, out); },
      [&] { return own.ExpandSym(R, own); },
      [&] { return S.ExpandSymToRect(R, rect); },
      [&] { return S.ExtractSubmatrix(idx, out); },
      [&] { return own.ExtractSubmatrix(idx, own); },
      [&] { return out.ComputeRTransByR(R); },
      [&] { return out.ComputeRByRTrans(R); },
      [&] { return S.ComputeSV(operand, vector); },
      [&] { return S.TraceOfProductOfThree(T, S) != gMissingValue; },
  };
  for (const auto& operation : operations) {
    for (std::size_t k = 1;; ++k) {
      own = S;
      out = MCSymMatrix();
      rect = MCRectMatrix();
      vector = std::vector<double>();
      bool fired = false;
      bool answer = false;
      {
        const mctest::FailAllocation fail(k);
        try {
          answer = operation();
        } catch (const std::bad_alloc&) {
          answer = false;
        }
        fired = fail.HasFired();
      }
      EXPECT_EQ(answer, !fired);
      if (!fired) break;
    }
  }
}

TEST(SymMatrixMemory, AnOperandThatIsTheOutputKeepsItsValuesWhereItsCopyFails) {
  Numbers numbers(10);
  const MCSymMatrix S = numbers.Sym(4);
  const MCRectMatrix R = numbers.Rect(4, 4);
  MCSymMatrix own;
  const std::vector<int> idx = {0, 2};
  const std::function<bool()> operations[] = {
      [&] { return own.ComputeSTransS(own); },
      [&] { return own.ComputeRSRTrans(R, own); },
      [&] { return own.ComputeRTransSR(R, own); },
      [&] { return own.ComputeGMG(own.AsVectorConst(), own); },
      [&] { return own.ComputeLSLTrans(own, own); },
      [&] { return own.ExpandSym(R, own); },
      [&] { return own.ExtractSubmatrix(idx, own); },
  };
  for (const auto& operation : operations) {
    own = S;
    {
      const mctest::FailAllocation fail(1);
      EXPECT_FALSE(operation());
    }
    ExpectSameBits(own.AsVectorConst(), S.AsVectorConst());
  }
}

}  // namespace
