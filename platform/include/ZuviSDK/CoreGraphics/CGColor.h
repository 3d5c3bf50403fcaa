#pragma once

namespace zuvi {

/// An sRGB colour; components from 0 to 1, not premultiplied.
struct CGColor {
  /// Opaque black at start.
  /// @{
  double red = 0, green = 0, blue = 0, alpha = 1;
  /// @}

  /// Components from 0 to 255; `alpha` from 0 to 1.
  static constexpr CGColor bytes(int red, int green, int blue, double alpha = 1) {
    return {red / 255.0, green / 255.0, blue / 255.0, alpha};
  }
  /// A colour of that name; clear is black without alpha.
  /// @{
  static constexpr CGColor clear() { return {0, 0, 0, 0}; }
  static constexpr CGColor white() { return {1, 1, 1, 1}; }
  static constexpr CGColor black() { return {0, 0, 0, 1}; }
  /// @}

  /// The same colour with that alpha, from 0 to 1.
  constexpr CGColor withAlpha(double value) const { return {red, green, blue, value}; }
  /// Equal when all components are.
  bool operator==(const CGColor&) const = default;
};

} // namespace zuvi
