// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fittedmodel.h"
#include "metadata/mcvarlist.h"
#include "rowencoder.h"

namespace mcfit {

/// The variables of a regression for the dictionary of its PMML, in the order of the layout and
/// without the weights: the categories of the dependent and the labels of the factors that rows in
/// use have; these texts that mean a missing value; and what is declared of the columns.
MCCommonMetadata::MCVarList ModelDictionary(const FittedModel& model, const PmmlTerms& terms,
                                            const MissingCells& missing);

}  // namespace mcfit
