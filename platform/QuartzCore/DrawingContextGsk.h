#pragma once

#include <ZuviSDK/QuartzCore/DrawingContext.h>

#include <gtk/gtk.h>

namespace zuvi {

struct DrawingContext::Native {
  GtkSnapshot* snapshot;
  double scale;
  bool resizing;  ///< in a moment it is drawn again, at another size
  bool withCairo; ///< cairo draws the nodes
};

/// The toolkit draws a matrix of unknown kind as an error, so the transform is handed on as two
/// turns around a stretch, which gives every affine one. Null: the identity.
GskTransform* makeTransform(const CGAffineTransform& transform);

inline graphene_rect_t toGraphene(const CGRect& r) {
  return {{float(r.x), float(r.y)}, {float(r.width), float(r.height)}};
}

inline GdkRGBA toGdk(const CGColor& c) {
  return {float(c.red), float(c.green), float(c.blue), float(c.alpha)};
}

inline GskRoundedRect toRounded(const CGRect& rect, double radius) {
  const graphene_rect_t bounds = toGraphene(rect);
  const double most = (rect.width < rect.height ? rect.width : rect.height) / 2;
  GskRoundedRect rounded;
  gsk_rounded_rect_init_from_rect(&rounded, &bounds, float(radius < most ? radius : most));
  return rounded;
}

} // namespace zuvi
