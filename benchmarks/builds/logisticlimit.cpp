// SPDX-License-Identifier: Apache-2.0
// logisticlimit NAME DIRECTORY: the least that a fit of a multinomial logit needs. Each of five
// passes over the file sums scores and Hessian at the current estimates, then takes a Newton step:
// dgemm and dsyrk on chunks of rows, or, where there are factors, sums for each cell of them that
// are spread over the design at the end of the pass. No row is validated or counted, nothing is
// tested for redundancy (the first level of each factor is left out beforehand), and no step is
// tried before it is taken.
#include "dataset.h"

#include <cblas.h>
#include <lapacke.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kPasses = 5;
constexpr std::size_t kChunk = 128;

/// Scores, Hessian and log-likelihood of a model of n columns and m equations, equation by
/// equation, the Hessian dense with its lower triangle used.
struct Sums {
  std::size_t n;
  std::size_t m;
  std::vector<double> estimates;
  std::vector<double> scores;
  std::vector<double> hessian;
  std::vector<double> counts;
  double logLikelihood = 0.0;

  Sums(std::size_t columns, std::size_t equations)
      : n(columns), m(equations), estimates(n * m), scores(n * m), hessian(n * m * n * m) {}

  void Clear() {
    std::fill(scores.begin(), scores.end(), 0.0);
    std::fill(hessian.begin(), hessian.end(), 0.0);
    counts.assign(m + 1, 0.0);
    logLikelihood = 0.0;
  }

  double* Block(std::size_t i, std::size_t j) { return hessian.data() + i * n * n * m + j * n; }
  std::size_t Pitch() const { return n * m; }

  void Step() {
    const int size = static_cast<int>(n * m);
    LAPACKE_dposv(LAPACK_ROW_MAJOR, 'L', size, 1, hessian.data(), size, scores.data(), 1);
    for (std::size_t i = 0; i < estimates.size(); ++i) estimates[i] += scores[i];
  }

  /// McFadden's, against the model of intercepts alone.
  double RSquare() const {
    double total = 0.0;
    double constant = 0.0;
    for (double count : counts) total += count;
    for (double count : counts) constant += count * std::log(count / total);
    return 1.0 - logLikelihood / constant;
  }
};

/// Predictors of a chunk, kChunk for each equation, become probabilities. Adds the log-likelihood.
void ToProbabilities(double* eta, const double* categories, std::size_t count, Sums& sums) {
  double rest[kChunk];
  double own[kChunk];
  for (std::size_t r = 0; r < count; ++r) rest[r] = 1.0;
  for (std::size_t r = 0; r < count; ++r) own[r] = 0.0;
  for (std::size_t j = 0; j < sums.m; ++j, eta += kChunk) {
    const double category = static_cast<double>(j);
    for (std::size_t r = 0; r < count; ++r) own[r] += categories[r] == category ? eta[r] : 0.0;
    for (std::size_t r = 0; r < count; ++r) eta[r] = std::exp(eta[r]);
    for (std::size_t r = 0; r < count; ++r) rest[r] += eta[r];
  }
  eta -= sums.m * kChunk;
  for (std::size_t j = 0; j < sums.m; ++j, eta += kChunk) {
    for (std::size_t r = 0; r < count; ++r) eta[r] /= rest[r];
  }
  double logLikelihood = 0.0;
  for (std::size_t r = 0; r < count; ++r) logLikelihood += own[r] - std::log(rest[r]);
  sums.logLikelihood += logLikelihood;
  for (std::size_t r = 0; r < count; ++r)
    sums.counts[static_cast<std::size_t>(categories[r])] += 1.0;
}

/// The columns are the intercept and the covariates.
class DensePass {
public:
  explicit DensePass(Sums& sums)
      : fSums(sums), fRows(kChunk * sums.n), fScaled(kChunk * sums.n), fEta(sums.m * kChunk) {}

  void Run(std::FILE* file) {
    std::size_t count = kChunk;
    while (count == kChunk) {
      count = std::fread(fRows.data(), sizeof(double), fRows.size(), file) / fSums.n;
      if (count > 0) Add(count);
    }
  }

private:
  void Add(std::size_t count) {
    const std::size_t n = fSums.n;
    const int rows = static_cast<int>(count);
    const int columns = static_cast<int>(n);
    double categories[kChunk] = {};
    // A row of the file has the covariates and the category: as many as there are columns.
    fX.resize(kChunk * n);
    for (std::size_t r = 0; r < count; ++r) {
      fX[r * n] = 1.0;
      std::copy_n(fRows.data() + r * n, n - 1, fX.data() + r * n + 1);
      categories[r] = fRows[r * n + n - 1];
    }
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasTrans, static_cast<int>(fSums.m), rows, columns,
                1.0, fSums.estimates.data(), columns, fX.data(), columns, 0.0, fEta.data(), kChunk);
    ToProbabilities(fEta.data(), categories, count, fSums);
    for (std::size_t i = 0; i < fSums.m; ++i) {
      const double* p = fEta.data() + i * kChunk;
      double residuals[kChunk];
      for (std::size_t r = 0; r < count; ++r) {
        residuals[r] = (categories[r] == static_cast<double>(i) ? 1.0 : 0.0) - p[r];
      }
      cblas_dgemv(CblasRowMajor, CblasTrans, rows, columns, 1.0, fX.data(), columns, residuals, 1,
                  1.0, fSums.scores.data() + i * n, 1);
      for (std::size_t j = 0; j <= i; ++j) {
        const double* q = fEta.data() + j * kChunk;
        double scale[kChunk];
        for (std::size_t r = 0; r < count; ++r)
          scale[r] = std::sqrt(i == j ? p[r] - p[r] * p[r] : p[r] * q[r]);
        for (std::size_t r = 0; r < count; ++r) {
          for (std::size_t c = 0; c < n; ++c) fScaled[r * n + c] = scale[r] * fX[r * n + c];
        }
        cblas_dsyrk(CblasRowMajor, CblasLower, CblasTrans, columns, rows, i == j ? 1.0 : -1.0,
                    fScaled.data(), columns, 1.0, fSums.Block(i, j),
                    static_cast<int>(fSums.Pitch()));
      }
    }
  }

  Sums& fSums;
  std::vector<double> fRows;
  std::vector<double> fX;
  std::vector<double> fScaled;
  std::vector<double> fEta;
};

/// The upper triangles of the blocks off the diagonal.
void CompleteBlocks(Sums& sums) {
  for (std::size_t i = 0; i < sums.m; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      double* block = sums.Block(i, j);
      for (std::size_t r = 0; r < sums.n; ++r) {
        for (std::size_t c = 0; c < r; ++c)
          block[c * sums.Pitch() + r] = block[r * sums.Pitch() + c];
      }
    }
  }
}

/// Main effects of factors and two covariates. Rows of a cell differ in their covariates alone.
class CellPass {
public:
  CellPass(const Dataset& dataset, Sums& sums) : fDataset(dataset), fSums(sums) {
    fNCells = 1;
    for (int size : dataset.factorSizes) fNCells *= static_cast<std::size_t>(size);
    fWidth = sums.m * kScores + sums.m * (sums.m + 1) / 2 * kProducts;
  }

  void Run(std::FILE* file) {
    const std::size_t width = static_cast<std::size_t>(fDataset.NVariables());
    fCells.assign(fNCells * fWidth, 0.0);
    PredictCells();
    std::vector<double> rows(kChunk * width);
    std::size_t count = kChunk;
    while (count == kChunk) {
      count = std::fread(rows.data(), sizeof(double), rows.size(), file) / width;
      if (count > 0) Add(rows.data(), count);
    }
    for (std::size_t cell = 0; cell < fNCells; ++cell) Spread(cell);
  }

private:
  // Sums over the rows of a cell: 1, x1, x2 and the products of these.
  static constexpr std::size_t kScores = 3;
  static constexpr std::size_t kProducts = 6;

  /// The columns of a cell: the intercept and those factor levels that are not the first.
  std::size_t ColumnsOf(std::size_t cell, std::size_t (&columns)[8]) const {
    std::size_t count = 0;
    std::size_t first = fSums.n - 2;
    columns[count++] = 0;
    for (std::size_t f = fDataset.factorSizes.size(); f-- > 0;) {
      const std::size_t size = static_cast<std::size_t>(fDataset.factorSizes[f]);
      first -= size - 1;
      if (cell % size > 0) columns[count++] = first + cell % size - 1;
      cell /= size;
    }
    return count;
  }

  void PredictCells() {
    fPredicted.assign(fSums.m * fNCells, 0.0);
    for (std::size_t cell = 0; cell < fNCells; ++cell) {
      std::size_t columns[8];
      const std::size_t count = ColumnsOf(cell, columns);
      for (std::size_t j = 0; j < fSums.m; ++j) {
        for (std::size_t c = 0; c < count; ++c) {
          fPredicted[cell * fSums.m + j] += fSums.estimates[j * fSums.n + columns[c]];
        }
      }
    }
  }

  void Add(const double* rows, std::size_t count) {
    const std::size_t width = static_cast<std::size_t>(fDataset.NVariables());
    const std::size_t m = fSums.m;
    std::size_t cells[kChunk];
    double x1[kChunk];
    double x2[kChunk];
    double categories[kChunk] = {};
    fEta.resize(m * kChunk);
    for (std::size_t r = 0; r < count; ++r, rows += width) {
      std::size_t cell = 0;
      for (std::size_t f = 0; f < fDataset.factorSizes.size(); ++f) {
        cell = cell * static_cast<std::size_t>(fDataset.factorSizes[f]) +
               static_cast<std::size_t>(rows[f]);
      }
      cells[r] = cell;
      x1[r] = rows[width - 3];
      x2[r] = rows[width - 2];
      categories[r] = rows[width - 1];
    }
    for (std::size_t j = 0; j < m; ++j) {
      const double* slopes = fSums.estimates.data() + (j + 1) * fSums.n - 2;
      for (std::size_t r = 0; r < count; ++r) {
        fEta[j * kChunk + r] = fPredicted[cells[r] * m + j] + slopes[0] * x1[r] + slopes[1] * x2[r];
      }
    }
    ToProbabilities(fEta.data(), categories, count, fSums);
    for (std::size_t r = 0; r < count; ++r) {
      double* sums = fCells.data() + cells[r] * fWidth;
      for (std::size_t i = 0; i < m; ++i) {
        const double p = fEta[i * kChunk + r];
        const double residual = (categories[r] == static_cast<double>(i) ? 1.0 : 0.0) - p;
        *sums++ += residual;
        *sums++ += residual * x1[r];
        *sums++ += residual * x2[r];
        for (std::size_t j = 0; j <= i; ++j) {
          const double q = fEta[j * kChunk + r];
          const double s = i == j ? p - p * p : -p * q;
          *sums++ += s;
          *sums++ += s * x1[r];
          *sums++ += s * x1[r] * x1[r];
          *sums++ += s * x2[r];
          *sums++ += s * x2[r] * x1[r];
          *sums++ += s * x2[r] * x2[r];
        }
      }
    }
  }

  void Spread(std::size_t cell) {
    std::size_t columns[8];
    const std::size_t count = ColumnsOf(cell, columns);
    const std::size_t x1 = fSums.n - 2;
    const std::size_t x2 = fSums.n - 1;
    const std::size_t pitch = fSums.Pitch();
    const double* sums = fCells.data() + cell * fWidth;
    for (std::size_t i = 0; i < fSums.m; ++i) {
      double* scores = fSums.scores.data() + i * fSums.n;
      for (std::size_t c = 0; c < count; ++c) scores[columns[c]] += sums[0];
      scores[x1] += sums[1];
      scores[x2] += sums[2];
      sums += kScores;
      for (std::size_t j = 0; j <= i; ++j, sums += kProducts) {
        double* block = fSums.Block(i, j);
        for (std::size_t c = 0; c < count; ++c) {
          for (std::size_t d = 0; d < count; ++d)
            block[std::max(columns[c], columns[d]) * pitch + std::min(columns[c], columns[d])] +=
                c <= d ? sums[0] : 0.0;
          block[x1 * pitch + columns[c]] += sums[1];
          block[x2 * pitch + columns[c]] += sums[3];
        }
        block[x1 * pitch + x1] += sums[2];
        block[x2 * pitch + x1] += sums[4];
        block[x2 * pitch + x2] += sums[5];
      }
    }
  }

  const Dataset& fDataset;
  Sums& fSums;
  std::size_t fNCells;
  std::size_t fWidth;
  std::vector<double> fCells;
  std::vector<double> fPredicted;
  std::vector<double> fEta;
};

std::size_t NColumns(const Dataset& dataset) {
  std::size_t n = 1 + static_cast<std::size_t>(dataset.nCovariates);
  for (int size : dataset.factorSizes) n += static_cast<std::size_t>(size) - 1;
  return n;
}

template <class Pass>
double Fit(Pass pass, Sums& sums, std::FILE* file) {
  for (int k = 0; k < kPasses; ++k) {
    std::rewind(file);
    sums.Clear();
    pass.Run(file);
    CompleteBlocks(sums);
    if (k + 1 < kPasses) sums.Step();
  }
  return sums.RSquare();
}

}  // namespace

int main(int argc, char** argv) {
  const Dataset dataset = DatasetNamed(argc == 3 ? argv[1] : "");
  std::FILE* file = dataset.nCategories == 0 ? nullptr : OpenRows(dataset, argv[2], "rb");
  if (file == nullptr) return 2;
  Sums sums(NColumns(dataset), static_cast<std::size_t>(dataset.nCategories) - 1);
  const bool isDense = dataset.factorSizes.empty();
  ReportUse("limit",
            isDense ? Fit(DensePass(sums), sums, file) : Fit(CellPass(dataset, sums), sums, file));
  return std::fclose(file) == 0 ? 0 : 1;
}
