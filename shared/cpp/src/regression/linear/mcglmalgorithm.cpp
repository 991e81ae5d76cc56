// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmalgorithm.h"

#include "regression/design/detail/mcrowreader.h"
#include "regression/design/detail/preparetables.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;
using MCCommon::Record;
using MCCommon::detail::MCRowReader;

MCGLMAlgorithm::MCGLMAlgorithm(const MCRegSettings& settings)
    : fSettings(&settings),
      fCancel(settings.GetCancelPointer()),
      fRecordValidator(settings.GetVariableTypes(), settings.GetFactors(),
                       settings.GetFactorSizes(), 0),
      fFactorTables(settings.GetFactors(), settings.GetFactorSizes(),
                    settings.GetFrequencyWeightVar(), -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE),
      fModel(settings, fCancel),
      fScoringSize(MCCommon::detail::ScoringSize(settings)) {
  if (settings.GetRegrWeightVar() >= 0) fFactorTables.SetRegrWeightVar(settings.GetRegrWeightVar());
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
  std::vector<int> averaged = fSettings->GetCovariates();
  averaged.push_back(fSettings->GetDependent());
  MCCommon::detail::PrepareTables(*fSettings, averaged, fFactorTables);
  fStatus.Take(ProcessSource(source));
  fMeanValues = fFactorTables.GetCovariateMeans();
  return fStatus.Get();
}

MCStatus MCGLMAlgorithm::ProcessSource(MultiPassRecordIter& source) {
  MCRowReader rows(*fSettings, fRecordValidator, fCancel, fStatus, fRecordCount);
  rows.Read(source, MCCommon::MCS_RECORD_NULL, [this](const Record& record) {
    // A category code one above the last passes the validator. The tables drop such a row, and
    // it counts as valid.
    fFactorTables.UpdateAll(record);
    MCCommon::detail::CountUp(fValidCount);
  });
  fRecordCount = rows.NRead();
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
  MCRowReader rows(*fSettings, fRecordValidator, fCancel, fStatus);
  rows.Read(source, MCCommon::MCS_NOT_READY, [this](const Record& record) {
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
  MCRowReader rows(*fSettings, fRecordValidator, fCancel, fStatus);
  rows.Read(source, MCCommon::MCS_NOT_READY,
            [this](const Record& record) { fModel.AddResidual(record.GetAll()); });
  // Without any row the sums hold no weight, but then the cancel is what stopped the pass.
  if (rows.NRead() == 0) FailIfCancelled();
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
