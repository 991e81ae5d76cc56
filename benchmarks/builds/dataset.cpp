// SPDX-License-Identifier: Apache-2.0
#include "dataset.h"

#include <sys/resource.h>

namespace {

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

/// The most memory that this program held, in megabytes. What getrusage tells would count what the
/// program that started this one held.
double PeakMegabytes() {
  double kilobytes = 0.0;
  char line[256];
  std::FILE* status = std::fopen("/proc/self/status", "r");
  while (status != nullptr && std::fgets(line, sizeof line, status) != nullptr) {
    if (std::sscanf(line, "VmHWM: %lf", &kilobytes) == 1) break;
  }
  if (status != nullptr) std::fclose(status);
  return kilobytes / 1024.0;
}

// Of the program itself and of the libraries that it loads.
const double kMegabytesAtStart = PeakMegabytes();

}  // namespace

Dataset DatasetNamed(const std::string& name) {
  if (name == "D1") return {name, 1000000, {}, 50, {}};
  if (name == "D2") return {name, 1000000, {20, 50, 10}, 5, {{0}, {1}, {2}, {0, 2}}};
  if (name == "D3") return {name, 200000, {}, 20, {}, 4};
  if (name == "D4") return {name, 1000000, {10, 20, 5}, 2, {{0}, {1}, {2}}, 3};
  if (name == "D5") return {name, 20000, {}, 1000, {}};
  if (name == "D6") return {name, 1000000, {}, 10, {}, 2};
  return {};
}

std::FILE* OpenRows(const Dataset& dataset, const std::string& directory, const char* mode) {
  // A buffer of its own: without one the C library here takes no notice of the size.
  static char buffer[256 * 1024];
  std::FILE* file = std::fopen((directory + "/" + dataset.name + ".rows").c_str(), mode);
  if (file != nullptr) std::setvbuf(file, buffer, _IOFBF, sizeof buffer);
  return file;
}

void ReportUse(const std::string& name, double value) {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("%s %.3f %.1f %.12g\n", name.c_str(),
              Seconds(usage.ru_utime) + Seconds(usage.ru_stime),
              PeakMegabytes() - kMegabytesAtStart, value);
}
