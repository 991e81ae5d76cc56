// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcurandom.h"
#include "regression/frame/mcexport.h"

#include <memory>
#include <vector>

namespace MCCommonMath {

class MCSymMatrix;

/// Random numbers, vectors and matrices of a distribution that is chosen once: uniform, normal,
/// chi-square or Wishart; and single variates of those and others (RVUni() to RVNor()). A fresh one
/// is uniform on (0, 1).
///
///     MCRandomValues values;
///     values.SetSeed(20020126);
///     values.SetParamWishart(12.0, scale);
///     MCSymMatrix draw;
///     values.GetRandom(draw);
///
/// Uniform numbers come from an MCURandom, its own or a borrowed one, and those that aren't
/// strictly between 0 and 1 are passed over. Where only such come (1000 in a row) there is no
/// variate: the answer is the missing value, or false with the output unchanged. Nothing is kept
/// between draws, so they go on as before from a saved state of the MCURandom. A number beyond the
/// range of doubles is the largest double of its sign; elements of such a matrix may be infinite or
/// NaN.
///
/// Degrees of freedom, shapes, scales and means that are told to be positive are finite and 1e-300
/// or above.
class MC_EXPORT MCRandomValues {
public:
  /// \name The distribution
  /// Each answers false, with nothing changed, for parameters that aren't as told.
  /// @{

  /// Uniform between low < high, both finite.
  bool SetParamUniform(double low, double high);

  /// Normal with a finite mean and a finite standard deviation, 0 or above.
  bool SetParamNormal(double mean, double deviation);

  /// Multivariate normal: `mean` has n entries, all finite, and `covariance` n rows, n >= 1. A
  /// covariance may be singular; it is factored here, O(n^3), as is the scale of SetParamWishart().
  bool SetParamNormal(const std::vector<double>& mean, const MCSymMatrix& covariance);

  /// Chi-square with degrees of freedom > 0.
  bool SetParamChi(double degreesOfFreedom);

  /// Wishart of n by n matrices: the distribution of the sum of `degreesOfFreedom` x x', x normal
  /// with mean 0 and covariance `scale`. The scale has n >= 1 rows and may be singular, of rank r;
  /// the degrees of freedom are any number above r - 1 (and > 0), or a whole one from 1 up, with
  /// which the matrices are of that rank.
  bool SetParamWishart(double degreesOfFreedom, const MCSymMatrix& scale);

  /// Tolerance of the Cholesky factorisation of matrices that are set from now on. The row of which
  /// those before it leave most, as a share of its diagonal element, is next; when that is tol or
  /// less, or 16 n times the unit of doubles, 2.2e-16, the rows not taken are combinations of the
  /// others. What is left of them then must be as small everywhere, else the matrix isn't positive
  /// semidefinite and is refused. False, with nothing changed, unless 0 <= tol < 1; default 1e-12.
  bool SetTolerance(double tol);
  double GetTolerance() const { return fTolerance; }

  /// @}
  /// \name The uniform source
  /// @{

  /// Draws from `source`, which must outlive its use here, or from the own one again for null.
  void SetURNGPtr(MCURandom* source) { fpSource = source; }

  /// Seeds the source in use (MCURandom::SetSeed()).
  void SetSeed(unsigned long seed) { Source().SetSeed(seed); }

  /// @}
  /// \name Draws of the distribution
  /// @{

  /// A number; the missing value if the distribution is multivariate.
  double GetRandom();

  /// A vector of the multivariate normal distribution, sized to n. False, with it unchanged, for
  /// any other.
  bool GetRandom(std::vector<double>& values);

  /// A matrix of the Wishart distribution, n rows in 1 block: O(n^3). False, with it unchanged, for
  /// any other; false with it invalid where it can't be allocated. Numerical method: Bartlett
  /// (1933) decomposition.
  bool GetRandom(MCSymMatrix& matrix);

  /// @}
  /// \name Single variates, whatever the distribution
  /// The missing value for parameters that aren't as told.
  /// @{

  /// Uniform between low < high, both finite.
  double RVUni(double low, double high);

  /// Exponential with a mean > 0. Numerical method: inversion.
  double RVExp(double mean);

  /// Gamma with shape and scale > 0, of mean shape * scale. Numerical method: Marsaglia and Tsang
  /// (2000).
  double RVGam(double shape, double scale);

  /// Chi-square with degrees of freedom > 0: a gamma of half of them and of scale 2.
  double RVChi(double degreesOfFreedom);

  /// F with degrees of freedom > 0: a ratio of chi-squares, each over its own.
  double RVAuxF(double numerator, double denominator);

  /// Standard normal. Numerical method: ratio of uniforms with quadratic bounds (Leva 1992).
  double RVSNor();

  /// Normal with a finite mean and a finite standard deviation, 0 or above.
  double RVNor(double mean, double deviation);

  /// @}

  /// Writes seed, tolerance and distribution with its parameters to the display stream.
  void Display() const;

private:
  struct MatrixParameters;
  enum class Distribution { kUniform, kNormal, kMultivariateNormal, kChi, kWishart };

  const MCURandom& Source() const { return fpSource != nullptr ? *fpSource : fOwnSource; }
  MCURandom& Source() { return fpSource != nullptr ? *fpSource : fOwnSource; }
  bool IsStandard() const;
  bool IsMultivariate() const;
  const char* Name() const;
  void DisplayParameters() const;

  MCURandom fOwnSource;
  MCURandom* fpSource = nullptr;
  double fTolerance = 1e-12;

  Distribution fDistribution = Distribution::kUniform;
  // Low and high, mean and deviation, or degrees of freedom.
  double fFirst = 0.0;
  double fSecond = 1.0;
  // Of the distributions of vectors and matrices; never changed, so copies share it.
  std::shared_ptr<const MatrixParameters> fpMatrices;
};

}  // namespace MCCommonMath
