// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <locale>

namespace {

/// Puts all tests of a program under the locale that MCSTAT_TEST_LOCALE names, streams included.
class TestLocale : public testing::Environment {
public:
  void SetUp() override {
    const char* name = std::getenv("MCSTAT_TEST_LOCALE");
    if (name == nullptr) return;
    ASSERT_NE(std::setlocale(LC_ALL, name), nullptr) << name;
    std::locale::global(std::locale(name));
  }
};

[[maybe_unused]] testing::Environment* const kTestLocale =
    testing::AddGlobalTestEnvironment(new TestLocale);

}  // namespace
