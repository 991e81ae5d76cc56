// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <fstream>
#include <string>

// Readers of the save format that XMLObj writes, line by line. Each reads one line unless it says
// otherwise and answers false, with its argument unchanged, if there is none, if it isn't ended by
// a line end, if it has 256 characters or more (the stream then fails for good), or if it isn't
// what is read. No escaping is undone: a text saved with "&" in it comes back with "&amp;".

namespace MCCommonXML {

/// The three lines with which a save file begins: XML declaration, document type, root. Of each
/// only the first word is looked at.
MC_EXPORT bool ParseStartXML(std::ifstream& in);

/// The line that opens an object of the class `name`, which must not be empty. One empty line
/// before it is passed over.
MC_EXPORT bool ParseStartObj(std::ifstream& in, const std::string& name);

/// The line that closes an object.
MC_EXPORT bool ParseEndObj(std::ifstream& in);

/// An "Int" that is 0 or 1.
MC_EXPORT bool ParseValue(std::ifstream& in, bool& value);

/// An "Int", of which the digits up to the first other character count, 0 without any; its lower
/// 32 bits.
MC_EXPORT bool ParseValue(std::ifstream& in, int& value);

/// A "Long", read likewise; one that doesn't fit becomes the nearest that does.
MC_EXPORT bool ParseValue(std::ifstream& in, long& value);

/// An "Int", exponent form included: the lower 32 bits of its integer part, 0 if that doesn't fit
/// 64 bits.
MC_EXPORT bool ParseValue(std::ifstream& in, unsigned int& value);

/// A "Double", in every locale with a decimal point. "Missing" is the missing value; 0 if it isn't
/// a number, the largest double of its sign if it is beyond that.
MC_EXPORT bool ParseValue(std::ifstream& in, double& value);

/// A "String", up to the quote that ends it.
MC_EXPORT bool ParseValue(std::ifstream& in, std::string& value);

}  // namespace MCCommonXML
