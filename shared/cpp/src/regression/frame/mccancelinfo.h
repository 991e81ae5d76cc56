// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcquerycancel.h"

#include <atomic>

/// Cancel state of one build: a flag of its own, which once set stays set, beside the host's
/// query. Owned by a build driver and shared by reference with what runs below it.
/// SetCancel() may be called from any thread while a build runs; it promises no more than that
/// the build sees the flag eventually. All else belongs to the build's thread.
class MC_EXPORT MCCancelInfo {
public:
  /// `query` is borrowed for the lifetime of this object and may be null.
  explicit MCCancelInfo(MCQueryCancel* query);

  /// Cancels for good.
  void SetCancel();

  /// Whether the build is cancelled, asking the query's IsCancel() if it isn't yet. A yes of the
  /// query is remembered.
  bool IsCancel();

  /// The same with the query's WillCancel(), whose answer is not remembered.
  bool WillCancel() const;

  MCQueryCancel* GetCancelPtr() const { return fpQuery; }
  void SetCancelPtr(MCQueryCancel* query) { fpQuery = query; }

private:
  MCQueryCancel* fpQuery;
  std::atomic<bool> fbCancelled{false};
};
