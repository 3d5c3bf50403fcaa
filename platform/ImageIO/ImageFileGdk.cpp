#include "platform/CoreGraphics/CGImageGdk.h"
#include "platform/ImageIO/ImageFile.h"

#include <optional>
#include <span>

namespace zuvi {

namespace {

constexpr std::uint64_t mostPixels = 64U << 20; // a file of a few bytes may claim billions

std::uint64_t number(std::span<const std::uint8_t> bytes) {
  std::uint64_t value = 0;
  for (const std::uint8_t byte : bytes)
    value = value << 8 | byte;
  return value;
}

std::optional<std::uint64_t> pixelsOfPng(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < 24) return std::nullopt;
  return number(bytes.subspan(16, 4)) * number(bytes.subspan(20, 4));
}

/// Of the frame's head, behind segments that tell their lengths.
std::optional<std::uint64_t> pixelsOfJpeg(std::span<const std::uint8_t> bytes) {
  for (std::size_t at = 2; at + 9 <= bytes.size();) {
    const std::uint8_t marker = bytes[at + 1];
    if (bytes[at] != 0xff) return std::nullopt;
    const bool bare = marker == 0x01 || (marker >= 0xd0 && marker <= 0xd8);
    const bool frame =
        marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
    if (frame) return number(bytes.subspan(at + 5, 2)) * number(bytes.subspan(at + 7, 2));
    at += marker == 0xff ? 1 : bare ? 2 : 2 + number(bytes.subspan(at + 2, 2));
  }
  return std::nullopt;
}

/// Absent for what is neither PNG nor JPEG. The toolkit would take drawings too, at a size of their
/// own.
std::optional<std::uint64_t> declaredPixels(std::span<const std::uint8_t> bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (text.starts_with("\x89PNG")) return pixelsOfPng(bytes);
  return text.starts_with("\xff\xd8") ? pixelsOfJpeg(bytes) : std::nullopt;
}

} // namespace

std::shared_ptr<const CGImage> decodeImage(const Data& bytes) {
  const auto pixels = declaredPixels(bytes.span());
  if (!pixels || *pixels > mostPixels) return nullptr;
  GBytes* copy = g_bytes_new(bytes.bytes(), bytes.size());
  GError* error = nullptr;
  GdkTexture* texture = gdk_texture_new_from_bytes(copy, &error);
  g_clear_error(&error);
  g_bytes_unref(copy);
  return imageFromTexture(texture);
}

Data encodePNG(const CGImage& image) {
  GBytes* bytes = gdk_texture_save_to_png_bytes(image.native().texture);
  gsize size = 0;
  const void* start = g_bytes_get_data(bytes, &size);
  return Data(std::shared_ptr<const void>(bytes, [](GBytes* held) { g_bytes_unref(held); }), start,
              size);
}

} // namespace zuvi
