// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace mctest {

/// The number that all of a text is, with a decimal point whatever the locale, hexadecimal ones
/// behind "0x" included; none if it is something else or beyond the range of T.
template <class T>
std::optional<T> NumberIn(std::string_view text) {
  const bool isNegative = text.substr(0, 1) == "-";
  const bool isHexadecimal = text.substr(isNegative ? 1 : 0, 2) == "0x";
  if (isHexadecimal) text.remove_prefix(isNegative ? 3 : 2);
  T value{};
  const char* const end = text.data() + text.size();
  std::from_chars_result result{};
  if constexpr (std::is_floating_point_v<T>) {
    const auto format = isHexadecimal ? std::chars_format::hex : std::chars_format::general;
    result = std::from_chars(text.data(), end, value, format);
  } else {
    result = std::from_chars(text.data(), end, value, isHexadecimal ? 16 : 10);
  }
  if (result.ec != std::errc() || result.ptr != end) return {};
  return isHexadecimal && isNegative ? -value : value;
}

/// The same of a text that must be a number: the test fails where it isn't, and gets 0.
template <class T = double>
T ToNumber(std::string_view text) {
  const std::optional<T> number = NumberIn<T>(text);
  if (!number) ADD_FAILURE() << '"' << text << "\" is no number";
  return number.value_or(T{});
}

}  // namespace mctest
