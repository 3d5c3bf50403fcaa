#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/CoreGraphics/CGImage.h>

#include <memory>

namespace zuvi {

/// A drawing that is sharp at every size. Main thread.
class SvgImage {
public:
  /// Null when the bytes are no SVG.
  static std::shared_ptr<const SvgImage> fromData(const Data& bytes);

  /// Its own size in points.
  CGSize size() const { return size_; }
  /// The drawing fitted into that many pixels, keeping its proportions; null when not positive.
  std::shared_ptr<const CGImage> rasterize(int pixelWidth, int pixelHeight) const;

private:
  std::shared_ptr<void> handle_;
  CGSize size_;
};

} // namespace zuvi
