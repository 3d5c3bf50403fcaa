#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Export.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zuvi {

class Bundle;
class CGImage;
class Data;
class SvgImage;

/// A picture for views: a drawing that is sharp at every size, pixels, or a series of pictures
/// shown in turn. Immutable. May be made on any thread; `pixels` is for the main one.
class UIImage {
public:
  /// The picture `name` of a bundle (svg, png or jpg); null when there is none.
  ZUVI_API static std::shared_ptr<const UIImage> named(const std::string& name,
                                                       const Bundle& bundle);
  /// PNG, JPEG or SVG; null when the bytes are none.
  ZUVI_API static std::shared_ptr<const UIImage> fromData(const Data& bytes);
  /// `scale`: pixels a point.
  ZUVI_API static std::shared_ptr<const UIImage> fromCGImage(std::shared_ptr<const CGImage> image,
                                                             double scale = 1);
  /// Pictures of equal length in time; the series lasts `duration` seconds and begins anew.
  static std::shared_ptr<const UIImage>
  animatedImage(std::vector<std::shared_ptr<const UIImage>> images, double duration);

  /// In points.
  ZUVI_API CGSize size() const;
  /// The name that it was found under; empty when it came from elsewhere.
  const std::string& name() const { return name_; }
  /// The series; empty for a single picture.
  const std::vector<std::shared_ptr<const UIImage>>& images() const { return images_; }
  /// Seconds of one round of the series; 0 for a single picture.
  double duration() const { return duration_; }

  /// Pixels for an area of that size in points at that scale. Null when there is nothing to show.
  std::shared_ptr<const CGImage> pixels(CGSize area, double scale) const;

private:
  std::string name_;
  std::shared_ptr<const SvgImage> drawing_;
  std::shared_ptr<const CGImage> bitmap_;
  double bitmapScale_ = 1;
  std::vector<std::shared_ptr<const UIImage>> images_;
  double duration_ = 0;
  mutable std::map<std::pair<int, int>, std::weak_ptr<const CGImage>> rasterized_;
};

} // namespace zuvi
