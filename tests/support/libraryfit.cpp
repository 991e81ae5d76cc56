// SPDX-License-Identifier: Apache-2.0
#include "support/libraryfit.h"

#include "regression/component/mclogcomponent.h"
#include "regression/component/mcregfactory.h"
#include "support/rowsource.h"

#include <utility>

namespace mctest {

LibraryFit::LibraryFit(const LinearProblem& problem)
    : LibraryFit(problem, std::make_unique<MCRegSettings>()) {}

LibraryFit::LibraryFit(const LogisticProblem& problem)
    : LibraryFit(problem, std::make_unique<MCLogRegSettings>()) {
  LogisticSettings().SetDependentRefCat(problem.reference, problem.categories);
  LogisticSettings().SetUsePatternTabulator(true);
}

LibraryFit::LibraryFit(const LinearProblem& problem, std::unique_ptr<MCRegSettings> settings)
    : fProblem(problem), fSettings(std::move(settings)) {
  fSettings->SetDependent(problem.dependent);
  for (std::size_t i = 0; i < problem.factors.size(); ++i) {
    fSettings->AddFactor(problem.factors[i], problem.factorSizes[i]);
  }
  for (const int x : problem.covariates) fSettings->AddCovariate(x);
  if (problem.freqWeight >= 0) fSettings->SetFrequencyWeightVar(problem.freqWeight);
  if (problem.regrWeight >= 0) fSettings->SetRegrWeightVar(problem.regrWeight);
  fSettings->SetInterceptUse(problem.intercept);
  fVariables = problem.factors;
  fVariables.insert(fVariables.end(), problem.covariates.begin(), problem.covariates.end());
  for (const EffectTerms& effect : problem.effects) AddEffect(effect);
}

void LibraryFit::AddEffect(const EffectTerms& terms) {
  MCModelEffect effect(static_cast<int>(fProblem.factors.size()),
                       static_cast<int>(fProblem.covariates.size()), &fVariables);
  for (const auto& [factor, nest] : terms.factors) effect.AddNewFactor(factor, nest);
  for (const int x : terms.covariates) effect.AddCovariate(x);
  fSettings->AddModelEffect(effect);
}

MCCommon::MCStatus LibraryFit::Build() {
  MCRegFactory factory;
  fComponent.reset(factory.CreateRegAlgorithm(*fSettings));
  if (fComponent == nullptr) return factory.GetStatus();
  RowSource source(fProblem.rows);
  return fComponent->BuildModel(source);
}

const IMCRegOutputStats& LibraryFit::Results() {
  IMCRegOutputStats* results = nullptr;
  static_cast<void>(fComponent->GetOutputStats(results));
  return *results;
}

MCConvergence LibraryFit::Convergence() const {
  return static_cast<const MCLogComponent&>(*fComponent).GetConvergence();
}

}  // namespace mctest
