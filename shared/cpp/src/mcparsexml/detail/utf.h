// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"

#include <string>

namespace MCComXPrsUtil {
namespace detail {

/// `text`, UTF-8 up to a 0, in the units of Xerces; empty if it is null or not well-formed.
std::u16string ToXMLCh(const char* text);

/// `text`, UTF-16 units of either type up to a 0, in UTF-8; empty if it is null or not well-formed.
template <class Unit>
std::string FromUTF16(const Unit* text);

/// Whether each half of a surrogate pair in `text`, up to a 0, has the other.
bool IsUTF16(const XMLCh* text);

extern template std::string FromUTF16(const unsigned short* text);
extern template std::string FromUTF16(const XMLCh* text);

}  // namespace detail
}  // namespace MCComXPrsUtil
