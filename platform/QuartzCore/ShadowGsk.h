#pragma once

#include <ZuviSDK/CoreGraphics/CGColor.h>
#include <ZuviSDK/CoreGraphics/CGGeometry.h>

#include <gtk/gtk.h>

namespace zuvi {

/// What throws a shadow, and how it falls.
struct Shadow {
  CGRect rect;
  double cornerRadius = 0;
  CGColor color;
  CGSize offset;
  double radius = 0; ///< of the blur
};

/// The whole shadow, also where it lies under what throws it. `scale`: pixels a point.
void appendShadow(GtkSnapshot* snapshot, const Shadow& shadow, double scale);

} // namespace zuvi
