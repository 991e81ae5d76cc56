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
    : fReader(reader), fMissing(missing), fWidth(layout.Columns().size()) {
  for (int i = 0; i < layout.Width(); ++i) {
    const RecordLayout::Column& column = layout.At(i);
    if (std::find(roles.begin(), roles.end(), column.role) == roles.end()) continue;
    fSources.push_back({i, layout.LabelledNumber(i), reader.ColumnIndex(column.name)});
  }
}

template <typename LabelCode>
void RowEncoder::EncodeCells(std::vector<double>& record, LabelCode labelCode) const {
  record.assign(fWidth, MCMV::gMissingValue);
  for (const Source& source : fSources) {
    if (fMissing.Contain(fReader.Cell(source.column))) continue;
    record[static_cast<std::size_t>(source.position)] =
        source.labels >= 0 ? labelCode(source) : Number(source.column);
  }
}

void RowEncoder::Encode(std::vector<double>& record, std::vector<LabelTable>& labels) const {
  EncodeCells(record, [&](const Source& source) {
    const int code =
        labels[static_cast<std::size_t>(source.labels)].Add(fReader.Cell(source.column));
    if (code < 0) {
      fReader.FailAtCell(source.column, TooManyLabelsText());
    }
    return static_cast<double>(code);
  });
}

int RowEncoder::EncodeKnown(std::vector<double>& record,
                            const std::vector<LabelTable>& labels) const {
  int firstUnknown = -1;
  EncodeCells(record, [&](const Source& source) {
    const int code =
        labels[static_cast<std::size_t>(source.labels)].Find(fReader.Cell(source.column));
    if (code >= 0) return static_cast<double>(code);
    if (firstUnknown < 0) firstUnknown = source.position;
    return MCMV::gMissingValue;
  });
  return firstUnknown;
}

double RowEncoder::Number(std::size_t column) const {
  const std::string_view cell = fReader.Cell(column);
  const std::optional<double> number = ParseNumber(cell);
  if (!number) fReader.FailAtCell(column, Quoted(cell) + " is not a finite number");
  return *number;
}

}  // namespace mcfit
