#include <ZuviSDK/UIKit/UIWindow.h>

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include "platform/UIKit/UIScreen.h"

#include <utility>

namespace zuvi {

UIWindow::UIWindow() : UIView(UIScreen::main().bounds()) {}

UIWindow::~UIWindow() {
  setRootViewController(nullptr); // who was on show hears that it no longer is
  UIScreen::main().hide(*this);
  UIApplication::shared().windowWillGo(*this);
}

void UIWindow::setWindowLevel(double level) {
  level_ = level;
  if (visible_) UIScreen::main().show(*this);
}

void UIWindow::setRootViewController(std::shared_ptr<UIViewController> controller) {
  const auto old = std::exchange(root_, std::move(controller));
  if (old == root_) return;
  if (old) {
    if (old->presentedViewController()) old->dismiss(false); // nothing of it stays behind
    if (visible_) old->beginAppearanceTransition(false, false);
    old->view()->removeFromSuperview();
    if (visible_) old->endAppearanceTransition();
  }
  if (!root_) return;
  root_->view()->setFrame(bounds());
  if (visible_) root_->beginAppearanceTransition(true, false);
  insertSubview(root_->view(), 0);
  if (visible_) {
    layoutIfNeeded();
    root_->endAppearanceTransition();
  }
}

bool UIWindow::isKeyWindow() const {
  return UIApplication::shared().keyWindow() == this;
}

void UIWindow::makeKeyAndVisible() {
  UIApplication::shared().setKeyWindow(this);
  setVisible(true);
}

std::vector<std::shared_ptr<UIViewController>> UIWindow::controllersOnShow() const {
  std::vector<std::shared_ptr<UIViewController>> found;
  for (auto controller = root_; controller; controller = controller->presentedViewController()) {
    if (controller->modalPresentationStyle == UIModalPresentationStyle::FullScreen) found.clear();
    found.push_back(controller);
  }
  return found;
}

std::shared_ptr<UIViewController> UIWindow::topViewController() const {
  const auto controllers = controllersOnShow();
  return controllers.empty() ? nullptr : controllers.back();
}

void UIWindow::setVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  const auto controllers = controllersOnShow();
  for (const auto& controller : controllers)
    controller->beginAppearanceTransition(visible, false);
  if (visible) {
    setFrame(UIScreen::main().bounds());
    UIScreen::main().show(*this);
    layoutIfNeeded();
  } else {
    UIScreen::main().hide(*this);
    const auto& left = UIScreen::main().windows();
    if (isKeyWindow()) UIApplication::shared().setKeyWindow(left.empty() ? nullptr : left.back());
  }
  for (const auto& controller : controllers)
    controller->endAppearanceTransition();
}

void UIWindow::layoutSubviews() {
  UIView::layoutSubviews();
  // The root's view, and those presented over it, fill the window.
  for (const auto& subview : subviews())
    if (subview->controller_) {
      subview->setBounds({0, 0, bounds().width, bounds().height});
      subview->setCenter(bounds().center());
    }
}

} // namespace zuvi
