#include <ZuviSDK/UIKit/UIView.h>

#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/QuartzCore/AnimationRetargeting.h"
#include "platform/QuartzCore/CAAnimation.h"
#include "platform/UIKit/UIScreen.h"

#include <algorithm>
#include <limits>

namespace zuvi {

namespace {

/// The layer of a plain view: what it draws is what the view draws.
class ViewLayer final : public CALayer {
public:
  UIView* view = nullptr;
  void draw(DrawingContext& context) override {
    if (view) view->draw(context);
  }
};

} // namespace

UIView::UIView(const CGRect& frame) : UIView(frame, std::make_shared<ViewLayer>()) {
  static_cast<ViewLayer&>(*layer_).view = this;
}

UIView::UIView(const CGRect& frame, std::shared_ptr<CALayer> layer) : layer_(std::move(layer)) {
  assertMainQueue("A view");
  layer_->setFrame(frame);
}

UIView::~UIView() {
  assertMainQueue("A view");
  if (auto* plain = dynamic_cast<ViewLayer*>(layer_.get())) plain->view = nullptr;
  UIApplication::shared().viewWillGo(*this);
  for (const auto& subview : subviews_)
    subview->superview_ = nullptr;
  layer_->removeFromSuperlayer();
}

void UIView::draw(DrawingContext&) {}

// Tree

UIWindow* UIView::window() const {
  return superview_ ? superview_->window() : nullptr;
}

bool UIView::isDescendantOf(const UIView& other) const {
  for (const UIView* view = this; view; view = view->superview_)
    if (view == &other) return true;
  return false;
}

void UIView::addSubview(std::shared_ptr<UIView> view) {
  insertSubview(std::move(view), std::numeric_limits<std::size_t>::max());
}

void UIView::insertSubview(std::shared_ptr<UIView> view, std::size_t index) {
  assertMainQueue("A view");
  if (!view || isDescendantOf(*view)) return;
  view->removeFromSuperview();
  index = std::min(index, subviews_.size());
  // Layers that are no view's (previews, gradients) keep their place below.
  std::size_t layerIndex = layer_->sublayers().size();
  if (index < subviews_.size()) {
    const auto& layers = layer_->sublayers();
    layerIndex = static_cast<std::size_t>(
        std::find(layers.begin(), layers.end(), subviews_[index]->layer_) - layers.begin());
  }
  subviews_.insert(subviews_.begin() + static_cast<std::ptrdiff_t>(index), view);
  view->superview_ = this;
  layer_->insertSublayer(view->layer_, layerIndex);
  setNeedsLayout();
  view->setNeedsLayout();
  if (window()) view->windowChanged();
  view->didMoveToSuperview();
}

void UIView::bringSubviewToFront(const std::shared_ptr<UIView>& view) {
  const auto found = std::find(subviews_.begin(), subviews_.end(), view);
  if (found == subviews_.end()) return;
  std::rotate(found, found + 1, subviews_.end());
  layer_->addSublayer(view->layer_);
}

void UIView::removeFromSuperview() {
  if (!superview_) return;
  const auto self = shared_from_this();
  const bool wasOnWindow = window() != nullptr;
  UIApplication::shared().viewWillGo(*this);
  UIView* superview = std::exchange(superview_, nullptr);
  std::erase(superview->subviews_, self);
  layer_->removeFromSuperlayer();
  std::erase_if(superview->constraints_, [&](const auto& constraint) {
    return constraint->firstItem.view.lock() == self || constraint->secondItem.view.lock() == self;
  });
  superview->setNeedsLayout();
  if (wasOnWindow) windowChanged();
  didMoveToSuperview();
}

void UIView::windowChanged() {
  if (!constraints_.empty()) setNeedsLayout(); // the safe area came or went
  didMoveToWindow();
  const auto below = subviews_; // a hook may change the list
  for (const auto& subview : below)
    subview->windowChanged();
}

// Geometry

void UIView::setFrame(const CGRect& frame) {
  const CGSize old = bounds().size();
  layer_->setFrame(frame);
  sizeChanged(old);
}

void UIView::setBounds(const CGRect& bounds) {
  const CGSize old = this->bounds().size();
  layer_->setBounds(bounds);
  sizeChanged(old);
}

void UIView::setCenter(CGPoint center) {
  layer_->setPosition(center);
}

void UIView::sizeChanged(CGSize old) {
  const CGSize now = bounds().size();
  if (now == old) return;
  setNeedsLayout();
  setNeedsDisplay();
  const double dw = now.width - old.width, dh = now.height - old.height;
  const AnimationRetargeting follow; // what is on its way gets there all the same
  for (const auto& subview : subviews_) {
    const unsigned mask = subview->autoresizingMask_;
    if (mask == AutoresizingNone) continue;
    // The change is shared evenly among the flexible parts of each direction.
    const auto share = [mask](double change, unsigned before, unsigned size, unsigned after) {
      const int parts = !!(mask & before) + !!(mask & size) + !!(mask & after);
      const double each = parts ? change / parts : 0;
      return std::pair{mask & before ? each : 0, mask & size ? each : 0};
    };
    const auto [dx, dWidth] = share(dw, FlexibleLeftMargin, FlexibleWidth, FlexibleRightMargin);
    const auto [dy, dHeight] = share(dh, FlexibleTopMargin, FlexibleHeight, FlexibleBottomMargin);
    // By centre and bounds: the frame of a transformed view is only the box around it.
    const CGPoint center = subview->center();
    const CGRect b = subview->bounds();
    subview->setBounds({b.x, b.y, b.width + dWidth, b.height + dHeight});
    subview->setCenter({center.x + dx + dWidth / 2, center.y + dy + dHeight / 2});
  }
}

CGPoint UIView::convertToScreen(CGPoint point) const {
  for (const UIView* view = this; view; view = view->superview_)
    point = view->layer_->transformToSuperlayer().apply(point);
  return point;
}

CGRect UIView::convertToScreen(const CGRect& rect) const {
  CGRect converted = rect;
  for (const UIView* view = this; view; view = view->superview_)
    converted = view->layer_->transformToSuperlayer().apply(converted);
  return converted;
}

CGPoint UIView::convertFromScreen(CGPoint point) const {
  if (superview_) point = superview_->convertFromScreen(point);
  const auto inverse = layer_->transformToSuperlayer().inverted();
  return inverse ? inverse->apply(point) : CGPoint{};
}

CGRect UIView::convertFromScreen(const CGRect& rect) const {
  const CGRect above = superview_ ? superview_->convertFromScreen(rect) : rect;
  const auto inverse = layer_->transformToSuperlayer().inverted();
  return inverse ? inverse->apply(above) : CGRect{};
}

CGRect UIView::convert(const CGRect& rect, const UIView* from) const {
  return convertFromScreen(from ? from->convertToScreen(rect) : rect);
}

bool UIView::isSeen() const {
  return !isHidden() && alpha() >= 0.01 && layer_->presentedOpacity() >= 0.01;
}

void UIView::setContentMode(UIViewContentMode mode) {
  contentMode_ = mode;
  setNeedsDisplay();
}

void UIView::describe(Value::Dictionary& description) const {
  if (backgroundColor().alpha > 0) description["color"] = textFromColor(backgroundColor());
  if (layer_->cornerRadius() > 0) description["corner"] = layer_->cornerRadius();
  if (layer_->borderWidth() > 0) description["border"] = textFromColor(layer_->borderColor());
}

UIAccessibilityElement UIView::accessibilityElement() const {
  UIAccessibilityElement element;
  element.role = accessibilityRole.value_or(UIAccessibilityRole::None);
  element.name = accessibilityLabel;
  element.value = accessibilityValue;
  return element;
}

void UIView::declareNib(NibDeclaration&) {}

// Animation

void UIView::animate(TimeInterval duration, const std::function<void()>& changes,
                     std::function<void(bool)> completion) {
  animate(duration, 0, AnimationCurve{}, changes, std::move(completion));
}

void UIView::animate(TimeInterval duration, TimeInterval delay, const AnimationCurve& curve,
                     const std::function<void()>& changes, std::function<void(bool)> completion) {
  const auto group = std::make_shared<AnimationGroup>();
  group->duration = duration;
  group->delay = delay;
  group->curve = curve;
  group->completion = std::move(completion);
  group->run(changes);
}

} // namespace zuvi
