#pragma once

#include <atomic>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <unistd.h>

/// Whether this run has fault `number`, which the variable ZUVI_FAULT names. The faults that a run
/// comes by are noted, once each, in the file that ZUVI_FAULTS_REACHED names.
inline bool zuviFault(int number) {
  static const int chosen = [] {
    const char* text = std::getenv("ZUVI_FAULT");
    return text ? std::atoi(text) : -1;
  }();
  static const int notes = [] {
    const char* file = std::getenv("ZUVI_FAULTS_REACHED");
    return file ? ::open(file, O_CREAT | O_APPEND | O_WRONLY | O_CLOEXEC, 0600) : -1;
  }();
  static std::atomic<bool> noted[4096];
  if (notes >= 0 && !noted[number].exchange(true)) {
    const std::string line = std::to_string(number) + "\n";
    [[maybe_unused]] const auto written = ::write(notes, line.data(), line.size());
  }
  return number == chosen;
}

/// `a < b`, or `a <= b` in the run that has the fault; and the other way round.
template <typename A, typename B> bool zuviLess(int number, const A& a, const B& b) {
  return zuviFault(number) ? a <= b : a < b;
}
template <typename A, typename B> bool zuviLessOrEqual(int number, const A& a, const B& b) {
  return zuviFault(number) ? a < b : a <= b;
}
