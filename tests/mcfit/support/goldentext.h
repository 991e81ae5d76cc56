// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// A file as it is to be, but for its time.
std::string Golden(const std::string& name);

/// The document with its time left out.
std::string WithoutTimestamp(const std::string& document);

/// The text with every `find` replaced.
std::string Replaced(std::string text, const std::string& find, const std::string& replacement);
