// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcbinningencoder.h"
#include "metadata/mcunistats.h"
#include "metadata/mcvarlist.h"
#include "outputfile.h"
#include "progressline.h"
#include "tablescan.h"

#include <string>
#include <vector>

namespace mcfit {

/// Statistics of one variable, in cases: rows times the frequency weight. The weight itself is
/// described in rows.
class VariableStats {
public:
  /// Adds a value as its encoder gives it: a code, a number, or the missing value; a code below 0
  /// is missing, too. `bin` is that of a number, -1 without bins.
  void Add(bool isCategorical, double value, int bin, double weight);

  double Cases() const { return fCases; }
  double Missing() const { return fMissing; }

  /// Mean and deviation of the numbers; the missing value where they aren't defined.
  MCCommonMetadata::MCUniStats::SummStats Summary() const;

  /// As the library is to export them.
  MCCommonMetadata::MCUniStats InPmml(const MCCommonMetadata::IMCVariable& variable) const;

private:
  double fCases = 0.0;
  double fMissing = 0.0;
  double fMean = 0.0;
  double fSquares = 0.0;  // sum of squared distances from the mean
  double fLow = 0.0;
  double fHigh = 0.0;
  std::vector<double> fFrequencies;  // by category or bin
};

/// Every variable of a list over the rows of a table whose columns are those of the list.
class TableDescription {
public:
  /// Sends every cell through the encoder of its variable, which gives codes to categories that it
  /// doesn't know. Arguments are borrowed, the list for the life of this object.
  TableDescription(TableScan& table, MCCommonMetadata::MCVarList& variables,
                   ProgressLine& progress);

  /// The table for the screen.
  std::string Text(const std::string& file) const;

  /// Writes dictionary and statistics as PMML. Throws InputError for what XML can't hold.
  void WritePmml(const std::string& file, OutputFile& out) const;

private:
  /// Sends the cells of one variable through its encoder. What that is is asked once and not for
  /// each row.
  class CellReader {
  public:
    /// The variable is borrowed.
    explicit CellReader(MCCommonMetadata::IMCVariable& variable);

    double Value(const ScannedCell& cell) const;
    void Add(const ScannedCell& cell, double weight, VariableStats& stats) const;

  private:
    MCCommonMetadata::IMCEncoder* fpEncoder;           // null: numbers stand for themselves
    const MCCommonMetadata::MCBinningEncoder* fpBins;  // null without bins
    bool fbHasTexts;
    bool fbIsCategorical;
  };

  void AddRow(const std::vector<ScannedCell>& cells);

  MCCommonMetadata::MCVarList& fVariables;
  int fWeight = -1;
  std::int64_t fNRows = 0;
  std::int64_t fNWeightless = 0;
  std::vector<CellReader> fReaders;
  std::vector<VariableStats> fStats;
};

/// What a list tells without data, for the screen.
std::string ListText(MCCommonMetadata::MCVarList& variables, const std::string& file);

}  // namespace mcfit
