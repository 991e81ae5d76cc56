// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "labeltable.h"
#include "progressline.h"
#include "recordlayout.h"
#include "rowencoder.h"
#include "rowfile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mcfit {

/// How many rows of a file a fit reads, and for which column it drops the others. A row is counted
/// at the first position, in the order of the layout, that keeps it out.
struct RowCounts {
  explicit RowCounts(std::size_t width) : missing(width, 0), notPositive(width, 0) {}

  /// Counts a row, by the rules by which the library accepts it: dependent, factors and covariates
  /// must be there, and weights above 0. A missing weight counts as missing. Answers whether the
  /// row is used.
  bool Add(const RecordLayout& layout, const std::vector<double>& record);

  std::int64_t Dropped() const { return read - used; }

  std::int64_t read = 0;
  std::int64_t used = 0;
  std::vector<std::int64_t> missing;      // per position
  std::vector<std::int64_t> notPositive;  // per position, for weights
};

/// How often the rows in use have a category of the dependent.
struct CategoryCount {
  std::int64_t rows = 0;
  double cases = 0.0;  ///< sum of the frequencies
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

  /// Cells that the declarations don't know, by position.
  const std::vector<UndeclaredCells>& Undeclared() const { return fUndeclared; }

  /// The labels of each labelled position of the layout, with their final codes: those of the
  /// declaration or, where categories aren't declared, in the order in which labels sort.
  const std::vector<LabelTable>& Labels() const { return fLabels; }

  /// The labels of the position, which must be a labelled one.
  const LabelTable& LabelsAt(int position) const {
    return fLabels[static_cast<std::size_t>(fLayout->LabelledNumber(position))];
  }

  /// Gives the categories of a dependent that has labels the codes that a logistic fit is to see:
  /// first the K categories that the rows in use have, in their order but the reference last, so
  /// that they are 0 to K - 1; behind them the categories of rows that are dropped. The library
  /// lists categories in this very order, so a code is also the place of its category in there.
  ///
  /// `reference`: a label, or else "first" or "last" of the K. Answers its code, K
  /// or more for a category that only dropped rows have; -1 if no row is in use. Throws InputError
  /// if no row has the label; `option` is what it names it by. To be called once, before the
  /// records are read back.
  int OrderCategories(const std::string& reference, const std::string& option);

  /// K, the number of categories that rows in use have.
  int UsedCategories() const;

  /// Counts of the categories by their codes, for a dependent that has labels.
  const std::vector<CategoryCount>& CategoryCounts() const { return fCategoryCounts; }

  /// The records, which still hold the codes of the order in which labels were first seen.
  RowFile& Rows() { return fRows; }

  /// For each labelled position, the final code of each first-seen code.
  const std::vector<std::vector<int>>& FinalCodes() const { return fFinalCodes; }

private:
  void CountCategory(const std::vector<double>& record);
  void AddDeclaredLabels();
  void SortLabels();
  bool HasDeclaredLabels(std::size_t table) const;
  int ReferenceCode(const std::string& reference, const std::string& option,
                    const std::vector<int>& used) const;

  const RecordLayout* fLayout;
  RowFile fRows;
  RowCounts fCounts;
  std::vector<UndeclaredCells> fUndeclared;
  std::vector<LabelTable> fLabels;
  std::vector<CategoryCount> fCategoryCounts;
  std::vector<std::vector<int>> fFinalCodes;
};

}  // namespace mcfit
