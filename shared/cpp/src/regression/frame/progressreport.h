// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <string>

/// A report on a running build, asked for its measures by name, so that neither side is tied to
/// a fixed structure.
class MC_EXPORT ProgressReport {
public:
  virtual ~ProgressReport() = default;

  /// The integer measure `name`; each report says which it has and what it answers otherwise.
  virtual int DiscreteMeasure(const std::string& name) = 0;

  /// The real measure `name`.
  virtual double ScaleMeasure(const std::string& name) = 0;
};
