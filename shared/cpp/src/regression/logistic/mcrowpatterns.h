// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstddef>
#include <vector>

/// The stored rows of one covariate pattern: all rows that activate the same parameter in each
/// model effect with factors, whatever their covariates and dependent. Nothing is merged: rows
/// follow each other in the order in which they were read, each as many values as the tabulator's
/// extractor has positions. MCPatternTabulator owns one object for each pattern.
class MC_EXPORT MCRowPatterns {
public:
  /// The values of all rows, one row after another.
  const std::vector<double>& GetAllRecords() const { return fRecordData; }

  /// Makes room for as many values, so that rows up to there are added without moving what is
  /// stored. Memory exhaustion is thrown with nothing changed.
  void Reserve(std::size_t nValues);

  /// Adds the row `values`, which must not be of this object. Memory exhaustion is thrown with
  /// nothing changed.
  void AddRow(const std::vector<double>& values);

  /// Writes the values to the display stream.
  void Display() const;

private:
  std::vector<double> fRecordData;
};
