#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace zuvi::bench {

/// Processor seconds of this process so far, all threads.
inline double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

inline double wallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

struct Figures {
  double minimum = 0, median = 0;
};

inline Figures figuresOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return {values.front(), values[values.size() / 2]};
}

/// One line: the figure in milliseconds, and its ratio to the baseline when there is one.
inline void report(const char* name, const Figures& figures, const Figures* baseline = nullptr) {
  std::printf("%-44s min %8.3f ms  median %8.3f ms", name, figures.minimum * 1e3,
              figures.median * 1e3);
  if (baseline)
    std::printf("  ratio min %.3f  median %.3f", figures.minimum / baseline->minimum,
                figures.median / baseline->median);
  std::printf("\n");
  std::fflush(stdout);
}

} // namespace zuvi::bench
