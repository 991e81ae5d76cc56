// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcregrparameter.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/multipassrecorditer.h"
#include "regression/interface/imcregoutputstats.h"
#include "regression/settings/mcregsettings.h"

#include <vector>

/// What a host holds: one regression, from settings to scores. MCRegFactory makes it, the host
/// feeds it a source of rows, reads its results and deletes it through this interface:
///
///     std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
///     if (component->BuildModel(source).IsError()) return;
///     IMCRegOutputStats* stats = nullptr;
///     if (!component->GetOutputStats(stats).IsError()) Print(*stats->GetParamEstimates());
///
/// Once a component holds an error it answers that to everything, and the host makes a new one.
/// A component keeps a deep copy of its settings, whose model effects still point to the host's
/// list of variables: that list must outlive the component. One thread uses a component, but
/// Cancel() may come from any. Memory exhaustion is thrown from here as std::bad_alloc, after which
/// a component is good for deletion alone.
class MC_EXPORT IMCRegComponent {
public:
  virtual ~IMCRegComponent() = default;

  /// MCConst::MC_MODEL_LINEAR or MCConst::MC_MODEL_LOGISTIC.
  virtual int GetModelType() const = 0;

  /// Makes the first pass over the rows and the list of parameters, so that a host can look at
  /// them before the build. Optional: BuildModel() does it if it wasn't done. `source` is borrowed
  /// for the call. A logistic component sets `parameters`; a linear one leaves it alone, and its
  /// parameters are read from the output statistics.
  virtual MCCommon::MCStatus CreateParameters(MCCommon::MultiPassRecordIter& source,
                                              std::vector<MCRegrParameter>& parameters) = 0;

  /// Fits the model to the rows of `source`, borrowed for the call. The last warning, if any, is
  /// the answer of a build that ends without error. A second build answers 310: a logistic
  /// component is unharmed by it, a linear one answers 310 to everything from then on.
  virtual MCCommon::MCStatus BuildModel(MCCommon::MultiPassRecordIter& source) = 0;

  /// Whether the model is built and the component holds no error.
  virtual bool IsModelBuilt() const = 0;

  /// Sets `stats` to the results, which are made at the first call and stay the component's.
  /// Before the build the answer is 311 from a linear component, which leaves `stats` alone then
  /// and on every error, and 310 from a logistic one, which sets it to null. Neither is stored.
  virtual MCCommon::MCStatus GetOutputStats(IMCRegOutputStats*& stats) = 0;

  /// The component's copy of the settings.
  virtual const MCRegSettings& GetCompSettings() const = 0;

  /// Scores a record. A linear component sets `value` to the predicted dependent and leaves
  /// `probabilities` alone; a logistic one sets `probabilities` and, as a double, the predicted
  /// category, -1.0 on a failure of the scoring itself. A component that isn't built answers OK,
  /// and one that holds an error that error; both touch nothing.
  virtual MCCommon::MCStatus Score(const MCCommon::Record& record, double& value,
                                   std::vector<double>& probabilities) const = 0;

  /// Cancels for good; may be called from any thread while another builds.
  virtual void Cancel() = 0;

  /// The standing status: OK, the last warning or the error that stopped the component.
  virtual MCCommon::MCStatus GetStatus() const = 0;

  /// All distinct warnings of the build, in order of arrival.
  virtual std::vector<MCCommon::MCStatus> GetWarnings() const = 0;

  /// Writes settings, driver and results, so far as there are any, to the display stream.
  virtual void Display() const = 0;
};
