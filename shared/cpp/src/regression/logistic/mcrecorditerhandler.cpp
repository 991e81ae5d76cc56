// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcrecorditerhandler.h"

#include "regression/design/detail/readrecords.h"
#include "regression/design/detail/recordsize.h"
#include "regression/frame/detail/mcnumericcast.h"

#include <algorithm>

using MCCommon::MCStatus;
using MCCommon::Record;

namespace {

using MCCommon::detail::SizeToRead;

// The validator goes by the roles of positions, which settings forget where memory runs out: then
// it would let pass a record that the model can't read.
std::int64_t SizeToModel(const IMCRegModel& model) {
  std::int64_t size = 0;
  for (const MCRegrParameter& parameter : model.GetBasicParams()) {
    size =
        std::max({size, SizeToRead(parameter.GetFactors()), SizeToRead(parameter.GetCovariates())});
  }
  return size;
}

}  // namespace

MCRecordIterHandler::MCRecordIterHandler(MCCommon::MultiPassRecordIter& source,
                                         MCCancelInfo& cancelInfo,
                                         const MCRegRecordValidator& validator, int dependentVar,
                                         int freqWeightVar, int regrWeightVar)
    : fSource(&source),
      fCancelInfo(&cancelInfo),
      fDependentVar(dependentVar),
      fFreqWeightVar(freqWeightVar),
      fRegrWeightVar(regrWeightVar),
      fValidator(&validator) {}

MCRecordIterHandler::~MCRecordIterHandler() = default;

void MCRecordIterHandler::SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) {
  fAccumStats = accumStats;
  fModel = model;
  if (model == nullptr) return;
  fRecordSize = std::max(SizeToRead(fDependentVar), SizeToModel(*model));
  for (const int weightVar : {fFreqWeightVar, fRegrWeightVar}) {
    if (weightVar >= 0) fRecordSize = std::max(fRecordSize, SizeToRead(weightVar));
  }
}

void MCRecordIterHandler::ResetAccumStats(MCConst::MCEstimationMethod method,
                                          bool checkSeparation) {
  if (fAccumStats != nullptr) fAccumStats->Reset(method, checkSeparation);
}

void MCRecordIterHandler::CleanStatsModel() {
  SetStatsModel(nullptr, nullptr);
}

MCStatus MCRecordIterHandler::ComputeStatsForOptimizer(bool likelihoodOnly) {
  if (fAccumStats == nullptr || fModel == nullptr) {
    fStatus = MCStatus(MCCommon::MCS_BAD_STATE, false);
  } else if (fSource->NewPass() != 0) {
    fStatus = MCStatus(MCCommon::MCS_NO_DATA, false);
  } else {
    ReadRows(likelihoodOnly);
  }
  return fStatus;
}

void MCRecordIterHandler::ReadRows(bool likelihoodOnly) {
  std::vector<int> columns;
  std::vector<double> values;
  const auto useRecord = [&](const Record& record) {
    if (!IsValidRow(record)) return;
    const double* row = record.GetAll();
    int nColumns = 0;
    fModel->ExpandAndCompressRow(row, nColumns, columns, values);
    const int category = MCCommon::detail::TruncateToInt(row[fDependentVar]);
    const int answer =
        fAccumStats->UpdateForRow(columns, values, category, GetWeight(row), likelihoodOnly);
    if (answer == -1) fStatus = MCStatus(MCCommon::MCS_BAD_STATE, false);
  };
  const bool wasCancelled = MCCommon::detail::ReadRecords(
      *fSource, *fCancelInfo, MCCommon::MCS_NULL_RECORD, fStatus, useRecord);
  fbCancelled = fbCancelled || wasCancelled;
}

bool MCRecordIterHandler::IsValidRow(const Record& record) {
  if (!fValidator->IsValidRecord(record, fStatus)) return false;
  if (record.Size() >= fRecordSize) return true;
  fStatus = MCStatus(MCCommon::MCS_RECORD_SHORT, false);
  return false;
}

double MCRecordIterHandler::GetWeight(const double* row) const {
  double weight = fFreqWeightVar >= 0 ? row[fFreqWeightVar] : 1.0;
  if (fRegrWeightVar >= 0) weight *= row[fRegrWeightVar];
  return weight;
}

const std::vector<MCStatus>& MCRecordIterHandler::GetWarnings() const {
  return fWarnings;
}

void MCRecordIterHandler::Display() const {}
