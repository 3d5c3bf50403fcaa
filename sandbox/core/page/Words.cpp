#include "sandbox/core/page/Words.h"

namespace zuvi::sandbox {

std::string countWords(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

std::string sizeWords(std::uint64_t bytes) {
  constexpr std::uint64_t kilobyte = 1000;
  constexpr std::uint64_t megabyte = 1000 * kilobyte;
  if (bytes < kilobyte) return countWords(bytes, "byte", "bytes");
  if (bytes < megabyte) return std::to_string(bytes / kilobyte) + " KB";
  const auto tenths = bytes / (megabyte / 10);
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

std::string timeWords(std::string_view timestamp) {
  std::string text(timestamp.substr(0, 19));
  if (text.size() > 10) text[10] = ' ';
  return text + " UTC";
}

std::string documentWords(std::string_view type) {
  if (type == "national-id") return "National ID";
  if (type == "driving-license") return "Driving license";
  if (type == "proof-of-residency") return "Proof of residency";
  if (type == "passport") return "Passport";
  return std::string(type);
}

} // namespace zuvi::sandbox
