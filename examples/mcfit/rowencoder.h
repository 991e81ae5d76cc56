// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "labeltable.h"
#include "recordlayout.h"

#include <string>
#include <vector>

namespace mcfit {

/// Which cells mean that a value is missing: empty ones, and those that hold one of these texts.
struct MissingCells {
  std::vector<std::string> texts;

  bool Contain(std::string_view cell) const;
};

/// Turns rows of one CSV file into records of the layout. A missing cell becomes the library's
/// missing value.
class RowEncoder {
public:
  /// Finds the columns of these roles in the file; throws InputError if one isn't there. Positions
  /// of other roles get the missing value. All arguments are borrowed.
  RowEncoder(const CsvReader& reader, const RecordLayout& layout, const std::vector<Role>& roles,
             const MissingCells& missing);

  /// Encodes the current row; labels that are new get codes. `labels`: one table per labelled
  /// position of the layout. Throws InputError for a cell that
  /// isn't a number where one is needed, and for too many labels.
  void Encode(std::vector<double>& record, std::vector<LabelTable>& labels) const;

  /// Encodes the current row against labels that are settled: a label that they don't have becomes
  /// the missing value. Answers the position of the first such label, or -1.
  int EncodeKnown(std::vector<double>& record, const std::vector<LabelTable>& labels) const;

private:
  template <typename LabelCode>
  void EncodeCells(std::vector<double>& record, LabelCode labelCode) const;
  double Number(std::size_t column) const;

  struct Source {
    int position;        // in the record
    int labels;          // which table has its labels, -1 if it holds numbers
    std::size_t column;  // in the file
  };

  const CsvReader& fReader;
  const MissingCells& fMissing;
  std::size_t fWidth;
  std::vector<Source> fSources;
};

}  // namespace mcfit
