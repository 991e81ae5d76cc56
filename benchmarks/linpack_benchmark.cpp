// SPDX-License-Identifier: Apache-2.0
// LINPACK's factorisations on plain arrays, against LAPACK's of the same kind. Each run works on a
// fresh copy; the peers copy as well.
#include "mcmath/linpack.h"
#include "support/columns.h"

#include <benchmark/benchmark.h>
#include <lapacke.h>

#include <cstddef>
#include <vector>

namespace {

using MCCommonMath::Linpack;
using mctest::Columns;
using mctest::RandomColumns;
using mctest::Vector;

/// Room for a vector of the order, several times over.
struct Room {
  explicit Room(int n)
      : ints(static_cast<std::size_t>(n)),
        s(ints.size() + 1),
        e(s),
        tau(s),
        work(s),
        u(n, n),
        v(n, n) {}

  std::vector<int> ints;
  Vector s;
  Vector e;
  Vector tau;
  Vector work;
  Columns u;
  Columns v;
};

Columns Symmetric(const benchmark::State& state) {
  return RandomColumns(1).Symmetric(static_cast<int>(state.range(0)));
}

template <class Storage, class Work>
void Repeat(benchmark::State& state, const Storage& start, const Work& work) {
  const int n = static_cast<int>(state.range(0));
  Storage copy = start;
  Room room(n);
  for (auto _ : state) {
    copy = start;
    work(copy, n, room);
    benchmark::DoNotOptimize(copy);
    benchmark::ClobberMemory();
  }
}

template <class Work>
void WorkOnCopies(benchmark::State& state, const Work& work) {
  Repeat(state, Symmetric(state),
         [&work](Columns& a, int n, Room& room) { work(a.Data(), n, room); });
}

template <class Work>
void WorkOnPackedCopies(benchmark::State& state, const Work& work) {
  Repeat(state, mctest::PackedUpper(Symmetric(state)),
         [&work](Vector& packed, int n, Room& room) { work(packed.data(), n, room); });
}

void LinpackDgefa(benchmark::State& state) {
  WorkOnCopies(state, [](double* a, int n, Room& room) {
    int info = 0;
    Linpack::Dgefa(a, n, n, room.ints.data(), &info);
  });
}

void LinpackPeerGetrf(benchmark::State& state) {
  WorkOnCopies(state, [](double* a, int n, Room& room) {
    LAPACKE_dgetrf(LAPACK_COL_MAJOR, n, n, a, n, room.ints.data());
  });
}

void LinpackDspfa(benchmark::State& state) {
  WorkOnPackedCopies(state, [](double* packed, int n, Room& room) {
    int info = 0;
    Linpack::Dspfa(packed, n, room.ints.data(), &info);
  });
}

void LinpackPeerSptrf(benchmark::State& state) {
  WorkOnPackedCopies(state, [](double* packed, int n, Room& room) {
    LAPACKE_dsptrf(LAPACK_COL_MAJOR, 'U', n, packed, room.ints.data());
  });
}

void LinpackDqrdc(benchmark::State& state) {
  WorkOnCopies(state, [](double* a, int n, Room& room) {
    Linpack::Dqrdc(a, n, n, n, room.tau.data(), nullptr, nullptr, 0);
  });
}

void LinpackPeerGeqrf(benchmark::State& state) {
  WorkOnCopies(state, [](double* a, int n, Room& room) {
    LAPACKE_dgeqrf(LAPACK_COL_MAJOR, n, n, a, n, room.tau.data());
  });
}

void LinpackDsvdc(benchmark::State& state) {
  WorkOnCopies(state, [](double* a, int n, Room& room) {
    int info = 0;
    Linpack::Dsvdc(a, n, n, n, room.s.data(), room.e.data(), room.u.Data(), n, room.v.Data(), n,
                   room.work.data(), 11, &info);
  });
}

void LinpackPeerGesvd(benchmark::State& state) {
  WorkOnCopies(state, [](double* a, int n, Room& room) {
    LAPACKE_dgesvd(LAPACK_COL_MAJOR, 'A', 'A', n, n, a, n, room.s.data(), room.u.Data(), n,
                   room.v.Data(), n, room.work.data());
  });
}

#define MCSTAT_ORDERS Arg(50)->Arg(200)->Unit(benchmark::kMicrosecond)
BENCHMARK(LinpackDgefa)->MCSTAT_ORDERS;
BENCHMARK(LinpackPeerGetrf)->MCSTAT_ORDERS;
BENCHMARK(LinpackDspfa)->MCSTAT_ORDERS;
BENCHMARK(LinpackPeerSptrf)->MCSTAT_ORDERS;
BENCHMARK(LinpackDqrdc)->MCSTAT_ORDERS;
BENCHMARK(LinpackPeerGeqrf)->MCSTAT_ORDERS;
BENCHMARK(LinpackDsvdc)->MCSTAT_ORDERS;
BENCHMARK(LinpackPeerGesvd)->MCSTAT_ORDERS;

}  // namespace
