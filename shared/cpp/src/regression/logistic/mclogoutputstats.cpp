// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogoutputstats.h"

#include "regression/design/detail/parameterresults.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/logistic/mclogalgorithm.h"
#include "regression/logistic/mcregoptimizer.h"

using MCCommon::Record;
using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;

class MCLogOutputStats::MCLogOutStatsImpl {
public:
  MCLogOutStatsImpl(const MCRegSettings& settings, MCLogAlgorithm& algorithm);

  bool CanScore(const Record& record) const;
  void Display() const;

  MCLogAlgorithm* fAlgorithm;
  const std::vector<double>* fMeanValues;
  const MCFactorCounts* fFactorCounts;
  const std::vector<MCRegrParameter>* fParameters;
  const std::vector<double>* fParamEstimates;
  double fTotalFreqWeight;
  double fTotalRegrWeight;
  double fNDegFreedom;
  double fCoxSnellRSquare = MCMV::gMissingValue;
  double fNagelkerkeRSquare = MCMV::gMissingValue;
  double fMcFaddenRSquare = MCMV::gMissingValue;
  const MCSymMatrix* fCovarianceMatrix;
  std::vector<MCRegrParameterStats> fParamStats;
  MCBitSet fRedundancyIndicators;
};

MCLogOutputStats::MCLogOutStatsImpl::MCLogOutStatsImpl(const MCRegSettings& settings,
                                                       MCLogAlgorithm& algorithm)
    : fAlgorithm(&algorithm),
      fMeanValues(&algorithm.GetMeanValues()),
      fFactorCounts(&algorithm.GetFactorCounts()),
      fParameters(&algorithm.GetModel().GetParameters()),
      fParamEstimates(&algorithm.GetModel().GetParamEstimates()),
      fTotalFreqWeight(algorithm.GetTotalWeight()),
      fTotalRegrWeight(algorithm.GetTotalRegrWeight()),
      fNDegFreedom(
          MCCommon::detail::DegreesOfFreedom(settings, fTotalRegrWeight, fParameters->size())),
      fCovarianceMatrix(algorithm.GetModel().GetHessianGI()),
      fParamStats(fParameters->size()) {
  if (const MCRegOptimizer* optimizer = algorithm.GetOptimizer()) {
    optimizer->ComputeRSquares(fCoxSnellRSquare, fNagelkerkeRSquare, fMcFaddenRSquare);
  }
  const MCBitSet& kept = algorithm.GetModel().GetRedundancyInfo();
  const int nParameters = algorithm.GetModel().GetNParameters();
  fRedundancyIndicators.Resize(nParameters, false);
  // A build that was cancelled between its steps knows nothing of redundancy.
  if (kept.Size() != nParameters) return;
  MCCommon::detail::FillParamStats(*fParamEstimates, *fParameters, kept, fParamStats,
                                   fRedundancyIndicators);
}

bool MCLogOutputStats::MCLogOutStatsImpl::CanScore(const Record& record) const {
  MCCommon::MCStatus reason;
  return fAlgorithm->GetRecordValidator().IsValid4Scoring(record, reason) &&
         fAlgorithm->ReachesPredictors(record);
}

void MCLogOutputStats::MCLogOutStatsImpl::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCLogOutStatsImpl display start");
  DisplayDV("fMeanValues", *fMeanValues, false);
  DisplayText(1, "fFactorCounts:");
  fFactorCounts->Display();
  DisplayDV("fParamEstimates", *fParamEstimates, false);
  MCCommon::detail::DisplayParameters(*fParameters, fParamStats);
  DisplayD("fTotalFreqWeight", fTotalFreqWeight);
  DisplayD("fTotalRegrWeight", fTotalRegrWeight);
  DisplayD("fNDegFreedom", fNDegFreedom);
  DisplayD("Cox and Snell R Square", fCoxSnellRSquare);
  DisplayD("Nagelkerke R Square", fNagelkerkeRSquare);
  DisplayD("McFadden R Square", fMcFaddenRSquare);
  if (fCovarianceMatrix != nullptr) {
    DisplayText(2, "Covariance matrix:");
    fCovarianceMatrix->Display();
  }
  DisplayText(1, "MCLogOutStatsImpl display end");
}

MCLogOutputStats::MCLogOutputStats(const MCRegSettings& settings, MCLogAlgorithm& algorithm)
    : fpImpl(std::make_unique<MCLogOutStatsImpl>(settings, algorithm)) {}

MCLogOutputStats::~MCLogOutputStats() = default;

int MCLogOutputStats::GetModelType() const {
  return MCConst::MC_MODEL_LOGISTIC;
}

const MCFactorCounts* MCLogOutputStats::GetFactorCounts() const {
  return fpImpl->fFactorCounts;
}

const std::vector<double>* MCLogOutputStats::GetMeanValues() const {
  return fpImpl->fMeanValues;
}

const std::vector<double>* MCLogOutputStats::GetParamEstimates() const {
  return fpImpl->fParamEstimates;
}

const std::vector<MCRegrParameter>* MCLogOutputStats::GetParameters() const {
  return fpImpl->fParameters;
}

double MCLogOutputStats::GetTotalFreqWeight() const {
  return fpImpl->fTotalFreqWeight;
}

double MCLogOutputStats::GetTotalRegrWeight() const {
  return fpImpl->fTotalRegrWeight;
}

double MCLogOutputStats::GetNDegFreedom() const {
  return fpImpl->fNDegFreedom;
}

double MCLogOutputStats::GetModelFitStat(MCConst::MCModelFitStat stat) const {
  if (stat == MCConst::MC_FIT_COX_SNELL) return fpImpl->fCoxSnellRSquare;
  if (stat == MCConst::MC_FIT_NAGELKERKE) return fpImpl->fNagelkerkeRSquare;
  if (stat == MCConst::MC_FIT_MCFADDEN) return fpImpl->fMcFaddenRSquare;
  return MCMV::gMissingValue;
}

const MCSymMatrix* MCLogOutputStats::GetCovarianceMatrix() const {
  return fpImpl->fCovarianceMatrix;
}

const std::vector<MCRegrParameterStats>& MCLogOutputStats::GetParamStats() const {
  return fpImpl->fParamStats;
}

const MCBitSet& MCLogOutputStats::GetRedundancyIndicators() const {
  return fpImpl->fRedundancyIndicators;
}

const MCRegRecordValidator& MCLogOutputStats::GetRecordValidator() const {
  return fpImpl->fAlgorithm->GetRecordValidator();
}

bool MCLogOutputStats::ExpandRow(const Record& record, std::vector<double>& row) const {
  if (!fpImpl->CanScore(record)) return false;
  row.assign(fpImpl->fParamStats.size(), 0.0);
  return fpImpl->fAlgorithm->GetModel().ExpandRow(row, record.GetAll());
}

void MCLogOutputStats::Cancel() {
  fpImpl->fAlgorithm->Cancel();
}

void MCLogOutputStats::Display() const {
  fpImpl->Display();
}

const std::vector<int>& MCLogOutputStats::GetDependCategories() const {
  return fpImpl->fAlgorithm->GetModel().GetDependCategories();
}

bool MCLogOutputStats::ExpandRow(const Record& record, std::vector<int>& indices,
                                 std::vector<double>& values) {
  return fpImpl->CanScore(record) &&
         fpImpl->fAlgorithm->GetModel().ExpandRow(record.GetAll(), indices, values);
}

const MCConvergence& MCLogOutputStats::GetConvergence() const {
  return fpImpl->fAlgorithm->GetConvergence();
}
