#include "platform/UIKit/NodePictureGsk.h"

#include <cmath>

namespace zuvi {

cairo_surface_t* makeSurface(CGSize size, double scale) {
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(std::lround(size.width * scale)),
                                 int(std::lround(size.height * scale)));
  // A device scale lets the toolkit draw text and shadows at full sharpness and speed.
  cairo_surface_set_device_scale(surface, scale, scale);
  return surface;
}

std::shared_ptr<const CGImage> imageOf(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  if (width <= 0 || height <= 0) return nullptr;
  const auto row = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
  const auto* bytes = reinterpret_cast<const char*>(cairo_image_surface_get_data(surface));
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
