#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>

#include <cstdlib>
#include <memory>
#include <ostream>
#include <string>

namespace zuvi::test {

/// One pixel, not premultiplied where it is opaque.
struct Pixel {
  int red = 0, green = 0, blue = 0, alpha = 255;

  /// Whether every component lies within `slack` of the other's.
  bool isNear(const Pixel& other, int slack = 3) const {
    return std::abs(red - other.red) <= slack && std::abs(green - other.green) <= slack &&
           std::abs(blue - other.blue) <= slack && std::abs(alpha - other.alpha) <= slack;
  }
  friend std::ostream& operator<<(std::ostream& out, const Pixel& p) {
    return out << p.red << ' ' << p.green << ' ' << p.blue << ' ' << p.alpha;
  }
};

constexpr Pixel white{255, 255, 255}, black{0, 0, 0}, red{255, 0, 0}, green{0, 255, 0},
    blue{0, 0, 255};

/// A picture to look into.
class Pixels {
public:
  explicit Pixels(const std::shared_ptr<const CGImage>& image, double scale = 1)
      : width_(image->width()), height_(image->height()), scale_(scale), bytes_(image->pixels()) {}

  /// The pixel that holds a point of the screen.
  Pixel at(double x, double y) const {
    return pixel(static_cast<int>(x * scale_), static_cast<int>(y * scale_));
  }
  Pixel pixel(int x, int y) const {
    const std::size_t at = 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                                static_cast<std::size_t>(x));
    const auto* p = bytes_.bytes() + at;
    return {p[2], p[1], p[0], p[3]};
  }
  /// How many pixels are near that one.
  int count(const Pixel& wanted, int slack = 3) const {
    int found = 0;
    for (int y = 0; y < height_; y++)
      for (int x = 0; x < width_; x++)
        found += pixel(x, y).isNear(wanted, slack);
    return found;
  }
  /// Where two pictures differ first by more than `slack`, after `spared` bytes that do; empty when
  /// they are alike.
  static std::string difference(const Pixels& a, const Pixels& b, int slack = 0, int spared = 0) {
    if (a.width_ != b.width_ || a.height_ != b.height_) return "the sizes";
    for (std::size_t i = 0; i < a.bytes_.size(); i++)
      if (std::abs(a.bytes_.bytes()[i] - b.bytes_.bytes()[i]) > slack && spared-- <= 0)
        return "at byte " + std::to_string(i) + " of rows of " + std::to_string(4 * a.width_) +
               ": " + std::to_string(a.bytes_.bytes()[i]) + " against " +
               std::to_string(b.bytes_.bytes()[i]);
    return {};
  }

private:
  int width_, height_;
  double scale_;
  Data bytes_;
};

} // namespace zuvi::test
