// SPDX-License-Identifier: Apache-2.0
#include "support/recordingdoubles.h"

#include "support/matrices.h"

#include <algorithm>

using MCCommon::MCStatus;

namespace mctest {

namespace {

template <class T>
const T& EntryOrLast(const std::vector<T>& list, std::size_t i) {
  return list[std::min(i, list.size() - 1)];
}

}  // namespace

void CallLog::Note(const std::string& word) {
  fWords.push_back(word);
  if (fOnCall) fOnCall();
}

std::string CallLog::Text() const {
  std::string text;
  for (const std::string& word : fWords) text += text.empty() ? word : ' ' + word;
  return text;
}

std::size_t CallLog::Count(const std::string& word) const {
  return static_cast<std::size_t>(std::count(fWords.begin(), fWords.end(), word));
}

MCStatus RecordingAccumStats::RunPass(bool likelihoodOnly) {
  const auto status = fScript.fStatuses.find(fNPasses++);
  const std::size_t pass = likelihoodOnly ? fNTrials++ : fNFull++;
  fLogLik = EntryOrLast(likelihoodOnly ? fScript.fTrialLL : fScript.fFullLL, pass);
  return status == fScript.fStatuses.end() ? MCStatus() : status->second;
}

void RecordingAccumStats::Reset(MCConst::MCEstimationMethod method, bool checkSeparation) {
  static const char* const kMethods[] = {"ResetF", "ResetN", "ResetH"};
  fLog.Note(std::string(kMethods[method]) + (checkSeparation ? "+" : ""));
}

int RecordingAccumStats::UpdateForRow(const std::vector<int>& /*indices*/,
                                      const std::vector<double>& /*values*/, int /*category*/,
                                      double /*weight*/, bool /*likelihoodOnly*/) {
  fLog.Note("Row");
  return 0;
}

double RecordingAccumStats::GetLL() const {
  fLog.Note("LL");
  return fLogLik;
}

const std::vector<double>& RecordingAccumStats::GetScores() const {
  fLog.Note("Scores");
  return EntryOrLast(fScript.fScores, fNFull - 1);
}

void RecordingAccumStats::GetHessian(MCCommonMath::MCSymMatrix& hessian) const {
  fLog.Note("Hessian");
  hessian = Packed(EntryOrLast(fScript.fHessians, fNFull - 1));
}

void RecordingAccumStats::GetCounts(int& valid, int& invalid, double& weight) const {
  fLog.Note("Counts");
  valid = 3;
  invalid = 2;
  weight = fScript.fWeight;
}

void RecordingAccumStats::GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                                                 double& minComputed) const {
  fLog.Note("Extremes");
  const std::size_t last = fNFull == 0 ? 0 : fNFull - 1;
  const PassScript::Extremes& extremes = EntryOrLast(fScript.fExtremes, last);
  minObserved = extremes.fMinObserved;
  maxObserved = extremes.fMaxObserved;
  minComputed = extremes.fMinComputed;
}

double RecordingAccumStats::GetStepAdjustmentFactor() const {
  fLog.Note("Factor");
  return fScript.fStepAdjustmentFactor;
}

void RecordingAccumStats::Display(bool brief) const {
  fLog.Note(brief ? "DisplayBrief" : "Display");
}

void RecordingDataHandler::SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) {
  fpGivenStats = accumStats;
  fpGivenModel = model;
  fLog.Note("Set");
}

void RecordingDataHandler::ResetAccumStats(MCConst::MCEstimationMethod method,
                                           bool checkSeparation) {
  fAccumStats.Reset(method, checkSeparation);
}

void RecordingDataHandler::CleanStatsModel() {
  fLog.Note("Clean");
}

MCStatus RecordingDataHandler::ComputeStatsForOptimizer(bool likelihoodOnly) {
  fLog.Note(likelihoodOnly ? "Trial" : "Full");
  if (fOnPass) fOnPass(likelihoodOnly);
  return fAccumStats.RunPass(likelihoodOnly);
}

bool RecordingCancel::IsCancel() {
  fLog.Note("IsCancel");
  return false;
}

bool RecordingCancel::WillCancel() {
  ++fNPolls;
  fLog.Note("?");
  if (fbYes) return true;
  return fYesAt > 0 && (fbOnce ? fNPolls == fYesAt : fNPolls >= fYesAt);
}

bool RecordingListener::ReportProgress(ProgressReport* report) {
  auto& vectors = dynamic_cast<ProgressReportVect&>(*report);
  fEntries.push_back({report->DiscreteMeasure("iterNum"), report->DiscreteMeasure("stepHalving"),
                      report->ScaleMeasure("loglik"), report->ScaleMeasure("time"),
                      *vectors.VectorMeasure("paramEstim")});
  fLog.Note("Report");
  return false;
}

std::vector<int> RecordingListener::Iterations() const {
  std::vector<int> iterations;
  for (const Entry& entry : fEntries) iterations.push_back(entry.fIteration);
  return iterations;
}

}  // namespace mctest
