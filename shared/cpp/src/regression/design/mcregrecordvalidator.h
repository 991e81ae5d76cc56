// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/record.h"

#include <cstddef>
#include <vector>

/// Decides for each record whether it enters the fit or can be scored. Rejection is the normal
/// way of treating missing data and weights that are not positive, and is silent; only malformed
/// category codes and short records raise a status. Read-only after its setup.
class MC_EXPORT MCRegRecordValidator {
public:
  /// Accepts every record.
  MCRegRecordValidator() = default;

  /// The same as SetRecordInfo().
  MCRegRecordValidator(const std::vector<MCConst::MCVariableType>& types,
                       const std::vector<int>& factors, const std::vector<int>& factorSizes,
                       int nDepCategories);

  /// Sets the rules anew. `types`: role of each record position; `factors`: record positions of
  /// the factors, and `factorSizes`: their numbers of categories, in the same order;
  /// `nDepCategories`: number of categories of the dependent, 0 or less for a scale dependent.
  /// A factor without a size, or at a position past the end of the roles, is skipped.
  void SetRecordInfo(const std::vector<MCConst::MCVariableType>& types,
                     const std::vector<int>& factors, const std::vector<int>& factorSizes,
                     int nDepCategories);

  /// Whether the record enters the fit. Positions are tested in ascending order, and the first
  /// failure ends the test; values beyond the last role are ignored.
  ///
  /// Silent rejections, which leave `status` alone: a weight of 0 or less (a NaN weight passes), a
  /// missing scale value, a category code below -0.5 (so a missing one too). Status 315: a record
  /// with fewer values than there are roles. Status 316, with the record position as discrete
  /// datum 1 and the value as scale datum 1: a category code that isn't whole, or above the number
  /// of categories. A code equal to that number passes here; the counting of categories drops it.
  bool IsValidRecord(const MCCommon::Record& record, MCCommon::MCStatus& status) const;

  /// Whether the record can be scored: factors and covariates are tested as above, and nothing
  /// else is looked at or need be there. Status 315 where the record ends before a position that
  /// the test comes to.
  bool IsValid4Scoring(const MCCommon::Record& record, MCCommon::MCStatus& status) const;

  /// Writes the rules to the display stream.
  void Display() const;

private:
  // Adjoining positions of one role: the test of a record branches once per run and not once per
  // position.
  struct Run {
    MCConst::MCVariableType role;
    int begin;  // first record position
    int end;    // one past the last
  };

  void SetMaxCategory(std::size_t position, int bound);
  void FindRuns();
  bool PassesRun(const Run& run, const double* values, MCCommon::MCStatus& status) const;
  bool AreCategories(const Run& run, const double* values, MCCommon::MCStatus& status) const;

  std::vector<MCConst::MCVariableType> fVariableTypes;
  int fNDepCategories = 0;
  std::vector<int> fMaxCategories;
  std::vector<Run> fRuns;
};
