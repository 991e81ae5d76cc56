// SPDX-License-Identifier: Apache-2.0
// makerows NAME DIRECTORY: writes the row file of a data set, the same at every run.
#include "dataset.h"
#include "support/splitmix64.h"

#include <cmath>

namespace {

/// The same numbers at every run.
class Random {
public:
  double Uniform() { return static_cast<double>(fBits.Next() >> 11U) * 0x1p-53; }
  int Below(int n) { return static_cast<int>(fBits.Next() % static_cast<std::uint64_t>(n)); }

private:
  mctest::SplitMix64 fBits{20261121};
};

/// A category of a multinomial logit with predictors in proportion to `predictor`, and 0 for the
/// last.
double Category(const Dataset& dataset, double predictor, double uniform) {
  double total = 1.0;
  for (int j = 0; j + 1 < dataset.nCategories; ++j) {
    total += std::exp(0.3 * (j - 0.5) * (predictor - 1.0));
  }
  double below = 0.0;
  for (int j = 0; j + 1 < dataset.nCategories; ++j) {
    below += std::exp(0.3 * (j - 0.5) * (predictor - 1.0)) / total;
    if (uniform < below) return j;
  }
  return dataset.nCategories - 1;
}

/// A row whose dependent follows from all that stands before it, and noise.
void FillRow(const Dataset& dataset, Random& random, std::vector<double>& row) {
  double dependent = 1.0;
  std::size_t position = 0;
  for (int size : dataset.factorSizes) {
    const int code = random.Below(size);
    row[position++] = code;
    dependent += 0.1 * ((7 * code) % 13);
  }
  for (int i = 0; i < dataset.nCovariates; ++i) {
    const double x = 2.0 * random.Uniform() - 1.0;
    row[position++] = x;
    dependent += x * (i % 5 - 2);
  }
  row[position] = dataset.nCategories == 0 ? dependent + random.Uniform() - 0.5
                                           : Category(dataset, dependent, random.Uniform());
}

}  // namespace

int main(int argc, char** argv) {
  const Dataset dataset = DatasetNamed(argc == 3 ? argv[1] : "");
  std::FILE* file = dataset.name.empty() ? nullptr : OpenRows(dataset, argv[2], "wb");
  if (file == nullptr) return 2;
  Random random;
  std::vector<double> row(static_cast<std::size_t>(dataset.NVariables()));
  bool isWritten = true;
  for (int k = 0; k < dataset.nRows && isWritten; ++k) {
    FillRow(dataset, random, row);
    isWritten = std::fwrite(row.data(), sizeof(double), row.size(), file) == row.size();
  }
  return std::fclose(file) == 0 && isWritten ? 0 : 1;
}
