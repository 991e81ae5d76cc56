// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <clocale>
#include <locale>
#include <string>

namespace mctest {

/// Puts the process under a locale of the C library while it lives, the locale of streams made
/// meanwhile included. The locales are those that the build made for the tests.
class LocaleGuard {
public:
  explicit LocaleGuard(const char* name)
      : fBefore(std::setlocale(LC_ALL, nullptr)),
        fStreams(),
        fbIsSet(std::setlocale(LC_ALL, name) != nullptr) {
    if (fbIsSet) std::locale::global(std::locale(name));
  }
  ~LocaleGuard() {
    std::locale::global(fStreams);
    std::setlocale(LC_ALL, fBefore.c_str());
  }
  LocaleGuard(const LocaleGuard&) = delete;
  LocaleGuard& operator=(const LocaleGuard&) = delete;

  bool IsSet() const { return fbIsSet; }

private:
  std::string fBefore;
  std::locale fStreams;
  bool fbIsSet;
};

}  // namespace mctest
