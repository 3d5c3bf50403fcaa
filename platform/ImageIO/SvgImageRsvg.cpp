#include "platform/CoreGraphics/CGImageGdk.h"
#include "platform/ImageIO/SvgImage.h"

#include <librsvg/rsvg.h>

namespace zuvi {

std::shared_ptr<const SvgImage> SvgImage::fromData(const Data& bytes) {
  GError* error = nullptr;
  RsvgHandle* handle = rsvg_handle_new_from_data(bytes.bytes(), bytes.size(), &error);
  g_clear_error(&error);
  if (!handle) return nullptr;
  auto image = std::make_shared<SvgImage>();
  image->handle_ = std::shared_ptr<void>(handle, g_object_unref);
  double width = 0, height = 0;
  if (!rsvg_handle_get_intrinsic_size_in_pixels(handle, &width, &height)) {
    gboolean hasBox = FALSE;
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(handle, nullptr, nullptr, nullptr, nullptr, &hasBox, &box);
    if (!hasBox) return nullptr;
    width = box.width;
    height = box.height;
  }
  image->size_ = {width, height};
  return image;
}

std::shared_ptr<const CGImage> SvgImage::rasterize(int pixelWidth, int pixelHeight) const {
  if (pixelWidth <= 0 || pixelHeight <= 0 || pixelWidth > 16384 || pixelHeight > 16384)
    return nullptr;
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixelWidth, pixelHeight);
  cairo_t* context = cairo_create(surface);
  const RsvgRectangle viewport{0, 0, double(pixelWidth), double(pixelHeight)};
  const bool drawn = rsvg_handle_render_document(static_cast<RsvgHandle*>(handle_.get()), context,
                                                 &viewport, nullptr);
  cairo_destroy(context);
  cairo_surface_flush(surface);
  std::shared_ptr<const void> owner(surface,
                                    [](cairo_surface_t* held) { cairo_surface_destroy(held); });
  if (!drawn) return nullptr;
  const std::size_t row = cairo_image_surface_get_stride(surface);
  return CGImage::fromPixels(Data(owner, cairo_image_surface_get_data(surface), row * pixelHeight),
                             pixelWidth, pixelHeight, row, CGImage::Format::BGRA);
}

} // namespace zuvi
