// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmoutputstats.h"

#include "regression/design/detail/parameterresults.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/linear/mcglmalgorithm.h"

#include <new>

using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;

class MCGLMOutputStats::MCGLMOutStatsImpl {
public:
  MCGLMOutStatsImpl(const MCRegSettings& settings, MCGLMAlgorithm& algorithm);

  bool ExpandRow(const MCCommon::Record& record, std::vector<double>& row) const;
  void Display() const;

  MCGLMAlgorithm* fAlgorithm;
  std::vector<double> fMeanValues;
  MCFactorCounts fFactorCounts;
  std::vector<MCRegrParameter> fParameters;
  std::vector<double> fParamEstimates;
  double fTotalFreqWeight;
  double fTotalRegrWeight;
  double fNDegFreedom;
  double fMultipleRSquare;
  double fRMSE;
  std::unique_ptr<MCSymMatrix> fCovarianceMatrix;
  std::vector<MCRegrParameterStats> fParamStats;
  MCBitSet fRedundancyIndicators;

private:
  void FillCovarianceMatrix(const MCSymMatrix* swept);
};

MCGLMOutputStats::MCGLMOutStatsImpl::MCGLMOutStatsImpl(const MCRegSettings& settings,
                                                       MCGLMAlgorithm& algorithm)
    : fAlgorithm(&algorithm),
      fMeanValues(algorithm.GetMeanValues()),
      fFactorCounts(algorithm.GetFactorCounts()),
      fParameters(algorithm.GetModel().GetParameters()),
      fParamEstimates(algorithm.GetModel().GetParamEstimates()),
      fTotalFreqWeight(algorithm.GetTotalFreqWeight()),
      fTotalRegrWeight(algorithm.GetTotalRegrWeight()),
      fNDegFreedom(
          MCCommon::detail::DegreesOfFreedom(settings, fTotalRegrWeight, fParameters.size())),
      fMultipleRSquare(algorithm.GetModel().GetMultipleRSquare()),
      fRMSE(algorithm.GetModel().GetRootMeanSquareError()),
      fCovarianceMatrix(std::make_unique<MCSymMatrix>(algorithm.GetModel().GetNParameters())),
      fParamStats(fParameters.size()) {
  // The last bit is that of the dependent.
  const MCBitSet& swept = algorithm.GetModel().GetRedundancyInfo();
  fRedundancyIndicators.Resize(swept.Size() - 1, false);
  MCCommon::detail::FillParamStats(fParamEstimates, fParameters, swept, fParamStats,
                                   fRedundancyIndicators);
  FillCovarianceMatrix(algorithm.GetModel().GetZPrimeZ());
}

void MCGLMOutputStats::MCGLMOutStatsImpl::FillCovarianceMatrix(const MCSymMatrix* swept) {
  if (swept != nullptr) swept->ExtractFirstNRows(*fCovarianceMatrix);
  if (!fCovarianceMatrix->IsValidMatrix()) throw std::bad_alloc();
  fCovarianceMatrix->ChangeSign();
}

bool MCGLMOutputStats::MCGLMOutStatsImpl::ExpandRow(const MCCommon::Record& record,
                                                    std::vector<double>& row) const {
  MCCommon::MCStatus reason;
  if (!fAlgorithm->GetRecordValidator().IsValid4Scoring(record, reason)) return false;
  if (!fAlgorithm->ReachesPredictors(record)) return false;
  row.assign(fParameters.size(), 0.0);
  return fAlgorithm->GetModel().ExpandRow(row, record.GetAll());
}

void MCGLMOutputStats::MCGLMOutStatsImpl::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCGLMOutStatsImpl display start");
  DisplayDV("fMeanValues", fMeanValues, false);
  DisplayText(1, "fFactorCounts:");
  fFactorCounts.Display();
  DisplayDV("fParamEstimates", fParamEstimates, false);
  MCCommon::detail::DisplayParameters(fParameters, fParamStats);
  DisplayD("fTotalFreqWeight", fTotalFreqWeight);
  DisplayD("fTotalRegrWeight", fTotalRegrWeight);
  DisplayD("fNDegFreedom", fNDegFreedom);
  DisplayD("RMSE", fRMSE);
  DisplayD("Multiple R Square", fMultipleRSquare);
  DisplayText(2, "Covariance matrix:");
  fCovarianceMatrix->Display();
  DisplayText(1, "MCGLMOutStatsImpl display end");
}

MCGLMOutputStats::MCGLMOutputStats(const MCRegSettings& settings, MCGLMAlgorithm& algorithm)
    : fpImpl(std::make_unique<MCGLMOutStatsImpl>(settings, algorithm)) {}

MCGLMOutputStats::~MCGLMOutputStats() = default;

int MCGLMOutputStats::GetModelType() const {
  return MCConst::MC_MODEL_LINEAR;
}

const MCFactorCounts* MCGLMOutputStats::GetFactorCounts() const {
  return &fpImpl->fFactorCounts;
}

const std::vector<double>* MCGLMOutputStats::GetMeanValues() const {
  return &fpImpl->fMeanValues;
}

const std::vector<double>* MCGLMOutputStats::GetParamEstimates() const {
  return &fpImpl->fParamEstimates;
}

const std::vector<MCRegrParameter>* MCGLMOutputStats::GetParameters() const {
  return &fpImpl->fParameters;
}

double MCGLMOutputStats::GetTotalFreqWeight() const {
  return fpImpl->fTotalFreqWeight;
}

double MCGLMOutputStats::GetTotalRegrWeight() const {
  return fpImpl->fTotalRegrWeight;
}

double MCGLMOutputStats::GetNDegFreedom() const {
  return fpImpl->fNDegFreedom;
}

double MCGLMOutputStats::GetModelFitStat(MCConst::MCModelFitStat stat) const {
  if (stat == MCConst::MC_FIT_RMSE) return fpImpl->fRMSE;
  if (stat == MCConst::MC_FIT_MULTIPLE_R2) return fpImpl->fMultipleRSquare;
  return MCMV::gMissingValue;
}

const MCSymMatrix* MCGLMOutputStats::GetCovarianceMatrix() const {
  return fpImpl->fCovarianceMatrix.get();
}

const std::vector<MCRegrParameterStats>& MCGLMOutputStats::GetParamStats() const {
  return fpImpl->fParamStats;
}

const MCBitSet& MCGLMOutputStats::GetRedundancyIndicators() const {
  return fpImpl->fRedundancyIndicators;
}

const MCRegRecordValidator& MCGLMOutputStats::GetRecordValidator() const {
  return fpImpl->fAlgorithm->GetRecordValidator();
}

bool MCGLMOutputStats::ExpandRow(const MCCommon::Record& record, std::vector<double>& row) const {
  return fpImpl->ExpandRow(record, row);
}

void MCGLMOutputStats::Cancel() {
  fpImpl->fAlgorithm->Cancel();
}

void MCGLMOutputStats::Display() const {
  fpImpl->Display();
}
