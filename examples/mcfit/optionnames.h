// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace mcfit {

/// How messages name an option: as the command line or as a settings document has it. Both know
/// the same options by the same words.
class OptionNames {
public:
  /// Those of the command line: "--tolerance".
  OptionNames() = default;

  /// Those of a document: "settings.xml: parameter 'tolerance'".
  explicit OptionNames(std::string document) : fDocument(std::move(document)) {}

  std::string operator()(const std::string& option) const;

private:
  std::string fDocument;
};

}  // namespace mcfit
