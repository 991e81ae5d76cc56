// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "fittedmodel.h"
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

/// Scores the rows of a CSV file: the output has its columns and, behind them, the scores, empty
/// for a row that can't be scored.
class Scorer {
public:
  /// Looks for the factors and covariates in the file; throws InputError if one isn't there. All
  /// arguments are borrowed.
  Scorer(CsvReader& reader, const RecordLayout& layout, const MissingCells& missing);

  /// Names the columns of scores; throws InputError if the file has such a column already.
  void SetColumns(const std::vector<std::string>& columns);

  ScoreCounts Run(const FittedModel& model, OutputFile& out, ProgressLine& progress);

private:
  bool ScoreRow(const FittedModel& model, ScoreCounts& counts);

  CsvReader& fReader;
  RowEncoder fEncoder;
  std::vector<std::string> fColumns;
  std::vector<std::string> fScores;  // of the row at hand
  std::vector<double> fValues;
  MCCommon::Record fRecord;
};

/// The counts in words.
std::string ScoreText(const ScoreCounts& counts, const std::string& path);

}  // namespace mcfit
