// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generate/datadesign.h"
#include "textscanner.h"

#include <string>

namespace mcfit {

/// Reads columns of a design by the names that tables give to parameters, such as "(Intercept)",
/// "x1^2 * x2 * a=low" and "b=2 (a=low)": a nesting is a product like others.
class ProductReader {
public:
  /// What ends names and labels that aren't quoted. They may hold blanks.
  static constexpr std::string_view kEnds = ",*^()\"=";

  /// The design is borrowed.
  explicit ProductReader(const DataDesign& design) : fDesign(design) {}

  /// Fails as the scanner does, also for columns and labels that the design doesn't have.
  DesignProduct Take(TextScanner& scanner) const;

private:
  void TakeTerm(TextScanner& scanner, DesignProduct& product) const;
  void TakeLabel(TextScanner& scanner, std::size_t factor, DesignProduct& product) const;
  void TakePower(TextScanner& scanner, std::size_t number, DesignProduct& product) const;

  const DataDesign& fDesign;
};

}  // namespace mcfit
