// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace MCCommonXML {
namespace detail {

/// Converts a text from `codeset` to UTF-8. Ends the process if `codeset` is null, if neither it
/// nor the ways around it are known, and if the text isn't valid.
std::string ConvertToUTF8(const std::string& text, const char* codeset);

}  // namespace detail
}  // namespace MCCommonXML
