// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

/// A row file of doubles on which whole builds are measured. Each row holds the factors' codes, the
/// covariates and last the dependent.
struct Dataset {
  std::string name;
  int nRows;
  std::vector<int> factorSizes;
  int nCovariates;
  /// Effects beside the covariates: lists of factors.
  std::vector<std::vector<int>> factorEffects;
  /// Of the dependent of a logistic build; 0 for a linear one.
  int nCategories = 0;

  int NFactors() const { return static_cast<int>(factorSizes.size()); }
  int NVariables() const { return NFactors() + nCovariates + 1; }
};

/// D1 to D6; an empty name for any other.
Dataset DatasetNamed(const std::string& name);

/// Opens the row file of a data set in a directory, with a large buffer: one call of the system
/// then brings many rows. Null if it can't be opened.
std::FILE* OpenRows(const Dataset& dataset, const std::string& directory, const char* mode);

/// Prints "name cpu-seconds peak-megabytes value": what a program used so far, in memory beyond
/// that of itself and its libraries at the start, and a figure of its result, which tells that
/// programs did the same work.
void ReportUse(const std::string& name, double value);
