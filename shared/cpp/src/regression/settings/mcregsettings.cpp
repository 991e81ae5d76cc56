// SPDX-License-Identifier: Apache-2.0
#include "regression/settings/mcregsettings.h"

#include "regression/frame/mccomponentdisplay.h"

#include <cstddef>
#include <new>

using MCCommon::MCStatus;

int MCRegSettings::GetModelType() const {
  return MCConst::MC_MODEL_LINEAR;
}

MCStatus MCRegSettings::IsValidSettings() const {
  if (fDependent < 0) return MCStatus(MCCommon::MCS_NO_DEPENDENT, false);
  if (!fInterceptUse && fModelEffects.empty()) return MCStatus(MCCommon::MCS_EMPTY_MODEL, false);
  return {};
}

bool MCRegSettings::SetDependent(int var) {
  return fDependent < 0 && StoreAndMark(fDependent, var, MCConst::MC_VAR_DEPENDENT);
}

bool MCRegSettings::SetRegrWeightVar(int var) {
  return StoreAndMark(fRegrWeightVar, var, MCConst::MC_VAR_REGR_WEIGHT);
}

bool MCRegSettings::SetFrequencyWeightVar(int var) {
  return StoreAndMark(fFreqWeightVar, var, MCConst::MC_VAR_FREQ_WEIGHT);
}

int MCRegSettings::AddCovariate(int var) {
  if (!HasNoRole(var)) return -1;
  const std::size_t nCovariates = fCovariates.size();
  try {
    fCovariates.push_back(var);
    MarkRole(var, MCConst::MC_VAR_COVARIATE);
  } catch (const std::bad_alloc&) {
    fCovariates.resize(nCovariates);
    return -1;
  }
  return static_cast<int>(fCovariates.size());
}

int MCRegSettings::AddFactor(int var, int size) {
  if (size < 1 || !HasNoRole(var)) return -1;
  const std::size_t nFactors = fFactors.size();
  try {
    fFactors.push_back(var);
    fFactorSizes.push_back(size);
    MarkRole(var, MCConst::MC_VAR_FACTOR);
  } catch (const std::bad_alloc&) {
    fFactors.resize(nFactors);
    fFactorSizes.resize(nFactors);
    return -1;
  }
  return static_cast<int>(fFactors.size());
}

bool MCRegSettings::AddModelEffect(const MCModelEffect& effect) {
  try {
    fModelEffects.push_back(effect);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void MCRegSettings::SetConfidenceLevel(double level) {
  if (level >= 0.0 && level < 1.0) fConfidence = level;
}

void MCRegSettings::SetDF(double df) {
  if (df > 0.0) fDF = df;
}

void MCRegSettings::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCRegSettings display start");
  DisplayI("fFreqWeightVar", fFreqWeightVar);
  DisplayI("fRegrWeightVar", fRegrWeightVar);
  DisplayI("Dependent Var", fDependent);
  DisplayIV("Factors ", fFactors);
  DisplayIV("Factor Sizes ", fFactorSizes);
  DisplayIV("Covariates ", fCovariates);
  DisplayD("Tolerance", fTolerance);
  DisplayB("Intercept use", fInterceptUse);
  DisplayD("Confidence", fConfidence);
  DisplayD("Degrees of freedom", fDF);
  DisplayText(1, "\nModel Effects:");
  for (const MCModelEffect& effect : fModelEffects) effect.Display();
  DisplayText(1, "MCRegSettings display end");
}

bool MCRegSettings::HasNoRole(int var) const {
  if (var < 0) return false;
  const auto position = static_cast<std::size_t>(var);
  return position >= fVariableTypes.size() ||
         fVariableTypes[position] == MCConst::MC_VAR_UNSPECIFIED;
}

void MCRegSettings::MarkRole(int var, MCConst::MCVariableType role) {
  const auto position = static_cast<std::size_t>(var);
  if (position >= fVariableTypes.size()) {
    fVariableTypes.resize(position + 1, MCConst::MC_VAR_UNSPECIFIED);
  }
  fVariableTypes[position] = role;
}

bool MCRegSettings::StoreAndMark(int& member, int var, MCConst::MCVariableType role) {
  if (!HasNoRole(var)) return false;
  member = var;
  try {
    MarkRole(var, role);
  } catch (const std::bad_alloc&) {
    // Settled behaviour: the member stays set, and all roles are forgotten.
    fVariableTypes.clear();
    return false;
  }
  return true;
}
