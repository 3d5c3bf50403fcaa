#include <ZuviSDK/UIKit/UIButton.h>

#include <ZuviSDK/UIKit/UIImage.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "platform/UIKit/NibValues.h"
#include "platform/UIKit/UIImageNames.h"

#include <algorithm>

namespace zuvi {

namespace {

constexpr double padding = 12;    // left and right of the title
constexpr double imageGap = 8;    // between picture and title
constexpr double dimmed = 0.55;   // contents under a finger
constexpr double disabled = 0.38; // contents that can't be touched

} // namespace

UIButton::UIButton(const CGRect& frame)
    : UIControl(frame), titleLabel_(make<UILabel>()), imageView_(make<UIImageView>()) {
  titleLabel_->setTextAlignment(NSTextAlignment::Center);
  imageView_->setContentMode(UIViewContentMode::ScaleAspectFit);
  addSubview(imageView_);
  addSubview(titleLabel_);
}

UIControlState UIButton::state() const {
  if (!isEnabled()) return UIControlState::Disabled;
  return isHighlighted() ? UIControlState::Highlighted : UIControlState::Normal;
}

void UIButton::refresh() {
  const UIControlState now = state();
  const Look &own = look(now), &normal = look(UIControlState::Normal);
  titleLabel_->setText(own.title ? own.title : normal.title);
  if (const auto& color = own.color ? own.color : normal.color) titleLabel_->setTextColor(*color);
  imageView_->setImage((own.image ? own.image : normal.image).value_or(nullptr));
  const double strength = now == UIControlState::Highlighted ? dimmed
                          : now == UIControlState::Disabled  ? disabled
                                                             : 1;
  // A colour or picture made for the state says enough by itself.
  titleLabel_->setAlpha(own.color ? 1 : strength);
  imageView_->setAlpha(own.image ? 1 : strength);
  invalidateIntrinsicContentSize();
}

void UIButton::setTitle(std::optional<std::string> title, UIControlState state) {
  look(state).title = std::move(title);
  refresh();
}

std::optional<std::string> UIButton::title(UIControlState state) const {
  return looks_[static_cast<int>(state)].title;
}

void UIButton::setTitleColor(const UIColor& color, UIControlState state) {
  look(state).color = color;
  refresh();
}

void UIButton::setImage(std::shared_ptr<const UIImage> image, UIControlState state) {
  look(state).image = std::move(image);
  refresh();
}

void UIButton::setFont(std::shared_ptr<const UIFont> font) {
  titleLabel_->setFont(std::move(font));
  invalidateIntrinsicContentSize();
}

void UIButton::setEnabled(bool enabled) {
  UIControl::setEnabled(enabled);
  refresh();
}

void UIButton::setHighlighted(bool highlighted) {
  UIControl::setHighlighted(highlighted);
  refresh();
}

CGSize UIButton::intrinsicContentSize() const {
  const CGSize text = titleLabel_->intrinsicContentSize();
  const bool hasText = text.width > 0;
  const CGSize image = imageView_->image() ? imageView_->image()->size() : CGSize{};
  const double gap = hasText && image.width > 0 ? imageGap : 0;
  return {image.width + gap + text.width + (hasText ? 2 * padding : 0),
          std::max(image.height, text.height)};
}

void UIButton::layoutSubviews() {
  UIControl::layoutSubviews();
  const CGRect all = bounds();
  const bool hasText = !titleLabel_->text().value_or("").empty();
  CGSize image = imageView_->image() ? imageView_->image()->size() : CGSize{};
  const double fit =
      image.height > 0 ? std::min({1.0, all.height / image.height, all.width / image.width}) : 1;
  image = {image.width * fit, image.height * fit};
  const double gap = hasText && image.width > 0 ? imageGap : 0;
  const double room = std::max(0.0, all.width - image.width - gap - (hasText ? 2 * padding : 0));
  const double textWidth = hasText ? std::min(titleLabel_->intrinsicContentSize().width, room) : 0;
  const double left = (all.width - image.width - gap - textWidth) / 2;
  imageView_->setFrame({left, (all.height - image.height) / 2, image.width, image.height});
  // One line shrinks to fit; only more than one is wrapped.
  const double height = titleLabel_->sizeThatFits({textWidth, -1}).height;
  titleLabel_->setFrame({left + image.width + gap, (all.height - height) / 2, textWidth, height});
}

UIAccessibilityElement UIButton::accessibilityElement() const {
  UIAccessibilityElement element = UIControl::accessibilityElement();
  if (element.name.empty()) element.name = titleLabel_->text().value_or("");
  return element;
}

void UIButton::describe(Value::Dictionary& description) const {
  UIControl::describe(description);
  if (const auto title = titleLabel_->text()) description["title"] = *title;
  if (const auto& image = imageView_->image()) description["image"] = image->name();
}

bool UIButton::setNibAttribute(const std::string& name, const std::string& value) {
  if (name == "title") {
    setTitle(value);
    return true;
  }
  if (name == "font") return nib::withFont(value, [&](const auto& font) { setFont(font); });
  if (name == "color") return nib::withColor(value, [&](const UIColor& v) { setTitleColor(v); });
  if (name == "image") {
    setImage(ImageBundleScope::imageNamed(value));
    return imageView_->image() != nullptr;
  }
  if (name == "lines" || name == "shrink") return titleLabel_->setNibAttribute(name, value);
  return UIControl::setNibAttribute(name, value);
}

} // namespace zuvi
