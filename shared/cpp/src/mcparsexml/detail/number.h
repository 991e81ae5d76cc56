// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"

#include <cstddef>
#include <string_view>

namespace MCComXPrsUtil {
namespace detail {

/// White space of XML.
inline bool IsSpace(XMLCh unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r';
}

/// `text` without white space at either end.
std::u16string_view Trimmed(std::u16string_view text);

/// Reads the whole of `text` as a number in XML's form, white space around it allowed: "NaN" is the
/// missing value. False with `value` unchanged if it isn't a number or is an infinity.
bool ParseDouble(std::u16string_view text, double& value);

/// Reads the whole of `text` as a whole number, white space around it allowed. False with `value`
/// unchanged if it is none or an int doesn't hold it.
bool ParseInt(std::u16string_view text, int& value);

}  // namespace detail
}  // namespace MCComXPrsUtil
