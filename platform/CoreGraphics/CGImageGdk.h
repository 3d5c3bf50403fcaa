#pragma once

// How a picture is held for drawing; only for files that draw or decode.

#include "platform/CoreGraphics/CGImage.h"

#include <gdk/gdk.h>

namespace zuvi {

struct CGImage::Native {
  explicit Native(GdkTexture* adopted) : texture(adopted) {}
  ~Native() { g_clear_object(&texture); }
  Native(const Native&) = delete;
  GdkTexture* texture;
};

/// Takes over the reference; null gives null.
std::shared_ptr<const CGImage> imageFromTexture(GdkTexture* adopted);

} // namespace zuvi
