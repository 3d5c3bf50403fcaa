#pragma once

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/QuartzCore/CALayer.h>

#include "platform/QuartzCore/CAAnimation.h"

#include <map>
#include <memory>
#include <string>

namespace zuvi {

/// What the renderer keeps of a layer between frames, and its animations. Nodes are the toolkit's,
/// held opaquely.
struct CALayer::Cache {
  std::shared_ptr<void> content; ///< own drawing, below the sublayers; null: draw again
  std::shared_ptr<void> border;  ///< own border, above the sublayers; drawn with `content`
  std::shared_ptr<void> placed;  ///< the whole subtree in the superlayer's coordinates
  bool contentChanged = true;
  bool placementChanged = true; ///< moved, faded, hidden, or its order changed
  bool dirty = true;            ///< this layer or one below it has changed since the last frame
  CGRect drawn;                 ///< what `placed` covered when last drawn; superlayer's coordinates
  CGRect drawnContent;          ///< what `content` covered; this layer's coordinates

  struct Running {
    CABasicAnimation animation;
    WorkId end = 0;
  };
  std::map<std::string, Running> animations;
};

} // namespace zuvi
