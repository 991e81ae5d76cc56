// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <random>
#include <string>

namespace mctest {

/// The document with one to four changes that a hand or a disk could make: pieces between tags that
/// are lost, repeated, moved or cut short, and bytes that become others. The engine decides.
std::string Mutated(std::string document, std::mt19937_64& engine);

}  // namespace mctest
