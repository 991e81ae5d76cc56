// SPDX-License-Identifier: Apache-2.0
#include "csvtext.h"

#include "text.h"

#include <csv.h>

namespace mcfit {

void AppendCell(std::string& line, std::string_view cell) {
  const bool needsQuotes = cell.find_first_of(",\"\r\n") != std::string_view::npos ||
                           Trimmed(cell).size() != cell.size();
  if (needsQuotes) {
    AppendQuotedCell(line, cell);
  } else {
    line += cell;
  }
}

void AppendQuotedCell(std::string& line, std::string_view cell) {
  const std::size_t begin = line.size();
  line.resize(begin + 2 * cell.size() + 2);  // each character may be a quote that is doubled
  line.resize(begin +
              csv_write(line.data() + begin, line.size() - begin, cell.data(), cell.size()));
}

}  // namespace mcfit
