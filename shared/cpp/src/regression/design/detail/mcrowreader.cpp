// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/mcrowreader.h"

#include "regression/design/detail/recordsize.h"

#include <algorithm>

namespace MCCommon {
namespace detail {

namespace {

std::int64_t SizeToReadIfAny(int weight) {
  return weight < 0 ? 0 : SizeToRead(weight);
}

}  // namespace

std::int64_t ScoringSize(const MCRegSettings& settings) {
  return std::max(SizeToRead(settings.GetFactors()), SizeToRead(settings.GetCovariates()));
}

std::int64_t FitSize(const MCRegSettings& settings) {
  return std::max({ScoringSize(settings), SizeToRead(settings.GetDependent()),
                   SizeToReadIfAny(settings.GetRegrWeightVar()),
                   SizeToReadIfAny(settings.GetFrequencyWeightVar())});
}

// The validator knows the roles of positions. Where memory ran out while those were recorded they
// are forgotten, though the settings keep the positions themselves.
bool MCRowReader::IsValidRow(const Record& record) {
  if (!fValidator->IsValidRecord(record, fStatus->Get())) return false;
  if (record.Size() >= fRecordSize) return true;
  fStatus->Fail(MCS_RECORD_SHORT);
  return false;
}

}  // namespace detail
}  // namespace MCCommon
