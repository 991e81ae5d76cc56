// SPDX-License-Identifier: Apache-2.0
#include "mcxml/detail/utf8conversion.h"
#include "mcxml/mbtoutf8.h"
#include "regression/frame/detail/mcassert.h"

#include <cerrno>
#include <cstddef>
#include <iconv.h>
#include <langinfo.h>
#include <string_view>

namespace MCCommonXML {

namespace {

constexpr char kSource[] = "mcxml/mbtoutf8_unix";

// The interface defines it so. NOLINTNEXTLINE(performance-no-int-to-ptr)
const iconv_t kNone = reinterpret_cast<iconv_t>(-1);

/// A conversion to UTF-8, closed at its end.
class Converter {
public:
  explicit Converter(const char* codeset) : fDescriptor(OpenAny(codeset)) {
    MCCommon::detail::Assert(fDescriptor != kNone, "cd != (iconv_t)-1", kSource);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { iconv_close(fDescriptor); }

  /// Appends to `out` what is left of the input, null for what the conversion still holds.
  void Convert(char** input, std::size_t* inputLeft, std::string& out) {
    char buffer[4096];
    std::size_t failed = 0;
    do {
      char* to = buffer;
      std::size_t room = sizeof buffer;
      failed = iconv(fDescriptor, input, inputLeft, &to, &room);
      const bool isFull = failed == kFailed && errno == E2BIG;
      MCCommon::detail::Assert(failed != kFailed || isFull, "conversions != (size_t)-1", kSource);
      out.append(buffer, to);
    } while (failed == kFailed);
  }

private:
  static constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

  static iconv_t Open(const char* codeset) {
    const iconv_t descriptor = iconv_open("UTF-8", codeset);
    return descriptor != kNone ? descriptor : iconv_open("utf8", codeset);
  }

  // Some systems name a code set "ISO 8859-1" and know it as "8859-1".
  static iconv_t OpenAny(const char* codeset) {
    iconv_t descriptor = Open(codeset);
    if (descriptor == kNone && std::string_view(codeset).substr(0, 3) == "ISO") {
      codeset += 3;
      while (*codeset == ' ') ++codeset;
      descriptor = Open(codeset);
    }
    return descriptor != kNone ? descriptor : Open("8859-1");
  }

  iconv_t fDescriptor;
};

}  // namespace

namespace detail {

std::string ConvertToUTF8(const std::string& text, const char* codeset) {
  MCCommon::detail::Assert(codeset != nullptr, "codeset", kSource);
  Converter converter(codeset);
  std::string converted;
  char* input = const_cast<char*>(text.data());  // iconv() only reads what it points to
  std::size_t left = text.size();
  converter.Convert(&input, &left, converted);
  converter.Convert(nullptr, nullptr, converted);
  return converted;
}

}  // namespace detail

std::string MbToUTF8(const std::string& text) {
  return detail::ConvertToUTF8(text, nl_langinfo(CODESET));
}

}  // namespace MCCommonXML
