// SPDX-License-Identifier: Apache-2.0
// Uniform numbers and variates, a block of them at a time, against the generators of the language.
#include "mcmath/random/mcrandomtwister.h"
#include "mcmath/random/mcrandomvalues.h"
#include "mcmath/random/mcrngbeta.h"
#include "mcmath/random/mcrngbinomial.h"
#include "mcmath/random/mcrngnormal.h"
#include "mcmath/random/mcurandom.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>

namespace {

using namespace MCCommonMath;

constexpr int kNumbers = 10000;

// The sum of a block of numbers, so that none is left out.
template <class Draw>
void DrawAll(benchmark::State& state, Draw draw) {
  for (auto run : state) {
    decltype(draw()) sum = 0;
    for (int i = 0; i < kNumbers; ++i) sum += draw();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kNumbers);
}

void RandomWords(benchmark::State& state) {
  MCRandomTwister twister;
  DrawAll(state, [&] { return twister.GetInteger32(); });
}
BENCHMARK(RandomWords)->Arg(kNumbers);

void RandomWordsPeer32(benchmark::State& state) {
  std::mt19937 twister;
  DrawAll(state, [&] { return static_cast<std::uint64_t>(twister()); });
}
BENCHMARK(RandomWordsPeer32)->Arg(kNumbers);

void RandomWordsPeer64(benchmark::State& state) {
  std::mt19937_64 twister;
  DrawAll(state, [&] { return twister(); });
}
BENCHMARK(RandomWordsPeer64)->Arg(kNumbers);

void RandomUniforms(benchmark::State& state) {
  MCURandom uniform;
  DrawAll(state, [&] { return uniform.GetRandom(); });
}
BENCHMARK(RandomUniforms)->Arg(kNumbers);

void RandomUniformsPeer32(benchmark::State& state) {
  std::mt19937 twister;
  std::uniform_real_distribution<double> uniform;
  DrawAll(state, [&] { return uniform(twister); });
}
BENCHMARK(RandomUniformsPeer32)->Arg(kNumbers);

void RandomUniformsPeer64(benchmark::State& state) {
  std::mt19937_64 twister;
  std::uniform_real_distribution<double> uniform;
  DrawAll(state, [&] { return uniform(twister); });
}
BENCHMARK(RandomUniformsPeer64)->Arg(kNumbers);

void RandomCongruential(benchmark::State& state) {
  MCURandom uniform;
  uniform.SetUseTwister(false);
  DrawAll(state, [&] { return uniform.GetRandom(); });
}
BENCHMARK(RandomCongruential)->Arg(kNumbers);

void RandomCongruentialPeer(benchmark::State& state) {
  std::linear_congruential_engine<std::uint64_t, 397204094, 0, 2147483647> engine;
  DrawAll(state, [&] { return static_cast<double>(engine()) * 4.656612873077393e-10; });
}
BENCHMARK(RandomCongruentialPeer)->Arg(kNumbers);

void RandomNormals(benchmark::State& state) {
  MCRandomValues values;
  DrawAll(state, [&] { return values.RVSNor(); });
}
BENCHMARK(RandomNormals)->Arg(kNumbers);

void RandomNormalsOfGenerator(benchmark::State& state) {
  MCRNGNormal normal;
  DrawAll(state, [&] { return normal.GetNext(); });
}
BENCHMARK(RandomNormalsOfGenerator)->Arg(kNumbers);

void RandomNormalsPeer32(benchmark::State& state) {
  std::mt19937 twister;
  std::normal_distribution<double> normal;
  DrawAll(state, [&] { return normal(twister); });
}
BENCHMARK(RandomNormalsPeer32)->Arg(kNumbers);

void RandomNormalsPeer64(benchmark::State& state) {
  std::mt19937_64 twister;
  std::normal_distribution<double> normal;
  DrawAll(state, [&] { return normal(twister); });
}
BENCHMARK(RandomNormalsPeer64)->Arg(kNumbers);

void RandomGammas(benchmark::State& state) {
  MCRandomValues values;
  DrawAll(state, [&] { return values.RVGam(2.5, 1.0); });
}
BENCHMARK(RandomGammas)->Arg(kNumbers);

void RandomGammasPeer64(benchmark::State& state) {
  std::mt19937_64 twister;
  std::gamma_distribution<double> gamma(2.5);
  DrawAll(state, [&] { return gamma(twister); });
}
BENCHMARK(RandomGammasPeer64)->Arg(kNumbers);

void RandomBinomials(benchmark::State& state) {
  MCRNGBinomial binomial(1000.0, 0.3);
  DrawAll(state, [&] { return binomial.GetNext(); });
}
BENCHMARK(RandomBinomials)->Arg(kNumbers);

void RandomBinomialsPeer64(benchmark::State& state) {
  std::mt19937_64 twister;
  std::binomial_distribution<std::int64_t> binomial(1000, 0.3);
  DrawAll(state, [&] { return static_cast<double>(binomial(twister)); });
}
BENCHMARK(RandomBinomialsPeer64)->Arg(kNumbers);

void RandomBetas(benchmark::State& state) {
  MCRNGBeta beta(2.0, 3.0);
  DrawAll(state, [&] { return beta.GetNext(); });
}
BENCHMARK(RandomBetas)->Arg(kNumbers);

}  // namespace
