// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/record.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

/// Counts how many rows fall into each category of each factor and of the dependent variable,
/// weighted and unweighted. Positions are positions of values in a record, from 0. Categories are
/// coded by whole numbers from the lowest category on; the level of a value is its code (the
/// value plus a half, truncated toward zero) less the lowest category, so levels count from 0.
///
/// The class is a value: copies share nothing. It has no virtual operation, and
/// MCFactorTables derives from it, so never delete an object through a pointer to this class.
class MC_EXPORT MCFactorCounts {
public:
  /// Per category the weighted count and the unweighted count.
  using CategoryCounts = std::vector<std::pair<double, double>>;

  /// Counts of 0.0 for every category.
  /// `factors`: record position of each factor. `factorSizes`: number of categories of each; a
  /// factor without an entry, or with a negative one, has none. `weightVar`: position of the
  /// frequency weight, negative for none. `dependentVar`: position of a categorical dependent,
  /// negative for none; it is counted only if `nDepCategories` is above 0. The offset is 0.0, or
  /// read from position `offsetVar`, or `offsetValue`, as `offsetType` says; a negative
  /// `offsetVar` gives 0.0.
  MCFactorCounts(const std::vector<int>& factors, const std::vector<int>& factorSizes,
                 int weightVar, int dependentVar, int nDepCategories, int lowestCategory,
                 int offsetVar, double offsetValue, MCConst::MCOffsetType offsetType);

  /// Memory exhaustion is thrown here and in the assignment, which then changes nothing.
  MCFactorCounts(const MCFactorCounts& other) = default;
  MCFactorCounts& operator=(const MCFactorCounts& other);
  ~MCFactorCounts() = default;

  /// Number of factors.
  int GetNFactors() const { return fNFactors; }

  /// Number of categories of `factor` (0 to GetNFactors() - 1), -1 out of that range.
  int GetNCategories(int factor) const;

  /// The counts of `factor`, one pair for each category, owned by this object; null out of range.
  const CategoryCounts* GetCountsPtr(int factor) const;

  /// The counts of the dependent's categories, owned by this object; null if it isn't counted.
  const CategoryCounts* GetDependCountsPtr() const;

  /// Per category of the dependent the sum of weight times offset and the sum of weight, as
  /// Update() adds them, owned by this object; null unless a derived class keeps them.
  const CategoryCounts* GetDepCountsWithOffsetPtr() const;

  /// How many categories of `factor` have a weighted count above 0.0; -1 out of range.
  int GetNActiveCategories(int factor) const;

  /// Counts one row. False if a level is out of range: the other factors of such a row are still
  /// counted, the dependent only if all factors are in range. False too, with nothing counted, if
  /// the record has no value at a position that is to be read.
  bool Update(const MCCommon::Record& record);

  void Display() const;

protected:
  /// Begins the sums of GetDepCountsWithOffsetPtr() with 0.0, if the dependent is counted.
  void KeepOffsetSums();

  /// Number of values that a record must have so that `position` can be read; no record has as
  /// many as a negative position asks for.
  static std::int64_t SizeToRead(int position);

  /// Number of values that a record must have for factors, frequency weight and dependent.
  std::int64_t SizeToCount() const { return fSizeToCount; }

  /// 1.0, or the frequency weight of the row.
  double GetFrequencyWeight(const double* row) const;

  /// Adds the row to the category of one factor (0 to GetNFactors() - 1, unchecked). The level,
  /// or kOutOfRange with nothing added.
  int CountFactor(int factor, const double* row, double weight);

  /// Adds the row to the category of the dependent, if that is counted. The level, 0 if the
  /// dependent isn't counted, or kOutOfRange with nothing added.
  int CountDependent(const double* row, double weight);

  /// What a level that isn't in range is told as.
  static constexpr int kOutOfRange = -1;

  const std::vector<int>& GetFactorIndices() const { return fFactorIndices; }
  int GetLowestCategory() const { return fLowestCategory; }

  /// The fields on the stream of MCComponentDisplay, without opening and closing line.
  void DisplayFields(const char* weightLabel) const;

private:
  static int Count(CategoryCounts& counts, std::int64_t level, double weight);
  bool IsFactor(int factor) const { return factor >= 0 && factor < fNFactors; }
  bool ReadsOffset() const;
  double GetOffset(const double* row) const;

  std::vector<int> fFactorIndices;
  std::vector<int> fFactorSizes;
  int fNFactors;
  int fWeightVar;
  int fDependentVar;
  int fNDepCategories;
  int fLowestCategory;
  std::vector<CategoryCounts> fCounts;
  std::optional<CategoryCounts> fDepCounts;
  std::optional<CategoryCounts> fDepCountsWithOffset;
  int fOffsetVar;
  double fOffsetValue;
  MCConst::MCOffsetType fOffsetType;
  std::int64_t fSizeToCount;
};
