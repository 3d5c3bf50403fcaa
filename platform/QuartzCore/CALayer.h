#pragma once

#include "platform/CoreGraphics/CGColor.h"
#include "platform/CoreGraphics/CGGeometry.h"
#include "platform/CoreGraphics/CGImage.h"
#include "platform/CoreGraphics/CGPath.h"
#include "platform/Export.h"
#include "platform/QuartzCore/CAAnimation.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

class DrawingContext;
class CALayer;

/// The surface that shows a tree of layers.
class ZUVI_API LayerHost {
public:
  virtual ~LayerHost() = default;
  /// Something below the host's root has changed: a frame is due.
  virtual void setNeedsFrame() = 0;
  /// This part of the surface, in the root's coordinates, no longer holds what was drawn there.
  virtual void addDamage(const CGRect& rect) = 0;
};

/// How `contents` fills a layer.
enum class ContentsGravity { Resize, ResizeAspect, ResizeAspectFill, Center };

/// A rectangle in a tree of rectangles that are drawn over one another. Every value is a model
/// value: it changes at once, while drawing reads the presented value, which an animation moves.
/// Main queue only.
class ZUVI_API CALayer : public std::enable_shared_from_this<CALayer> {
public:
  CALayer();
  virtual ~CALayer();
  CALayer(const CALayer&) = delete;
  CALayer& operator=(const CALayer&) = delete;

  // Tree
  const std::vector<std::shared_ptr<CALayer>>& sublayers() const { return sublayers_; }
  CALayer* superlayer() const { return superlayer_; }
  void addSublayer(std::shared_ptr<CALayer> layer);
  /// An index past the end adds on top. A layer that is there already moves.
  void insertSublayer(std::shared_ptr<CALayer> layer, std::size_t index);
  void removeFromSuperlayer();
  LayerHost* host() const;
  /// For the surface that shows this layer as its root.
  void setHost(LayerHost* host);

  // Geometry
  CGRect frame() const;
  void setFrame(const CGRect& frame);
  CGRect bounds() const { return bounds_; }
  void setBounds(const CGRect& bounds);
  /// The centre, in the superlayer's coordinates.
  CGPoint position() const { return position_; }
  void setPosition(CGPoint position);
  CGAffineTransform transform() const { return transform_; }
  void setTransform(const CGAffineTransform& transform);
  /// From this layer's coordinates to its superlayer's.
  CGAffineTransform transformToSuperlayer() const;
  /// The same as it is drawn at this moment.
  CGAffineTransform presentedTransformToSuperlayer() const;

  // Appearance
  double opacity() const { return opacity_; }
  void setOpacity(double opacity);
  bool isHidden() const { return hidden_; }
  void setHidden(bool hidden);
  CGColor backgroundColor() const { return backgroundColor_; }
  void setBackgroundColor(const CGColor& color);
  double cornerRadius() const { return cornerRadius_; }
  void setCornerRadius(double radius);
  double borderWidth() const { return borderWidth_; }
  void setBorderWidth(double width);
  CGColor borderColor() const { return borderColor_; }
  void setBorderColor(const CGColor& color);
  /// Whether what lies outside the (rounded) bounds is cut off.
  bool masksToBounds() const { return masksToBounds_; }
  void setMasksToBounds(bool masks);
  CGColor shadowColor() const { return shadowColor_; }
  void setShadowColor(const CGColor& color);
  double shadowOpacity() const { return shadowOpacity_; }
  void setShadowOpacity(double opacity);
  double shadowRadius() const { return shadowRadius_; }
  void setShadowRadius(double radius);
  CGSize shadowOffset() const { return shadowOffset_; }
  void setShadowOffset(CGSize offset);
  /// The rounded rectangle that throws the shadow; absent: the bounds.
  struct RoundedRect {
    CGRect rect;
    double radius = 0;
    bool operator==(const RoundedRect&) const = default;
  };
  const std::optional<RoundedRect>& shadowPath() const { return shadowPath_; }
  void setShadowPath(std::optional<RoundedRect> path);

  // Contents
  const std::shared_ptr<const CGImage>& contents() const { return contents_; }
  void setContents(std::shared_ptr<const CGImage> image);
  ContentsGravity contentsGravity() const { return contentsGravity_; }
  void setContentsGravity(ContentsGravity gravity);
  /// What `draw` draws has changed.
  void setNeedsDisplay();
  /// Draws this layer's own contents over background and `contents`, below its border and
  /// sublayers, in the layer's coordinates. The base class draws nothing.
  virtual void draw(DrawingContext& context);

  // Animation
  /// Adds or replaces the animation of that key. One that repeats for ever runs until it is removed
  /// and survives leaving and entering a window.
  void addAnimation(const std::string& key, CABasicAnimation animation);
  void removeAnimation(const std::string& key);
  void removeAllAnimations();
  /// The running animation of that key; null when there is none.
  const CABasicAnimation* animation(const std::string& key) const;
  bool hasAnimations() const { return !animations_.empty(); }
  bool isAnimating(LayerProperty property) const;
  LayerValue presented(LayerProperty property) const;
  double presentedOpacity() const { return presented(LayerProperty::Opacity)[0]; }

  // For the renderer.
  struct Cache;
  Cache& cache() { return *cache_; }

protected:
  /// Only the place of this layer in its superlayer has changed.
  void setNeedsPlacement();

private:
  LayerValue model(LayerProperty property) const;
  void willChange(LayerProperty property, const LayerValue& to);
  void finish(const std::string& key, bool finished);
  void bubbleDirty();

  CALayer* superlayer_ = nullptr;
  std::vector<std::shared_ptr<CALayer>> sublayers_;
  LayerHost* host_ = nullptr;

  CGRect bounds_;
  CGPoint position_;
  CGAffineTransform transform_;
  double opacity_ = 1;
  bool hidden_ = false;
  CGColor backgroundColor_ = CGColor::clear();
  double cornerRadius_ = 0;
  double borderWidth_ = 0;
  CGColor borderColor_ = CGColor::black();
  bool masksToBounds_ = false;
  CGColor shadowColor_ = CGColor::black();
  double shadowOpacity_ = 0;
  double shadowRadius_ = 3;
  CGSize shadowOffset_{0, -3};
  std::optional<RoundedRect> shadowPath_;
  std::shared_ptr<const CGImage> contents_;
  ContentsGravity contentsGravity_ = ContentsGravity::Resize;

  struct Running {
    CABasicAnimation animation;
    WorkId end = 0;
  };
  std::map<std::string, Running> animations_;
  std::unique_ptr<Cache> cache_;
};

} // namespace zuvi
