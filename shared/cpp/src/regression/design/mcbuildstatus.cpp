// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcbuildstatus.h"

#include <algorithm>
#include <cstddef>

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
  bool areAllNew = true;
  const std::size_t nAdded = statuses.size();  // the list may be the one that grows
  for (std::size_t i = 0; i < nAdded; ++i) {
    areAllNew = AddNewWarning(statuses[i], keepError) && areAllNew;
  }
  return areAllNew;
}

void MCBuildStatus::LetLastWarningWin() {
  if (!IsError() && !fWarnings.empty()) fStatus = fWarnings.back();
}
