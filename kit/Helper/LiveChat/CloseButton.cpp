#include "kit/Helper/LiveChat/CloseButton.h"

#include "kit/Helper/LiveChat/LoadingViewDrawing.h"

namespace zuvi {

CloseButton::CloseButton() {
  constexpr CGPoint corners[] = {{14, 1.41}, {12.59, 0},  {7, 5.59},   {1.41, 0},
                                 {0, 1.41},  {5.59, 7},   {0, 12.59},  {1.41, 14},
                                 {7, 8.41},  {12.59, 14}, {14, 12.59}, {8.41, 7}};
  closeIconPath_.moveTo(corners[0]);
  for (const CGPoint corner : corners)
    if (corner != corners[0]) closeIconPath_.lineTo(corner);
  closeIconPath_.close();
  closeIcon_->setFillRule(DrawingContext::FillRule::EvenOdd);
  closeIcon_->setFillColor(UIColor::black());
  layer()->addSublayer(closeIcon_);
}

CGSize CloseButton::sizeThatFits(CGSize) const {
  return {44.0, 44.0};
}

void CloseButton::layoutSubviews() {
  UIButton::layoutSubviews();
  closeIcon_->setBounds({0, 0, baseSize, baseSize});
  closeIcon_->setPosition(bounds().center());
  applyScaled(*closeIcon_, closeIconPath_, baseSize);
}

void CloseButton::setHighlighted(bool highlighted) {
  UIButton::setHighlighted(highlighted);
  closeIcon_->setFillColor(UIColor::black().withAlpha(highlighted ? 0.5 : 1.0));
}

} // namespace zuvi
