#include <ZuviSDK/ZVKYCButton.h>

#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include <ZuviSDK/ZVKYC.h>
#include "kit/Helper/Palette.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Private/Launch.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "platform/CoreText/TextLayout.h"

#include <algorithm>

namespace zuvi {

ZVKYCButton::ZVKYCButton(const CGRect& frame)
    : UIButton(frame), title(localized("login"), [this] { label_->setText(*title); }),
      leftBackgroundImageView_(make<UIImageView>(zvKYCImage("ZVZuviButtonLeftBackground"))),
      leftIconImageView_(make<UIImageView>(zvKYCImage("ZVZuviButtonLeftIcon"))),
      rightIconImageView_(make<UIImageView>(zvKYCImage("ZVZuviIcon"))), label_(make<UILabel>()) {
  initialize();
}

ZVKYCButton::~ZVKYCButton() = default;

void ZVKYCButton::initialize() {
  ZVKYC::instance(); // so that the session is complete
  NotificationCenter& center = NotificationCenter::defaultCenter();
  merchantObserver_ = center.observe(merchantUpdatedNotification,
                                     [this](const Notification&) { merchantUpdated(); });
  fontObserver_ = center.observe(CTFontManagerRegisteredFontsChangedNotification,
                                 [this](const Notification&) { takeFont(); });
  addTarget(UIControlEvent::TouchUpInside, [this] { tapAction(); });

  leftBackgroundImageView_->setClipsToBounds(true);
  addSubview(leftBackgroundImageView_);
  leftIconImageView_->setContentMode(UIViewContentMode::ScaleAspectFit);
  leftBackgroundImageView_->addSubview(leftIconImageView_);
  rightIconImageView_->setContentMode(UIViewContentMode::ScaleAspectFit);
  addSubview(rightIconImageView_);
  label_->setText(*title);
  label_->setTextAlignment(NSTextAlignment::Center);
  label_->setTextColor(paletteColor("light"));
  takeFont();
  addSubview(label_);
  dress();
}

void ZVKYCButton::awakeFromNib() {
  UIButton::awakeFromNib();
  dress(); // replaces the nib's values
}

void ZVKYCButton::dress() {
  setClipsToBounds(false);
  setBackgroundColor(ZVKYCHelper::instance().merchant->color);
  setTitle(std::nullopt);
  CALayer& shape = *layer();
  shape.setCornerRadius(6);
  shape.setMasksToBounds(true);
  shape.setShadowColor(UIColor::bytes(31, 38, 53, 0.15));
  shape.setShadowOpacity(1);
  shape.setMasksToBounds(false); // the shadow lies outside
}

CGSize ZVKYCButton::intrinsicContentSize() const {
  return {280, 60};
}

void ZVKYCButton::layoutSubviews() {
  UIButton::layoutSubviews();
  // Enlarged text must still fit between the pictures.
  label_->setMinimumScaleFactor(textScale() > 1 ? 0.7 : 1);
  const double height = std::max(frame().height, minimumHeight_);
  const double width = std::max(frame().width, minimumWidth_);
  const double margin = width * 24 / 344;
  const double leftIcon = width * 26 / 334; // not 344: the icon is slightly wider than its share
  const double left = 2 * margin + leftIcon + 4;
  const double right = width * 27 / 344;
  leftBackgroundImageView_->setFrame({0, 0, left, height});
  leftIconImageView_->setFrame({margin, 4, leftIcon, height - 8});
  rightIconImageView_->setFrame({width - right - margin, 4, right, height - 8});
  label_->setFrame({left, 0, width - 2 * left, height});
  const double drop = height * 12 / 68;
  layer()->setShadowPath(CALayer::RoundedRect{{drop, drop, width, height}, 6});
}

UIAccessibilityElement ZVKYCButton::accessibilityElement() const {
  UIAccessibilityElement element = UIButton::accessibilityElement();
  if (element.name.empty()) element.name = *title;
  return element;
}

void ZVKYCButton::describe(Value::Dictionary& description) const {
  UIButton::describe(description);
  description["title"] = *title;
}

void ZVKYCButton::tapAction() {
  if (canLaunch()) launch(true);
}

/// Before registration there is only the system's font.
void ZVKYCButton::takeFont() {
  constexpr double size = 16;
  const auto own = zvSFProText(FontStyle::regular, size);
  label_->setFont(own ? own : UIFont::system(size));
}

void ZVKYCButton::merchantUpdated() {
  if (*title == "Login") title = localized("login");
  setBackgroundColor(ZVKYCHelper::instance().merchant->color);
}

} // namespace zuvi
