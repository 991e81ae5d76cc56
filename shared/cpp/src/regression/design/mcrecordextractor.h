// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <vector>

/// Tells which positions of a host's record a regression reads, and gives them a compact order,
/// the extract: dependent, factors, covariates, frequency weight if any, regression weight if any.
/// A table of positions, not of data. Read-only after its setup.
class MC_EXPORT MCRecordExtractor {
public:
  /// An empty table: no positions, no weights.
  MCRecordExtractor() = default;

  /// The same as SetRecordIndices().
  MCRecordExtractor(int dependent, const std::vector<int>& factors,
                    const std::vector<int>& covariates, int freqWeight, int regrWeight);

  /// Sets the table anew from record positions; a negative weight position means that there is no
  /// such weight. Positions are not checked.
  void SetRecordIndices(int dependent, const std::vector<int>& factors,
                        const std::vector<int>& covariates, int freqWeight, int regrWeight);

  /// Place of the dependent in the extract: always 0.
  int GetDependentOffset() const { return fDependentOffset; }

  /// Places of the factors and of the covariates in the extract, in the order given.
  const std::vector<int>& GetFactorOffsets() const { return fFactorOffsets; }
  const std::vector<int>& GetCovariateOffsets() const { return fCovariateOffsets; }

  /// Places of the weights in the extract, -1 where there is none.
  int GetFreqWeightOffset() const { return fFreqWeightOffset; }
  int GetRegrWeightOffset() const { return fRegrWeightOffset; }

  /// Record position of each place of the extract.
  const std::vector<int>& GetAllRecordIndices() const { return fExtract; }

  /// Writes the fields to the display stream.
  void Display() const;

private:
  int Append(int position);

  int fExtractSize = 0;
  std::vector<int> fExtract;
  int fDependentOffset = 0;
  std::vector<int> fFactorOffsets;
  std::vector<int> fCovariateOffsets;
  int fFreqWeightOffset = -1;
  int fRegrWeightOffset = -1;
};
