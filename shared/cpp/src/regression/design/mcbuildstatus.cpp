// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcbuildstatus.h"

#include <algorithm>

void MCBuildStatus::Take(const MCCommon::MCStatus& status) {
  fStatus = status;
  AddNewWarning(status, false);
}

bool MCBuildStatus::AddNewWarning(const MCCommon::MCStatus& status, bool keepError) {
  if (status.IsError()) {
    fStatus = status;
    if (!keepError) return true;
  }
  if (status.IsOK()) return false;
  if (std::find(fWarnings.begin(), fWarnings.end(), status) != fWarnings.end()) return false;
  fWarnings.push_back(status);
  return true;
}

bool MCBuildStatus::AddNewWarnings(const std::vector<MCCommon::MCStatus>& statuses,
                                   bool keepError) {
  const std::vector<MCCommon::MCStatus> added = statuses;  // which may be the list that grows
  bool areAllNew = true;
  for (const MCCommon::MCStatus& status : added) {
    areAllNew = AddNewWarning(status, keepError) && areAllNew;
  }
  return areAllNew;
}

void MCBuildStatus::LetLastWarningWin() {
  if (!IsError() && !fWarnings.empty()) fStatus = fWarnings.back();
}
