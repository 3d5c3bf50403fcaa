#include "platform/UIKit/UIPageControl.h"

#include <ZuviSDK/QuartzCore/DrawingContext.h>

#include <algorithm>

namespace zuvi {

namespace {
constexpr double dot = 7, gap = 9;
}

void UIPageControl::setNumberOfPages(int pages) {
  pages_ = std::max(0, pages);
  current_ = std::clamp(current_, 0, std::max(0, pages_ - 1));
  setNeedsDisplay();
  invalidateIntrinsicContentSize();
}

void UIPageControl::setCurrentPage(int page) {
  current_ = std::clamp(page, 0, std::max(0, pages_ - 1));
  setNeedsDisplay();
}

void UIPageControl::setCurrentPageIndicatorTintColor(const UIColor& color) {
  currentTint_ = color;
  setNeedsDisplay();
}

void UIPageControl::setPageIndicatorTintColor(const UIColor& color) {
  tint_ = color;
  setNeedsDisplay();
}

CGSize UIPageControl::intrinsicContentSize() const {
  return {pages_ * dot + std::max(0, pages_ - 1) * gap, dot};
}

void UIPageControl::draw(DrawingContext& context) {
  const double width = intrinsicContentSize().width;
  for (int i = 0; i < pages_; i++) {
    const CGRect place{bounds().midX() - width / 2 + i * (dot + gap), bounds().midY() - dot / 2,
                       dot, dot};
    context.fill(place, dot / 2, i == current_ ? currentTint_ : tint_);
  }
}

UIAccessibilityElement UIPageControl::accessibilityElement() const {
  UIAccessibilityElement element = UIView::accessibilityElement();
  if (!accessibilityRole) element.role = UIAccessibilityRole::PageControl;
  element.position = current_ + 1;
  element.count = pages_;
  return element;
}

void UIPageControl::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  description["page"] = current_;
  description["pages"] = pages_;
  description["tint"] = textFromColor(currentTint_);
}

} // namespace zuvi
