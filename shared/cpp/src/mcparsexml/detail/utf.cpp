// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/utf.h"

#include <cstddef>

// Loops of our own, since every name and value of a document passes here: a transcoder of Xerces
// costs more to make than a word to convert.

namespace MCComXPrsUtil {
namespace detail {

namespace {

constexpr char32_t kMalformed = 0xFFFFFFFF;
constexpr char32_t kFirstBeyondUnits = 0x10000;

bool IsSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}
bool IsTrailingSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The character at `text`, which moves past it unless it is malformed.
template <class Unit>
char32_t NextOfUTF16(const Unit*& text) {
  const char32_t first = text[0];
  if (!IsSurrogate(first)) {
    ++text;
    return first;
  }
  if (IsTrailingSurrogate(first) || !IsTrailingSurrogate(text[1])) return kMalformed;
  const char32_t second = text[1];
  text += 2;
  return kFirstBeyondUnits + ((first - 0xD800) << 10) + (second - 0xDC00);
}

/// The same for UTF-8: shortest forms of characters only.
char32_t NextOfUTF8(const char*& text) {
  const auto byte = [&text](int i) { return static_cast<unsigned char>(text[i]); };
  const char32_t first = byte(0);
  const int length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  char32_t character = length == 1 ? first : first & (0x7FU >> length);
  for (int i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return kMalformed;
    character = (character << 6) | (byte(i) & 0x3FU);
  }
  constexpr char32_t kSmallest[] = {0, 0x80, 0x800, kFirstBeyondUnits};
  const bool isLead = length == 1 || (first >= 0xC0 && first < 0xF8);
  if (!isLead || character < kSmallest[length - 1] || character > 0x10FFFF ||
      IsSurrogate(character)) {
    return kMalformed;
  }
  text += length;
  return character;
}

void AppendUTF8(char32_t character, std::string& out) {
  const auto append = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  const auto trailing = [&](int shift) { append(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | (character >> 6));
    trailing(0);
  } else if (character < kFirstBeyondUnits) {
    append(0xE0 | (character >> 12));
    trailing(6);
    trailing(0);
  } else {
    append(0xF0 | (character >> 18));
    trailing(12);
    trailing(6);
    trailing(0);
  }
}

void AppendUTF16(char32_t character, std::u16string& out) {
  if (character < kFirstBeyondUnits) {
    out.push_back(static_cast<char16_t>(character));
    return;
  }
  const char32_t rest = character - kFirstBeyondUnits;
  out.push_back(static_cast<char16_t>(0xD800 + (rest >> 10)));
  out.push_back(static_cast<char16_t>(0xDC00 + (rest & 0x3FF)));
}

}  // namespace

std::u16string ToXMLCh(const char* text) {
  std::u16string out;
  while (text != nullptr && *text != 0) {
    const char32_t character = NextOfUTF8(text);
    if (character == kMalformed) return {};
    AppendUTF16(character, out);
  }
  return out;
}

template <class Unit>
std::string FromUTF16(const Unit* text) {
  if (text == nullptr) return {};
  const Unit* end = text;  // of what is ASCII, as most texts are
  while (*end != 0 && *end < 0x80) ++end;
  std::string out(static_cast<std::size_t>(end - text), '\0');
  for (char& c : out) c = static_cast<char>(*text++);
  while (*text != 0) {
    const char32_t character = NextOfUTF16(text);
    if (character == kMalformed) return {};
    AppendUTF8(character, out);
  }
  return out;
}

bool IsUTF16(const XMLCh* text) {
  while (*text != 0) {
    if (NextOfUTF16(text) == kMalformed) return false;
  }
  return true;
}

template std::string FromUTF16(const unsigned short* text);
template std::string FromUTF16(const XMLCh* text);

}  // namespace detail
}  // namespace MCComXPrsUtil
