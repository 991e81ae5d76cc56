// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mcfit {

/// The text between single quotes, fit for a message: control characters show as \xNN, and a long
/// text is cut.
std::string Quoted(std::string_view text);

/// The text with control characters as \xNN, so that data can't drive the terminal.
std::string Printable(std::string_view text);

/// Columns that the UTF-8 text takes on a terminal, one per code point.
std::size_t DisplayWidth(std::string_view text);

/// The text without blanks and tabs at both ends.
std::string_view Trimmed(std::string_view text);

/// Whether XML can hold the text: UTF-8, without control characters but tabs and line ends.
bool IsXmlText(std::string_view text);

/// The names quoted, with commas between them.
std::string QuotedList(const std::vector<std::string>& names);

/// The finite decimal number that the whole text stands for, blanks around it aside; no value for
/// anything else, hexadecimal, "inf" and "nan" included. The locale plays no part.
std::optional<double> ParseNumber(std::string_view text);

}  // namespace mcfit
