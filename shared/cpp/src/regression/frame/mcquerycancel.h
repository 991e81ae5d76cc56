// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

/// A host's answer to the question whether a running build is to stop. The host owns it; it must
/// outlive the component whose settings name it, and is called on the thread that runs the build.
class MC_EXPORT MCQueryCancel {
public:
  virtual ~MCQueryCancel() = default;

  /// Whether to stop for good: a yes is remembered, and this is not asked again.
  virtual bool IsCancel() = 0;

  /// Whether to stop now: the answer is not remembered. The library polls this one, before each
  /// row and at each step of an iteration.
  virtual bool WillCancel() = 0;
};
