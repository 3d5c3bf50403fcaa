#pragma once

#include "platform/QuartzCore/CALayer.h"

namespace zuvi {

/// What the renderer keeps of a layer between frames. Nodes are the toolkit's, held opaquely.
struct CALayer::Cache {
  std::shared_ptr<void> content; ///< own drawing, below the sublayers; null: draw again
  std::shared_ptr<void> border;  ///< own border, above the sublayers; drawn with `content`
  std::shared_ptr<void> placed;  ///< the whole subtree in the superlayer's coordinates
  bool contentChanged = true;
  bool placementChanged = true; ///< moved, faded, hidden, or its order changed
  bool dirty = true;            ///< this layer or one below it has changed since the last frame
  CGRect drawn;                 ///< what `placed` covered when last drawn; superlayer's coordinates
  CGRect drawnContent;          ///< what `content` covered; this layer's coordinates
};

} // namespace zuvi
