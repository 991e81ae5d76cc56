// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generate/datadesign.h"
#include "mcmath/random/mcrngnormal.h"
#include "mcmath/random/mcrngutwister.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mcfit {

/// Draws the rows of a design as lines of a CSV file, with the library's generators. The same
/// design and seed give the same rows.
class RowGenerator {
public:
  /// The design is borrowed; the seed is a whole number up to 2^53.
  RowGenerator(const DataDesign& design, std::uint64_t seed);
  RowGenerator(const RowGenerator&) = delete;
  RowGenerator& operator=(const RowGenerator&) = delete;

  /// Appends the names of the columns.
  void AppendHeader(std::string& text) const;

  /// Appends the next row. Throws InputError for numbers beyond the range of doubles, and where
  /// hardly a combination of labels is left to draw.
  void AppendRow(std::string& text);

private:
  std::size_t Below(std::size_t n);
  void DrawLabels();
  void DrawNumbers();
  void DrawFrequency();
  void DrawDependent();
  std::size_t DrawCategory();
  double Write(double number, std::string& cell) const;
  bool HasLabels(const DesignProduct& product) const;
  double Product(const DesignProduct& product) const;
  double Predictor(const std::vector<DesignCoefficient>& coefficients) const;

  const DataDesign& fDesign;
  MCCommonMath::MCRNGUTwister fUniform;
  MCCommonMath::MCRNGNormal fNormal;
  std::vector<std::vector<std::string>> fLabelCells;  // the labels as cells of a file
  std::vector<std::string> fCategoryCells;

  // The row that is being drawn.
  std::vector<std::size_t> fLabels;
  std::vector<double> fNumbers;
  std::vector<double> fWeights;     // of the categories
  std::vector<std::string> fCells;  // of all columns
};

}  // namespace mcfit
