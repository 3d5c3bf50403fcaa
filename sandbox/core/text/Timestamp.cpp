#include "sandbox/core/text/Timestamp.h"

#include <array>
#include <chrono>
#include <ctime>

namespace zuvi::sandbox {

std::string timestampNow() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const auto milliseconds = duration_cast<std::chrono::milliseconds>(now.time_since_epoch()) % 1000;
  const std::time_t seconds = system_clock::to_time_t(floor<std::chrono::seconds>(now));
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S.", &parts);
  std::string fraction = std::to_string(1000 + milliseconds.count());
  return text.data() + fraction.substr(1) + "Z";
}

} // namespace zuvi::sandbox
