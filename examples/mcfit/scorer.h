// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "linearmodel.h"
#include "outputfile.h"
#include "progressline.h"
#include "rowencoder.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mcfit {

/// Why rows of a file got no score.
struct ScoreCounts {
  std::int64_t read = 0;
  std::int64_t scored = 0;
  std::int64_t missing = 0;             ///< a factor or covariate is missing
  std::int64_t unknownLabel = 0;        ///< a factor has a label that the fit hasn't seen
  std::int64_t unknownCombination = 0;  ///< the labels were never seen together
};

/// Scores the rows of a CSV file: the output has its columns and, behind them, the column
/// "predicted", empty for a row that can't be scored.
class Scorer {
public:
  /// Looks for the factors and covariates in the file; throws InputError if one isn't there, or if
  /// there is a column "predicted" already. All arguments are borrowed.
  Scorer(CsvReader& reader, const RecordLayout& layout, const MissingCells& missing);

  ScoreCounts Run(const LinearModel& model, OutputFile& out, ProgressLine& progress);

private:
  std::optional<double> ScoreRow(const LinearModel& model, ScoreCounts& counts);

  CsvReader& fReader;
  RowEncoder fEncoder;
  std::vector<double> fValues;
  MCCommon::Record fRecord;
};

/// The counts in words.
std::string ScoreText(const ScoreCounts& counts, const std::string& path);

}  // namespace mcfit
