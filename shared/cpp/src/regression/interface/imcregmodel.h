// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcfactortables.h"
#include "regression/design/mcregrparameter.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"

#include <vector>

/// A model with one design and several equations, as the estimator and the data handlers see it.
/// Its *basic* parameters are the columns of the design; *all* parameters are one copy of the
/// basic ones for each equation, copy after copy. Indices count from 0.
///
/// Rows come in two layouts: a *record row* has every value at its position in a record, a *pattern
/// row* has the values that were extracted from one, as they are stored between two passes. Each
/// operation says which it takes; a row must reach to every position that the model was told.
class MC_EXPORT IMCRegModel {
public:
  virtual ~IMCRegModel() = default;

  /// Borrowed; null before there are any.
  virtual const MCFactorTables* GetFactorTables() const = 0;

  /// Makes the lists of parameters and the matrix of cross-products.
  virtual MCCommon::MCStatus CreateParameters() = 0;

  virtual bool AreParamsCreated() const = 0;

  /// Adds a pattern row to X'X, `indices` holding the basic parameter of each model effect. False
  /// if nothing was added.
  virtual bool UpdateXPrimeX(const double* row, const std::vector<int>& indices) = 0;

  /// The same with the parameters looked up by the row's factors. False, too, where they aren't
  /// all found.
  virtual bool UpdateXPrimeX(const double* row) = 0;

  /// Finds the redundant parameters; consumes X'X.
  virtual MCCommon::MCStatus IdentifyRedundancy() = 0;

  virtual bool IsModelBuilt() const = 0;

  /// Sets `out` to the row's contribution to the scores at the final estimates, one entry per
  /// parameter, and counts the row's observed and predicted category. Takes a record row.
  virtual void GetDResiduals(std::vector<double>& out, const double* row) = 0;

  /// Closes the sums of GetDResiduals().
  virtual MCCommon::MCStatus FinishErrors() = 0;

  /// The cross-products of the basic parameters; null where there are none.
  virtual const MCCommonMath::MCSymMatrix* GetXPrimeX() const = 0;

  /// Generalised inverse of the Hessian, one row per parameter; null where there is none.
  virtual const MCCommonMath::MCSymMatrix* GetHessianGI() const = 0;

  virtual const std::vector<MCRegrParameter>& GetParameters() const = 0;
  virtual const std::vector<MCRegrParameter>& GetBasicParams() const = 0;
  virtual int GetNParameters() const = 0;

  /// Number of non-redundant parameters.
  virtual int GetNNonRedParams() const = 0;

  virtual int GetNBasicParameters() const = 0;
  virtual int GetNBasicNonRed() const = 0;

  /// One estimate per parameter, 0.0 for a redundant one.
  virtual const std::vector<double>& GetParamEstimates() const = 0;

  /// One bit per basic parameter, set if it is *not* redundant.
  virtual const MCCommonMath::MCBitSet& GetBasicRedundInfo() const = 0;

  /// One bit per parameter, set if it is *not* redundant.
  virtual const MCCommonMath::MCBitSet& GetRedundancyInfo() const = 0;

  /// Number of categories of the dependent that were seen.
  virtual int GetDependentNCategs() const = 0;

  /// Their codes, the reference category last.
  virtual const std::vector<int>& GetDependCategories() const = 0;

  /// By category code its place in GetDependCategories(), -1 for one that wasn't seen.
  virtual const std::vector<int>& GetDepCatLocalInds() const = 0;

  virtual void ClearXPrimeXMatrix() = 0;
  virtual void ClearHessianGIMatrix() = 0;

  /// First basic parameter and number of basic parameters of an effect, where the intercept, if
  /// there is one, is effect 0. False, with both unchanged, for an effect out of range.
  virtual bool GetParamsForEffect(int effect, int& first, int& count) const = 0;

  /// Probabilities of the categories and the code of the predicted one, from a record row.
  virtual MCCommon::MCStatus Score(const double* row, std::vector<double>& probabilities,
                                   int& predicted) const = 0;

  /// Spreads the estimates of the non-redundant parameters and the inverse of their Hessian over
  /// all parameters.
  virtual MCCommon::MCStatus UncompressEstimates(const std::vector<double>& estimates,
                                                 const MCCommonMath::MCSymMatrix& hessian) = 0;

  /// Writes the row of the design that a record row makes.
  virtual bool ExpandRow(std::vector<double>& designRow, const double* row) const = 0;

  /// The same as one parameter and value for each model effect.
  virtual bool ExpandRow(const double* row, std::vector<int>& indices,
                         std::vector<double>& values) const = 0;

  /// The non-zero entries of the design row that a pattern row makes, by index among the
  /// non-redundant basic parameters, ascending; n is their number. `indices` holds the basic
  /// parameter of each model effect.
  virtual bool ExpandAndCompressRow(const double* row, const std::vector<int>& indices, int& n,
                                    std::vector<int>& outIndices,
                                    std::vector<double>& outValues) const = 0;

  /// The same with the parameters looked up by the row's factors. False, with nothing in the
  /// lists, where they aren't all found.
  virtual bool ExpandAndCompressRow(const double* row, int& n, std::vector<int>& outIndices,
                                    std::vector<double>& outValues) const = 0;

  virtual MCCommon::MCStatus GetStatus() const = 0;

  /// Writes the model to the display stream.
  virtual void Display() const = 0;
};
