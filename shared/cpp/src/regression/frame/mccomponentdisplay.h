// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <list>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// Writes labelled values as text to one stream of the process, for diagnosis. Every class has a
/// Display() made of these. Each writer puts a line end in front of its label, the values behind
/// it, and flushes the stream. A double that is missing shows as "miss".
///
/// One layout holds for all families. A vector shows " (size = n)" behind the label, and its
/// values on the next line. A matrix stands behind an empty line, shows
/// " ( number of rows = n, number of columns = m)", or " (number of elements = n)" where rows
/// differ in length, and then a line "row i" for each row. A map shows " (map size = n)" and then
/// a line "Map key k, Map value v" for each entry. A pair shows as " (a, b)".
///
/// The stream is one for the process and unguarded: display is for one thread at a time.
namespace MCComponentDisplay {

/// Sends all later output to `stream`, which is borrowed until it is replaced. The start value is
/// the standard output.
MC_EXPORT void SetOutStream(std::ostream& stream);
MC_EXPORT std::ostream& GetOutStream();

/// `newlines` line ends, none for a count below 1, then the text. A null text writes nothing at
/// all.
MC_EXPORT void DisplayText(const long& newlines, const char* text);
MC_EXPORT void DisplayText(const long& newlines, const std::string& text);

/// Single values: an int, a double to 6 and to 17 digits, a bool in words, a string.
MC_EXPORT void DisplayI(std::string label, int value);
MC_EXPORT void DisplayD(std::string label, double value);
MC_EXPORT void DisplayDF(std::string label, double value);
MC_EXPORT void DisplayB(std::string label, bool value);
MC_EXPORT void DisplayS(std::string label, const std::string& value);

/// Vectors. With `full`, each double stands on a line of its own with 17 digits.
MC_EXPORT void DisplayDV(std::string label, const std::vector<double>& values, bool full);
MC_EXPORT void DisplayBV(std::string label, const std::vector<bool>& values);
MC_EXPORT void DisplayIV(std::string label, const std::vector<int>& values);
MC_EXPORT void DisplayUV(std::string label, const std::vector<unsigned>& values);
MC_EXPORT void DisplaySV(std::string label, const std::vector<std::string>& values);

/// Vectors of pairs: of doubles (VPD), of a double and an int (VPDI), of ints (VPII).
MC_EXPORT void DisplayVPD(std::string label, const std::vector<std::pair<double, double>>& values);
MC_EXPORT void DisplayVPDI(std::string label, const std::vector<std::pair<double, int>>& values);
MC_EXPORT void DisplayVPII(std::string label, const std::vector<std::pair<int, int>>& values);

/// Maps: int to int (IIM), vector of int to int and to vector of double, and list of strings to
/// double (SLDM).
MC_EXPORT void DisplayIIM(std::string label, const std::map<int, int>& values);
MC_EXPORT void DisplayIntVecIntMap(std::string label,
                                   const std::map<std::vector<int>, int>& values);
MC_EXPORT void DisplayIntVecDVecMap(std::string label,
                                    const std::map<std::vector<int>, std::vector<double>>& values);
MC_EXPORT void DisplaySLDM(std::string label,
                           const std::map<std::list<std::string>, double>& values);

/// A vector of maps from int to int; each map opens with a line "vec[i]".
MC_EXPORT void DisplayVIM(std::string label, const std::vector<std::map<int, int>>& values);

/// Vectors of vectors, shown as matrices: strings (SVV), bools (BVV), doubles (DVV).
MC_EXPORT void DisplaySVV(std::string label, const std::vector<std::vector<std::string>>& values);
MC_EXPORT void DisplayBVV(std::string label, const std::vector<std::vector<bool>>& values);
MC_EXPORT void DisplayDVV(std::string label, const std::vector<std::vector<double>>& values);

/// An array of `n` doubles, borrowed for the call; null or a negative n shows as size 0.
MC_EXPORT void DisplayDA(std::string label, const double* values, int n);

/// The packed lower triangle of `n` rows, n(n+1)/2 doubles, each element with its "(i,j) ".
/// Elements that the vector is too short for are left out.
MC_EXPORT void DisplayDVTR(std::string label, const std::vector<double>& values, int n);

/// The label and the local time, as year-month-day-hour-minute-second.
MC_EXPORT void DisplayTimeStamp(std::string label);

}  // namespace MCComponentDisplay
