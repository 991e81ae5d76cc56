// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace mcfit {

/// Appends a cell of a CSV file, in quotes only if it can't be read back without.
void AppendCell(std::string& line, std::string_view cell);

/// The same in quotes, whatever it holds: so an empty cell alone is a row, too.
void AppendQuotedCell(std::string& line, std::string_view cell);

}  // namespace mcfit
