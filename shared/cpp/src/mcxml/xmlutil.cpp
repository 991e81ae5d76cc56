// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmlutil.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace MCCommonXML {

std::string XMLUtil::GetTabs(int n) {
  return n > 0 ? std::string(static_cast<std::size_t>(n), ITEMINDENT.front()) : std::string();
}

std::string XMLUtil::toString(int value) {
  return std::to_string(value);
}

int XMLUtil::ReplaceAtPos(std::string& text, const char* find, const std::string& replacement,
                          int& pos) {
  if (pos < 0 || static_cast<std::size_t>(pos) > text.size()) return -1;
  const std::size_t at = text.find(find, static_cast<std::size_t>(pos));
  if (at == std::string::npos) {
    --pos;
    return -1;
  }
  text.replace(at, std::strlen(find), replacement);
  pos = static_cast<int>(at);
  return pos;
}

int XMLUtil::ReplaceAll(std::string& text, std::string_view find, std::string_view replacement) {
  if (find.empty()) return 0;
  std::size_t at = text.find(find);
  if (at == std::string::npos) return -1;
  std::string replaced;
  std::size_t from = 0;
  for (; at != std::string::npos; at = text.find(find, from)) {
    replaced.append(text, from, at - from).append(replacement);
    from = at + find.size();
  }
  const int last = static_cast<int>(replaced.size()) - 1;
  text = std::move(replaced.append(text, from));
  return last;
}

int XMLUtil::ReplaceString(std::string& text, const char* find, const std::string& replacement) {
  int pos = 0;
  return ReplaceAtPos(text, find, replacement, pos);
}

}  // namespace MCCommonXML
