#include "platform/CoreGraphics/CGImageGdk.h"
#include "platform/ImageIO/ImageFile.h"

namespace zuvi {

std::shared_ptr<const CGImage> decodeImage(const Data& bytes) {
  // The toolkit would take drawings too, at a size of their own.
  const bool known = bytes.view().starts_with("\x89PNG") || bytes.view().starts_with("\xff\xd8");
  if (!known) return nullptr;
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
