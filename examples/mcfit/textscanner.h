// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mcfit {

/// Reads the text of an option from left to right. Blanks between its parts don't count. Where the
/// text goes wrong it throws InputError, with the option and the place where reading stopped.
class TextScanner {
public:
  /// What ends a name in an effect.
  static constexpr std::string_view kNameEnds = " \t\r\n,*^()\"";

  /// The text is borrowed; `option` is what messages name it by.
  TextScanner(std::string_view text, std::string_view option) : fText(text), fOption(option) {
    SkipBlanks();
  }

  bool AtEnd() const { return fPosition == fText.size(); }

  /// The next character; a NUL at the end.
  char Next() const { return AtEnd() ? '\0' : fText[fPosition]; }

  std::size_t Position() const { return fPosition; }

  /// What was read since that position.
  std::string TextFrom(std::size_t begin) const;

  /// Passes over the character if it is the next one.
  bool Take(char c);

  /// Passes over the character, which must be the next one.
  void Expect(char c);

  /// A name as effects have it: text without blanks and , * ^ ( ) " or any text in double quotes,
  /// where a doubled quote stands for one.
  std::string TakeName() { return TakeText(kNameEnds, "a column name"); }

  /// Text up to one of `ends`, without the blanks around it, or any text in double quotes. It must
  /// not be empty; `meaning` is what messages say is expected.
  std::string TakeText(std::string_view ends, std::string_view meaning);

  /// A finite number, which ends before a comma, a colon or a closing parenthesis.
  double TakeNumber();

  int TakePower();

  [[noreturn]] void Fail(const std::string& message) const;

private:
  void SkipBlanks();
  std::string QuotedText();

  std::string_view fText;
  std::string_view fOption;
  std::size_t fPosition = 0;
};

/// What `take` reads, once and again behind each comma.
template <typename Take>
auto TakeSeveral(TextScanner& scanner, Take take) {
  std::vector<decltype(take(scanner))> list;
  do {
    list.push_back(take(scanner));
  } while (scanner.Take(','));
  return list;
}

/// A list of what `take` reads, to the end of the text; empty for an empty or blank text.
template <typename Take>
auto TakeList(TextScanner& scanner, Take take) {
  if (scanner.AtEnd()) return decltype(TakeSeveral(scanner, take))();
  auto list = TakeSeveral(scanner, take);
  if (!scanner.AtEnd()) scanner.Fail("a comma is expected");
  return list;
}

}  // namespace mcfit
