// SPDX-License-Identifier: Apache-2.0
#include "note.h"

#include <fmt/format.h>

#include <cstdio>

namespace mcfit {

void Note(const std::string& text) {
  fmt::print(stderr, "mcfit: {}\n", text);
}

}  // namespace mcfit
