#include <ZuviSDK/UIKit/UIAlertController.h>

#include <ZuviSDK/CoreText/AttributedString.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "platform/UIKit/UIScrollView.h"

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {
constexpr double largestWidth = 280, edge = 8, margin = 20, gap = 6, buttonHeight = 48; // points

struct Colors {
  UIColor ground, text, answer, line;
};
constexpr Colors light{UIColor::white(), defaultTextColor, UIColor::bytes(25, 118, 210),
                       UIColor::bytes(224, 228, 234)};
constexpr Colors dark{UIColor::bytes(30, 38, 52), UIColor::bytes(238, 242, 248),
                      UIColor::bytes(140, 192, 255), UIColor::bytes(70, 81, 100)};
} // namespace

UIAlertController::UIAlertController(std::string title, std::string message)
    : title_(std::move(title)), message_(std::move(message)) {
  modalPresentationStyle = UIModalPresentationStyle::OverCurrentContext;
  modalTransitionStyle = UIModalTransitionStyle::CrossDissolve;
}

void UIAlertController::loadView() {
  const Colors& colors = userInterfaceStyle == UIUserInterfaceStyle::Dark ? dark : light;
  const auto backdrop = make<UIView>();
  backdrop->setBackgroundColor(UIColor{0, 0, 0, 0.4});
  box_ = make<UIView>();
  box_->setBackgroundColor(colors.ground);
  box_->layer()->setCornerRadius(14);
  box_->setClipsToBounds(true);
  box_->accessibilityRole = UIAccessibilityRole::Dialog;
  box_->accessibilityLabel = title_.empty() ? message_ : title_;
  backdrop->addSubview(box_);
  scroller_ = make<UIScrollView>();
  box_->addSubview(scroller_);
  const auto addText = [this, &colors](const std::string& text, FontWeight weight, double size) {
    if (text.empty()) return;
    const auto label = make<UILabel>();
    label->setFont(UIFont::system(size, weight));
    label->setTextAlignment(NSTextAlignment::Center);
    label->setNumberOfLines(0);
    label->setText(text);
    label->setTextColor(colors.text);
    scroller_->addSubview(label);
    texts_.push_back(label);
  };
  addText(title_, FontWeight::SemiBold, 17);
  addText(message_, FontWeight::Regular, 14);
  for (std::size_t i = 0; i < actions_.size(); i++) {
    const auto button = make<UIButton>();
    const bool cancel = actions_[i].style == UIAlertAction::Style::Cancel;
    button->setTitle(actions_[i].title);
    button->setTitleColor(colors.answer);
    button->setFont(UIFont::system(17, cancel ? FontWeight::SemiBold : FontWeight::Regular));
    button->layer()->setBorderWidth(0.5);
    button->layer()->setBorderColor(colors.line);
    button->addTarget(UIControlEvent::TouchUpInside, [this, i] { choose(i); });
    box_->addSubview(button);
    buttons_.push_back(button);
  }
  setView(backdrop);
}

void UIAlertController::choose(std::size_t index) {
  if (index >= actions_.size() || std::exchange(chosen_, true)) return;
  const auto handler = actions_[index].handler;
  dismiss(true);
  if (handler) handler();
}

bool UIAlertController::accessibilityPerformEscape() {
  for (std::size_t i = 0; i < actions_.size(); i++)
    if (actions_[i].style == UIAlertAction::Style::Cancel) {
      choose(i);
      return true;
    }
  return false;
}

void UIAlertController::viewDidLayoutSubviews() {
  UIViewController::viewDidLayoutSubviews();
  const CGRect all = view()->bounds();
  const UIEdgeInsets safe = view()->safeAreaInsets();
  const double boxWidth = std::min(largestWidth, all.width - safe.left - safe.right - 2 * edge);
  double y = margin;
  for (const auto& text : texts_) {
    const double height = text->sizeThatFits({boxWidth - 2 * margin, -1}).height;
    text->setFrame({margin, y, boxWidth - 2 * margin, height});
    y += height + gap;
  }
  y += margin - gap;
  // A long text scrolls; the answers are always in sight.
  const double room = all.height - safe.top - safe.bottom;
  const double answers = static_cast<double>(buttons_.size()) * buttonHeight;
  scroller_->setContentSize({boxWidth, y});
  y = std::max(0.0, std::min(y, room - 2 * margin - answers));
  scroller_->setFrame({0, 0, boxWidth, y});
  for (const auto& button : buttons_) {
    button->setFrame({-0.5, y, boxWidth + 1, buttonHeight});
    y += buttonHeight;
  }
  box_->setFrame({(all.width - boxWidth) / 2, safe.top + (room - y) / 2, boxWidth, y});
}

} // namespace zuvi
