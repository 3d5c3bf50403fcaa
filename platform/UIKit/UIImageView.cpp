#include <ZuviSDK/UIKit/UIImageView.h>

#include <ZuviSDK/Foundation/Timer.h>
#include <ZuviSDK/QuartzCore/DrawingContext.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include "platform/UIKit/UIImageNames.h"

#include <algorithm>
#include <cmath>

namespace zuvi {

UIImageView::UIImageView(std::shared_ptr<const UIImage> image) {
  setUserInteractionEnabled(false);
  setImage(std::move(image));
}

void UIImageView::setImage(std::shared_ptr<const UIImage> image) {
  if (image == image_) return;
  image_ = std::move(image);
  shown_ = 0;
  setNeedsDisplay();
  invalidateIntrinsicContentSize();
  play();
}

void UIImageView::play() {
  timer_ = nullptr;
  if (!image_ || image_->images().size() < 2 || image_->duration() <= 0 || !window()) return;
  const double each = image_->duration() / double(image_->images().size());
  timer_ = Timer::scheduled(each, Timer::Repeats::Yes, [this] {
    const auto& images = image_->images();
    const auto before = images[shown_];
    shown_ = (shown_ + 1) % images.size();
    if (images[shown_] != before) setNeedsDisplay();
  });
}

void UIImageView::didMoveToWindow() {
  play();
}

CGSize UIImageView::intrinsicContentSize() const {
  return image_ ? image_->size() : CGSize{-1, -1};
}

CGSize UIImageView::sizeThatFits(CGSize size) const {
  if (!image_) return {-1, -1};
  const CGSize own = image_->size();
  if (size.width < 0 || own.width <= 0) return own;
  return {size.width, own.height * size.width / own.width};
}

CGRect UIImageView::place(CGSize image) const {
  const CGRect all = bounds();
  double horizontal = 1, vertical = 1;
  if (image.width > 0 && image.height > 0) {
    horizontal = all.width / image.width;
    vertical = all.height / image.height;
  }
  switch (contentMode()) {
  case UIViewContentMode::ScaleToFill:
    return all;
  case UIViewContentMode::ScaleAspectFit:
    horizontal = vertical = std::min(horizontal, vertical);
    break;
  case UIViewContentMode::ScaleAspectFill:
    horizontal = vertical = std::max(horizontal, vertical);
    break;
  case UIViewContentMode::Center:
    horizontal = vertical = 1;
    break;
  }
  const CGSize size{image.width * horizontal, image.height * vertical};
  return {all.midX() - size.width / 2, all.midY() - size.height / 2, size.width, size.height};
}

void UIImageView::draw(DrawingContext& context) {
  if (!image_) return;
  const UIImage& shown = image_->images().empty() ? *image_ : *image_->images()[shown_];
  // On whole pixels, or every edge would be blurred.
  const double scale = context.scale();
  const auto onPixels = [scale](double v) { return std::round(v * scale) / scale; };
  CGRect area = place(shown.size());
  area = {onPixels(area.x), onPixels(area.y), onPixels(area.width), onPixels(area.height)};
  if (const auto pixels = shown.pixels(area.size(), scale)) context.drawImage(*pixels, area);
}

UIAccessibilityElement UIImageView::accessibilityElement() const {
  UIAccessibilityElement element = UIView::accessibilityElement();
  // A picture without a name is an ornament.
  if (!accessibilityRole && !element.name.empty() && image_)
    element.role = UIAccessibilityRole::Image;
  return element;
}

void UIImageView::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  if (image_) description["image"] = image_->name();
}

bool UIImageView::setNibAttribute(const std::string& name, const std::string& value) {
  if (name == "image") {
    setImage(ImageBundleScope::imageNamed(value));
    return image_ != nullptr;
  }
  return UIView::setNibAttribute(name, value);
}

} // namespace zuvi
