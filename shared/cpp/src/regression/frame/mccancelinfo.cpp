// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mccancelinfo.h"

MCCancelInfo::MCCancelInfo(MCQueryCancel* query) : fpQuery(query) {}

void MCCancelInfo::SetCancel() {
  fbCancelled.store(true, std::memory_order_relaxed);
}

bool MCCancelInfo::IsCancel() {
  if (fbCancelled.load(std::memory_order_relaxed)) return true;
  if (fpQuery == nullptr || !fpQuery->IsCancel()) return false;
  SetCancel();
  return true;
}

bool MCCancelInfo::WillCancel() const {
  if (fbCancelled.load(std::memory_order_relaxed)) return true;
  return fpQuery != nullptr && fpQuery->WillCancel();
}
