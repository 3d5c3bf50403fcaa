#include "sandbox/core/text/Uuid.h"

#include <array>
#include <random>

namespace zuvi::sandbox {

std::string newUuid() {
  static constexpr char digits[] = "0123456789abcdef";
  std::random_device device;
  std::array<unsigned, 4> words{};
  for (auto& word : words)
    word = device();
  words[1] = (words[1] & 0xffff0fff) | 0x4000;
  words[2] = (words[2] & 0x3fffffff) | 0x80000000;
  std::string text;
  for (int i = 0; i < 32; ++i) {
    if (i == 8 || i == 12 || i == 16 || i == 20) text.push_back('-');
    text.push_back(digits[words[i / 8] >> (28 - 4 * (i % 8)) & 15]);
  }
  return text;
}

} // namespace zuvi::sandbox
