#pragma once

#include <ZuviSDK/CoreGraphics/CGColor.h>
#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Export.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

class CALayer;
class CGImage;
class DrawingContext;
enum class LayerProperty;
struct CABasicAnimation;
struct LayerValue;

/// The surface that shows a tree of layers.
class LayerHost {
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
class CALayer : public std::enable_shared_from_this<CALayer> {
public:
  /// Empty, without contents and without a superlayer.
  CALayer();
  virtual ~CALayer();
  CALayer(const CALayer&) = delete;
  CALayer& operator=(const CALayer&) = delete;

  // Tree
  /// From back to front.
  const std::vector<std::shared_ptr<CALayer>>& sublayers() const { return sublayers_; }
  /// Null at the top of a tree.
  CALayer* superlayer() const { return superlayer_; }
  /// On top of the others. Null, this layer and those above it are ignored.
  void addSublayer(std::shared_ptr<CALayer> layer);
  /// An index past the end adds on top. A layer that is there already moves.
  void insertSublayer(std::shared_ptr<CALayer> layer, std::size_t index);
  /// Its animations go on. Nothing happens at the top of a tree.
  void removeFromSuperlayer();
  /// The surface that the tree shows on; null: none.
  LayerHost* host() const;
  /// For the surface that shows this layer as its root.
  void setHost(LayerHost* host);

  // Geometry
  /// The box around the layer in the superlayer's coordinates. Writing it sets the size of the
  /// bounds and the position; the transform stays.
  /// @{
  ZUVI_API CGRect frame() const;
  void setFrame(const CGRect& frame);
  /// @}
  /// In the layer's own coordinates; an origin other than zero moves what is in it. Animatable.
  /// @{
  CGRect bounds() const { return bounds_; }
  void setBounds(const CGRect& bounds);
  /// @}
  /// The centre, in the superlayer's coordinates. Animatable.
  /// @{
  CGPoint position() const { return position_; }
  void setPosition(CGPoint position);
  /// @}
  /// Applied about the centre; the identity at start. Animatable.
  /// @{
  CGAffineTransform transform() const { return transform_; }
  ZUVI_API void setTransform(const CGAffineTransform& transform);
  /// @}
  /// From this layer's coordinates to its superlayer's.
  CGAffineTransform transformToSuperlayer() const;
  /// The same as it is drawn at this moment.
  CGAffineTransform presentedTransformToSuperlayer() const;

  // Appearance
  /// From 0 to 1, which it is clamped to; 1 at start. Holds for the sublayers too. Animatable.
  /// @{
  double opacity() const { return opacity_; }
  ZUVI_API void setOpacity(double opacity);
  /// @}
  /// False at start. Nothing of a hidden layer or its sublayers is drawn.
  /// @{
  bool isHidden() const { return hidden_; }
  ZUVI_API void setHidden(bool hidden);
  /// @}
  /// Fills the rounded bounds; clear at start. Animatable.
  /// @{
  CGColor backgroundColor() const { return backgroundColor_; }
  ZUVI_API void setBackgroundColor(const CGColor& color);
  /// @}
  /// In points; 0 at start. Cuts sublayers only with `masksToBounds`. Animatable.
  /// @{
  double cornerRadius() const { return cornerRadius_; }
  ZUVI_API void setCornerRadius(double radius);
  /// @}
  /// In points, inside the bounds, over the sublayers; 0 at start: none.
  /// @{
  double borderWidth() const { return borderWidth_; }
  ZUVI_API void setBorderWidth(double width);
  /// @}
  /// Black at start. Animatable.
  /// @{
  CGColor borderColor() const { return borderColor_; }
  ZUVI_API void setBorderColor(const CGColor& color);
  /// @}
  /// Whether sublayers are cut off at the rounded bounds; false at start.
  /// @{
  bool masksToBounds() const { return masksToBounds_; }
  ZUVI_API void setMasksToBounds(bool masks);
  /// @}
  /// Black at start; its alpha is multiplied by `shadowOpacity`.
  /// @{
  CGColor shadowColor() const { return shadowColor_; }
  ZUVI_API void setShadowColor(const CGColor& color);
  /// @}
  /// From 0 to 1; 0 at start: no shadow.
  /// @{
  double shadowOpacity() const { return shadowOpacity_; }
  ZUVI_API void setShadowOpacity(double opacity);
  /// @}
  /// How far the shadow is blurred, in points; 3 at start.
  /// @{
  double shadowRadius() const { return shadowRadius_; }
  ZUVI_API void setShadowRadius(double radius);
  /// @}
  /// How far the shadow lies to the right and below, in points; 3 above at start.
  /// @{
  CGSize shadowOffset() const { return shadowOffset_; }
  ZUVI_API void setShadowOffset(CGSize offset);
  /// @}
  /// A rounded rectangle that throws a shadow.
  struct RoundedRect {
    CGRect rect;       ///< in the layer's coordinates
    double radius = 0; ///< of the corners, in points
    /// Exact, without any tolerance.
    bool operator==(const RoundedRect&) const = default;
  };
  /// What throws the shadow; absent, as at start: the rounded bounds.
  /// @{
  const std::optional<RoundedRect>& shadowPath() const { return shadowPath_; }
  void setShadowPath(std::optional<RoundedRect> path);
  /// @}

  // Contents
  /// The picture over the background; null, as at start: none.
  /// @{
  const std::shared_ptr<const CGImage>& contents() const { return contents_; }
  void setContents(std::shared_ptr<const CGImage> image);
  /// @}
  /// How `contents` fills the bounds; stretched at start.
  /// @{
  ContentsGravity contentsGravity() const { return contentsGravity_; }
  void setContentsGravity(ContentsGravity gravity);
  /// @}
  /// Whether `contents` is drawn as a mirror shows it, left for right; false at start.
  /// @{
  bool contentsMirrored() const { return contentsMirrored_; }
  void setContentsMirrored(bool mirrored);
  /// @}
  /// What `draw` draws has changed.
  ZUVI_API void setNeedsDisplay();
  /// Draws this layer's own contents over background and `contents`, below its border and
  /// sublayers, in the layer's coordinates. The base class draws nothing.
  virtual void draw(DrawingContext& context);

  // Animation
  /// Adds or replaces the animation of that key. One that repeats for ever runs until it is removed
  /// and survives leaving and entering a window.
  void addAnimation(const std::string& key, CABasicAnimation animation);
  /// The layer shows the model value at once; the animation's group hears that it was cut short.
  /// @{
  void removeAnimation(const std::string& key);
  void removeAllAnimations();
  /// @}
  /// The running animation of that key; null when there is none.
  const CABasicAnimation* animation(const std::string& key) const;
  /// Also while an animation waits for its start.
  bool hasAnimations() const;
  /// Whether an animation moves that property, or waits to.
  bool isAnimating(LayerProperty property) const;
  /// What is drawn at this moment; the model value when nothing moves it.
  /// @{
  LayerValue presented(LayerProperty property) const;
  double presentedOpacity() const;
  /// @}

  // For the renderer.
  /// @cond
  struct Cache;
  Cache& cache() { return *cache_; }
  /// @endcond

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
  bool contentsMirrored_ = false;

  std::unique_ptr<Cache> cache_;
};

} // namespace zuvi
