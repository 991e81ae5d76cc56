// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmalgorithm.h"

#include "regression/design/detail/readrecords.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <utility>

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;
using MCCommon::Record;

namespace {

std::int64_t SizeToReach(const std::vector<int>& positions) {
  const auto last = std::max_element(positions.begin(), positions.end());
  return last == positions.end() ? 0 : std::int64_t{*last} + 1;
}

}  // namespace

MCGLMAlgorithm::MCGLMAlgorithm(const MCRegSettings& settings)
    : fSettings(&settings),
      fCancel(settings.GetCancelPointer()),
      fRecordValidator(settings.GetVariableTypes(), settings.GetFactors(),
                       settings.GetFactorSizes(), 0),
      fFactorTables(settings.GetFactors(), settings.GetFactorSizes(),
                    settings.GetFrequencyWeightVar(), -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE),
      fModel(settings, fCancel) {
  if (settings.GetRegrWeightVar() >= 0) fFactorTables.SetRegrWeightVar(settings.GetRegrWeightVar());
  fScoringSize =
      std::max(SizeToReach(settings.GetFactors()), SizeToReach(settings.GetCovariates()));
  fFitSize =
      std::max(fScoringSize, SizeToReach({settings.GetDependent(), settings.GetRegrWeightVar(),
                                          settings.GetFrequencyWeightVar()}));
}

// Reads rows as long as no error stands, there are more and no cancel is pending, and gives the
// valid ones to useRow. Counts the rows read in nRead.
template <class UseRow>
void MCGLMAlgorithm::ReadRows(MultiPassRecordIter& source, long nullRowCode, int& nRead,
                              UseRow useRow) {
  MCCommon::detail::ReadRecords(source, fCancel, nullRowCode, fStatus.Get(),
                                [this, &nRead, &useRow](const Record& record) {
                                  MCCommon::detail::CountUp(nRead);
                                  if (IsValidRow(record)) useRow(record);
                                });
}

// The validator knows the roles of positions. Where memory ran out while those were recorded they
// are forgotten, though the settings keep the positions themselves.
bool MCGLMAlgorithm::IsValidRow(const Record& record) {
  if (!fRecordValidator.IsValidRecord(record, fStatus.Get())) return false;
  if (record.Size() >= fFitSize && fSettings->GetDependent() >= 0) return true;
  fStatus.Fail(MCCommon::MCS_RECORD_SHORT);
  return false;
}

void MCGLMAlgorithm::FailIfCancelled() {
  if (!fStatus.IsError() && fCancel.WillCancel()) fStatus.Fail(MCCommon::MCS_CANCELLED);
}

MCStatus MCGLMAlgorithm::ProcessData(MultiPassRecordIter& source) {
  if (fStatus.IsError()) return fStatus.Get();
  source.NewPass();
  if (!source.HasMore()) fStatus.Fail(MCCommon::MCS_NO_DATA);
  if (fbDataProcessed) fStatus.Fail(MCCommon::MCS_ALREADY_PROCESSED);
  if (fStatus.IsError()) return fStatus.Get();
  PrepareTables();
  fStatus.Take(ProcessSource(source));
  fMeanValues = fFactorTables.GetCovariateMeans();
  return fStatus.Get();
}

// Factors go to the tables in the order of their nesting, which is that of a parameter's lists.
void MCGLMAlgorithm::PrepareTables() {
  std::vector<std::vector<int>> effectFactors;
  if (fSettings->GetInterceptUse()) effectFactors.emplace_back();
  for (const MCModelEffect& effect : fSettings->GetModelEffects()) {
    MCRegrParameter parameter;
    parameter.SetupFromEffect(effect, 0, 0);
    effectFactors.push_back(parameter.GetFactors());
  }
  fFactorTables.SetModelEffectFactors(effectFactors, fSettings->GetFactors());
  std::vector<int> averaged = fSettings->GetCovariates();
  averaged.push_back(fSettings->GetDependent());
  fFactorTables.SetCovariates(averaged);
}

MCStatus MCGLMAlgorithm::ProcessSource(MultiPassRecordIter& source) {
  ReadRows(source, MCCommon::MCS_RECORD_NULL, fRecordCount, [this](const Record& record) {
    // A category code one above the last passes the validator. The tables drop such a row, and
    // it counts as valid.
    fFactorTables.UpdateAll(record);
    MCCommon::detail::CountUp(fValidCount);
  });
  if (!fStatus.IsError() && fValidCount == 0) fStatus.Fail(MCCommon::MCS_NO_DATA);
  if (!fStatus.IsError() && !fCancel.WillCancel()) fbDataProcessed = true;
  FailIfCancelled();
  return fStatus.Get();
}

MCStatus MCGLMAlgorithm::CreateParameters(std::vector<MCRegrParameter>& /*parameters*/) {
  if (fStatus.IsError()) return fStatus.Get();
  fModel.SetOffsets(fSettings->GetFactors(), fSettings->GetCovariates(),
                    fSettings->GetFrequencyWeightVar(), fSettings->GetRegrWeightVar(),
                    fSettings->GetDependent());
  fFactorTables.CreateParameterIndices();
  fStatus.Take(fModel.CreateParameters(&fFactorTables));
  return fStatus.Get();
}

MCStatus MCGLMAlgorithm::BuildModel(MultiPassRecordIter& source) {
  if (fStatus.IsError()) return fStatus.Get();
  if (!AreParamsCreated()) fStatus.Fail(MCCommon::MCS_NOT_PROCESSED);
  if (fbModelBuilt) fStatus.Fail(MCCommon::MCS_ALREADY_BUILT);
  if (!fStatus.IsError()) {
    const double mean = fMeanValues.empty() ? MCMV::gMissingValue : fMeanValues.back();
    fModel.SetDepMeanAndTotalW(mean, fFactorTables.GetTotalWeight());
    fStatus.Take(FillDesignMatrix(source));
  }
  if (!fStatus.IsError()) fStatus.Take(fModel.BuildModel());
  if (!fStatus.IsError()) fStatus.Take(ComputeResiduals(source));
  if (!fStatus.IsError()) {
    fbModelBuilt = true;
    fStatus.LetLastWarningWin();
  }
  return fStatus.Get();
}

MCStatus MCGLMAlgorithm::FillDesignMatrix(MultiPassRecordIter& source) {
  if (fStatus.IsError()) return fStatus.Get();
  if (fbDataProcessed) {
    source.NewPass();
  } else {
    fStatus.Fail(MCCommon::MCS_NOT_READY);
  }
  int nRead = 0;
  ReadRows(source, MCCommon::MCS_NOT_READY, nRead, [this](const Record& record) {
    if (!fModel.UpdateZPrimeZ(record.GetAll())) fStatus.Fail(MCCommon::MCS_NOT_READY);
  });
  FailIfCancelled();
  return fStatus.Get();
}

MCStatus MCGLMAlgorithm::ComputeResiduals(MultiPassRecordIter& source) {
  if (fStatus.IsError()) return fStatus.Get();
  if (fModel.IsModelBuilt()) {
    source.NewPass();
  } else {
    fStatus.Fail(MCCommon::MCS_BAD_STATE);
  }
  int nRead = 0;
  ReadRows(source, MCCommon::MCS_NOT_READY, nRead,
           [this](const Record& record) { fModel.AddResidual(record.GetAll()); });
  // Without any row the sums hold no weight, but then the cancel is what stopped the pass.
  if (nRead == 0) FailIfCancelled();
  if (!fStatus.IsError()) fStatus.Take(fModel.FinishErrors());
  FailIfCancelled();
  return fStatus.Get();
}

MCStatus MCGLMAlgorithm::Score(const Record& record, double& value) const {
  if (fStatus.IsError()) return fStatus.Get();
  if (fCancel.WillCancel()) return MCStatus(MCCommon::MCS_CANCELLED, false);
  if (!fbModelBuilt) return MCStatus(MCCommon::MCS_NOT_BUILT, false);
  if (!ReachesPredictors(record)) {
    value = MCMV::gMissingValue;
    return MCStatus(MCCommon::MCS_RECORD_SHORT, false);
  }
  value = fModel.Score(record.GetAll());
  return fStatus.Get();
}

void MCGLMAlgorithm::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCGLMAlgorithm display start");
  DisplayText(1, "Record Validator");
  fRecordValidator.Display();
  DisplayText(1, "fFactorTables");
  fFactorTables.Display();
  DisplayDV("fMeanValues", fMeanValues, false);
  DisplayText(1, "fModel");
  fModel.Display();
  DisplayB("fbDataProcessed", fbDataProcessed);
  DisplayB("fbModelBuilt", fbModelBuilt);
  DisplayI("fRecordCount", fRecordCount);
  DisplayI("fValidCount", fValidCount);
  DisplayText(1, "MCGLMAlgorithm display end");
}
