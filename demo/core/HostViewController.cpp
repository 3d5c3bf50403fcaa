#include "demo/core/HostViewController.h"

#include <ZuviSDK/CoreText/AttributedString.h>
#include <ZuviSDK/UIKit/UILabel.h>

#include <algorithm>

namespace zuvi::demo {

void HostViewController::loadView() {
  const auto root = make<UIView>();
  root->setBackgroundColor(UIColor::bytes(246, 248, 251));
  const auto addLabel = [&](double size, FontWeight weight, const UIColor& color) {
    auto label = make<UILabel>();
    label->setFont(UIFont::system(size, weight));
    label->setTextColor(color);
    label->setNumberOfLines(0);
    label->setTextAlignment(NSTextAlignment::Center);
    root->addSubview(label);
    return label;
  };
  title_ = addLabel(28, FontWeight::Bold, defaultTextColor);
  title_->setText("Harbour Rentals");
  title_->accessibilityRole = UIAccessibilityRole::Header;
  text_ = addLabel(16, FontWeight::Regular, UIColor::bytes(91, 101, 117));
  text_->setText("Before you pick up your boat, please show us who you are.");
  outcome_ = addLabel(15, FontWeight::SemiBold, defaultTextColor);
  outcome_->outletName = "outcomeLabel";
  button_ = make<ZVKYCButton>();
  button_->outletName = "launchButton";
  root->addSubview(button_);
  setView(root);
}

void HostViewController::viewDidLayoutSubviews() {
  UIViewController::viewDidLayoutSubviews();
  const CGRect all = view()->bounds();
  const double width = std::min(all.width - 48, 440.0), left = (all.width - width) / 2;
  double y = all.height * 0.24;
  for (const auto& label : {title_, text_}) {
    const double height = label->sizeThatFits({width, -1}).height;
    label->setFrame({left, y, width, height});
    y += height + 12;
  }
  const CGSize button = button_->intrinsicContentSize();
  y = std::max(y + 24, all.height * 0.5);
  button_->setFrame({(all.width - button.width) / 2, y, button.width, button.height});
  y += button.height + 32;
  outcome_->setFrame({left, y, width, outcome_->sizeThatFits({width, -1}).height});
}

void HostViewController::show(const std::string& outcome, const UIColor& color) {
  outcome_->setText(outcome);
  outcome_->setTextColor(color);
  view()->setNeedsLayout();
}

void HostViewController::zvKYCLoginSuccess(const std::string& identityId) {
  show("Verified. Identity " + identityId, UIColor::bytes(14, 122, 76));
  if (onOutcome) onOutcome("zvKYCLoginSuccess", identityId);
}

void HostViewController::zvKYCLoginCancelled() {
  show("Verification cancelled", UIColor::bytes(176, 58, 46));
  if (onOutcome) onOutcome("zvKYCLoginCancelled", std::nullopt);
}

} // namespace zuvi::demo
