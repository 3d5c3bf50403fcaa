#pragma once

// How a picture is held for drawing; only for files that draw or decode.

#include <ZuviSDK/CoreGraphics/CGImage.h>

#include <optional>

#include <gdk/gdk.h>

namespace zuvi {

struct CGImage::Native {
  explicit Native(GdkTexture* adopted) : texture(adopted) {}
  ~Native() {
    g_clear_object(&texture);
    g_clear_pointer(&surface, cairo_surface_destroy);
  }
  Native(const Native&) = delete;
  GdkTexture* texture;
  struct Premultiplied {
    Data pixels;
    std::size_t bytesPerRow;
  };
  std::optional<Premultiplied> premultiplied; // the pixels of the texture, where they are at hand
  mutable cairo_surface_t* surface = nullptr; // made by surfaceOf; main queue only
};

/// The same pixels where cairo reads them; copied at the first call if they are not at hand.
/// Belongs to the image.
cairo_surface_t* surfaceOf(const CGImage& image);

/// Takes over the reference; null gives null.
std::shared_ptr<const CGImage> imageFromTexture(GdkTexture* adopted);

} // namespace zuvi
