// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstdint>
#include <type_traits>

/// The vocabulary of the system: status, records and sources of records.
namespace MCCommon {

/// Status codes. Each is raised with one fixed severity, listed in mcstatuscodes.inc.
enum : long {
#define MC_STATUS_CODE(code, name, severity, text) name = (code),
#include "regression/frame/mcstatuscodes.inc"
};

/// Result of every operation that can fail: a code, a severity and up to six data that go with
/// the code. A plain value without allocation, so that it may be returned once per row. It has
/// no text: a host keys its own messages on the code.
class MC_EXPORT [[nodiscard]] MCStatus {
public:
  /// Nothing to report: IsOK() is true and all data are zero.
  MCStatus() = default;

  /// `code` with severity 1 if `isWarning`, otherwise -1; all data are zero. So IsOK() of a
  /// status made here is false whatever its code.
  MCStatus(long code, bool isWarning);

  long GetErrorCode() const { return fCode; }
  bool IsOK() const { return fSeverity == 0; }
  bool IsError() const { return fSeverity < 0; }
  bool IsWarning() const { return fSeverity > 0; }

  /// Integer datum `i`, 0 to 2. A larger index is the caller's mistake: an assertion in debug
  /// builds, undefined otherwise.
  long GetDiscreteDatum(unsigned i) const;
  void SetDiscreteDatum(unsigned i, long v);

  /// Real datum `i`, 0 to 2, with the same precondition.
  double GetScaleDatum(unsigned i) const;
  void SetScaleDatum(unsigned i, double v);

  /// Equal code, severity and data. Real data compare as doubles, so a status with a NaN datum
  /// differs from itself.
  bool operator==(const MCStatus& other) const;

private:
  std::int64_t fCode = 0;
  std::int16_t fSeverity = 0;
  std::int64_t fDiscrete[3] = {0, 0, 0};
  double fScale[3] = {0.0, 0.0, 0.0};
};

static_assert(std::is_trivially_copyable_v<MCStatus>, "a status is returned once per row");

}  // namespace MCCommon
