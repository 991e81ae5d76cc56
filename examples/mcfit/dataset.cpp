// SPDX-License-Identifier: Apache-2.0
#include "dataset.h"

#include "interrupt.h"
#include "regression/frame/mcmv.h"

#include <fmt/format.h>

namespace mcfit {

namespace {

const std::vector<Role> kAllRoles = {Role::kDependent, Role::kFactor, Role::kCovariate,
                                     Role::kFrequency, Role::kWeight};

bool IsWeight(Role role) {
  return role == Role::kFrequency || role == Role::kWeight;
}

}  // namespace

void RowCounts::Add(const RecordLayout& layout, const std::vector<double>& record) {
  ++read;
  for (std::size_t i = 0; i < record.size(); ++i) {
    if (record[i] == MCMV::gMissingValue) {
      ++missing[i];
      return;
    }
    if (IsWeight(layout.Columns()[i].role) && record[i] <= 0.0) {
      ++notPositive[i];
      return;
    }
  }
  ++used;
}

Dataset::Dataset(CsvReader& reader, const RecordLayout& layout, const MissingCells& missing,
                 ProgressLine& progress)
    : fLayout(&layout),
      fCounts(layout.Columns().size()),
      fLabels(layout.Positions(Role::kFactor).size()) {
  const RowEncoder encoder(reader, layout, kAllRoles, missing);
  std::vector<double> record;
  while (reader.NextRow()) {
    StopIfInterrupted();
    encoder.Encode(record, fLabels);
    fCounts.Add(layout, record);
    fRows.Append(record);
    if (progress.IsDue()) {
      progress.Show(fmt::format("reading {}: {} rows", reader.Name(), fCounts.read));
    }
  }
  for (LabelTable& labels : fLabels) fFinalCodes.push_back(labels.Sort());
}

}  // namespace mcfit
