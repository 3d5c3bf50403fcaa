#include "platform/UIKit/UIScrollView.h"

#include <ZuviSDK/UIKit/KeyPress.h>

#include <algorithm>
#include <map>
#include <string>

namespace zuvi {

namespace {

// Points
constexpr double barWidth = 3;
constexpr double barInset = 1;
constexpr double shortestBar = 24;
constexpr CGColor barColor{0.12, 0.15, 0.21, 0.4};

} // namespace

UIScrollView::UIScrollView() : bar_(make<CALayer>()) {
  setClipsToBounds(true);
  bar_->setBackgroundColor(barColor);
  bar_->setCornerRadius(barWidth / 2);
}

void UIScrollView::placeBar() {
  const CGRect seen = bounds();
  const bool wanted = scrollEnabled_ && seen.height > 0 && contentSize_.height > seen.height + 0.5;
  if (!wanted) return bar_->removeFromSuperlayer();
  const auto& layers = layer()->sublayers();
  if (layers.empty() || layers.back() != bar_) layer()->addSublayer(bar_);
  const double room = seen.height - 2 * barInset;
  const double length =
      std::min(room, std::max(shortestBar, room * seen.height / contentSize_.height));
  const double way = seen.y / (contentSize_.height - seen.height);
  bar_->setFrame({seen.maxX() - barWidth - barInset, seen.y + barInset + (room - length) * way,
                  barWidth, length});
}

void UIScrollView::setContentSize(CGSize size) {
  contentSize_ = size;
  setContentOffset(contentOffset());
  placeBar();
}

void UIScrollView::setContentOffset(CGPoint offset) {
  const CGRect now = bounds();
  const CGPoint end{std::max(0.0, contentSize_.width - now.width),
                    std::max(0.0, contentSize_.height - now.height)};
  offset = {std::clamp(offset.x, 0.0, end.x), std::clamp(offset.y, 0.0, end.y)};
  if (offset == now.origin()) return;
  // The layer's position is that of its centre: only what it shows moves.
  layer()->setBounds({offset.x, offset.y, now.width, now.height});
  setNeedsLayout();
}

void UIScrollView::setScrollEnabled(bool enabled) {
  scrollEnabled_ = enabled;
  placeBar();
}

void UIScrollView::scrollRectToVisible(const CGRect& rect) {
  const CGRect seen = bounds();
  const auto moved = [](double from, double to, double first, double last) {
    return first < from ? first - from : last > to ? std::min(last - to, first - from) : 0;
  };
  setContentOffset({seen.x + moved(seen.minX(), seen.maxX(), rect.minX(), rect.maxX()),
                    seen.y + moved(seen.minY(), seen.maxY(), rect.minY(), rect.maxY())});
}

bool UIScrollView::canScroll() const {
  return scrollEnabled_ &&
         (contentSize_.width > bounds().width || contentSize_.height > bounds().height);
}

void UIScrollView::touchBegan(CGPoint point) {
  if (scrollEnabled_) dragStart_ = point;
}

void UIScrollView::touchMoved(CGPoint point) {
  if (!dragStart_) return;
  const CGPoint offset = contentOffset();
  setContentOffset({offset.x + dragStart_->x - point.x, offset.y + dragStart_->y - point.y});
}

void UIScrollView::touchEnded(CGPoint) {
  dragStart_.reset();
}

void UIScrollView::touchCancelled() {
  dragStart_.reset();
}

bool UIScrollView::scrollWheel(CGPoint delta) {
  const CGPoint before = contentOffset();
  if (scrollEnabled_) setContentOffset({before.x + delta.x, before.y + delta.y});
  return contentOffset() != before || UIView::scrollWheel(delta);
}

bool UIScrollView::keyPressed(const KeyPress& key) {
  constexpr double line = 40; // points
  const double page = bounds().height * 0.9;
  const std::map<std::string, double> ways{{"Up", -line},       {"Down", line}, {"Page_Up", -page},
                                           {"Page_Down", page}, {"Home", -1e9}, {"End", 1e9}};
  const auto way = ways.find(key.name);
  if (way == ways.end() || !canScroll()) return false;
  const CGPoint before = contentOffset();
  setContentOffset({before.x, before.y + way->second});
  return contentOffset() != before;
}

void UIScrollView::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  description["offset"] = contentOffset().y;
}

void UIScrollView::layoutSubviews() {
  UIView::layoutSubviews();
  setContentOffset(contentOffset()); // a larger view may show past the end
  placeBar();
}

} // namespace zuvi
