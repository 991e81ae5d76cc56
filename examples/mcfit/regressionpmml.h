// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fittedmodel.h"
#include "outputfile.h"
#include "rowencoder.h"

namespace mcfit {

/// More estimated parameters than this, over all categories, and the matrix of their covariances
/// is left out: it would be millions of elements.
inline constexpr int kMostCovariances = 1000;

/// Throws InputError for a design that PMML 3.2 has no way to tell: one of an intercept alone.
void CheckPmmlDesign(const ModelDesign& design);

/// Writes the regression as a "GeneralRegressionModel" that scores a row as the model does. All
/// labels that entered the fit are the valid categories of a factor and, of these texts that mean
/// a missing value, each that its column can hold is listed as missing. Throws InputError for a
/// name or label that XML can't hold.
void WriteRegressionPmml(const FittedModel& model, const MissingCells& missing, OutputFile& out);

}  // namespace mcfit
