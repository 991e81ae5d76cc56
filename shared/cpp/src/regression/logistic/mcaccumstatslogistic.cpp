// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcaccumstatslogistic.h"

#include "mcmath/detail/explog.h"
#include "mcmath/mcsparsevector.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/logistic/detail/mcpatterntile.h"

#include <algorithm>
#include <cstdint>
#include <limits>

using MCCommonMath::MCSparseVector;

namespace {

constexpr double kLargestDouble = std::numeric_limits<double>::max();

}  // namespace

MCAccumStatsLogistic::MCAccumStatsLogistic(const MCRegSettings& settings, int nParams, int nCategs,
                                           const std::vector<double>& estimates)
    : fpSettings(settings),
      fNParams(nParams),
      fNCategs(nCategs),
      fpBeta(&estimates),
      fMinObserved(kLargestDouble),
      fMaxObserved(-kLargestDouble),
      fMinComputed(kLargestDouble) {
  if (nParams < 0 || nCategs < 2 || !HasEstimates()) {
    fbValid = false;
    return;
  }
  const std::size_t nScores =
      static_cast<std::size_t>(nCategs - 1) * static_cast<std::size_t>(nParams);
  fScores.resize(nScores);
  fProbabilities.resize(static_cast<std::size_t>(nCategs));
  fbValid = fHessian.SetNRows(nCategs - 1, nParams);
}

MCAccumStatsLogistic::~MCAccumStatsLogistic() = default;

bool MCAccumStatsLogistic::HasEstimates() const {
  const std::int64_t needed = (std::int64_t{fNCategs} - 1) * fNParams;
  return needed <= static_cast<std::int64_t>(fpBeta->size());
}

void MCAccumStatsLogistic::Reset(MCConst::MCEstimationMethod method, bool checkSeparation) {
  fLL = 0.0;
  std::fill(fScores.begin(), fScores.end(), 0.0);
  fHessian.Clear();
  fMethod = method;
  fbCheckSeparation = checkSeparation;
  fNValid = 0;
  fNInvalid = 0;
  fTotalWeight = 0.0;
  fMinObserved = kLargestDouble;
  fMaxObserved = -kLargestDouble;
  fMinComputed = kLargestDouble;
}

bool MCAccumStatsLogistic::CheckConstraints() {
  return true;
}

int MCAccumStatsLogistic::UpdateForRow(const std::vector<int>& indices,
                                       const std::vector<double>& values, int category,
                                       double weight, bool likelihoodOnly) {
  if (!fbValid) return -1;
  const MCSparseVector x(indices, values);
  if (fNParams > 0 && !x.IsValid()) return -1;
  if (category < 0 || category >= fNCategs) return -1;
  // A NaN passes: it shows in the sums.
  if (weight <= 0.0) return -1;
  double logLast = 0.0;
  if (!ComputeProbabilities(x, logLast)) {
    MCCommon::detail::CountUp(fNInvalid);
    return -1;
  }
  MCCommon::detail::CountUp(fNValid);
  fTotalWeight += weight;
  if (fbCheckSeparation) TrackProbabilities(fProbabilities.data(), 1, category);
  AddLogLikelihood(x, category, weight, logLast);
  if (likelihoodOnly || fNParams < 1) return 0;
  AddScores(x, category, weight);
  AddOuterProducts(x, weight);
  return 0;
}

bool MCAccumStatsLogistic::ComputeProbabilities(const MCSparseVector& x, double& logLast) {
  if (fNParams > 0) {
    return x.ComputeProbabilities(*fpBeta, fNCategs, fNParams, fProbabilities, logLast);
  }
  const double share = 1.0 / fNCategs;
  std::fill(fProbabilities.begin(), fProbabilities.end(), share);
  LogLanes<1>(logLast, share);
  return true;
}

void MCAccumStatsLogistic::TrackProbabilities(const double* probabilities, std::size_t stride,
                                              int category) {
  const std::size_t nCategs = static_cast<std::size_t>(fNCategs);
  double smallest = 1.0;
  for (std::size_t c = 0; c < nCategs; ++c) {
    if (probabilities[c * stride] < smallest) smallest = probabilities[c * stride];
  }
  const double observed = probabilities[static_cast<std::size_t>(category) * stride];
  if (observed < fMinObserved) fMinObserved = observed;
  if (observed > fMaxObserved) fMaxObserved = observed;
  if (smallest < fMinComputed) fMinComputed = smallest;
}

void MCAccumStatsLogistic::AddLogLikelihood(const MCSparseVector& x, int category, double weight,
                                            double logLast) {
  double linear = 0.0;
  if (category < fNCategs - 1 && fNParams > 0) {
    linear = weight * x.InnerProductWithPart(*fpBeta, category * fNParams);
  }
  fLL += linear + weight * logLast;
}

void MCAccumStatsLogistic::AddScores(const MCSparseVector& x, int category, double weight) {
  for (int c = 0; c < fNCategs - 1; ++c) {
    const double p = fProbabilities[static_cast<std::size_t>(c)];
    x.IncrementPart(fScores, c * fNParams, weight * (c == category ? 1.0 - p : -p));
  }
}

void MCAccumStatsLogistic::AddOuterProducts(const MCSparseVector& x, double weight) {
  for (int i = 0; i < fNCategs - 1; ++i) {
    const double p = fProbabilities[static_cast<std::size_t>(i)];
    for (int j = 0; j < i; ++j) {
      const double q = fProbabilities[static_cast<std::size_t>(j)];
      x.QuadraticOuterProductIncr(fHessian.GetElemSSRef(i, j), -weight * (p * q));
    }
    x.QuadraticOuterProductIncr(fHessian.GetElemSSRef(i, i), -weight * ((p - 1.0) * p));
  }
}

void MCAccumStatsLogistic::GetHessian(MCCommonMath::MCSymMatrix& hessian) const {
  fHessian.CopyToSymMatrix(hessian);
}

void MCAccumStatsLogistic::GetCounts(int& valid, int& invalid, double& weight) const {
  valid = fNValid;
  invalid = fNInvalid;
  weight = fTotalWeight;
}

void MCAccumStatsLogistic::GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                                                  double& minComputed) const {
  minObserved = fMinObserved;
  maxObserved = fMaxObserved;
  minComputed = fMinComputed;
}

double MCAccumStatsLogistic::GetStepAdjustmentFactor() const {
  return 1.0;
}

void MCAccumStatsLogistic::Display(bool brief) const {
  using namespace MCComponentDisplay;
  if (brief) {
    DisplayD("Accumulated log-likelihood", fLL);
    return;
  }
  DisplayText(1, "MCAccumStatsLogistic display start");
  DisplayI("Number of estimated parameters in the model", fNParams);
  DisplayI("Number of response categories of the dependent variable", fNCategs);
  DisplayD("Accumulated log-likelihood", fLL);
  DisplaySums();
  DisplayText(1, "MCAccumStatsLogistic display end");
}

void MCAccumStatsLogistic::DisplaySums() const {
  using namespace MCComponentDisplay;
  DisplayDV("Accumulated vector of scores", fScores, false);
  DisplayText(2, "Accumulated Hessian:");
  fHessian.Display();
  DisplayI("Number of valid rows processed", fNValid);
  DisplayI("Number of invalid calls to UpdateForRow()", fNInvalid);
  DisplayD("Accumulated weight", fTotalWeight);
  DisplayB("Separation check", fbCheckSeparation);
  DisplayD("Minimum probability of the observed response", fMinObserved);
  DisplayD("Maximum probability of the observed response", fMaxObserved);
  DisplayD("Minimum computed probability", fMinComputed);
  DisplayB("Validity indicator", fbValid);
}
