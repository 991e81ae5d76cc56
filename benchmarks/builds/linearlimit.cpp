// SPDX-License-Identifier: Apache-2.0
// limit NAME DIRECTORY: the least that a fit of a data set needs. One pass over the file gathers
// X'X, by dsyrk on chunks of rows, or by hand for the few non-zeros of rows of factors; a Cholesky
// factorisation gives the residual sum of squares. No row is validated, nothing is tested for
// redundancy (the first level of each factor is left out beforehand), no residuals are formed.
#include "dataset.h"

#include <cblas.h>
#include <lapacke.h>

#include <algorithm>
#include <cmath>

namespace {

/// R square from X'X with the intercept first and the dependent last: the last diagonal element of
/// the factor is the root of the residual sum of squares.
double RSquare(std::vector<double>& square, std::size_t n) {
  const std::size_t last = n - 1;
  const double mean = square[last * n] / square[0];
  const double total = square[last * n + last] - mean * square[last * n];
  LAPACKE_dpotrf(LAPACK_ROW_MAJOR, 'L', static_cast<int>(n), square.data(), static_cast<int>(n));
  const double residual = square[last * n + last];
  return 1.0 - residual * residual / total;
}

/// The columns are the intercept, the covariates and the dependent.
double FitDense(const Dataset& dataset, std::FILE* file) {
  constexpr std::size_t kChunk = 512;
  const std::size_t nRead = static_cast<std::size_t>(dataset.NVariables());
  const std::size_t n = nRead + 1;
  std::vector<double> square(n * n, 0.0);
  std::vector<double> chunk(kChunk * n);
  std::size_t count = 0;
  do {
    for (count = 0; count < kChunk; ++count) {
      double* row = chunk.data() + count * n;
      row[0] = 1.0;
      if (std::fread(row + 1, sizeof(double), nRead, file) != nRead) break;
    }
    cblas_dsyrk(CblasRowMajor, CblasLower, CblasTrans, static_cast<int>(n), static_cast<int>(count),
                1.0, chunk.data(), static_cast<int>(n), 1.0, square.data(), static_cast<int>(n));
  } while (count == kChunk);
  return RSquare(square, n);
}

/// The columns are the intercept, those of the factor effects but for their first levels, the
/// covariates and the dependent. A column that is left out counts as column 0 of its own.
class FactorFit {
public:
  explicit FactorFit(const Dataset& dataset) : fDataset(dataset) {
    fNColumns = 2;
    for (const std::vector<int>& effect : dataset.factorEffects) {
      fFirst.push_back(fNColumns);
      std::size_t cells = 1;
      for (int factor : effect) cells *= Size(factor) - 1;
      fNColumns += cells;
    }
    fFirstCovariate = fNColumns;
    fNColumns += static_cast<std::size_t>(dataset.nCovariates) + 1;
    fSquare.assign(fNColumns * fNColumns, 0.0);
  }

  void Add(const double* row) {
    std::size_t columns[kMost];
    double values[kMost];
    std::size_t count = 0;
    columns[count] = 1;
    values[count++] = 1.0;
    for (std::size_t e = 0; e < fFirst.size(); ++e) {
      columns[count] = Column(e, row);
      values[count++] = 1.0;
    }
    for (std::size_t c = fFirstCovariate; c < fNColumns; ++c) {
      columns[count] = c;
      values[count++] = row[static_cast<std::size_t>(fDataset.NFactors()) + c - fFirstCovariate];
    }
    for (std::size_t a = 0; a < count; ++a) {
      double* to = fSquare.data() + columns[a] * fNColumns;
      for (std::size_t b = 0; b <= a; ++b) to[columns[b]] += values[a] * values[b];
    }
  }

  double Finish() {
    const std::size_t n = fNColumns - 1;
    std::vector<double> square(n * n);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j <= i; ++j) square[i * n + j] = fSquare[(i + 1) * fNColumns + j + 1];
    }
    return RSquare(square, n);
  }

private:
  static constexpr std::size_t kMost = 16;

  std::size_t Size(int factor) const {
    return static_cast<std::size_t>(fDataset.factorSizes[static_cast<std::size_t>(factor)]);
  }

  std::size_t Column(std::size_t e, const double* row) const {
    std::size_t cell = 0;
    for (int factor : fDataset.factorEffects[e]) {
      const std::size_t code = static_cast<std::size_t>(row[factor]);
      if (code == 0) return 0;
      cell = cell * (Size(factor) - 1) + code - 1;
    }
    return fFirst[e] + cell;
  }

  const Dataset& fDataset;
  std::vector<std::size_t> fFirst;
  std::size_t fFirstCovariate;
  std::size_t fNColumns;
  std::vector<double> fSquare;
};

double FitFactors(const Dataset& dataset, std::FILE* file) {
  FactorFit fit(dataset);
  constexpr std::size_t kChunk = 512;
  const std::size_t width = static_cast<std::size_t>(dataset.NVariables());
  std::vector<double> rows(kChunk * width);
  std::size_t count = kChunk;
  while (count == kChunk) {
    count = std::fread(rows.data(), sizeof(double), rows.size(), file) / width;
    for (std::size_t k = 0; k < count; ++k) fit.Add(rows.data() + k * width);
  }
  return fit.Finish();
}

}  // namespace

int main(int argc, char** argv) {
  const Dataset dataset = DatasetNamed(argc == 3 ? argv[1] : "");
  std::FILE* file = dataset.name.empty() ? nullptr : OpenRows(dataset, argv[2], "rb");
  if (file == nullptr) return 2;
  const bool isDense = dataset.factorSizes.empty();
  ReportUse("limit", isDense ? FitDense(dataset, file) : FitFactors(dataset, file));
  return std::fclose(file) == 0 ? 0 : 1;
}
