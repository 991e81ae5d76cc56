// SPDX-License-Identifier: Apache-2.0
//
// makerows ROWS > file.csv: a data set of any size for demonstrations, the same at every run.
//
// Each row is a delivery: how long it took, where from and how it was shipped, distance and load,
// how many parcels the row stands for. The time follows
//
//   hours = 2 + region + service + region x service + 0.03 distance + 0.5 load
//           - 0.00001 distance^2 + noise
//
// with the effects in the tables below and noise spread evenly over -1.5 to 1.5. The region
// "Islands" has no "express" service, so that this combination is empty, and about one row in 200
// has no load.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

/// SplitMix64 (Steele, Lea and Flood 2014): small, and the same on every machine.
class Random {
public:
  explicit Random(std::uint64_t seed) : fState(seed) {}

  /// Evenly spread over 0 to 1, 1 excluded.
  double Uniform() { return static_cast<double>(Next() >> 11U) * 0x1p-53; }

  /// Evenly spread over 0 to n - 1.
  unsigned Below(unsigned n) { return static_cast<unsigned>(Next() % n); }

private:
  std::uint64_t Next() {
    std::uint64_t z = (fState += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
  }

  std::uint64_t fState;
};

constexpr const char* kRegions[] = {"North", "East", "South", "West", "Islands"};
constexpr double kRegionHours[] = {0.0, 0.4, -0.6, 1.1, 9.0};
constexpr unsigned kIslands = 4;

constexpr const char* kServices[] = {"standard", "express", "freight"};
constexpr double kServiceHours[] = {0.0, -3.0, 6.5};
constexpr unsigned kStandard = 0;
constexpr unsigned kExpress = 1;

// Where the two together are not the sum of both.
double InteractionHours(unsigned region, unsigned service) {
  return 0.25 * static_cast<double>(region) * static_cast<double>(service);
}

void PrintRow(Random& random) {
  const unsigned region = random.Below(5);
  unsigned service = random.Below(3);
  if (region == kIslands && service == kExpress) service = kStandard;
  const double distance = 20.0 + 980.0 * random.Uniform();
  const double load = 0.1 + 24.9 * random.Uniform();
  const double noise = 3.0 * random.Uniform() - 1.5;
  const double hours = 2.0 + kRegionHours[region] + kServiceHours[service] +
                       InteractionHours(region, service) + 0.03 * distance + 0.5 * load -
                       0.00001 * distance * distance + noise;
  const unsigned parcels = 1 + random.Below(4);
  std::printf("%.4f,%s,%s,%.1f,", hours, kRegions[region], kServices[service], distance);
  if (random.Below(200) != 0) std::printf("%.2f", load);
  std::printf(",%u\n", parcels);
}

}  // namespace

int main(int argc, char** argv) {
  char* end = nullptr;
  const std::int64_t rows = argc == 2 ? std::strtoll(argv[1], &end, 10) : -1;
  if (rows < 0 || end == argv[1] || *end != '\0') {
    std::fputs("usage: makerows ROWS > file.csv\n", stderr);
    return 2;
  }
  static char buffer[1 << 18];
  std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
  std::puts("hours,region,service,distance,load,parcels");
  Random random(20260101);
  for (std::int64_t i = 0; i < rows; ++i) PrintRow(random);
  return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
