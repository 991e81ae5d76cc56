// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mcstatus.h"

#include <cassert>

namespace MCCommon {

MCStatus::MCStatus(long code, bool isWarning)
    : fCode(code), fSeverity(static_cast<std::int16_t>(isWarning ? 1 : -1)) {}

long MCStatus::GetDiscreteDatum(unsigned i) const {
  assert(i < 3);
  return fDiscrete[i];
}

void MCStatus::SetDiscreteDatum(unsigned i, long v) {
  assert(i < 3);
  fDiscrete[i] = v;
}

double MCStatus::GetScaleDatum(unsigned i) const {
  assert(i < 3);
  return fScale[i];
}

void MCStatus::SetScaleDatum(unsigned i, double v) {
  assert(i < 3);
  fScale[i] = v;
}

bool MCStatus::operator==(const MCStatus& other) const {
  if (fCode != other.fCode || fSeverity != other.fSeverity) return false;
  for (int i = 0; i < 3; ++i) {
    if (fDiscrete[i] != other.fDiscrete[i] || !(fScale[i] == other.fScale[i])) return false;
  }
  return true;
}

}  // namespace MCCommon
