// SPDX-License-Identifier: Apache-2.0
#include "texttable.h"

#include "text.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace mcfit {

namespace {

constexpr std::size_t kGap = 2;

std::size_t Padding(const std::string& cell, std::size_t width) {
  return width - DisplayWidth(cell);
}

}  // namespace

void TextTable::Add(std::vector<std::string> cells) {
  cells.resize(fNumbers + 2);
  fRows.push_back(std::move(cells));
}

std::vector<std::size_t> TextTable::Widths() const {
  std::vector<std::size_t> widths(fNumbers + 2, 0);
  for (const std::vector<std::string>& cells : fRows) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      widths[i] = std::max(widths[i], DisplayWidth(cells[i]));
    }
  }
  return widths;
}

std::string TextTable::RowText(const std::vector<std::string>& cells,
                               const std::vector<std::size_t>& widths) const {
  std::string line = cells[0] + std::string(Padding(cells[0], widths[0]), ' ');
  for (std::size_t i = 1; i <= fNumbers; ++i) {
    line += std::string(kGap + Padding(cells[i], widths[i]), ' ') + cells[i];
  }
  line += std::string(kGap, ' ') + cells.back();
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string TextTable::Text() const {
  const std::vector<std::size_t> widths = Widths();
  const std::size_t ruled =
      std::accumulate(widths.begin(), widths.end() - 1, std::size_t{0}) + kGap * fNumbers;
  std::string text;
  for (const std::vector<std::string>& cells : fRows) {
    text += cells.empty() ? std::string(ruled, '-') + "\n" : RowText(cells, widths);
  }
  return text;
}

}  // namespace mcfit
