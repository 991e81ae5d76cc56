// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outputfile.h"

#include <cstddef>
#include <string>
#include <vector>

namespace mcfit {

/// A PMML file of a model that was built on the rows in which the split columns have these values.
struct SplitModel {
  std::vector<std::string> values;
  std::string path;
};

/// The values as messages and file names tell them: "region=north,year=2025".
std::string CombinationText(const std::vector<std::string>& names,
                            const std::vector<std::string>& values);

/// Throws InputError for a split column or a value of one that XML can't hold.
void RequireXmlTexts(const std::vector<std::string>& names, const std::vector<std::string>& values);

/// Merges the models into one PMML document. `names`: the split columns; their categories are the
/// values that the models have. Throws InputError, which names the file, for one that can't be
/// merged.
void MergeModels(const std::vector<std::string>& names, const std::vector<SplitModel>& models,
                 OutputFile& out);

/// The line that tells what was merged.
std::string MergedText(std::size_t models, const std::string& path);

}  // namespace mcfit
