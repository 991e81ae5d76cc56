// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <string>
#include <string_view>

namespace MCCommonXML {

/// The characters and references of which documents are made, and a few helpers on texts.
class MC_EXPORT XMLUtil {
public:
  static constexpr std::string_view FIRST_LINE = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>";
  static constexpr std::string_view ROWSEP = "\n";
  static constexpr std::string_view ITEMINDENT = "\t";
  static constexpr std::string_view QUOTE = "\"";
  static constexpr std::string_view EQUAL = "=";
  static constexpr std::string_view BEGIN_ELEMENT = "<";
  static constexpr std::string_view BEGIN_PREPROCESSOR = "!";
  static constexpr std::string_view END_ELEMENT = ">";
  static constexpr std::string_view BEGIN_END_ELEMENT = "/";
  static constexpr std::string_view SPACE = " ";
  static constexpr std::string_view AMPERSAND = "&";
  static constexpr std::string_view LESS_THAN = "<";
  static constexpr std::string_view GREATER_THAN = ">";
  static constexpr std::string_view XML_AMPERSAND = "&amp;";
  static constexpr std::string_view XML_LESS_THAN = "&lt;";
  static constexpr std::string_view XML_GREATER_THAN = "&gt;";
  static constexpr std::string_view XML_QUOTE = "&quot;";
  static constexpr std::string_view XML_CHARREF_TAB = "&#9;";
  static constexpr std::string_view XML_CHARREF_NL = "&#10;";
  static constexpr std::string_view XML_CHARREF_CR = "&#13;";
  static constexpr std::string_view XML_CHARREF_SP = "&#32;";
  static constexpr std::string_view XML_SP_CHARREF_SP = " &#32;";
  static constexpr int TAB_LENGTH = 8;

  /// n tabs; none for n below 1.
  static std::string GetTabs(int n);

  /// The decimal form.
  static std::string toString(int value);

  /// Looks for `find` in `text` from `pos` on and puts `replacement` in its place. Answers where
  /// it stands, to which `pos` is set. -1 with `text` unchanged if there is none, `pos` being one
  /// less than before, and if `pos` is negative or beyond the text, with `pos` unchanged, too. An
  /// empty `find` is found at once. Moves the rest of the text: replace many by ReplaceAll().
  static int ReplaceAtPos(std::string& text, const char* find, const std::string& replacement,
                          int& pos);

  /// Replaces every `find`, left to right, and never in text just put in. In time linear in the
  /// texts. An empty `find` changes nothing. The answer, the last position looked at, means
  /// nothing.
  static int ReplaceAll(std::string& text, std::string_view find, std::string_view replacement);

  /// Replaces the first `find`. Where it stood, or -1.
  static int ReplaceString(std::string& text, const char* find, const std::string& replacement);
};

}  // namespace MCCommonXML
