#include <ZuviSDK/QuartzCore/CALayer.h>

#include "platform/QuartzCore/AnimationRetargeting.h"
#include "platform/QuartzCore/CALayerCache.h"

#include <algorithm>

namespace zuvi {

namespace {

std::string keyOf(LayerProperty property) {
  switch (property) {
  case LayerProperty::Opacity:
    return "opacity";
  case LayerProperty::Position:
    return "position";
  case LayerProperty::Bounds:
    return "bounds";
  case LayerProperty::Transform:
    return "transform";
  case LayerProperty::BackgroundColor:
    return "backgroundColor";
  case LayerProperty::BorderColor:
    return "borderColor";
  case LayerProperty::CornerRadius:
    return "cornerRadius";
  case LayerProperty::Rotation:
    return "rotation";
  }
  return {};
}

} // namespace

LayerValue CALayer::model(LayerProperty property) const {
  switch (property) {
  case LayerProperty::Opacity:
    return layerValue(opacity_);
  case LayerProperty::Position:
    return layerValue(position_);
  case LayerProperty::Bounds:
    return layerValue(bounds_);
  case LayerProperty::Transform:
    return layerValue(transform_);
  case LayerProperty::BackgroundColor:
    return layerValue(backgroundColor_);
  case LayerProperty::BorderColor:
    return layerValue(borderColor_);
  case LayerProperty::CornerRadius:
    return layerValue(cornerRadius_);
  case LayerProperty::Rotation:
    break; // exists only while it is animated
  }
  return {};
}

LayerValue CALayer::presented(LayerProperty property) const {
  for (const auto& [key, running] : cache_->animations)
    if (running.animation.property == property)
      return running.animation.valueAt(DispatchQueue::main().now());
  return model(property);
}

void CALayer::willChange(LayerProperty property, const LayerValue& to) {
  AnimationGroup* group = AnimationGroup::current();
  if (!group || group->duration <= 0) {
    const auto running = cache_->animations.find(keyOf(property));
    if (running == cache_->animations.end()) return;
    if (AnimationRetargeting::isOn())
      running->second.animation.to = to;
    else
      finish(keyOf(property), false);
    return;
  }
  CABasicAnimation animation;
  animation.property = property;
  animation.from = presented(property);
  animation.to = to;
  animation.beginTime = DispatchQueue::main().now() + group->delay;
  animation.duration = group->duration;
  animation.curve = group->curve;
  animation.group = group->shared_from_this();
  addAnimation(keyOf(property), std::move(animation));
}

void CALayer::addAnimation(const std::string& key, CABasicAnimation animation) {
  // Counted before an older animation of the same group is cut short, lest the group end there.
  if (animation.group) animation.group->added();
  const auto older = cache_->animations.find(key);
  // A block that sets a value twice has not been cut short.
  finish(key, older != cache_->animations.end() && animation.group &&
                  older->second.animation.group == animation.group);
  Cache::Running running{std::move(animation), 0};
  const CABasicAnimation& added = running.animation;
  if (!added.repeatsForever) {
    MainQueue& queue = DispatchQueue::main();
    running.end = queue.asyncAfter(added.beginTime + added.duration - queue.now(),
                                   [this, key] { finish(key, true); });
  }
  cache_->animations.emplace(key, std::move(running));
  cache_->placementChanged = cache_->contentChanged = true;
  bubbleDirty();
}

void CALayer::finish(const std::string& key, bool finished) {
  const auto found = cache_->animations.find(key);
  if (found == cache_->animations.end()) return;
  Cache::Running running = std::move(found->second);
  cache_->animations.erase(found);
  if (running.end) DispatchQueue::main().cancel(running.end);
  cache_->placementChanged = cache_->contentChanged = true;
  bubbleDirty();
  if (running.animation.group) running.animation.group->ended(finished);
}

bool CALayer::hasAnimations() const {
  return !cache_->animations.empty();
}

double CALayer::presentedOpacity() const {
  return presented(LayerProperty::Opacity)[0];
}

bool CALayer::isAnimating(LayerProperty property) const {
  return std::any_of(
      cache_->animations.begin(), cache_->animations.end(),
      [property](const auto& entry) { return entry.second.animation.property == property; });
}

const CABasicAnimation* CALayer::animation(const std::string& key) const {
  const auto found = cache_->animations.find(key);
  return found == cache_->animations.end() ? nullptr : &found->second.animation;
}

void CALayer::removeAnimation(const std::string& key) {
  finish(key, false);
}

void CALayer::removeAllAnimations() {
  while (!cache_->animations.empty())
    finish(cache_->animations.begin()->first, false);
}

} // namespace zuvi
