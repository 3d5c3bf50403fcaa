#include <ZuviSDK/UIKit/UITabBarController.h>

#include <ZuviSDK/UIKit/UIButton.h>

namespace zuvi {

namespace {
constexpr double barHeight = 49;
}

void UITabBarController::didMake() {
  std::erase_if(tabs_, [](const Tab& tab) { return !tab.controller; });
  for (const Tab& tab : tabs_)
    addChild(tab.controller);
}

std::shared_ptr<UIViewController> UITabBarController::selectedViewController() const {
  return selected_ < tabs_.size() ? tabs_[selected_].controller : nullptr;
}

std::vector<std::shared_ptr<UIViewController>> UITabBarController::visibleChildren() const {
  if (auto selected = selectedViewController()) return {selected};
  return {};
}

void UITabBarController::viewDidLoad() {
  UIViewController::viewDidLoad();
  bar_ = make<UIView>();
  bar_->setBackgroundColor(UIColor::bytes(248, 249, 251));
  bar_->layer()->setBorderWidth(0.5);
  bar_->layer()->setBorderColor(UIColor::bytes(224, 228, 234));
  for (std::size_t i = 0; i < tabs_.size(); i++) {
    const auto button = make<UIButton>();
    button->setTitle(tabs_[i].title);
    button->setFont(UIFont::system(13, FontWeight::SemiBold));
    button->addTarget(UIControlEvent::TouchUpInside, [this, i] { setSelectedIndex(i); });
    bar_->addSubview(button);
  }
  view()->addSubview(bar_);
  if (const auto selected = selectedViewController()) view()->insertSubview(selected->view(), 0);
  markSelected();
}

void UITabBarController::setSelectedIndex(std::size_t index) {
  if (index >= tabs_.size() || index == selected_) return;
  const auto old = selectedViewController();
  selected_ = index;
  if (!isViewLoaded()) return;
  const auto now = selectedViewController();
  const bool onShow = appearance() == Appearance::Appeared || appearance() == Appearance::Appearing;
  if (onShow) {
    old->beginAppearanceTransition(false, false);
    now->beginAppearanceTransition(true, false);
  }
  old->view()->removeFromSuperview();
  view()->insertSubview(now->view(), 0);
  markSelected();
  view()->layoutIfNeeded();
  if (onShow) {
    old->endAppearanceTransition();
    // While the bar itself is on its way in, the chosen screen arrives with it.
    if (appearance() != Appearance::Appearing) now->endAppearanceTransition();
  }
}

void UITabBarController::markSelected() {
  for (std::size_t i = 0; i < tabs_.size(); i++) {
    auto& button = static_cast<UIButton&>(*bar_->subviews()[i]);
    button.setTitleColor(i == selected_ ? UIColor::bytes(33, 150, 243)
                                        : UIColor::bytes(96, 104, 116));
  }
}

void UITabBarController::viewDidLayoutSubviews() {
  UIViewController::viewDidLayoutSubviews();
  const CGRect all = view()->bounds();
  const double height = barHeight + view()->safeAreaInsets().bottom;
  bar_->setFrame({0, all.height - height, all.width, height});
  const double width = tabs_.empty() ? 0 : all.width / double(tabs_.size());
  for (std::size_t i = 0; i < tabs_.size(); i++)
    bar_->subviews()[i]->setFrame({double(i) * width, 0, width, barHeight});
  if (const auto selected = selectedViewController()) {
    selected->view()->setFrame({0, 0, all.width, all.height - height});
  }
}

} // namespace zuvi
