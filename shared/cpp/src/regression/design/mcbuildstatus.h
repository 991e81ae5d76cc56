// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"

#include <vector>

/// What a build driver knows of its success: one standing status, and the distinct warnings in
/// order of arrival, with no cap. The driver takes the answer of each step, so the standing status
/// is always the last answer and an OK wipes a warning from it; at the end of a build without
/// error the last warning wins.
class MC_EXPORT MCBuildStatus {
public:
  /// The standing status: OK at first. The changing form is for steps that write one themselves.
  const MCCommon::MCStatus& Get() const { return fStatus; }
  MCCommon::MCStatus& Get() { return fStatus; }

  bool IsError() const { return fStatus.IsError(); }

  /// Makes `code` the standing error.
  void Fail(long code) { fStatus = MCCommon::MCStatus(code, false); }

  /// Makes the answer of a step the standing status and, if it is a warning, records it.
  void Take(const MCCommon::MCStatus& status);

  /// Records a warning. False if it is OK, or if an equal one is there already: the same code
  /// with other data is another warning. An error becomes the standing status; it is recorded
  /// beside that only with `keepError`.
  bool AddNewWarning(const MCCommon::MCStatus& status, bool keepError);

  /// The same for each status in turn: whether all were recorded; true for an empty list.
  bool AddNewWarnings(const std::vector<MCCommon::MCStatus>& statuses, bool keepError);

  /// Ends a build: unless the standing status is an error, the last warning, if there is any,
  /// takes its place.
  void LetLastWarningWin();

  const std::vector<MCCommon::MCStatus>& GetWarnings() const { return fWarnings; }

private:
  MCCommon::MCStatus fStatus;
  std::vector<MCCommon::MCStatus> fWarnings;
};
