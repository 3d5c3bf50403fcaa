#include "sandbox/core/store/FilmStill.h"

namespace zuvi::sandbox {
namespace {

constexpr auto npos = std::string_view::npos;
constexpr unsigned char startOfScan = 0xda;

unsigned char byteAt(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

bool hasJpegFrames(std::string_view film) {
  const auto table = film.find("stsd");
  // The sample entry's kind stands behind version, count and size.
  return table != npos && film.substr(table).substr(0, 20).ends_with("jpeg");
}

/// The length of the picture at the start of the bytes; 0 if they are none.
std::size_t pictureLength(std::string_view bytes) {
  std::size_t at = 2;
  while (at + 4 <= bytes.size() && byteAt(bytes, at) == 0xff) {
    const auto marker = byteAt(bytes, at + 1);
    at += 2 + (std::size_t{byteAt(bytes, at + 2)} << 8 | byteAt(bytes, at + 3));
    if (marker != startOfScan) continue;
    const auto end = bytes.find("\xff\xd9", at);
    return end == npos ? 0 : end + 2;
  }
  return 0;
}

} // namespace

std::string_view firstJpegFrame(std::string_view film) {
  if (!hasJpegFrames(film)) return {};
  const auto start = film.find("\xff\xd8\xff");
  if (start == npos) return {};
  return film.substr(start, pictureLength(film.substr(start)));
}

} // namespace zuvi::sandbox
