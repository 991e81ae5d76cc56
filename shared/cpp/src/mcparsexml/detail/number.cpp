// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/number.h"

#include "regression/frame/mcmv.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLException.hpp>

namespace MCComXPrsUtil {
namespace detail {

namespace {

/// Opens what Xerces made of a literal.
class MCXMLDouble : public xercesc::XMLDouble {
public:
  using XMLDouble::getType;
  using XMLDouble::getValue;
  using XMLDouble::XMLDouble;
};

/// A literal as Xerces reads it, to which all others are held.
bool ParseAnyDouble(std::u16string_view text, double& value) {
  try {
    const MCXMLDouble literal(std::u16string(text).c_str());
    if (literal.getType() == MCXMLDouble::Normal) {
      value = literal.getValue();
      return true;
    }
    if (literal.getType() == MCXMLDouble::NaN) {
      value = MCMV::gMissingValue;
      return true;
    }
  } catch (const xercesc::XMLException&) {
  } catch (const xercesc::OutOfMemoryException&) {
  }
  return false;
}

constexpr std::size_t kLongestPlain = 32;

bool IsOfPlainNumber(XMLCh unit) {
  return (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-' || unit == u'e' ||
         unit == u'E';
}

/// The literals that documents are full of, some ten times faster. False for all whose reading
/// isn't beyond doubt: zeros, values next to the ends of the range, and whatever isn't a number.
bool ParsePlainDouble(std::u16string_view text, double& value) {
  char buffer[kLongestPlain];
  if (text.size() > kLongestPlain) return false;
  char* end = buffer;
  for (const XMLCh unit : text) {
    if (!IsOfPlainNumber(unit)) return false;
    *end++ = static_cast<char>(unit);
  }
  double number = 0.0;
  const auto [stop, error] = std::from_chars(buffer, end, number);
  if (error != std::errc() || stop != end) return false;
  if (!std::isnormal(number) && (number != 0.0 || std::signbit(number))) return false;
  value = number;
  return true;
}

}  // namespace

std::u16string_view Trimmed(std::u16string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool ParseDouble(std::u16string_view text, double& value) {
  text = Trimmed(text);
  return ParsePlainDouble(text, value) || ParseAnyDouble(text, value);
}

bool ParseInt(std::u16string_view text, int& value) {
  text = Trimmed(text);
  const bool isNegative = !text.empty() && text.front() == u'-';
  if (isNegative || (!text.empty() && text.front() == u'+')) text.remove_prefix(1);
  if (text.empty()) return false;
  constexpr long kBound = -static_cast<long>(std::numeric_limits<int>::min());
  long magnitude = 0;
  for (const XMLCh unit : text) {
    if (unit < u'0' || unit > u'9') return false;
    magnitude = magnitude * 10 + (unit - u'0');
    if (magnitude > kBound) return false;
  }
  const long number = isNegative ? -magnitude : magnitude;
  if (number == kBound) return false;
  value = static_cast<int>(number);
  return true;
}

}  // namespace detail
}  // namespace MCComXPrsUtil
