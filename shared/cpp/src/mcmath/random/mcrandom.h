// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

namespace MCCommon {

/// A host's own source of uniform numbers. MCURandom draws from one where it is told to, and leaves
/// seeding, saving and deleting it to the host.
class MC_EXPORT MCRandom {
public:
  virtual ~MCRandom();

  /// The next number, which should lie between 0 and 1. The variates draw again where it doesn't,
  /// or is 0 or 1; MCURandom::GetRandom() hands it on as it is.
  virtual double GetRandom() = 0;
};

}  // namespace MCCommon
