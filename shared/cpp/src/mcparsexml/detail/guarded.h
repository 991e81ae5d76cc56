// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/detail/utf.h"

#include <string>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

namespace MCComXPrsUtil {
namespace detail {

/// Calls `work`: false if an exception of Xerces ended it. The text of an XMLException goes to
/// `message`, in UTF-8, unless that is null. A host's own exceptions, of its streams, pass.
template <class Work>
bool IsDone(const Work& work, std::string* message = nullptr) {
  try {
    work();
    return true;
  } catch (const xercesc::XMLException& exception) {
    if (message != nullptr) *message = FromUTF16(exception.getMessage());
  } catch (const xercesc::DOMException&) {
  } catch (const xercesc::SAXException&) {
  } catch (const xercesc::OutOfMemoryException&) {
  }
  return false;
}

}  // namespace detail
}  // namespace MCComXPrsUtil
