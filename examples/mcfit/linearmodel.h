// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dataset.h"
#include "interrupt.h"
#include "progressline.h"
#include "regression/frame/record.h"
#include "regression/interface/imcregcomponent.h"
#include "regression/interface/imcregoutputstats.h"
#include "regression/settings/mcmodeleffect.h"
#include "regression/settings/mcregsettings.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mcfit {

/// What a linear fit is to do, beside the layout of its records.
struct LinearDesign {
  std::vector<MCModelEffect> effects;  // their list of variables must outlive the model
  bool hasIntercept = true;
  double tolerance = 1e-12;
};

/// A linear regression fitted by the library.
class LinearModel {
public:
  /// Fits the model to the rows of the data. Throws ModelError if the library answers an error,
  /// and Interrupted if the user stopped it. `data` is borrowed for as long as the model lives.
  LinearModel(Dataset& data, const LinearDesign& design, ProgressLine& progress);

  const RecordLayout& Layout() const { return fData.Layout(); }
  const Dataset& Data() const { return fData; }
  const LinearDesign& Design() const { return fDesign; }

  /// What the library found; the model's, and lives as long.
  const IMCRegOutputStats& Results() const { return *fpResults; }

  /// The warnings of the build in words.
  std::vector<std::string> Warnings() const;

  /// The predicted dependent of a record that may be scored; no value for a combination of factor
  /// labels that the fit hasn't seen. Throws ModelError if the library answers an error.
  std::optional<double> Predict(const MCCommon::Record& record) const;

private:
  MCRegSettings Settings();
  void Build(ProgressLine& progress);
  void Check(const MCCommon::MCStatus& status) const;

  Dataset& fData;
  LinearDesign fDesign;
  InterruptQuery fInterrupt;
  std::unique_ptr<IMCRegComponent> fpComponent;
  IMCRegOutputStats* fpResults = nullptr;
};

}  // namespace mcfit
