#include "platform/UIKit/UIScreen.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/CoreText/TextLayout.h"

#include <algorithm>
#include <utility>

namespace zuvi {

void redraw(CALayer& layer) {
  layer.setNeedsDisplay();
  for (const auto& sublayer : layer.sublayers())
    redraw(*sublayer);
}

UIScreen::UIScreen() : root_(std::make_shared<CALayer>()) {
  root_->setFrame(bounds());
  root_->setBackgroundColor(CGColor::white());
  root_->setHost(this);
}

UIScreen& UIScreen::main() {
  // Never destroyed: views that outlive `main` still find it.
  static auto* screen = new UIScreen;
  return *screen;
}

void UIScreen::configure(CGSize size, double scale, UIEdgeInsets safeArea) {
  if (size.width <= 0 || size.height <= 0 || scale <= 0) return;
  const bool sameInsets = safeArea == safeArea_;
  if (scale != scale_) redraw(*root_); // drawings were made for the pixels of before
  size_ = size;
  scale_ = scale;
  safeArea_ = safeArea;
  root_->setFrame(bounds());
  for (UIWindow* window : windows_) {
    window->setFrame(bounds());
    if (!sameInsets) window->setNeedsLayoutBelow();
  }
  applyTextScale();
}

void UIScreen::setTextScale(double scale) {
  wantedTextScale_ = scale;
  applyTextScale();
}

void UIScreen::applyTextScale() {
  // Points: there the fonts' own sizes just fit, and for each of these more they fit once larger.
  constexpr double narrowest = 240, once = 200;
  const double roomFor = 1 + (std::min(size_.width, size_.height) - narrowest) / once;
  const double scale = std::clamp(std::min(wantedTextScale_, roomFor), 1.0, largestText);
  if (scale == textScale()) return;
  zuvi::setTextScale(scale);
  redraw(*root_);
  for (UIWindow* window : windows_)
    window->setNeedsLayoutBelow();
  setNeedsLayout();
}

void UIScreen::setSurface(ScreenSurface* surface) {
  surface_ = surface;
  const auto windows = surface ? std::vector<UIWindow*>() : windows_;
  for (UIWindow* window : windows) {
    if (std::find(windows_.begin(), windows_.end(), window) == windows_.end()) continue;
    const auto root = window->rootViewController(); // what goes may take the window along
    if (root && root->presentedViewController()) root->dismiss(false);
  }
  damage_.clear();
  addDamage(bounds());
  setNeedsFrame();
}

void UIScreen::show(UIWindow& window) {
  hide(window);
  // Above all of its level and below.
  const auto above = std::find_if(windows_.begin(), windows_.end(), [&](const UIWindow* other) {
    return other->windowLevel() > window.windowLevel();
  });
  const auto index = static_cast<std::size_t>(above - windows_.begin());
  windows_.insert(above, &window);
  root_->insertSublayer(window.layer(), index);
  setNeedsLayout();
}

void UIScreen::hide(UIWindow& window) {
  std::erase(windows_, &window);
  if (window.layer()->superlayer() == root_.get()) window.layer()->removeFromSuperlayer();
}

void UIScreen::setNeedsLayout() {
  if (std::exchange(layoutScheduled_, true)) return;
  DispatchQueue::main().async([this] { layoutIfNeeded(); });
}

void UIScreen::layoutIfNeeded() {
  layoutScheduled_ = true; // what is marked meanwhile has its turn here
  for (int round = 0; round < 2; round++) {
    const auto windows = windows_;
    for (UIWindow* window : windows)
      if (std::find(windows_.begin(), windows_.end(), window) != windows_.end())
        window->layoutIfNeeded();
  }
  layoutScheduled_ = false;
}

std::vector<CGRect> UIScreen::takeDamage() {
  return std::exchange(damage_, {});
}

void UIScreen::announce(const std::string& text) {
  if (surface_) surface_->announce(text);
}

void UIScreen::setNeedsFrame() {
  if (surface_) surface_->requestFrame();
}

void UIScreen::addDamage(const CGRect& rect) {
  if (surface_) damage_.push_back(rect);
}

} // namespace zuvi
