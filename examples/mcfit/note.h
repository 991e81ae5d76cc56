// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace mcfit {

/// Tells the user something beside the results, as a line on the standard error.
void Note(const std::string& text);

}  // namespace mcfit
