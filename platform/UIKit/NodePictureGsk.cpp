#include "platform/UIKit/NodePictureGsk.h"

#include <cmath>
#include <optional>
#include <utility>

namespace zuvi {

cairo_surface_t* makeSurface(CGSize size, double scale) {
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(std::lround(size.width * scale)),
                                 int(std::lround(size.height * scale)));
  // A device scale lets the toolkit draw text and shadows at full sharpness and speed.
  cairo_surface_set_device_scale(surface, scale, scale);
  return surface;
}

/// The pixels without their alpha; absent when one is see-through.
static std::optional<Data> opaquePixels(const unsigned char* bytes, std::size_t row, int width,
                                        int height) {
  std::string packed(3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height), '\0');
  char* to = packed.data();
  unsigned char alpha = 255;
  for (int y = 0; y < height; y++, bytes += row) {
    for (int x = 0; x < width; x++, to += 3) {
      const unsigned char* from = bytes + 4 * static_cast<std::size_t>(x);
      to[0] = char(from[2]);
      to[1] = char(from[1]);
      to[2] = char(from[0]);
      alpha &= from[3];
    }
    if (alpha != 255) return std::nullopt;
  }
  return Data(std::move(packed));
}

std::shared_ptr<const CGImage> imageOf(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  if (width <= 0 || height <= 0) return nullptr;
  const auto row = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
  const unsigned char* pixels = cairo_image_surface_get_data(surface);
  // The toolkit draws a picture that has no alpha seven times faster.
  if (auto opaque = opaquePixels(pixels, row, width, height))
    return CGImage::fromPixels(std::move(*opaque), width, height,
                               3 * static_cast<std::size_t>(width), CGImage::Format::RGB);
  const auto* bytes = reinterpret_cast<const char*>(pixels);
  return CGImage::fromPixels(Data(std::string(bytes, row * static_cast<std::size_t>(height))),
                             width, height, row, CGImage::Format::BGRA);
}

std::shared_ptr<const CGImage> pictureOfNode(GskRenderNode* node, CGSize size, double scale) {
  cairo_surface_t* surface = makeSurface(size, scale);
  cairo_t* context = cairo_create(surface);
  if (node) gsk_render_node_draw(node, context);
  cairo_destroy(context);
  auto image = imageOf(surface);
  cairo_surface_destroy(surface);
  return image;
}

} // namespace zuvi
