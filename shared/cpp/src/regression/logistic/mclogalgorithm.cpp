// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogalgorithm.h"

#include "regression/design/detail/mcrowreader.h"
#include "regression/design/detail/preparetables.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"
#include "regression/logistic/mcaccumstatslogistic.h"
#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mcpatterntabulator.h"
#include "regression/logistic/mcrecorditerhandler.h"
#include "regression/logistic/mcregoptimizer.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;
using MCCommon::Record;
using MCCommon::detail::MCRowReader;

namespace {

bool AreFinite(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(),
                     [](double value) { return std::isfinite(value); });
}

}  // namespace

MCLogAlgorithm::MCLogAlgorithm(const MCLogRegSettings& settings)
    : fSettings(&settings),
      fPatternExtractor(settings.GetDependent(), settings.GetFactors(), settings.GetCovariates(),
                        settings.GetFrequencyWeightVar(), settings.GetRegrWeightVar()),
      fFactorTables(settings.GetFactors(), settings.GetFactorSizes(),
                    settings.GetFrequencyWeightVar(), settings.GetDependent(),
                    settings.GetDependentNCategs(), 0, -1, 0.0, MCConst::MC_OFFSET_NONE),
      fRecordValidator(settings.GetVariableTypes(), settings.GetFactors(),
                       settings.GetFactorSizes(), settings.GetDependentNCategs()),
      fCancelInfo(settings.GetCancelPointer()),
      fModel(settings, fCancelInfo),
      fScoringSize(MCCommon::detail::ScoringSize(settings)) {}

// Handlers and estimator go before the model and the tables that they look at.
MCLogAlgorithm::~MCLogAlgorithm() {
  fpAccumStats.reset();
  fpOptimizer.reset();
  fpPatternTabulator.reset();
  fpRecordHandler.reset();
}

void MCLogAlgorithm::FailIfCancelled(bool wasCancelled) {
  if (fStatus.IsError()) return;
  if (wasCancelled || fCancelInfo.WillCancel()) fStatus.Fail(MCCommon::MCS_CANCELLED);
}

MCStatus MCLogAlgorithm::CreateParameters(MultiPassRecordIter& source,
                                          std::vector<MCRegrParameter>& parameters) {
  if (MayGoOn()) fStatus.Take(FillFactorTable(source));
  if (MayGoOn()) MakeParameters(parameters);
  return fStatus.Get();
}

MCStatus MCLogAlgorithm::FillFactorTable(MultiPassRecordIter& source) {
  if (fStatus.IsError()) return fStatus.Get();
  if (!source.HasMore()) fStatus.Fail(MCCommon::MCS_NO_DATA);
  if (fbFactorTableFilled) fStatus.Fail(MCCommon::MCS_ALREADY_PROCESSED);
  if (fStatus.IsError()) return fStatus.Get();

  // Rows are stored without their factors, which the pattern tells.
  fPatternExtractor.SetRecordIndices(fSettings->GetDependent(), {}, fSettings->GetCovariates(),
                                     fSettings->GetFrequencyWeightVar(),
                                     fSettings->GetRegrWeightVar());
  MCCommon::detail::PrepareTables(*fSettings, fSettings->GetCovariates(), fFactorTables);
  bool wasCancelled = false;
  if (fSettings->GetUsePatternTabulator()) {
    fpPatternTabulator =
        std::make_unique<MCPatternTabulator>(*fSettings, fPatternExtractor, fCancelInfo, true);
    fStatus.Take(fpPatternTabulator->FillFactorTable(source, fFactorTables));
  } else {
    wasCancelled = ReadFactors(source);
  }
  if (!fStatus.IsError()) {
    fMeanValues = fFactorTables.GetCovariateMeans();
    fbFactorTableFilled = true;
  }
  FailIfCancelled(wasCancelled);
  return fStatus.Get();
}

// Answers whether a cancel ended the pass.
bool MCLogAlgorithm::ReadFactors(MultiPassRecordIter& source) {
  MCRowReader rows(*fSettings, fRecordValidator, fCancelInfo, fStatus);
  bool hasValidRow = false;
  rows.Read(source, MCCommon::MCS_RECORD_NULL, [this, &hasValidRow](const Record& record) {
    // The tables may drop a row that is valid; it makes the data usable all the same.
    fFactorTables.UpdateAll(record);
    hasValidRow = true;
  });
  source.NewPass();
  if (!fStatus.IsError() && !hasValidRow) fStatus.Fail(MCCommon::MCS_NO_DATA);
  return rows.WasCancelled();
}

void MCLogAlgorithm::MakeParameters(std::vector<MCRegrParameter>& parameters) {
  if (!fbFactorTableFilled) fStatus.Fail(MCCommon::MCS_NOT_PROCESSED);
  if (fbModelBuilt) fStatus.Fail(MCCommon::MCS_ALREADY_BUILT);
  if (fStatus.IsError()) return;

  const MCLogRegSettings& settings = *fSettings;
  fModel.SetOffsets(settings.GetFactors(), settings.GetCovariates(),
                    settings.GetFrequencyWeightVar(), settings.GetRegrWeightVar(),
                    settings.GetDependent());
  if (fpPatternTabulator != nullptr) {
    const MCRecordExtractor& stored = fPatternExtractor;
    fModel.SetPatternOffsets(stored.GetCovariateOffsets(), stored.GetFreqWeightOffset(),
                             stored.GetRegrWeightOffset(), stored.GetDependentOffset());
  } else {
    fModel.SetPatternOffsets(settings.GetCovariates(), settings.GetFrequencyWeightVar(),
                             settings.GetRegrWeightVar(), settings.GetDependent());
  }
  fStatus.Take(fModel.SetDepCatInfo(&fFactorTables));
  if (!MayGoOn()) return;
  fStatus.Take(fModel.CreateParameters());
  parameters = fModel.GetParameters();
  fbParamsCreated = !parameters.empty();
}

MCStatus MCLogAlgorithm::BuildModel(MultiPassRecordIter& source) {
  if (fStatus.IsError() || !fbParamsCreated) return fStatus.Get();
  if (fbModelBuilt) return MCStatus(MCCommon::MCS_ALREADY_BUILT, false);
  if (MayGoOn() && fpPatternTabulator != nullptr) CreatePatterns(source);
  if (MayGoOn()) {
    FillDesignMatrix(source);
    if (!fStatus.IsError()) FitModel(source);
    FreeWorkspace();
  }
  if (!fStatus.IsError()) {
    fbModelBuilt = true;
    fStatus.LetLastWarningWin();
  }
  return fStatus.Get();
}

void MCLogAlgorithm::CreatePatterns(MultiPassRecordIter& source) {
  source.NewPass();
  fStatus.Take(fpPatternTabulator->CreateRowPatterns(source, fFactorTables, fModel));
}

void MCLogAlgorithm::FillDesignMatrix(MultiPassRecordIter& source) {
  if (fpPatternTabulator == nullptr) return ReadDesignMatrix(source);
  // The tabulator keeps an error of this walk and answers it to the first pass of the estimator.
  static_cast<void>(fpPatternTabulator->FillDesignMatrix(fModel));
}

void MCLogAlgorithm::ReadDesignMatrix(MultiPassRecordIter& source) {
  MCRowReader rows(*fSettings, fRecordValidator, fCancelInfo, fStatus);
  rows.Read(source, MCCommon::MCS_NOT_READY, [this](const Record& record) {
    if (fModel.UpdateXPrimeX(record.GetAll())) return;
    fStatus.Fail(fCancelInfo.WillCancel() ? MCCommon::MCS_CANCELLED : MCCommon::MCS_NOT_READY);
  });
  source.NewPass();
  FailIfCancelled(rows.WasCancelled());
}

void MCLogAlgorithm::FitModel(MultiPassRecordIter& source) {
  fStatus.Take(fModel.IdentifyRedundancy());
  fStatus.Get() = fModel.SetInitialEstimates(fEstimates);
  if (MayGoOn()) MakeAccumulator();
  if (MayGoOn()) MakeOptimizer(source);
  // There is no optimizer where a cancel was pending just now and has been withdrawn.
  if (MayGoOn() && compute_estimates && fpOptimizer != nullptr) Estimate();
}

void MCLogAlgorithm::MakeAccumulator() {
  fpAccumStats = std::make_unique<MCAccumStatsLogistic>(*fSettings, fModel.GetNBasicNonRed(),
                                                        fModel.GetDependentNCategs(), fEstimates);
  if (fpAccumStats->IsValid()) return;
  MCStatus& status = fStatus.Get();
  status = MCStatus(MCCommon::MCS_TOO_LARGE, false);
  status.SetDiscreteDatum(0, static_cast<long>(fEstimates.size()));
}

void MCLogAlgorithm::MakeOptimizer(MultiPassRecordIter& source) {
  fpOptimizer = std::make_unique<MCRegOptimizer>(
      *fSettings, fModel, MakeDataHandler(source), fpAccumStats.get(), fEstimates,
      fSettings->GetProgressListener(), fSettings->GetIterationFrequency(), MCConst::MC_EST_FISHER,
      0);
  fModel.SetTotalWeight(fFactorTables.GetSampleSize(), fFactorTables.GetTotalWeight());
}

// The handler that rereads is made no sooner: a source is borrowed for one call alone, and the one
// that the first pass came from need not be there any more.
IMCDataHandler* MCLogAlgorithm::MakeDataHandler(MultiPassRecordIter& source) {
  if (fpPatternTabulator != nullptr) return fpPatternTabulator.get();
  fpRecordHandler = std::make_unique<MCRecordIterHandler>(
      source, fCancelInfo, fRecordValidator, fSettings->GetDependent(),
      fSettings->GetFrequencyWeightVar(), fSettings->GetRegrWeightVar());
  return fpRecordHandler.get();
}

void MCLogAlgorithm::Estimate() {
  fStatus.Take(fpOptimizer->Estimate());
  if (!fStatus.IsError() && WasEstimationCut()) fStatus.Fail(MCCommon::MCS_CANCELLED);
  StateConvergence();
  if (fStatus.IsError()) return;
  fStatus.Take(fModel.UncompressEstimates(fEstimates, *fpOptimizer->GetHessianGI()));
  fpOptimizer->ClearHessianGIMatrix();
}

// Where a cancel is withdrawn before the estimator asks again, it answers OK. But then its matrix
// is no inverse, or its last sums are those of a part of the rows.
bool MCLogAlgorithm::WasEstimationCut() const {
  if (fpOptimizer->GetConverCrit() == MCConst::MC_CONV_NONE) return true;
  return fpRecordHandler != nullptr && fpRecordHandler->WasCancelled();
}

// While the accumulator still has the sums at the estimates.
void MCLogAlgorithm::StateConvergence() {
  MCConvergence& stated = fConvergence;
  fpOptimizer->GetEstStats(stated.fIterations, stated.fInitialLL, stated.fFinalLL, stated.fLLChange,
                           stated.fParamChange);
  stated.fReason = fStatus.IsError() ? MCConst::MC_CONV_NONE : fpOptimizer->GetConverCrit();
  if (stated.fReason == MCConst::MC_CONV_NONE) return;
  if (!AreFinite(fEstimates)) {
    // The criterion of the estimates passes over the change of a NaN.
    if (stated.IsConverged()) stated.fReason = MCConst::MC_CONV_SINGULAR;
    return;
  }
  const double form = fpOptimizer->GetHessianGI()->ComputeVSV(fpAccumStats->GetScores());
  if (form == MCMV::gMissingValue) return;
  stated.fExpectedGain = 0.5 * form;
  int nRows = 0;
  int nInvalid = 0;
  double weight = 0.0;
  fpAccumStats->GetCounts(nRows, nInvalid, weight);
  const bool hasIterated = stated.fFinalLL != MCMV::gMissingValue;
  const double logLik = hasIterated ? stated.fFinalLL : stated.fInitialLL;
  stated.fbScoreIsZero = std::isfinite(logLik) &&
                         stated.fExpectedGain <= std::sqrt(nRows) * DBL_EPSILON * std::fabs(logLik);
}

void MCLogAlgorithm::FreeWorkspace() {
  fpAccumStats.reset();
  fpPatternTabulator.reset();
  fpRecordHandler.reset();
  fModel.ClearXPrimeXMatrix();
}

MCStatus MCLogAlgorithm::Score(const Record& record, std::vector<double>& probabilities,
                               int& category) const {
  if (fCancelInfo.WillCancel()) return MCStatus(MCCommon::MCS_CANCELLED, false);
  if (fStatus.IsError()) return fStatus.Get();
  if (!fbModelBuilt) return MCStatus(MCCommon::MCS_NOT_BUILT, false);
  MCStatus answer = fStatus.Get();
  if (!fRecordValidator.IsValid4Scoring(record, answer)) return answer;
  if (!ReachesPredictors(record)) return MCStatus(MCCommon::MCS_RECORD_SHORT, false);
  probabilities.resize(fModel.GetDependCategories().size());
  return fModel.Score(record.GetAll(), probabilities, category);
}

void MCLogAlgorithm::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCLogAlgorithm display start");
  DisplayText(1, "fPatternExtractor");
  fPatternExtractor.Display();
  DisplayText(1, "fFactorTables");
  fFactorTables.Display();
  DisplayText(1, "Record Validator");
  fRecordValidator.Display();
  if (fpPatternTabulator != nullptr) {
    DisplayText(1, "fpPatternTabulator");
    fpPatternTabulator->Display();
  }
  DisplayDV("fMeanValues", fMeanValues, false);
  DisplayText(1, "fModel");
  fModel.Display();
  if (fpOptimizer != nullptr) {
    DisplayText(1, "fpOptimizer");
    fpOptimizer->Display();
  }
  DisplayB("fbFactorTableFilled", fbFactorTableFilled);
  DisplayB("fbParamsCreated", fbParamsCreated);
  DisplayB("fbModelBuilt", fbModelBuilt);
  DisplayText(1, "MCLogAlgorithm display end");
}
