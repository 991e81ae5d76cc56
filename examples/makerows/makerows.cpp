// SPDX-License-Identifier: Apache-2.0
//
// makerows linear|logistic ROWS > file.csv: a data set of any size for demonstrations, the same at
// every run.
//
// Each row is a delivery: its outcome, where from and how it was shipped, distance and load, how
// many parcels the row stands for. The region "Islands" has no "express" service, so that this
// combination is empty, and about one row in 200 has no load.
//
// In a linear file the outcome is the time that it took,
//
//   hours = 2 + region + service + region x service + 0.03 distance + 0.5 load
//           - 0.00001 distance^2 + noise
//
// with noise spread evenly over -1.5 to 1.5. In a logistic one it is whether the delivery came
// "early", "late" or "on time", drawn with the log odds against "on time"
//
//   early: -0.8 + region + service - 0.0020 distance
//   late:  -2.2 + region + service + 0.0015 distance + 0.03 load
//
// The effects of regions and services stand in the tables below.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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
constexpr double kRegionEarly[] = {0.0, 0.2, 0.5, -0.3, -1.5};
constexpr double kRegionLate[] = {0.0, -0.1, -0.4, 0.3, 1.2};
constexpr unsigned kIslands = 4;

constexpr const char* kServices[] = {"standard", "express", "freight"};
constexpr double kServiceHours[] = {0.0, -3.0, 6.5};
constexpr double kServiceEarly[] = {0.0, 1.1, -0.7};
constexpr double kServiceLate[] = {0.0, -0.9, 0.6};
constexpr unsigned kStandard = 0;
constexpr unsigned kExpress = 1;

// Where the two together are not the sum of both.
double InteractionHours(unsigned region, unsigned service) {
  return 0.25 * static_cast<double>(region) * static_cast<double>(service);
}

struct Delivery {
  unsigned region;
  unsigned service;
  double distance;
  double load;
  double chance;  // evenly spread over 0 to 1: what else decides the outcome
};

void PrintHours(const Delivery& d) {
  const double noise = 3.0 * d.chance - 1.5;
  const double hours = 2.0 + kRegionHours[d.region] + kServiceHours[d.service] +
                       InteractionHours(d.region, d.service) + 0.03 * d.distance + 0.5 * d.load -
                       0.00001 * d.distance * d.distance + noise;
  std::printf("%.4f", hours);
}

void PrintPunctuality(const Delivery& d) {
  const double early =
      std::exp(-0.8 + kRegionEarly[d.region] + kServiceEarly[d.service] - 0.0020 * d.distance);
  const double late = std::exp(-2.2 + kRegionLate[d.region] + kServiceLate[d.service] +
                               0.0015 * d.distance + 0.03 * d.load);
  const double place = d.chance * (1.0 + early + late);
  std::printf("%s", place < early ? "early" : place < early + late ? "late" : "on time");
}

struct Kind {
  const char* name;
  const char* outcome;  // name of the column
  void (*print)(const Delivery&);
};

constexpr Kind kKinds[] = {{"linear", "hours", PrintHours},
                           {"logistic", "punctuality", PrintPunctuality}};

const Kind* FindKind(const char* name) {
  for (const Kind& kind : kKinds) {
    if (std::strcmp(kind.name, name) == 0) return &kind;
  }
  return nullptr;
}

void PrintRow(const Kind& kind, Random& random) {
  Delivery d = {};
  d.region = random.Below(5);
  d.service = random.Below(3);
  if (d.region == kIslands && d.service == kExpress) d.service = kStandard;
  d.distance = 20.0 + 980.0 * random.Uniform();
  d.load = 0.1 + 24.9 * random.Uniform();
  d.chance = random.Uniform();
  const unsigned parcels = 1 + random.Below(4);
  kind.print(d);
  std::printf(",%s,%s,%.1f,", kRegions[d.region], kServices[d.service], d.distance);
  if (random.Below(200) != 0) std::printf("%.2f", d.load);
  std::printf(",%u\n", parcels);
}

}  // namespace

int main(int argc, char** argv) {
  char* end = nullptr;
  const Kind* kind = argc == 3 ? FindKind(argv[1]) : nullptr;
  const std::int64_t rows = kind != nullptr ? std::strtoll(argv[2], &end, 10) : -1;
  if (rows < 0 || end == argv[2] || *end != '\0') {
    std::fputs("usage: makerows linear|logistic ROWS > file.csv\n", stderr);
    return 2;
  }
  static char buffer[1 << 18];
  std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
  std::printf("%s,region,service,distance,load,parcels\n", kind->outcome);
  Random random(20260101);
  for (std::int64_t i = 0; i < rows; ++i) PrintRow(*kind, random);
  return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
