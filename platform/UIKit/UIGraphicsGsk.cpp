#include "platform/QuartzCore/DrawingContextGsk.h"
#include "platform/UIKit/NodePictureGsk.h"
#include "platform/UIKit/UIGraphics.h"
#include "platform/UIKit/UIScreen.h"

namespace zuvi {

std::shared_ptr<const UIImage> renderImage(CGSize size,
                                           const std::function<void(DrawingContext&)>& draw) {
  const double scale = UIScreen::main().scale();
  constexpr double longest = 32767;   // pixels along a side
  constexpr double most = 256L << 20; // pixels
  const double width = size.width * scale, height = size.height * scale;
  if (!(width > 0 && height > 0 && width <= longest && height <= longest && width * height <= most))
    return nullptr;
  GtkSnapshot* snapshot = gtk_snapshot_new();
  DrawingContext::Native native{snapshot, scale, false, false};
  DrawingContext context(native);
  draw(context);
  GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
  auto image = UIImage::fromCGImage(pictureOfNode(node, size, scale), scale);
  if (node) gsk_render_node_unref(node);
  return image;
}

} // namespace zuvi
