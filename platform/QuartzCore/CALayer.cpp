#include <ZuviSDK/QuartzCore/CALayer.h>

#include <ZuviSDK/CoreGraphics/CGImage.h>
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/QuartzCore/CALayerCache.h"
#include "platform/QuartzCore/LiveLayers.h"

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {
std::size_t live = 0;
}

CALayer::CALayer() : cache_(std::make_unique<Cache>()) {
  live++;
}

CALayer::~CALayer() {
  live--;
  for (const auto& sublayer : sublayers_)
    sublayer->superlayer_ = nullptr;
  removeAllAnimations();
}

std::size_t liveLayers() {
  return live;
}

void CALayer::draw(DrawingContext&) {}

// Tree

LayerHost* CALayer::host() const {
  const CALayer* layer = this;
  while (layer->superlayer_)
    layer = layer->superlayer_;
  return layer->host_;
}

void CALayer::setHost(LayerHost* host) {
  host_ = host;
  cache_->placementChanged = true;
  cache_->dirty = true;
  if (host_) host_->setNeedsFrame();
}

void CALayer::addSublayer(std::shared_ptr<CALayer> layer) {
  insertSublayer(std::move(layer), sublayers_.size());
}

void CALayer::insertSublayer(std::shared_ptr<CALayer> layer, std::size_t index) {
  for (const CALayer* above = this; above; above = above->superlayer_)
    if (above == layer.get()) return;
  if (!layer) return;
  layer->removeFromSuperlayer();
  layer->superlayer_ = this;
  const auto at =
      sublayers_.begin() + static_cast<std::ptrdiff_t>(std::min(index, sublayers_.size()));
  CALayer& inserted = **sublayers_.insert(at, std::move(layer));
  inserted.setNeedsPlacement();
}

void CALayer::removeFromSuperlayer() {
  if (!superlayer_) return;
  const auto self = shared_from_this(); // the superlayer may be the last to hold this one
  if (LayerHost* surface = host(); surface && !cache_->drawn.isEmpty()) {
    CGRect gone = cache_->drawn;
    for (const CALayer* layer = superlayer_; layer; layer = layer->superlayer_)
      gone = layer->presentedTransformToSuperlayer().apply(gone);
    surface->addDamage(gone);
  }
  cache_->drawn = {};
  CALayer* superlayer = std::exchange(superlayer_, nullptr);
  std::erase(superlayer->sublayers_, self);
  superlayer->bubbleDirty();
}

void CALayer::bubbleDirty() {
  assertMainQueue("A layer");
  CALayer* layer = this;
  for (; layer; layer = layer->superlayer_) {
    layer->cache_->dirty = true;
    if (!layer->superlayer_ && layer->host_) layer->host_->setNeedsFrame();
  }
}

void CALayer::setNeedsPlacement() {
  cache_->placementChanged = true;
  bubbleDirty();
}

void CALayer::setNeedsDisplay() {
  cache_->contentChanged = true;
  bubbleDirty();
}

// Geometry

CGRect CALayer::frame() const {
  return transformToSuperlayer().apply(bounds_);
}

void CALayer::setFrame(const CGRect& frame) {
  setBounds({bounds_.x, bounds_.y, frame.width, frame.height});
  setPosition(frame.center());
}

void CALayer::setBounds(const CGRect& bounds) {
  if (bounds == bounds_) return;
  willChange(LayerProperty::Bounds, layerValue(bounds));
  bounds_ = bounds;
  cache_->placementChanged = true;
  setNeedsDisplay();
}

void CALayer::setPosition(CGPoint position) {
  if (position == position_) return;
  willChange(LayerProperty::Position, layerValue(position));
  position_ = position;
  setNeedsPlacement();
}

void CALayer::setTransform(const CGAffineTransform& transform) {
  if (transform == transform_) return;
  willChange(LayerProperty::Transform, layerValue(transform));
  transform_ = transform;
  setNeedsPlacement();
}

static CGAffineTransform placement(const CGRect& bounds, const CGAffineTransform& transform,
                                   double rotation, CGPoint position) {
  CGAffineTransform placed = CGAffineTransform::translation(-bounds.midX(), -bounds.midY());
  if (rotation != 0) placed = placed.concatenating(CGAffineTransform::rotation(rotation));
  if (!transform.isIdentity()) placed = placed.concatenating(transform);
  return placed.concatenating(CGAffineTransform::translation(position.x, position.y));
}

CGAffineTransform CALayer::transformToSuperlayer() const {
  return placement(bounds_, transform_, 0, position_);
}

CGAffineTransform CALayer::presentedTransformToSuperlayer() const {
  if (cache_->animations.empty()) return transformToSuperlayer();
  const LayerValue b = presented(LayerProperty::Bounds), p = presented(LayerProperty::Position);
  const LayerValue t = presented(LayerProperty::Transform);
  return placement({b[0], b[1], b[2], b[3]}, {t[0], t[1], t[2], t[3], t[4], t[5]},
                   presented(LayerProperty::Rotation)[0], {p[0], p[1]});
}

// Appearance

void CALayer::setOpacity(double opacity) {
  opacity = std::clamp(opacity, 0.0, 1.0);
  if (opacity == opacity_) return;
  willChange(LayerProperty::Opacity, layerValue(opacity));
  opacity_ = opacity;
  setNeedsPlacement();
}

void CALayer::setHidden(bool hidden) {
  if (hidden == hidden_) return;
  hidden_ = hidden;
  setNeedsPlacement();
}

void CALayer::setBackgroundColor(const CGColor& color) {
  if (color == backgroundColor_) return;
  willChange(LayerProperty::BackgroundColor, layerValue(color));
  backgroundColor_ = color;
  setNeedsDisplay();
}

void CALayer::setCornerRadius(double radius) {
  if (radius == cornerRadius_) return;
  willChange(LayerProperty::CornerRadius, layerValue(radius));
  cornerRadius_ = radius;
  if (masksToBounds_) cache_->placementChanged = true; // it cuts the sublayers
  setNeedsDisplay();
}

void CALayer::setBorderColor(const CGColor& color) {
  if (color == borderColor_) return;
  willChange(LayerProperty::BorderColor, layerValue(color));
  borderColor_ = color;
  setNeedsDisplay();
}

/// Stores and redraws when the value differs; for what never moves over time.
template <class T> static bool replace(T& field, T value) {
  if (field == value) return false;
  field = std::move(value);
  return true;
}

void CALayer::setBorderWidth(double width) {
  if (replace(borderWidth_, width)) setNeedsDisplay();
}

void CALayer::setMasksToBounds(bool masks) {
  if (replace(masksToBounds_, masks)) setNeedsPlacement();
}

void CALayer::setShadowColor(const CGColor& color) {
  if (replace(shadowColor_, color)) setNeedsDisplay();
}

void CALayer::setShadowOpacity(double opacity) {
  if (replace(shadowOpacity_, opacity)) setNeedsDisplay();
}

void CALayer::setShadowRadius(double radius) {
  if (replace(shadowRadius_, radius)) setNeedsDisplay();
}

void CALayer::setShadowOffset(CGSize offset) {
  if (replace(shadowOffset_, offset)) setNeedsDisplay();
}

void CALayer::setShadowPath(std::optional<RoundedRect> path) {
  if (replace(shadowPath_, path)) setNeedsDisplay();
}

void CALayer::setContents(std::shared_ptr<const CGImage> image) {
  if (replace(contents_, std::move(image))) setNeedsDisplay();
}

void CALayer::setContentsGravity(ContentsGravity gravity) {
  if (replace(contentsGravity_, gravity)) setNeedsDisplay();
}

void CALayer::setContentsMirrored(bool mirrored) {
  if (replace(contentsMirrored_, mirrored)) setNeedsDisplay();
}

} // namespace zuvi
