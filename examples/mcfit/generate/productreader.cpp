// SPDX-License-Identifier: Apache-2.0
#include "generate/productreader.h"

#include "text.h"

#include <fmt/format.h>

#include <algorithm>

namespace mcfit {

namespace {

// The place of the column of that name, or how many there are.
template <typename Column>
std::size_t FindColumn(const std::vector<Column>& columns, const std::string& name) {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&name](const Column& column) { return column.name == name; });
  return static_cast<std::size_t>(found - columns.begin());
}

// Adds what belongs to a column, in the order of columns. False if there is something already.
template <typename Value>
bool Insert(std::vector<std::pair<std::size_t, Value>>& terms, std::size_t column, Value value) {
  const auto place =
      std::find_if(terms.begin(), terms.end(),
                   [column](const std::pair<std::size_t, Value>& t) { return t.first >= column; });
  if (place != terms.end() && place->first == column) return false;
  terms.emplace(place, column, value);
  return true;
}

}  // namespace

DesignProduct ProductReader::Take(TextScanner& scanner) const {
  DesignProduct product;
  if (scanner.Take('(')) {
    if (scanner.TakeText(kEnds, "Intercept") != "Intercept") scanner.Fail("write (Intercept)");
    scanner.Expect(')');
    return product;
  }
  std::size_t open = 0;
  TakeTerm(scanner, product);
  while (scanner.Next() == '*' || scanner.Next() == '(') {
    if (scanner.Take('(')) {
      ++open;
    } else {
      scanner.Expect('*');
    }
    TakeTerm(scanner, product);
  }
  for (; open > 0; --open) scanner.Expect(')');
  return product;
}

void ProductReader::TakeTerm(TextScanner& scanner, DesignProduct& product) const {
  const std::string name = scanner.TakeText(kEnds, "the name of a parameter");
  const std::size_t factor = FindColumn(fDesign.factors, name);
  if (factor < fDesign.factors.size()) return TakeLabel(scanner, factor, product);
  const std::size_t number = FindColumn(fDesign.numbers, name);
  if (number < fDesign.numbers.size()) return TakePower(scanner, number, product);
  scanner.Fail(fmt::format("there is no factor or covariate {}", Quoted(name)));
}

void ProductReader::TakeLabel(TextScanner& scanner, std::size_t factor,
                              DesignProduct& product) const {
  const FactorColumn& column = fDesign.factors[factor];
  if (!scanner.Take('=')) {
    scanner.Fail(fmt::format("{} is a factor: write {}=label", Quoted(column.name), column.name));
  }
  const std::string label = scanner.TakeText(kEnds, "a label");
  const auto found = std::find(column.labels.begin(), column.labels.end(), label);
  if (found == column.labels.end()) {
    scanner.Fail(fmt::format("{} has no label {}", Quoted(column.name), Quoted(label)));
  }
  if (!Insert(product.labels, factor, static_cast<std::size_t>(found - column.labels.begin()))) {
    scanner.Fail(fmt::format("{} stands twice in a parameter", Quoted(column.name)));
  }
}

void ProductReader::TakePower(TextScanner& scanner, std::size_t number,
                              DesignProduct& product) const {
  const int power = scanner.Take('^') ? scanner.TakePower() : 1;
  if (!Insert(product.powers, number, power)) {
    scanner.Fail(fmt::format("{} stands twice in a parameter: write a power",
                             Quoted(fDesign.numbers[number].name)));
  }
}

}  // namespace mcfit
