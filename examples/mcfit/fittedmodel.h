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
#include "reportstyle.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mcfit {

/// What a fit is to do, beside the layout of its records.
struct ModelDesign {
  std::vector<MCModelEffect> effects;  // their list of variables must outlive the model
  bool hasIntercept = true;
  double tolerance = 1e-12;
};

/// How PMML is to tell a regression.
struct PmmlTerms {
  const char* description = "";
  const char* modelType = "";
  const char* functionName = "";

  /// Codes of the dependent's categories, the reference last; none for a dependent of numbers.
  std::vector<int> categories;

  /// What the library's matrix must be multiplied by to be the covariance of the estimates; none
  /// if that isn't known.
  std::optional<double> covarianceScale;
};

/// A regression fitted by the library: what all kinds share. A kind fills settings of its own,
/// calls Build() in its constructor, and says how results are shown and rows are scored.
class FittedModel {
public:
  virtual ~FittedModel() = default;
  FittedModel(const FittedModel&) = delete;
  FittedModel& operator=(const FittedModel&) = delete;

  const RecordLayout& Layout() const { return fData.Layout(); }
  const Dataset& Data() const { return fData; }
  const ModelDesign& Design() const { return fDesign; }

  /// What the library found; the model's, and lives as long.
  const IMCRegOutputStats& Results() const { return *fpResults; }

  /// The condition index of the design, see ConditionIndex().
  std::optional<double> Condition() const { return fCondition; }

  /// What the user must know about the fit beyond its report, in words.
  virtual std::vector<std::string> Warnings() const;

  /// The report on the fit.
  virtual std::string Report(const ReportStyle& style) const = 0;

  virtual PmmlTerms InPmml() const = 0;

  /// Sets `cells` to the scores of a record that may be scored, one per column of scores. False
  /// for a combination of factor labels that the fit hasn't seen. Throws ModelError if the library
  /// answers an error.
  virtual bool Score(const MCCommon::Record& record, std::vector<std::string>& cells) const = 0;

protected:
  /// `data` is borrowed for as long as the model lives.
  FittedModel(Dataset& data, const ModelDesign& design) : fData(data), fDesign(design) {}

  /// Tells the settings the roles of the positions and the design.
  void Describe(MCRegSettings& settings) const;

  /// Has the library fit the model. `interrupt` is what it asks whether to stop, then and at each
  /// score. `passes`: how many times it reads the rows, 0 if that can't be known. Throws ModelError
  /// if it answers an error, and Interrupted if the user stopped it.
  void Build(MCRegSettings& settings, std::unique_ptr<InterruptQuery> interrupt, int passes,
             ProgressLine& progress);

  /// Hands each row that is in use to `visit`. `work` names it on the progress line.
  void VisitUsedRows(const char* work, ProgressLine& progress,
                     const std::function<void(const MCCommon::Record&)>& visit) const;

  /// Throws ModelError for an error, and Interrupted for a cancel.
  void Check(const MCCommon::MCStatus& status) const;

  /// What the user may do about an error, to be put behind its text.
  virtual std::string Advice(const MCCommon::MCStatus& status) const;

  /// The library's warnings, in words.
  std::vector<std::string> LibraryWarnings() const;

  /// What to know of a design that is nearly collinear; empty for any other.
  std::string ConditionWarning() const;

  const IMCRegComponent& Component() const { return *fpComponent; }

private:
  Dataset& fData;
  ModelDesign fDesign;
  std::unique_ptr<InterruptQuery> fpInterrupt;
  std::unique_ptr<IMCRegComponent> fpComponent;  // asks the query
  IMCRegOutputStats* fpResults = nullptr;
  std::optional<double> fCondition;
};

}  // namespace mcfit
