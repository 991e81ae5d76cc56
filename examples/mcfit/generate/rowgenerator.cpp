// SPDX-License-Identifier: Apache-2.0
#include "generate/rowgenerator.h"

#include "csvtext.h"
#include "errors.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace mcfit {

namespace {

// Combinations that are drawn for one row before the design is blamed.
constexpr int kMostDraws = 10000;

std::vector<std::string> Cells(const std::vector<std::string>& texts) {
  std::vector<std::string> cells(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) AppendCell(cells[i], texts[i]);
  return cells;
}

void AppendLine(std::string& text, const std::vector<std::string>& cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) text += ',';
    text += cells[i];
  }
  // A line without anything is no row.
  if (cells.size() == 1 && cells[0].empty()) text += "\"\"";
  text += '\n';
}

double Power(double base, int exponent) {
  double power = base;
  for (int i = 1; i < exponent; ++i) power *= base;
  return power;
}

}  // namespace

RowGenerator::RowGenerator(const DataDesign& design, std::uint64_t seed)
    : fDesign(design),
      fCategoryCells(Cells(design.categories)),
      fLabels(design.factors.size()),
      fNumbers(design.numbers.size()),
      fWeights(design.categories.size()),
      fCells(design.ColumnNames().size()) {
  fUniform.SetSeed(static_cast<double>(seed));
  fNormal.SetURNGenerator(fUniform);
  for (const FactorColumn& factor : design.factors) fLabelCells.push_back(Cells(factor.labels));
}

void RowGenerator::AppendHeader(std::string& text) const {
  AppendLine(text, Cells(fDesign.ColumnNames()));
}

void RowGenerator::AppendRow(std::string& text) {
  DrawLabels();
  DrawNumbers();
  DrawFrequency();
  DrawDependent();
  for (std::size_t i = 0; i < fCells.size(); ++i) {
    const double probability = fDesign.missing[i];
    if (probability > 0.0 && fUniform.GetNext() < probability) fCells[i].clear();
  }
  AppendLine(text, fCells);
}

std::size_t RowGenerator::Below(std::size_t n) {
  return static_cast<std::size_t>(fUniform.GetNext() * static_cast<double>(n));
}

void RowGenerator::DrawLabels() {
  const auto isEmpty = [this](const DesignProduct& product) { return HasLabels(product); };
  int draws = 0;
  do {
    if (++draws > kMostDraws) {
      throw InputError("--empty leaves hardly a combination of labels, or none");
    }
    for (std::size_t i = 0; i < fLabels.size(); ++i) fLabels[i] = Below(fLabelCells[i].size());
  } while (std::any_of(fDesign.empty.begin(), fDesign.empty.end(), isEmpty));
  for (std::size_t i = 0; i < fLabels.size(); ++i) fCells[1 + i] = fLabelCells[i][fLabels[i]];
}

void RowGenerator::DrawNumbers() {
  for (std::size_t i = 0; i < fNumbers.size(); ++i) {
    const NumberColumn& column = fDesign.numbers[i];
    double number = 0.0;
    if (column.isNormal) {
      number = fNormal.GetNext(column.first, column.second);
    } else {
      const double share = fUniform.GetNext();
      number = (1.0 - share) * column.first + share * column.second;  // can't overflow
    }
    fNumbers[i] = Write(number, fCells[1 + fLabels.size() + i]);
  }
}

void RowGenerator::DrawFrequency() {
  if (!fDesign.frequency) return;
  const double first = fDesign.frequency->first;
  const auto range = static_cast<std::size_t>(fDesign.frequency->second - first) + 1;
  fCells.back() = std::to_string(static_cast<std::size_t>(first) + Below(range));
}

void RowGenerator::DrawDependent() {
  if (fDesign.categories.empty()) {
    const double noise = fNormal.GetNext(0.0, fDesign.deviation);
    Write(Predictor(fDesign.predictors[0]) + noise, fCells[0]);
  } else {
    fCells[0] = fCategoryCells[DrawCategory()];
  }
}

std::size_t RowGenerator::DrawCategory() {
  fWeights[0] = 0.0;
  for (std::size_t k = 1; k < fWeights.size(); ++k) {
    fWeights[k] = Predictor(fDesign.predictors[k - 1]);
  }
  // No exponential is then above 1.
  const double highest = *std::max_element(fWeights.begin(), fWeights.end());
  double sum = 0.0;
  for (double& weight : fWeights) sum += weight = std::exp(weight - highest);
  double place = fUniform.GetNext() * sum;
  std::size_t k = 0;
  while (k + 1 < fWeights.size() && place >= fWeights[k]) place -= fWeights[k++];
  return k;
}

// Answers the number as the cell has it: the dependent follows from what can be read.
double RowGenerator::Write(double number, std::string& cell) const {
  if (!std::isfinite(number)) throw InputError("a number is beyond what a double can hold");
  std::array<char, 400> digits;  // the largest double has 309 before the point
  char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                            std::chars_format::fixed, fDesign.decimals)
                  .ptr;
  double written = 0.0;
  std::from_chars(digits.data(), end, written);
  const bool isMinusZero = written == 0.0 && digits[0] == '-';
  cell.assign(digits.data() + (isMinusZero ? 1 : 0), end);
  return written;
}

bool RowGenerator::HasLabels(const DesignProduct& product) const {
  return std::all_of(product.labels.begin(), product.labels.end(),
                     [this](const auto& factorAndLabel) {
                       return fLabels[factorAndLabel.first] == factorAndLabel.second;
                     });
}

double RowGenerator::Product(const DesignProduct& product) const {
  if (!HasLabels(product)) return 0.0;
  double value = 1.0;
  for (const auto& [number, power] : product.powers) value *= Power(fNumbers[number], power);
  return value;
}

double RowGenerator::Predictor(const std::vector<DesignCoefficient>& coefficients) const {
  double sum = 0.0;
  for (const DesignCoefficient& coefficient : coefficients) {
    sum += coefficient.value * Product(coefficient.product);
  }
  if (!std::isfinite(sum))
    throw InputError("the predictor of a row is beyond what a double can hold");
  return sum;
}

}  // namespace mcfit
