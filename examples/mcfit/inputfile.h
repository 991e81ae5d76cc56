// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fstream>
#include <string>

namespace mcfit {

/// Opens a file to be read as a stream. Throws InputError, with the reason, for one that can't be,
/// a folder among them.
std::ifstream OpenInput(const std::string& path);

/// Throws the same for a file that the library is to open by its name.
void RequireReadable(const std::string& path);

}  // namespace mcfit
