// SPDX-License-Identifier: Apache-2.0
#include "generate/datadesign.h"

#include "errors.h"
#include "generate/productreader.h"
#include "text.h"
#include "textscanner.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace mcfit {

namespace {

constexpr int kMostDecimals = 15;
constexpr double kHighestFrequency = 1e9;

// A category may stand before a colon.
constexpr std::string_view kCategoryEnds = ",*^()\"=:";

std::string TakeColumn(TextScanner& scanner) {
  return scanner.TakeText(ProductReader::kEnds, "a column name");
}

// Whether each text stands there once; `twice` is the first that doesn't.
bool AreUnique(const std::vector<std::string>& texts, std::string& twice) {
  std::set<std::string> seen;
  for (const std::string& text : texts) {
    if (seen.insert(text).second) continue;
    twice = text;
    return false;
  }
  return true;
}

// name(label, label, ...)
FactorColumn TakeFactor(TextScanner& scanner) {
  FactorColumn factor;
  factor.name = TakeColumn(scanner);
  scanner.Expect('(');
  factor.labels = TakeSeveral(scanner, [](TextScanner& labels) {
    return labels.TakeText(ProductReader::kEnds, "a label");
  });
  std::string twice;
  if (!AreUnique(factor.labels, twice)) {
    scanner.Fail(fmt::format("label {} stands there twice", Quoted(twice)));
  }
  scanner.Expect(')');
  return factor;
}

// name(first:second), or with another separator.
NumberColumn TakeTwoNumbers(TextScanner& scanner, char separator) {
  NumberColumn column;
  column.name = TakeColumn(scanner);
  scanner.Expect('(');
  column.first = scanner.TakeNumber();
  scanner.Expect(separator);
  column.second = scanner.TakeNumber();
  return column;
}

NumberColumn TakeEvenlySpread(TextScanner& scanner) {
  NumberColumn column = TakeTwoNumbers(scanner, ':');
  if (column.first >= column.second) scanner.Fail("the second number must be above the first");
  scanner.Expect(')');
  return column;
}

NumberColumn TakeNormal(TextScanner& scanner) {
  NumberColumn column = TakeTwoNumbers(scanner, ',');
  column.isNormal = true;
  if (column.second <= 0.0) scanner.Fail("the standard deviation must be above 0");
  scanner.Expect(')');
  return column;
}

NumberColumn TakeFrequency(TextScanner& scanner) {
  NumberColumn column = TakeTwoNumbers(scanner, ':');
  const auto isCount = [](double number) {
    return number == std::floor(number) && number >= 1.0 && number <= kHighestFrequency;
  };
  if (!isCount(column.first) || !isCount(column.second) || column.first > column.second) {
    scanner.Fail(
        fmt::format("two rising whole numbers from 1 to {} are expected", kHighestFrequency));
  }
  scanner.Expect(')');
  return column;
}

void ReadColumns(const DesignTexts& texts, DataDesign& design) {
  TextScanner factors(texts.factors, "--factors");
  design.factors = TakeList(factors, TakeFactor);
  TextScanner covariates(texts.covariates, "--covariates");
  design.numbers = TakeList(covariates, TakeEvenlySpread);
  TextScanner normal(texts.normal, "--normal");
  const std::vector<NumberColumn> normals = TakeList(normal, TakeNormal);
  design.numbers.insert(design.numbers.end(), normals.begin(), normals.end());
  TextScanner frequency(texts.frequency, "--freq");
  const std::vector<NumberColumn> frequencies = TakeList(frequency, TakeFrequency);
  if (frequencies.size() > 1) throw InputError("--freq takes one column");
  if (!frequencies.empty()) design.frequency = frequencies[0];
  std::string twice;
  if (!AreUnique(design.ColumnNames(), twice)) {
    throw InputError(fmt::format("column {} is declared twice", Quoted(twice)));
  }
}

void ReadEmpty(const std::string& text, DataDesign& design) {
  TextScanner scanner(text, "--empty");
  design.empty = TakeList(scanner, [&design](TextScanner& products) {
    DesignProduct product = ProductReader(design).Take(products);
    if (!product.powers.empty() || product.labels.empty()) {
      products.Fail("a combination of labels is expected");
    }
    return product;
  });
}

void ReadMissing(const std::string& text, DataDesign& design) {
  const std::vector<std::string> names = design.ColumnNames();
  design.missing.assign(names.size(), 0.0);
  TextScanner scanner(text, "--missing");
  const std::vector<std::string> read = TakeList(scanner, [&](TextScanner& shares) {
    std::string name = TakeColumn(shares);
    const auto column = std::find(names.begin(), names.end(), name);
    if (column == names.end()) shares.Fail(fmt::format("there is no column {}", Quoted(name)));
    shares.Expect('=');
    const double probability = shares.TakeNumber();
    if (probability < 0.0 || probability > 1.0) shares.Fail("a probability is from 0 to 1");
    design.missing[static_cast<std::size_t>(column - names.begin())] = probability;
    return name;
  });
  std::string twice;
  if (!AreUnique(read, twice)) {
    throw InputError(fmt::format("--missing names column {} twice", Quoted(twice)));
  }
}

std::vector<DesignCoefficient> TakeCoefficients(TextScanner& scanner, const DataDesign& design) {
  std::set<decltype(std::make_pair(DesignProduct().labels, DesignProduct().powers))> seen;
  return TakeList(scanner, [&](TextScanner& coefficients) {
    DesignCoefficient coefficient;
    coefficient.product = ProductReader(design).Take(coefficients);
    if (!seen.emplace(coefficient.product.labels, coefficient.product.powers).second) {
      coefficients.Fail("the parameter has a coefficient already");
    }
    coefficients.Expect('=');
    coefficient.value = coefficients.TakeNumber();
    return coefficient;
  });
}

void ReadLinear(const DesignTexts& texts, DataDesign& design) {
  if (!texts.categories.empty()) throw InputError("--categories needs the kind logistic");
  if (texts.coefficients.size() != 1) throw InputError("linear takes --coefficients once");
  TextScanner scanner(texts.coefficients[0], "--coefficients");
  design.predictors = {TakeCoefficients(scanner, design)};
  design.deviation = texts.deviation.value_or(1.0);
  if (!(design.deviation >= 0.0) || !std::isfinite(design.deviation)) {
    throw InputError("--deviation must be a number from 0");
  }
}

void ReadCategories(const std::string& text, DataDesign& design) {
  TextScanner scanner(text, "--categories");
  design.categories = TakeList(scanner, [](TextScanner& categories) {
    return categories.TakeText(kCategoryEnds, "a category");
  });
  if (design.categories.size() < 2) {
    throw InputError("--categories must name two or more, the reference first");
  }
  std::string twice;
  if (!AreUnique(design.categories, twice)) {
    throw InputError(fmt::format("--categories names {} twice", Quoted(twice)));
  }
}

// Each list begins with the category that it is for: "late: x=0.5, ..."
void ReadLogits(const std::vector<std::string>& texts, DataDesign& design) {
  const std::vector<std::string>& categories = design.categories;
  std::vector<bool> isRead(categories.size(), false);
  design.predictors.resize(categories.size() - 1);
  for (const std::string& text : texts) {
    TextScanner scanner(text, "--coefficients");
    const std::string category = scanner.TakeText(kCategoryEnds, "a category");
    const auto found = std::find(categories.begin(), categories.end(), category);
    const auto k = static_cast<std::size_t>(found - categories.begin());
    if (found == categories.end()) {
      scanner.Fail(fmt::format("there is no category {}; a list begins with one of {} and a colon",
                               Quoted(category),
                               QuotedList({categories.begin() + 1, categories.end()})));
    }
    if (k == 0) scanner.Fail(fmt::format("{} is the reference", Quoted(category)));
    if (isRead[k]) scanner.Fail(fmt::format("{} has coefficients already", Quoted(category)));
    scanner.Expect(':');
    design.predictors[k - 1] = TakeCoefficients(scanner, design);
    isRead[k] = true;
  }
  for (std::size_t k = 1; k < categories.size(); ++k) {
    if (isRead[k]) continue;
    throw InputError(
        fmt::format("category {0} has no --coefficients '{0}: ...'", Printable(categories[k])));
  }
}

}  // namespace

std::vector<std::string> DataDesign::ColumnNames() const {
  std::vector<std::string> names = {dependent};
  for (const FactorColumn& factor : factors) names.push_back(factor.name);
  for (const NumberColumn& number : numbers) names.push_back(number.name);
  if (frequency) names.push_back(frequency->name);
  return names;
}

DataDesign MakeDesign(const DesignTexts& texts) {
  DataDesign design;
  design.dependent = texts.dependent;
  if (design.dependent.empty()) throw InputError("--dependent needs a name");
  if (texts.decimals < 0 || texts.decimals > kMostDecimals) {
    throw InputError(fmt::format("--decimals must be from 0 to {}", kMostDecimals));
  }
  design.decimals = texts.decimals;
  ReadColumns(texts, design);
  ReadEmpty(texts.empty, design);
  ReadMissing(texts.missing, design);
  if (texts.kind == "linear") {
    ReadLinear(texts, design);
  } else {
    if (texts.deviation) throw InputError("--deviation needs the kind linear");
    ReadCategories(texts.categories, design);
    ReadLogits(texts.coefficients, design);
  }
  return design;
}

}  // namespace mcfit
