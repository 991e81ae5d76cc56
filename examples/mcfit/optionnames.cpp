// SPDX-License-Identifier: Apache-2.0
#include "optionnames.h"

#include "text.h"

#include <fmt/format.h>

namespace mcfit {

std::string OptionNames::operator()(const std::string& option) const {
  if (fDocument.empty()) return "--" + option;
  return fmt::format("{}: parameter {}", Printable(fDocument), Quoted(option));
}

}  // namespace mcfit
