// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/detail/readrecords.h"
#include "regression/design/mcbuildstatus.h"
#include "regression/design/mcregrecordvalidator.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/multipassrecorditer.h"
#include "regression/frame/record.h"
#include "regression/settings/mcregsettings.h"

#include <cstdint>

namespace MCCommon {
namespace detail {

/// Number of values that a record must have to be scored, that is, to reach to each factor and
/// covariate of the settings, and to enter the fit, that is, to reach to dependent and weights,
/// too. No record enters a fit without a dependent.
std::int64_t ScoringSize(const MCRegSettings& settings);
std::int64_t FitSize(const MCRegSettings& settings);

/// Reads the rows of one pass over a source for a build driver. All that it is made from is
/// borrowed for its life.
class MCRowReader {
public:
  /// `nRead`: what NRead() begins with.
  MCRowReader(const MCRegSettings& settings, const MCRegRecordValidator& validator,
              const MCCancelInfo& cancel, MCBuildStatus& status, int nRead = 0)
      : fValidator(&validator),
        fCancel(&cancel),
        fStatus(&status),
        fRecordSize(FitSize(settings)),
        fNRead(nRead) {}

  /// Reads rows as ReadRecords() does, as long as no error stands, and gives the valid ones to
  /// `useRow`. A null row makes `nullRowCode` the standing error, a short one 315, a malformed
  /// category 316.
  template <class UseRow>
  void Read(MultiPassRecordIter& source, long nullRowCode, UseRow useRow) {
    fbCancelled = ReadRecords(source, *fCancel, nullRowCode, fStatus->Get(),
                              [this, &useRow](const Record& record) {
                                CountUp(fNRead);
                                if (IsValidRow(record)) useRow(record);
                              });
  }

  /// Rows read, valid or not.
  int NRead() const { return fNRead; }

  /// Whether a cancel ended the pass.
  bool WasCancelled() const { return fbCancelled; }

private:
  bool IsValidRow(const Record& record);

  const MCRegRecordValidator* fValidator;
  const MCCancelInfo* fCancel;
  MCBuildStatus* fStatus;
  std::int64_t fRecordSize;
  int fNRead;
  bool fbCancelled = false;
};

}  // namespace detail
}  // namespace MCCommon
