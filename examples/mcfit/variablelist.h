// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcvarlist.h"
#include "outputfile.h"
#include "tablescan.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace mcfit {

/// What the user says about columns, by name; all else is decided by what they hold.
struct ColumnChoices {
  std::set<std::string> categorical;
  std::set<std::string> continuous;
  std::optional<std::string> weight;
  std::map<std::string, std::vector<std::string>> missing;
  std::map<std::string, int> bins;
};

/// Whole numbers with no more different values than this are taken for categories.
inline constexpr int kMostWholeCategories = 10;

/// The columns of the file as they are to be read. Throws InputError for a column that the file
/// doesn't have, has twice or has without a name, or that is given two roles.
std::vector<ScannedColumn> ColumnsToScan(const CsvReader& reader, const ColumnChoices& choices);

/// The same for the variables of a list, to whose encoders the missing values of the choices are
/// added.
std::vector<ScannedColumn> ColumnsToScan(MCCommonMetadata::MCVarList& variables,
                                         const ColumnChoices& choices);

/// One variable for each column: texts become string categories in the order in which tables show
/// labels; numbers are continuous unless they are few and whole or the user says categories.
/// Throws InputError for bins of anything but numbers.
MCCommonMetadata::MCVarList MakeVariables(const TableScan& table, const ColumnChoices& choices);

/// Writes the list in the library's save format. Throws InputError for a text that makes a line too
/// long to be read back. Answers whether all texts are read back as they are: that format undoes no
/// escaping.
bool SaveVariables(const MCCommonMetadata::MCVarList& variables, OutputFile& out);

/// Reads what SaveVariables() wrote. Throws InputError for any other file.
MCCommonMetadata::MCVarList LoadVariables(const std::string& path);

}  // namespace mcfit
