// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcbinningencoder.h"
#include "metadata/mcvarlist.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mcfit {

/// How a dictionary sorts the numbers of a column into categories.
struct DeclaredBins {
  std::vector<double> edges;        // rising; bin i ends with edge i, which belongs to it
  std::vector<std::string> labels;  // one more than edges
};

/// The labels of bins without names: "<= 20", "(20, 30]", "> 30".
std::vector<std::string> BinLabels(const std::vector<double>& edges);

/// What a dictionary declares of a column: which cells are missing, which categories it has and
/// what their codes are. The encoder of the library's variable has the say; cells that it knows
/// nothing of are told apart from missing ones.
class Declaration {
public:
  enum class Finding {
    kValue,       ///< the number of the cell or, if categories are settled, its code
    kOpenLabel,   ///< a category of a column of which none is declared; Label() has it
    kMissing,     ///< declared as missing
    kUndeclared,  ///< no declared category, or outside of the declared range
    kNoNumber     ///< no number, where the column holds numbers
  };

  /// The variable is borrowed. With bins, the column is one of categories.
  explicit Declaration(const MCCommonMetadata::IMCVariable& variable,
                       std::optional<DeclaredBins> bins = {});

  const MCCommonMetadata::IMCVariable& Variable() const { return fVariable; }
  const std::optional<DeclaredBins>& Bins() const { return fBins; }

  /// Whether cells are categories, declared ones or not.
  bool IsCategorical() const { return fbHasNumericCategories || fbHasStrings || fBins.has_value(); }

  /// Whether the categories are numbers, as in the dictionary.
  bool HasNumericCategories() const { return fbHasNumericCategories; }

  /// The declared categories in the order of their codes; empty if every cell is one.
  const std::vector<std::string>& Labels() const { return fLabels; }

  /// What the cell, which isn't empty, holds; `value` is set for kValue alone.
  Finding Read(std::string_view cell, double& value) const;

  /// The category of such a cell as tables show it: of a number, its shortest form. Zero has one.
  std::string Label(std::string_view cell) const;

private:
  Finding ReadText(const std::string& cell, double& value) const;
  Finding ReadNumber(double number, double& value) const;
  Finding CodeOf(double code, double& value) const;

  const MCCommonMetadata::IMCVariable& fVariable;
  const MCCommonMetadata::IMCEncoder& fEncoder;
  std::optional<DeclaredBins> fBins;
  MCCommonMetadata::MCBinningEncoder fBinning;
  bool fbHasStrings;
  bool fbHasNumericCategories;
  double fLow;
  double fHigh;
  std::vector<std::string> fLabels;
};

/// The declarations of a dictionary by the names of columns.
class Declarations {
public:
  /// `bins`: by name, of continuous variables that are to be columns of categories.
  Declarations(MCCommonMetadata::MCVarList variables,
               const std::map<std::string, DeclaredBins>& bins);
  Declarations(const Declarations&) = delete;
  Declarations& operator=(const Declarations&) = delete;

  /// Null for a column that isn't declared.
  const Declaration* Find(const std::string& name) const;

private:
  MCCommonMetadata::MCVarList fVariables;
  std::map<std::string, Declaration> fDeclarations;
};

}  // namespace mcfit
