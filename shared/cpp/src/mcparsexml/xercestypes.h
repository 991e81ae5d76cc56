// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <type_traits>
#include <xercesc/util/XercesDefs.hpp>

// The types of Xerces that the interfaces of this folder name, declared only: a host that uses
// more of them than their pointers includes Xerces's headers and links Xerces itself.

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMNode;
class XMLTranscoder;
XERCES_CPP_NAMESPACE_END

namespace MCComXPrsUtil {

static_assert(std::is_same_v<XMLCh, char16_t>,
              "texts of Xerces stand beside those of `unsigned short` as a type of their own");

}  // namespace MCComXPrsUtil
