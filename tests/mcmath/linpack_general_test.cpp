// SPDX-License-Identifier: Apache-2.0
// General and band matrices against LAPACK.
#include "mcmath/linpack.h"
#include "support/columns.h"
#include "support/lapackpeer.h"
#include "support/linpackchecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using MCCommonMath::Linpack;
using namespace mctest;

/// The factors of a general matrix, with a gap between columns.
struct Factored {
  Columns a;
  std::vector<int> ipvt;
  double rcond = -1.0;

  explicit Factored(const Columns& given)
      : a(WithGap(given, 3)), ipvt(static_cast<std::size_t>(given.Rows())) {
    Vector z = Junk(given.Rows());
    Linpack::Dgeco(a.Data(), a.Ld(), a.Rows(), ipvt.data(), &rcond, z.data());
  }

  Vector Solve(Vector b, int job) const {
    Linpack::Dgesl(a.Data(), a.Ld(), a.Rows(), ipvt.data(), b.data(), job);
    return b;
  }
};

void ExpectSolutions(const Columns& a, const Factored& factored, const Vector& b) {
  EXPECT_LT(Residual(a, factored.Solve(b, 0), b), kThreshold);
  EXPECT_LT(Residual(Transposed(a), factored.Solve(b, 1), b), kThreshold);
  EXPECT_TRUE(factored.a.GapsAreUntouched());
}

std::vector<int> PivotsByLapack(Columns a) {
  std::vector<int> pivots(static_cast<std::size_t>(a.Rows()));
  LAPACKE_dgetrf(LAPACK_COL_MAJOR, a.Rows(), a.Rows(), a.Data(), a.Ld(), pivots.data());
  return pivots;
}

TEST(LinpackGeneral, SolvesRandomSystemsAndTheirTransposes) {
  RandomColumns source(1);
  for (int n = 1; n <= kMaxOrder; ++n) {
    SCOPED_TRACE(n);
    const Columns a = source.Matrix(n, n);
    const Factored factored(a);
    EXPECT_EQ(factored.ipvt, PivotsByLapack(a));
    ExpectSolutions(a, factored, source.Entries(n));
    ExpectEstimate(factored.rcond, a, 10.0);
  }
}

TEST(LinpackGeneral, SolvesGradedSystems) {
  RandomColumns source(2);
  for (int n = 1; n <= kMaxOrder; n += 3) {
    SCOPED_TRACE(n);
    for (const Columns& a : {source.Graded(n, n), Transposed(source.Graded(n, n))}) {
      const Factored factored(a);
      ExpectSolutions(a, factored, source.Entries(n));
      ExpectEstimate(factored.rcond, a, 20.0);
    }
  }
}

TEST(LinpackGeneral, FactorsAreThoseOfTheRoutineThatEstimates) {
  RandomColumns source(3);
  const Columns a = WithGap(source.Matrix(20, 20), 3);
  Columns factors = a;
  std::vector<int> ipvt(20);
  int info = -1;
  Linpack::Dgefa(factors.Data(), factors.Ld(), 20, ipvt.data(), &info);
  const Factored factored(a);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(ipvt, factored.ipvt);
  EXPECT_TRUE(factors == factored.a);
}

// Rows 3, 1, 2 of the pivots: multipliers have the opposite sign, and stay where they were made.
TEST(LinpackGeneral, LeavesTheFactorsInThePublishedForm) {
  // A = [1 2 3; 2 2 4; 4 4 4].
  Vector a = {1, 2, 4, 2, 2, 4, 3, 4, 4};
  std::vector<int> ipvt(3);
  int info = -1;
  Linpack::Dgefa(a.data(), 3, 3, ipvt.data(), &info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(ipvt, (std::vector<int>{3, 3, 3}));
  EXPECT_EQ(a, (Vector{4, -0.5, -0.25, 4, 1, -0.0, 4, 2, 2}));
}

TEST(LinpackGeneral, ReportsTheLastZeroPivot) {
  RandomColumns source(4);
  for (const int zero : {1, 4, 7}) {
    Columns a = source.Matrix(7, 7);
    for (int i = 0; i < 7; ++i) a(i, 0) = a(i, zero - 1) = 0.0;
    std::vector<int> ipvt(7);
    int info = -1;
    Columns factors = a;
    Linpack::Dgefa(factors.Data(), 7, 7, ipvt.data(), &info);
    EXPECT_EQ(info, zero);
    EXPECT_EQ(Factored(a).rcond, 0.0);
  }
}

TEST(LinpackGeneral, TellsDependentColumnsByTheEstimate) {
  RandomColumns source(5);
  for (int n = 2; n <= kMaxOrder; n += 7) {
    SCOPED_TRACE(n);
    Columns a = source.Matrix(n, n);
    for (int i = 0; i < n; ++i) {
      a(i, n - 1) = 0.0;
      for (int j = 0; j + 1 < n; ++j) a(i, n - 1) += a(i, j);
    }
    EXPECT_LT(Factored(a).rcond, 10.0 * std::numeric_limits<double>::epsilon());
  }
}

TEST(LinpackGeneral, EstimatesTheSameAtTheEndsOfTheRange) {
  RandomColumns source(6);
  const Columns a = source.Matrix(12, 12);
  const double expected = Factored(a).rcond;
  for (const double scale : {0x1p-900, 0x1p+900}) {
    // Apart from the rounding of the factors that keep the vector of the estimate in range.
    EXPECT_DOUBLE_EQ(Factored(Scaled(a, scale)).rcond, expected);
  }
}

TEST(LinpackGeneral, DividesByPivotsWithoutAReciprocal) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  Vector a = {2 * tiny, tiny, 1.0, 1.0};
  std::vector<int> ipvt(2);
  int info = -1;
  Linpack::Dgefa(a.data(), 2, 2, ipvt.data(), &info);
  EXPECT_EQ(a[1], -0.5);
  EXPECT_EQ(a[3], 0.5);
}

TEST(LinpackGeneral, InvertsAndFindsDeterminants) {
  RandomColumns source(7);
  for (int n = 1; n <= kMaxOrder; n += 4) {
    SCOPED_TRACE(n);
    const Columns a = source.Matrix(n, n);
    for (const int job : {1, 10, 11}) {
      Factored factored(a);
      Vector det = {-5.0, -5.0};
      Vector work = Junk(job % 10 == 0 ? 0 : n);
      Linpack::Dgedi(factored.a.Data(), factored.a.Ld(), n, factored.ipvt.data(), det.data(),
                     work.data(), job);
      if (job != 1) ExpectDeterminant(det.data(), a);
      if (job == 1) {
        EXPECT_EQ(det, (Vector{-5.0, -5.0}));
      }
      if (job != 10) ExpectInverse(factored.a, a);
      if (job == 10) {
        EXPECT_TRUE(factored.a == Factored(a).a);
      }
      EXPECT_TRUE(factored.a.GapsAreUntouched());
    }
  }
}

TEST(LinpackGeneral, WritesDeterminantsBeyondTheRangeOfDoubles) {
  const struct {
    Vector diagonal;
    double digits;
    double exponent;
  } cases[] = {{{1e300, 1e300, -2.0}, -2.0, 600.0},
               {{1e-300, 1e-300, 9.0}, 9.0, -600.0},
               {{9.5, 9.5, 9.5}, 8.57375, 2.0},
               {{0.0, 1e300, 7.0}, 0.0, 300.0}};
  for (const auto& item : cases) {
    Columns a(3, 3);
    for (int i = 0; i < 3; ++i) a(i, i) = item.diagonal[static_cast<std::size_t>(i)];
    const std::vector<int> ipvt = {1, 2, 3};
    Vector det(2);
    Linpack::Dgedi(a.Data(), 3, 3, ipvt.data(), det.data(), nullptr, 10);
    EXPECT_NEAR(det[0], item.digits, 1e-12);
    if (item.digits != 0.0) {
      EXPECT_EQ(det[1], item.exponent);
    }
  }
}

TEST(LinpackGeneral, DeterminantsThatAreNotFiniteEnd) {
  for (const double value : {std::nan(""), HUGE_VAL}) {
    const int pivot = 1;
    double a = value;
    Vector det(2);
    Linpack::Dgedi(&a, 1, 1, &pivot, det.data(), nullptr, 10);
    EXPECT_FALSE(std::isfinite(det[0]));
  }
}

TEST(LinpackGeneral, NothingButAnswersIsTouchedWithoutRows) {
  for (const int n : {0, -3}) {
    int info = -1;
    double rcond = -1.0;
    Vector det(2);
    Linpack::Dgefa(nullptr, 1, n, nullptr, &info);
    EXPECT_EQ(info, 0);
    Linpack::Dgeco(nullptr, 1, n, nullptr, &rcond, nullptr);
    EXPECT_EQ(rcond, 0.0);
    Linpack::Dgesl(nullptr, 1, n, nullptr, nullptr, 0);
    Linpack::Dgesl(nullptr, 1, n, nullptr, nullptr, 1);
    Linpack::Dgedi(nullptr, 1, n, nullptr, det.data(), nullptr, 11);
    EXPECT_EQ(det, (Vector{1.0, 0.0}));
    info = -1;
    Linpack::Dgbfa(nullptr, 1, n, 0, 0, nullptr, &info);
    EXPECT_EQ(info, 0);
    rcond = -1.0;
    Linpack::Dgbco(nullptr, 1, n, 0, 0, nullptr, &rcond, nullptr);
    EXPECT_EQ(rcond, 0.0);
    Linpack::Dgbsl(nullptr, 1, n, 0, 0, nullptr, nullptr, 0);
    Linpack::Dgbdi(nullptr, 1, n, 0, 0, nullptr, det.data());
    EXPECT_EQ(det, (Vector{1.0, 0.0}));
  }
}

TEST(LinpackGeneral, NoEstimateOfAMatrixWithANaNPassesATolerance) {
  RandomColumns source(8);
  for (int place = 0; place < 25; ++place) {
    Columns a = source.Matrix(5, 5);
    a(place % 5, place / 5) = std::nan("");
    EXPECT_FALSE(Factored(a).rcond > 0.0);
  }
}

/// Addresses of doubles that take no memory, and can't be touched, but where a page is opened.
class Addresses {
public:
  explicit Addresses(std::size_t count)
      : fBytes(count * sizeof(double)),
        fStart(
            mmap(nullptr, fBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
  Addresses(const Addresses&) = delete;
  Addresses& operator=(const Addresses&) = delete;
  ~Addresses() {
    if (AreThere()) munmap(fStart, fBytes);
  }

  bool AreThere() const { return fStart != MAP_FAILED; }
  double* Data() const { return static_cast<double*>(fStart); }

  /// `place`: where a page begins.
  bool OpenPage(std::size_t place) const {
    const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return mprotect(Data() + place, size, PROT_READ | PROT_WRITE) == 0;
  }

private:
  std::size_t fBytes;
  void* fStart;
};

// Three columns, 2^31 entries from first to last.
TEST(LinpackGeneral, ReachesColumnsBeyond31Bits) {
  constexpr int kLd = 1 << 30;
  const Addresses addresses(2 * std::size_t{kLd} + 3);
  ASSERT_TRUE(addresses.AreThere());
  double* const a = addresses.Data();
  const Columns given = RandomColumns(9).Matrix(3, 3);
  for (std::size_t j = 0; j < 3; ++j) {
    ASSERT_TRUE(addresses.OpenPage(j * kLd));
    std::copy_n(given.Data() + 3 * j, 3, a + j * kLd);
  }
  std::vector<int> ipvt(3);
  double rcond = 0.0;
  Vector z(3);
  const Vector b = {1.0, 2.0, 3.0};
  Vector x = b;
  Linpack::Dgeco(a, kLd, 3, ipvt.data(), &rcond, z.data());
  Linpack::Dgesl(a, kLd, 3, ipvt.data(), x.data(), 0);
  EXPECT_LT(Residual(given, x, b), kThreshold);
}

/// A random band matrix, and its band storage with junk wherever no element stands.
struct Band {
  int ml;
  int mu;
  Columns full;
  Columns stored;

  Band(RandomColumns& source, int n, int lower, int upper)
      : ml(lower), mu(upper), full(n, n), stored(2 * ml + mu + 1, n, 2) {
    for (int j = 0; j < n; ++j) {
      for (int row = 0; row < stored.Rows(); ++row) stored(row, j) = 1e99;
      for (int i = std::max(0, j - mu); i <= std::min(n - 1, j + ml); ++i) {
        full(i, j) = stored(i - j + ml + mu, j) = source.Next();
      }
    }
  }
};

struct FactoredBand {
  Band band;
  std::vector<int> ipvt;
  double rcond = -1.0;

  explicit FactoredBand(const Band& given)
      : band(given), ipvt(static_cast<std::size_t>(given.full.Rows())) {
    Columns& stored = band.stored;
    Vector z = Junk(stored.Cols());
    Linpack::Dgbco(stored.Data(), stored.Ld(), stored.Cols(), band.ml, band.mu, ipvt.data(), &rcond,
                   z.data());
  }

  Vector Solve(Vector b, int job) const {
    const Columns& stored = band.stored;
    Linpack::Dgbsl(stored.Data(), stored.Ld(), stored.Cols(), band.ml, band.mu, ipvt.data(),
                   b.data(), job);
    return b;
  }
};

TEST(LinpackBand, SolvesEstimatesAndFindsDeterminants) {
  RandomColumns source(10);
  for (int n = 1; n <= kMaxOrder; n += 3) {
    for (const auto& [ml, mu] : {std::pair{0, 0}, {1, 1}, {0, 3}, {2, 0}, {5, 2}, {3, 7}}) {
      if (std::max(ml, mu) >= n) continue;
      SCOPED_TRACE(testing::Message() << n << ": " << ml << ", " << mu);
      const Band band(source, n, ml, mu);
      const FactoredBand factored(band);
      EXPECT_EQ(factored.ipvt, PivotsByLapack(band.full));
      const Vector b = source.Entries(n);
      EXPECT_LT(Residual(band.full, factored.Solve(b, 0), b), kThreshold);
      EXPECT_LT(Residual(Transposed(band.full), factored.Solve(b, 1), b), kThreshold);
      EXPECT_TRUE(factored.band.stored.GapsAreUntouched());
      ExpectEstimate(factored.rcond, band.full, 30.0);
      Vector det(2);
      Linpack::Dgbdi(factored.band.stored.Data(), band.stored.Ld(), n, ml, mu, factored.ipvt.data(),
                     det.data());
      ExpectDeterminant(det.data(), band.full);
    }
  }
}

TEST(LinpackBand, ReportsTheLastZeroPivot) {
  RandomColumns source(11);
  Band band(source, 9, 2, 1);
  for (int row = 0; row < band.stored.Rows(); ++row) band.stored(row, 0) = 0.0;
  std::vector<int> ipvt(9);
  int info = -1;
  Columns factors = band.stored;
  Linpack::Dgbfa(factors.Data(), factors.Ld(), 9, 2, 1, ipvt.data(), &info);
  EXPECT_EQ(info, 1);
  for (int row = 0; row < band.stored.Rows(); ++row) band.stored(row, 8) = 0.0;
  factors = band.stored;
  Linpack::Dgbfa(factors.Data(), factors.Ld(), 9, 2, 1, ipvt.data(), &info);
  EXPECT_EQ(info, 9);
  const FactoredBand estimated(band);
  EXPECT_EQ(estimated.rcond, 0.0);
  EXPECT_EQ(estimated.ipvt, ipvt);
  EXPECT_TRUE(estimated.band.stored == factors);
}

}  // namespace
