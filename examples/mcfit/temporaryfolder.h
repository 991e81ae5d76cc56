// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace mcfit {

/// Where temporary files stand: the folder that TMPDIR names, else /tmp.
std::string TemporaryFolder();

/// Throws InputError for what can't be done there, with the reason that errno tells; `deed` is put
/// behind "cannot".
[[noreturn]] void FailInTemporaryFolder(const char* deed);

}  // namespace mcfit
