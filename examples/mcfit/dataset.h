// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "labeltable.h"
#include "progressline.h"
#include "recordlayout.h"
#include "rowencoder.h"
#include "rowfile.h"

#include <cstdint>
#include <vector>

namespace mcfit {

/// How many rows of a file a fit reads, and for which column it drops the others. A row is counted
/// at the first position, in the order of the layout, that keeps it out.
struct RowCounts {
  explicit RowCounts(std::size_t width) : missing(width, 0), notPositive(width, 0) {}

  /// Counts a row, by the rules by which the library accepts it: dependent, factors and covariates
  /// must be there, and weights above 0. A missing weight counts as missing.
  void Add(const RecordLayout& layout, const std::vector<double>& record);

  std::int64_t Dropped() const { return read - used; }

  std::int64_t read = 0;
  std::int64_t used = 0;
  std::vector<std::int64_t> missing;      // per position
  std::vector<std::int64_t> notPositive;  // per position, for weights
};

/// The rows of a CSV file as records in a temporary file, with what was learned while reading.
class Dataset {
public:
  /// Reads the whole file through. All arguments but the labels' home are borrowed for the call;
  /// the layout for longer.
  Dataset(CsvReader& reader, const RecordLayout& layout, const MissingCells& missing,
          ProgressLine& progress);

  const RecordLayout& Layout() const { return *fLayout; }
  const RowCounts& Counts() const { return fCounts; }

  /// The labels of each factor, in the order of the layout, with their final codes.
  const std::vector<LabelTable>& Labels() const { return fLabels; }

  /// The records, which still hold the codes of the order in which labels were first seen.
  RowFile& Rows() { return fRows; }

  /// For each factor, the final code of each first-seen code.
  const std::vector<std::vector<int>>& FinalCodes() const { return fFinalCodes; }

private:
  const RecordLayout* fLayout;
  RowFile fRows;
  RowCounts fCounts;
  std::vector<LabelTable> fLabels;
  std::vector<std::vector<int>> fFinalCodes;
};

}  // namespace mcfit
