// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcregrecordvalidator.h"

#include "regression/design/detail/rolename.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <emmintrin.h>
#include <utility>

using MCCommon::MCStatus;

namespace {

// A NaN weight passes.
bool AreWeights(const double* begin, const double* end) {
  return std::none_of(begin, end, [](double value) { return value <= 0.0; });
}

// A row of many covariates spends its test here, so four values are compared at a time, without an
// exit in the loop: rows with a missing value are the exception.
bool ArePresent(const double* begin, const double* end) {
  const __m128d missing = _mm_set1_pd(MCMV::gMissingValue);
  __m128d found = _mm_setzero_pd();
  const double* value = begin;
  for (; end - value >= 4; value += 4) {
    const __m128d low = _mm_cmpeq_pd(_mm_loadu_pd(value), missing);
    const __m128d high = _mm_cmpeq_pd(_mm_loadu_pd(value + 2), missing);
    found = _mm_or_pd(found, _mm_or_pd(low, high));
  }
  if (_mm_movemask_pd(found) != 0) return false;
  return std::find(value, end, MCMV::gMissingValue) == end;
}

}  // namespace

MCRegRecordValidator::MCRegRecordValidator(const std::vector<MCConst::MCVariableType>& types,
                                           const std::vector<int>& factors,
                                           const std::vector<int>& factorSizes,
                                           int nDepCategories) {
  SetRecordInfo(types, factors, factorSizes, nDepCategories);
}

void MCRegRecordValidator::SetRecordInfo(const std::vector<MCConst::MCVariableType>& types,
                                         const std::vector<int>& factors,
                                         const std::vector<int>& factorSizes, int nDepCategories) {
  // Made aside: where memory runs out the rules are those of before.
  MCRegRecordValidator made;
  made.fVariableTypes = types;
  made.fNDepCategories = nDepCategories;
  made.fMaxCategories.assign(types.size(), 0);
  const std::size_t nFactors = std::min(factors.size(), factorSizes.size());
  for (std::size_t i = 0; i < nFactors; ++i) {
    made.SetMaxCategory(static_cast<std::size_t>(factors[i]), factorSizes[i]);
  }
  if (nDepCategories >= 1) {
    const auto dependent = std::find(types.begin(), types.end(), MCConst::MC_VAR_DEPENDENT);
    made.SetMaxCategory(static_cast<std::size_t>(dependent - types.begin()), nDepCategories);
  }
  made.FindRuns();
  *this = std::move(made);
}

bool MCRegRecordValidator::IsValidRecord(const MCCommon::Record& record, MCStatus& status) const {
  if (static_cast<std::size_t>(record.Size()) < fVariableTypes.size()) {
    status = MCStatus(MCCommon::MCS_RECORD_SHORT, false);
    return false;
  }
  for (const Run& run : fRuns) {
    if (!PassesRun(run, record.GetAll(), status)) return false;
  }
  return true;
}

bool MCRegRecordValidator::IsValid4Scoring(const MCCommon::Record& record, MCStatus& status) const {
  for (const Run& run : fRuns) {
    if (run.role != MCConst::MC_VAR_FACTOR && run.role != MCConst::MC_VAR_COVARIATE) continue;
    const int end = std::min(run.end, record.Size());
    if (run.begin < end && !PassesRun({run.role, run.begin, end}, record.GetAll(), status)) {
      return false;
    }
    if (end < run.end) {
      status = MCStatus(MCCommon::MCS_RECORD_SHORT, false);
      return false;
    }
  }
  return true;
}

void MCRegRecordValidator::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCRegRecordValidator display start");
  DisplayText(1, "Variable roles in MCRegRecordValidator");
  int position = 0;
  for (const MCConst::MCVariableType role : fVariableTypes) {
    DisplayI("  Variable index", position++);
    DisplayS("    Type", MCCommon::detail::RoleName(role, "Frequency weight"));
  }
  DisplayI("Number of target categories", fNDepCategories);
  DisplayIV("Numbers of factor categories", fMaxCategories);
  DisplayText(1, "MCRegRecordValidator display end");
}

void MCRegRecordValidator::SetMaxCategory(std::size_t position, int bound) {
  // A negative record position is far past the end here.
  if (position < fMaxCategories.size()) fMaxCategories[position] = bound;
}

void MCRegRecordValidator::FindRuns() {
  fRuns.clear();
  int position = 0;
  for (const MCConst::MCVariableType role : fVariableTypes) {
    const bool continues =
        !fRuns.empty() && fRuns.back().role == role && fRuns.back().end == position;
    if (continues) {
      ++fRuns.back().end;
    } else if (role != MCConst::MC_VAR_UNSPECIFIED) {
      fRuns.push_back({role, position, position + 1});
    }
    ++position;
  }
}

bool MCRegRecordValidator::PassesRun(const Run& run, const double* values, MCStatus& status) const {
  switch (run.role) {
    case MCConst::MC_VAR_FREQ_WEIGHT:
    case MCConst::MC_VAR_REGR_WEIGHT:
      return AreWeights(values + run.begin, values + run.end);
    case MCConst::MC_VAR_COVARIATE:
      return ArePresent(values + run.begin, values + run.end);
    case MCConst::MC_VAR_FACTOR:
      return AreCategories(run, values, status);
    case MCConst::MC_VAR_DEPENDENT:
      if (fNDepCategories >= 1) return AreCategories(run, values, status);
      return ArePresent(values + run.begin, values + run.end);
    default:
      return true;
  }
}

bool MCRegRecordValidator::AreCategories(const Run& run, const double* values,
                                         MCStatus& status) const {
  for (int i = run.begin; i < run.end; ++i) {
    const double value = values[i];
    // The missing value is far below; what is left of the negative values isn't whole.
    if (value < -0.5) return false;
    const bool isWhole = static_cast<double>(MCCommon::detail::TruncateToInt(value)) == value;
    if (!isWhole || value > fMaxCategories[static_cast<std::size_t>(i)]) {
      status = MCStatus(MCCommon::MCS_RECORD_BAD_VALUE, false);
      status.SetDiscreteDatum(1, i);
      status.SetScaleDatum(1, value);
      return false;
    }
  }
  return true;
}
