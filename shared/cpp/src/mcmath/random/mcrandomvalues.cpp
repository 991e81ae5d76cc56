// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrandomvalues.h"

#include "mcmath/linpack.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "mcmath/random/detail/variates.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>

namespace MCCommonMath {

namespace {

using Uniform = detail::OpenUniform<MCURandom>;

bool IsRange(double low, double high) {
  return std::isfinite(low) && std::isfinite(high) && low < high;
}

bool AreFinite(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(), [](double x) { return std::isfinite(x); });
}

// Between two numbers whose difference may not be a double.
double Between(double low, double high, double u) {
  return low * (1.0 - u) + high * u;
}

// Roots of the diagonal, NaN of what is negative.
std::vector<double> Deviations(const MCSymMatrix& S) {
  std::vector<double> deviations;
  S.GetDiagonal(deviations);
  for (double& value : deviations) value = std::sqrt(value);
  return deviations;
}

// An element of a covariance matrix made free of scale: so products of deviations, which may leave
// the range of doubles, aren't formed. Infinite for a covariance beside a variance of 0.
double Correlation(const MCSymMatrix& S, const std::vector<double>& deviations, int i, int j) {
  const double covariance = S.GetElem(i, j);
  if (covariance == 0.0) return 0.0;
  if (i == j) return 1.0;
  return covariance / deviations[static_cast<std::size_t>(i)] /
         deviations[static_cast<std::size_t>(j)];
}

// All of them, column by column.
std::vector<double> Correlations(const MCSymMatrix& S, const std::vector<double>& deviations) {
  const int n = S.GetNRows();
  std::vector<double> correlations;
  correlations.reserve(deviations.size() * deviations.size());
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) correlations.push_back(Correlation(S, deviations, i, j));
  }
  return correlations;
}

// L with L L' equal to the correlations but for the share that rows may leave, of as many columns
// as the rank. Whichever row has most left is next: in the order of the rows, one that depends on
// those before it but for little would magnify the rounding of all behind it.
bool FactorCorrelations(std::vector<double> correlations, int n, double share, MCRectMatrix& L) {
  std::vector<double> work(static_cast<std::size_t>(n));
  std::vector<int> order(work.size());
  int nRows = 0;
  Linpack::Dchdc(correlations.data(), n, n, work.data(), order.data(), 1, &nRows);
  const auto root = [&correlations, &work](int i, int j) {
    return correlations[static_cast<std::size_t>(j) * work.size() + static_cast<std::size_t>(i)];
  };
  int rank = 0;
  while (rank < nRows && root(rank, rank) * root(rank, rank) > share) ++rank;
  if (!L.SetNRowsCols(n, rank)) return false;
  for (int j = 0; j < n; ++j) {
    const int row = order[static_cast<std::size_t>(j)] - 1;
    for (int i = 0; i < std::min(rank, j + 1); ++i) L.SetElem(row, i, root(i, j));
  }
  return true;
}

// Whether L L' is equal to the correlations but for a share: of a positive semidefinite matrix the
// rows given up leave no more than that anywhere.
bool IsFactor(const MCSymMatrix& S, const std::vector<double>& deviations, double share,
              const MCRectMatrix& L) {
  MCSymMatrix product;
  if (!product.ComputeRByRTrans(L)) return false;
  for (int i = 0; i < S.GetNRows(); ++i) {
    for (int j = 0; j <= i; ++j) {
      const double rest = Correlation(S, deviations, i, j) - product.GetElem(i, j);
      if (!(std::fabs(rest) <= share)) return false;
    }
  }
  return true;
}

// L with L L' = S, of as many columns as S has rank. False if S has no row, or isn't finite or
// positive semidefinite, or if there is no memory for matrices.
bool FactorSemidefinite(const MCSymMatrix& S, double tol, MCRectMatrix& L) {
  constexpr double kRounding = 16.0 * std::numeric_limits<double>::epsilon();
  const int n = S.GetNRows();
  if (n < 1) return false;
  const std::vector<double> deviations = Deviations(S);
  const double share = std::max(tol, kRounding * n);
  if (!AreFinite(deviations)) return false;
  if (!FactorCorrelations(Correlations(S, deviations), n, share, L)) return false;
  if (!IsFactor(S, deviations, share, L)) return false;
  for (int i = 0; i < n; ++i) {
    const double deviation = deviations[static_cast<std::size_t>(i)];
    for (int j = 0; j < L.GetNCols(); ++j) L.SetElem(i, j, deviation * L.GetElem(i, j));
  }
  return true;
}

bool IsIdentity(const MCSymMatrix& S) {
  for (int i = 0; i < S.GetNRows(); ++i) {
    for (int j = 0; j <= i; ++j) {
      if (S.GetElem(i, j) != (i == j ? 1.0 : 0.0)) return false;
    }
  }
  return true;
}

// Column j of the lower triangle of Bartlett: the root of a chi-square on the diagonal, whose
// degrees of freedom go down by one from column to column, and standard normals below. False if
// there are no numbers.
bool FillBartlettColumn(MCRectMatrix& triangle, int j, double degreesOfFreedom, Uniform& uniform) {
  double x = std::sqrt(detail::ChiSquare(degreesOfFreedom - j, uniform));
  for (int i = j; i < triangle.GetNRows(); ++i) {
    if (std::isnan(x)) return false;
    triangle.SetElem(i, j, x);
    if (i + 1 < triangle.GetNRows()) x = detail::StandardNormal(uniform);
  }
  return true;
}

// T of `rank` rows for which T T' is Wishart with the identity as scale; of as many columns as that
// has rank itself.
bool FillBartlett(MCRectMatrix& triangle, int rank, double degreesOfFreedom, Uniform& uniform) {
  const int columns = static_cast<int>(std::min<double>(rank, std::ceil(degreesOfFreedom)));
  if (!triangle.SetNRowsCols(rank, columns)) return false;
  for (int j = 0; j < columns; ++j) {
    if (!FillBartlettColumn(triangle, j, degreesOfFreedom, uniform)) return false;
  }
  return true;
}

}  // namespace

struct MCRandomValues::MatrixParameters {
  // Of the normal distribution, n entries.
  std::vector<double> mean;
  // Covariance or scale, of n rows, and an n by r matrix L with L L' equal to it, r its rank.
  MCSymMatrix matrix;
  MCRectMatrix factor;

  // False if S is no such matrix or if there is no memory for it.
  bool SetMatrix(const MCSymMatrix& S, double tol) {
    matrix = S;
    return matrix.IsValidMatrix() && FactorSemidefinite(S, tol, factor);
  }
};

bool MCRandomValues::SetParamUniform(double low, double high) {
  if (!IsRange(low, high)) return false;
  fDistribution = Distribution::kUniform;
  fFirst = low;
  fSecond = high;
  return true;
}

bool MCRandomValues::SetParamNormal(double mean, double deviation) {
  if (!detail::AreNormal(mean, deviation)) return false;
  fDistribution = Distribution::kNormal;
  fFirst = mean;
  fSecond = deviation;
  return true;
}

bool MCRandomValues::SetParamNormal(const std::vector<double>& mean,
                                    const MCSymMatrix& covariance) {
  const bool fits =
      covariance.IsValidMatrix() && mean.size() == static_cast<std::size_t>(covariance.GetNRows());
  if (!fits || !AreFinite(mean)) return false;
  auto matrices = std::make_shared<MatrixParameters>();
  if (!matrices->SetMatrix(covariance, fTolerance)) return false;
  matrices->mean = mean;
  fDistribution = Distribution::kMultivariateNormal;
  fpMatrices = std::move(matrices);
  return true;
}

bool MCRandomValues::SetParamChi(double degreesOfFreedom) {
  if (!detail::IsShape(degreesOfFreedom)) return false;
  fDistribution = Distribution::kChi;
  fFirst = degreesOfFreedom;
  return true;
}

bool MCRandomValues::SetParamWishart(double degreesOfFreedom, const MCSymMatrix& scale) {
  if (!detail::IsShape(degreesOfFreedom)) return false;
  auto matrices = std::make_shared<MatrixParameters>();
  if (!matrices->SetMatrix(scale, fTolerance)) return false;
  const bool isWhole = std::floor(degreesOfFreedom) == degreesOfFreedom;
  if (!isWhole && degreesOfFreedom <= matrices->factor.GetNCols() - 1) return false;
  fDistribution = Distribution::kWishart;
  fFirst = degreesOfFreedom;
  fpMatrices = std::move(matrices);
  return true;
}

bool MCRandomValues::SetTolerance(double tol) {
  if (!(tol >= 0.0 && tol < 1.0)) return false;
  fTolerance = tol;
  return true;
}

double MCRandomValues::GetRandom() {
  switch (fDistribution) {
    case Distribution::kUniform:
      return RVUni(fFirst, fSecond);
    case Distribution::kNormal:
      return RVNor(fFirst, fSecond);
    case Distribution::kChi:
      return RVChi(fFirst);
    default:
      return MCMV::gMissingValue;
  }
}

bool MCRandomValues::GetRandom(std::vector<double>& values) {
  if (fDistribution != Distribution::kMultivariateNormal) return false;
  const MCRectMatrix& factor = fpMatrices->factor;
  Uniform uniform(Source());
  std::vector<double> draw(fpMatrices->mean);
  for (int j = 0; j < factor.GetNCols(); ++j) {
    const double x = detail::StandardNormal(uniform);
    if (std::isnan(x)) return false;
    for (int i = 0; i < factor.GetNRows(); ++i) {
      draw[static_cast<std::size_t>(i)] += factor.GetElem(i, j) * x;
    }
  }
  std::transform(draw.begin(), draw.end(), draw.begin(), detail::Answer);
  values.swap(draw);
  return true;
}

bool MCRandomValues::GetRandom(MCSymMatrix& matrix) {
  if (fDistribution != Distribution::kWishart) return false;
  const MCRectMatrix& factor = fpMatrices->factor;
  Uniform uniform(Source());
  MCRectMatrix triangle;
  MCRectMatrix root;
  if (!FillBartlett(triangle, factor.GetNCols(), fFirst, uniform)) return false;
  return factor.ComputeMatrixProduct(triangle, root) && matrix.ComputeRByRTrans(root);
}

double MCRandomValues::RVUni(double low, double high) {
  if (!IsRange(low, high)) return MCMV::gMissingValue;
  Uniform uniform(Source());
  return detail::Answer(Between(low, high, uniform()));
}

double MCRandomValues::RVExp(double mean) {
  if (!detail::IsShape(mean)) return MCMV::gMissingValue;
  Uniform uniform(Source());
  return detail::Answer(mean * detail::StandardExponential(uniform));
}

double MCRandomValues::RVGam(double shape, double scale) {
  if (!detail::IsShape(shape) || !detail::IsShape(scale)) return MCMV::gMissingValue;
  Uniform uniform(Source());
  return detail::Answer(scale * detail::StandardGamma(shape, uniform));
}

double MCRandomValues::RVChi(double degreesOfFreedom) {
  if (!detail::IsShape(degreesOfFreedom)) return MCMV::gMissingValue;
  Uniform uniform(Source());
  return detail::Answer(detail::ChiSquare(degreesOfFreedom, uniform));
}

double MCRandomValues::RVAuxF(double numerator, double denominator) {
  if (!detail::IsShape(numerator) || !detail::IsShape(denominator)) return MCMV::gMissingValue;
  Uniform uniform(Source());
  return detail::Answer(detail::FRatio(numerator, denominator, uniform));
}

double MCRandomValues::RVSNor() {
  Uniform uniform(Source());
  return detail::Answer(detail::StandardNormal(uniform));
}

double MCRandomValues::RVNor(double mean, double deviation) {
  if (!detail::AreNormal(mean, deviation)) return MCMV::gMissingValue;
  Uniform uniform(Source());
  return detail::Answer(detail::Normal(mean, deviation, uniform));
}

bool MCRandomValues::IsMultivariate() const {
  return fDistribution == Distribution::kMultivariateNormal ||
         fDistribution == Distribution::kWishart;
}

// A chi-square distribution has nothing to be standardised.
bool MCRandomValues::IsStandard() const {
  if (fDistribution == Distribution::kChi) return true;
  if (!IsMultivariate()) return fFirst == 0.0 && fSecond == 1.0;
  const std::vector<double>& mean = fpMatrices->mean;
  return IsIdentity(fpMatrices->matrix) &&
         std::all_of(mean.begin(), mean.end(), [](double x) { return x == 0.0; });
}

const char* MCRandomValues::Name() const {
  switch (fDistribution) {
    case Distribution::kUniform:
      return "Uniform";
    case Distribution::kChi:
      return "Chi-square";
    case Distribution::kWishart:
      return "Wishart";
    default:
      return "Normal";
  }
}

void MCRandomValues::DisplayParameters() const {
  using namespace MCComponentDisplay;
  switch (fDistribution) {
    case Distribution::kUniform:
      DisplayD("Lower limit", fFirst);
      DisplayD("Upper limit", fSecond);
      break;
    case Distribution::kNormal:
      DisplayD("Mean", fFirst);
      DisplayD("Standard deviation", fSecond);
      break;
    case Distribution::kMultivariateNormal:
      DisplayDV("Mean", fpMatrices->mean, false);
      DisplayText(1, "Covariance matrix:");
      fpMatrices->matrix.Display();
      break;
    case Distribution::kChi:
      DisplayD("Degrees of freedom", fFirst);
      break;
    case Distribution::kWishart:
      DisplayD("Degrees of freedom", fFirst);
      DisplayText(1, "Scale matrix:");
      fpMatrices->matrix.Display();
      break;
  }
}

void MCRandomValues::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCRandomValues display start");
  DisplayS("Current seed", std::to_string(Source().GetSeed()));
  DisplayD("Computational tolerance", fTolerance);
  DisplayText(1, std::string("Distribution type: ") + Name());
  DisplayText(1, IsMultivariate() ? "Distribution is multivariate" : "Distribution is univariate");
  DisplayText(1, IsStandard() ? "Distribution is standard" : "Distribution is not standard");
  DisplayParameters();
  DisplayText(1, "MCRandomValues display end");
}

}  // namespace MCCommonMath
