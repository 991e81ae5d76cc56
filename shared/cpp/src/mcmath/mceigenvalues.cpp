// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mceigenvalues.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace MCCommonMath {

namespace {

void DisplayMatrix(const char* label, const MCSymMatrix& matrix) {
  MCComponentDisplay::DisplayText(1, label);
  matrix.Display();
}

}  // namespace

MCEigenValues::MCEigenValues(double tol, int maxIter) {
  SetTolerance(tol);
  SetMaxIter(maxIter);
}

MCEigenValues::MCEigenValues(const MCSymMatrix& H, double tol, int maxIter)
    : MCEigenValues(tol, maxIter) {
  fmH = H;
}

MCEigenValues::MCEigenValues(const MCSymMatrix& H, const MCSymMatrix& E, double tol, int maxIter)
    : MCEigenValues(H, tol, maxIter) {
  fmE = E;
  fbEMatrix = true;
}

bool MCEigenValues::SetTolerance(double tol) {
  if (!(tol >= 0.0) || !std::isfinite(tol)) return false;
  Withdraw();
  fTol = tol;
  return true;
}

bool MCEigenValues::SetMaxIter(int maxIter) {
  if (maxIter < 0) return false;
  Withdraw();
  fMaxIter = maxIter;
  return true;
}

bool MCEigenValues::SetHMatrix(const MCSymMatrix& H) {
  if (!H.IsValidMatrix()) return false;
  Withdraw();
  fmH = H;
  return fmH.IsValidMatrix();
}

bool MCEigenValues::SetEMatrix(const MCSymMatrix& E) {
  if (!E.IsValidMatrix()) return false;
  Withdraw();
  fmE = E;
  fbEMatrix = true;
  return fmE.IsValidMatrix();
}

void MCEigenValues::Withdraw() {
  fbComputed = false;
  fExponent = 0;
  fvExponentsE.clear();
  fvKeptRows.clear();
  fvEDiag.clear();
  fmCholGI.SetNRows(0);
  fmVHV.SetNRows(0);
  fRankE = 0;
  fmOrthInfo.SetNRows(0);
  fvDiag3.clear();
  fvSubdiag3.clear();
  fNEigenVal = 0;
  fvEigenVal.clear();
  fmEigenVectors = MCRectMatrix();
  fvEigPairs.clear();
}

int MCEigenValues::Compute(std::vector<double>& values) {
  values.clear();
  if (!Run(false)) return -1;
  values = fvEigenVal;
  return fNEigenVal;
}

int MCEigenValues::Compute(std::vector<double>& values, MCRectMatrix& vectors) {
  values.clear();
  vectors = MCRectMatrix();
  if (!Run(true)) return -1;
  vectors = fmEigenVectors;
  if (vectors.IsValidMatrix()) {
    values = fvEigenVal;
    return fNEigenVal;
  }
  vectors = MCRectMatrix();
  return -1;
}

int MCEigenValues::GetSorted(std::vector<double>& values, bool descending) {
  values.clear();
  if (!fbComputed && !Run(false)) return -1;
  values = fvEigenVal;
  std::stable_sort(values.begin(), values.end(), descending ? CompareD : CompareA);
  return fNEigenVal;
}

int MCEigenValues::GetSorted(std::vector<double>& values, MCRectMatrix& vectors, bool descending) {
  values.clear();
  vectors = MCRectMatrix();
  if (!(fbComputed && fbVectors) && !Run(true)) return -1;
  fvEigPairs.clear();
  for (int k = 0; k < fNEigenVal; ++k) {
    fvEigPairs.emplace_back(fvEigenVal[static_cast<std::size_t>(k)], k);
  }
  std::stable_sort(fvEigPairs.begin(), fvEigPairs.end(), descending ? PCompareD : PCompareA);
  std::vector<int> order;
  for (const auto& pair : fvEigPairs) order.push_back(pair.second);
  if (!fmEigenVectors.ExtractColumns(order, vectors)) {
    vectors = MCRectMatrix();
    return -1;
  }
  for (const auto& pair : fvEigPairs) values.push_back(pair.first);
  return fNEigenVal;
}

void MCEigenValues::Display() const {
  MCComponentDisplay::DisplayText(1, "MCEigenValues display start");
  MCComponentDisplay::DisplayI("Number of rows", fmH.GetNRows());
  MCComponentDisplay::DisplayD("Tolerance", fTol);
  MCComponentDisplay::DisplayI("Maximum number of iterations", fMaxIter);
  MCComponentDisplay::DisplayB("Compute eigenvectors indicator", fbVectors);
  DisplayMatrix("Matrix H:", fmH);
  if (fbEMatrix) {
    DisplayMatrix("Matrix E:", fmE);
    MCComponentDisplay::DisplayDV("fvEDiag", fvEDiag, false);
    DisplayMatrix("Gen.Inverse of Chol(E):", fmCholGI);
    DisplayMatrix("fmVHV:", fmVHV);
    MCComponentDisplay::DisplayI("Rank of the E matrix", fRankE);
  } else {
    MCComponentDisplay::DisplayText(1, "Matrix E is identity");
  }
  DisplayMatrix("fmOrthInfo:", fmOrthInfo);
  MCComponentDisplay::DisplayDV("fvDiag3", fvDiag3, false);
  MCComponentDisplay::DisplayDV("fvSubdiag3", fvSubdiag3, false);
  MCComponentDisplay::DisplayI("Number of computed eigenvalues", fNEigenVal);
  MCComponentDisplay::DisplayDV("fvEigenVal", fvEigenVal, false);
  MCComponentDisplay::DisplayText(1, "fmEigenVectors:");
  fmEigenVectors.Display();
  MCComponentDisplay::DisplayVPDI("fvEigPairs", fvEigPairs);
  MCComponentDisplay::DisplayText(1, "MCEigenValues display end");
}

}  // namespace MCCommonMath
