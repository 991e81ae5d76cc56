// SPDX-License-Identifier: Apache-2.0
#include "rowencoder.h"

#include "regression/frame/mcmv.h"
#include "text.h"

#include <algorithm>
#include <optional>

namespace mcfit {

bool MissingCells::Contain(std::string_view cell) const {
  return cell.empty() || std::find(texts.begin(), texts.end(), cell) != texts.end();
}

RowEncoder::RowEncoder(const CsvReader& reader, const RecordLayout& layout,
                       const std::vector<Role>& roles, const MissingCells& missing)
    : fReader(reader),
      fMissing(missing),
      fWidth(layout.Columns().size()),
      fUndeclared(layout.Columns().size()) {
  for (int i = 0; i < layout.Width(); ++i) {
    const RecordLayout::Column& column = layout.At(i);
    if (std::find(roles.begin(), roles.end(), column.role) == roles.end()) continue;
    fSources.push_back(
        {i, layout.LabelledNumber(i), reader.ColumnIndex(column.name), column.declaration});
  }
}

template <typename LabelCode>
void RowEncoder::EncodeCells(std::vector<double>& record, LabelCode labelCode) {
  record.assign(fWidth, MCMV::gMissingValue);
  for (const Source& source : fSources) {
    const std::string_view cell = fReader.Cell(source.column);
    if (fMissing.Contain(cell)) continue;
    double& value = record[static_cast<std::size_t>(source.position)];
    if (source.declaration != nullptr) {
      value = Declared(source, labelCode);
    } else {
      value = source.labels >= 0 ? labelCode(source, cell, true) : Number(source.column);
    }
  }
}

template <typename LabelCode>
double RowEncoder::Declared(const Source& source, LabelCode labelCode) {
  const std::string_view cell = fReader.Cell(source.column);
  double value = MCMV::gMissingValue;
  switch (source.declaration->Read(cell, value)) {
    case Declaration::Finding::kNoNumber:
      FailAtNumber(source.column);
    case Declaration::Finding::kOpenLabel:
      return labelCode(source, source.declaration->Label(cell), true);
    case Declaration::Finding::kUndeclared:
      CountUndeclared(source);
      return source.labels >= 0 ? labelCode(source, cell, false) : MCMV::gMissingValue;
    case Declaration::Finding::kMissing:
    case Declaration::Finding::kValue:
      break;
  }
  return value;
}

void RowEncoder::CountUndeclared(const Source& source) {
  UndeclaredCells& undeclared = fUndeclared[static_cast<std::size_t>(source.position)];
  if (undeclared.count++ == 0) undeclared.first = fReader.Cell(source.column);
}

void RowEncoder::Encode(std::vector<double>& record, std::vector<LabelTable>& labels) {
  EncodeCells(record, [&](const Source& source, std::string_view label, bool mayBeNew) {
    if (!mayBeNew) return MCMV::gMissingValue;
    const int code = labels[static_cast<std::size_t>(source.labels)].Add(label);
    if (code < 0) fReader.FailAtCell(source.column, TooManyLabelsText());
    return static_cast<double>(code);
  });
}

int RowEncoder::EncodeKnown(std::vector<double>& record, const std::vector<LabelTable>& labels) {
  int firstUnknown = -1;
  EncodeCells(record, [&](const Source& source, std::string_view label, bool /*mayBeNew*/) {
    const int code = labels[static_cast<std::size_t>(source.labels)].Find(label);
    if (code >= 0) return static_cast<double>(code);
    if (firstUnknown < 0) firstUnknown = source.position;
    return MCMV::gMissingValue;
  });
  return firstUnknown;
}

double RowEncoder::Number(std::size_t column) const {
  const std::optional<double> number = ParseNumber(fReader.Cell(column));
  if (!number) FailAtNumber(column);
  return *number;
}

void RowEncoder::FailAtNumber(std::size_t column) const {
  fReader.FailAtCell(column, Quoted(fReader.Cell(column)) + " is not a finite number");
}

}  // namespace mcfit
