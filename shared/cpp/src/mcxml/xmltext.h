// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <ostream>
#include <string>

namespace MCCommonXML {

/// The format of numbers in texts made by Format(): "%.15g".
MC_EXPORT std::string GetDefaultNumericFormat();

/// What separates the entries of a list in a text: ";".
MC_EXPORT std::string GetListSeparator();

/// The decimal point of the process's locale.
MC_EXPORT std::string GetDecimalCharacter();

/// A number as text. With `useFormat` it is printed by `format`, a format of the C library for one
/// double ("%.15g" if null), in the process's locale, however long that is; without, `format` is
/// ignored and the text is that of ReplaceSep().
MC_EXPORT std::string Format(double value, bool useFormat, const char* format);

/// An integer as text, by way of a double and "%.15g" in the process's locale: beyond 15 digits it
/// is rounded and in exponent form.
MC_EXPORT std::string Format(long value);

/// A number with 15 significant digits and a decimal point in every locale, as all numbers in
/// documents are written. `format` is ignored.
MC_EXPORT std::string ReplaceSep(double value, const char* format);

/// Puts a text on a stream as it stands; a width set on the stream doesn't pad it. Errors are the
/// stream's. 0.
MC_EXPORT int Write(std::ostream& out, const std::string& text);

/// The same after MbToUTF8(), which ends the process for a text that the locale's code set can't
/// explain. 0.
MC_EXPORT int WriteUTF(std::ostream& out, const std::string& text);

/// WriteUTF() with `utf8`, Write() without. 0.
MC_EXPORT int WriteText(std::ostream& out, const std::string& text, bool utf8);

}  // namespace MCCommonXML
