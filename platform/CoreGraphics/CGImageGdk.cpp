#include "platform/CoreGraphics/CGImageGdk.h"

namespace zuvi {

std::shared_ptr<const CGImage> imageFromTexture(GdkTexture* adopted) {
  if (!adopted) return nullptr;
  return std::make_shared<CGImage>(std::make_unique<CGImage::Native>(adopted));
}

cairo_surface_t* surfaceOf(const CGImage& image) {
  cairo_surface_t*& surface = image.native().surface;
  if (surface) return surface;
  if (const auto& kept = image.native().premultiplied) {
    auto* pixels = const_cast<std::uint8_t*>(kept->pixels.bytes()); // only read
    surface = cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_ARGB32, image.width(),
                                                  image.height(), int(kept->bytesPerRow));
    if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS) return surface;
    cairo_surface_destroy(surface); // rows that cairo does not read
  }
  surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, image.width(), image.height());
  if (guchar* pixels = cairo_image_surface_get_data(surface))
    gdk_texture_download(image.native().texture, pixels,
                         std::size_t(cairo_image_surface_get_stride(surface)));
  cairo_surface_mark_dirty(surface);
  return surface;
}

std::shared_ptr<const CGImage> CGImage::fromPixels(Data pixels, int width, int height,
                                                   std::size_t bytesPerRow, Format format) {
  const std::size_t pixelSize = format == Format::RGB ? 3 : 4;
  if (width <= 0 || height <= 0 || bytesPerRow < pixelSize * static_cast<std::size_t>(width) ||
      pixels.size() < bytesPerRow * static_cast<std::size_t>(height - 1) + pixelSize * width)
    return nullptr;
  GdkMemoryFormat native = GDK_MEMORY_B8G8R8A8_PREMULTIPLIED;
  if (format == Format::RGB) native = GDK_MEMORY_R8G8B8;
  if (format == Format::BGRX) {
    // GTK 4.8 knows no format without alpha of four bytes; an opaque copy is the way.
    std::string opaque(pixels.view());
    for (std::size_t row = 0; row < static_cast<std::size_t>(height); row++)
      for (std::size_t i = 0; i < static_cast<std::size_t>(width); i++)
        opaque[row * bytesPerRow + 4 * i + 3] = '\xff';
    pixels = Data(std::move(opaque));
  }
  auto* owner = new Data(pixels); // shares them
  GBytes* bytes = g_bytes_new_with_free_func(
      owner->bytes(), owner->size(), [](gpointer data) { delete static_cast<Data*>(data); }, owner);
  GdkTexture* texture = gdk_memory_texture_new(width, height, native, bytes, bytesPerRow);
  g_bytes_unref(bytes);
  auto held = std::make_unique<Native>(texture);
  if (native == GDK_MEMORY_DEFAULT) held->premultiplied = {std::move(pixels), bytesPerRow};
  return std::make_shared<CGImage>(std::move(held));
}

CGImage::CGImage(std::unique_ptr<Native> native) : native_(std::move(native)) {}

CGImage::~CGImage() = default;

int CGImage::width() const {
  return gdk_texture_get_width(native_->texture);
}

int CGImage::height() const {
  return gdk_texture_get_height(native_->texture);
}

Data CGImage::pixels() const {
  const std::size_t row = 4 * static_cast<std::size_t>(width());
  std::string bytes(row * height(), '\0');
  gdk_texture_download(native_->texture, reinterpret_cast<guchar*>(bytes.data()), row);
  return Data(std::move(bytes));
}

} // namespace zuvi
