// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstddef>
#include <vector>

/// One term of the design: the intercept, a main effect, an interaction, a nested effect or a
/// power of a covariate. It is told against the list of all variables of the model, factors
/// first, then covariates, as record positions.
///
/// The list of variables is borrowed and is shared by copies of the effect: it must outlive every
/// effect told against it, and so also the settings and the components that hold copies. Positions
/// of the effect past the end of the list name no variable; without a list nothing is found.
///
///     const std::vector<int> variables{1, 2, 5};        // factors 1 and 2, covariate 5
///     MCModelEffect effect(2, 1, &variables);
///     effect.AddNewFactor(1, false);                     // a main effect of factor 1
class MC_EXPORT MCModelEffect {
public:
  /// The intercept of a model without variables and without a list.
  MCModelEffect() = default;

  /// The intercept of a model of `nFactors` factors and `nCovariates` covariates; a negative
  /// count counts as 0. `vars` holds their record positions, nFactors + nCovariates of them,
  /// borrowed; it may be null.
  MCModelEffect(int nFactors, int nCovariates, const std::vector<int>* vars);

  /// A copy shares the list of variables and nothing else. A move is a copy too: what is left
  /// behind is the effect of before, whose counts match its entries.
  MCModelEffect(const MCModelEffect&) = default;
  MCModelEffect& operator=(const MCModelEffect&) = default;
  ~MCModelEffect() = default;

  /// Sets the model's counts and list as the constructor does, and all entries anew: -1 for each
  /// factor, 0 for each covariate. The counters of the effect itself stay as they are; Reset()
  /// clears those.
  void Setup(int nFactors, int nCovariates, const std::vector<int>* vars);

  /// Back to the intercept of the same model.
  void Reset();

  /// Adds the factor at record position `var` at nesting level 0; with `nest` the factors already
  /// in the effect move one level up first. The first factor always makes one level. False, and
  /// nothing changed, if var is no factor of the model or is in the effect already.
  bool AddNewFactor(int var, bool nest);

  /// Raises the power of the covariate at record position `var` by one. Answers the new power, or
  /// -1 if var is no covariate of the model.
  int AddCovariate(int var);

  /// Nesting level of the factor `var`, from 0; -1 if it isn't in the model or not in the effect.
  int ContainsFactor(int var) const;

  /// Power of the covariate `var`, 0 if it isn't in the effect; -1 if it isn't in the model.
  int GetCovariateMult(int var) const;

  /// Sum of the powers of all covariates.
  int GetNCovariateMult() const;

  /// Whether the effect has neither factor nor covariate.
  bool IsIntercept() const { return fNFactors + fNCovariates == 0; }

  /// Record positions of the effect's factors and, in the same order, their nesting levels: the
  /// order of the model.
  std::vector<int> GetFactors() const;
  std::vector<int> GetFactorLevels() const;

  /// Record positions of the effect's covariates and, in the same order, their powers: the order
  /// of the model.
  std::vector<int> GetCovariates() const;
  std::vector<int> GetCovMultiplicities() const;

  /// One entry per variable of the model: the nesting level of a factor, -1 if it isn't in the
  /// effect; the power of a covariate, 0 if it isn't.
  const std::vector<int>& GetModelEffect() const { return fMainVector; }

  /// The model's variables as record positions, null if there are none. Replacing the list
  /// changes neither entries nor counters.
  const std::vector<int>* GetVarIndices() const { return fpVarIndices; }
  void SetVarIndices(const std::vector<int>* vars) { fpVarIndices = vars; }

  /// Number of factors in the effect and in the model, and of distinct covariates likewise.
  int GetNFactors() const { return fNFactors; }
  int GetNModelFactors() const { return fNModelFactors; }
  int GetNCovariates() const { return fNCovariates; }
  int GetNModelCovariates() const { return fNModelCovariates; }

  /// Number of nesting levels in the effect.
  int GetNLevels() const { return fNLevels; }

  /// Whether the effect's factors are written after its covariates, in parentheses. Only Reset()
  /// clears it.
  bool GetFactorsInParens() const { return fbFactorsInParens; }
  void SetFactorsInParens() { fbFactorsInParens = true; }

  /// Equal counters, entries and flag, told against the same list (not an equal one).
  bool operator==(const MCModelEffect& other) const;

  /// Whether `other` has all factors of this effect, at whatever level, and more, and exactly its
  /// covariates at their powers, told against the same list and counts. So an effect isn't
  /// contained in itself.
  bool IsContainedIn(const MCModelEffect& other) const;

  /// Drops from the model each variable whose bit in `mask` is false; variables past the end of
  /// the mask stay. Answers whether the effect used none of them. They go in either case; the
  /// effect's own counters and the list stay, so the caller gives a matching list with
  /// SetVarIndices().
  bool ApplyMask(const std::vector<bool>& mask);

  /// Position of the first `value` among the `count` entries of `v` from `start`, which may reach
  /// past the end of v. -1 if there is none, or for a negative start.
  int FindInVector(const std::vector<int>& v, int start, int count, int value) const;

  /// For each variable of the first effect's model, whether any effect uses it. All effects must
  /// be told against the same model; entries that an effect has beyond it are ignored. Empty for
  /// no effects.
  static std::vector<bool> CheckVariableUse(const std::vector<MCModelEffect>& effects);

  /// Record positions of the variables in use, effect by effect, by the list and counts of the
  /// first. A variable is left out only where `factors` holds it already at a place before its
  /// last; covariates are looked up in `factors` too. So both lists may hold a variable more than
  /// once, covariates always do when used twice: callers rely on that. Both outputs are cleared
  /// first; without effects they stay as they are.
  static void GetUsedVariables(const std::vector<MCModelEffect>& effects, std::vector<int>& factors,
                               std::vector<int>& covariates);

  /// Writes the counters and the entries to the display stream.
  void Display() const;

private:
  // Positions in fMainVector, -1 for a variable that the list doesn't name there.
  int FindFactor(int var) const;
  int FindCovariate(int var) const;

  // Whether entry i is there and in use, if the first nModelFactors entries are the factors.
  bool Uses(std::size_t i, int nModelFactors) const;

  // The elements of `source` at the positions in use that the list names, among `count` positions
  // from `start`.
  std::vector<int> CollectUsed(int start, int count, const std::vector<int>* source) const;

  const std::vector<int>* fpVarIndices = nullptr;
  std::vector<int> fMainVector;
  int fNModelFactors = 0;
  int fNModelCovariates = 0;
  int fNFactors = 0;
  int fNCovariates = 0;
  int fNLevels = 0;
  bool fbFactorsInParens = false;
};
