#pragma once

#include <ZuviSDK/QuartzCore/CALayer.h>

#include <gtk/gtk.h>

#include <vector>

namespace zuvi {

/// Turns a tree of layers into drawing nodes. What did not change since the last frame keeps its
/// node.
class LayerRenderer {
public:
  struct Frame {
    GskRenderNode* node = nullptr; ///< null: nothing to see; owned by the root's cache
    std::vector<CGRect> damage;    ///< what differs from the last frame, in the root's coordinates
    bool animating = false;        ///< whether the next frame differs by itself
  };

  /// `scale`: pixels a point. `withCairo`: cairo draws the nodes, not a GPU.
  static Frame render(CALayer& root, double scale, bool withCairo);

  /// The area and all shadows that reach into it, in the root's coordinates: the toolkit shades a
  /// part of a shadow a little differently than the whole.
  static CGRect areaWithShadows(CALayer& root, const CGRect& area);

  /// Draws what `render` has built, leaving out layers that lie outside of `area` (the root's
  /// coordinates): they may be most of the screen, and each would be drawn before it is clipped.
  static void draw(CALayer& root, cairo_t* context, const CGRect& area);
};

} // namespace zuvi
