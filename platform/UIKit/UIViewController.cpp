#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/UIKit/UIViewController.h>

#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/UIKit/UINavigationController.h>
#include <ZuviSDK/UIKit/UINib.h>
#include <ZuviSDK/UIKit/UITabBarController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/UIKit/Presentation.h"
#include "platform/UIKit/UIScreen.h"

#include <utility>

namespace zuvi {

UIViewController::UIViewController() {
  assertMainQueue("A screen");
}

UIViewController::UIViewController(std::string nibName, std::shared_ptr<const Bundle> bundle)
    : nibName_(std::move(nibName)), bundle_(std::move(bundle)) {
  assertMainQueue("A screen");
}

UIViewController::~UIViewController() {
  if (view_) view_->controller_ = nullptr;
  if (presentation_) presentation_->presenterGone();
  for (const auto& child : children_)
    child->parent_ = nullptr;
}

const std::shared_ptr<UIView>& UIViewController::view() {
  assertMainQueue("A screen");
  if (!view_) {
    loadView();
    if (!view_) setView(make<UIView>(UIScreen::main().bounds()));
    viewDidLoad();
  }
  return view_;
}

void UIViewController::setView(std::shared_ptr<UIView> view) {
  if (view_) view_->controller_ = nullptr;
  view_ = std::move(view);
  if (view_) view_->controller_ = this;
}

void UIViewController::loadView() {
  std::shared_ptr<UIView> loaded;
  if (!nibName_.empty()) {
    NibDeclaration declaration;
    declareNib(declaration);
    auto [view, error] = UINib(nibName_, bundle_).instantiate(std::move(declaration));
    if (!view) print(error);
    loaded = std::move(view);
  }
  if (!loaded) loaded = make<UIView>();
  loaded->setFrame(UIScreen::main().bounds());
  setView(std::move(loaded));
}

void UIViewController::viewWillAppear(bool) {}

// Containment

void UIViewController::addChild(std::shared_ptr<UIViewController> child) {
  if (!child || child->parent_ == this) return;
  child->removeFromParent();
  child->parent_ = this;
  children_.push_back(std::move(child));
}

void UIViewController::removeFromParent() {
  if (!parent_) return;
  const auto self = shared_from_this();
  std::erase(std::exchange(parent_, nullptr)->children_, self);
}

UINavigationController* UIViewController::navigationController() const {
  for (UIViewController* up = parent_; up; up = up->parent_)
    if (auto* navigation = dynamic_cast<UINavigationController*>(up)) return navigation;
  return nullptr;
}

UITabBarController* UIViewController::tabBarController() const {
  for (UIViewController* up = parent_; up; up = up->parent_)
    if (auto* tabs = dynamic_cast<UITabBarController*>(up)) return tabs;
  return nullptr;
}

void UIViewController::setAdditionalSafeAreaInsets(const UIEdgeInsets& insets) {
  if (insets == additionalSafeArea_) return;
  additionalSafeArea_ = insets;
  if (view_) view_->setNeedsLayoutBelow();
}

void UIViewController::show(std::shared_ptr<UIViewController> controller) {
  if (UINavigationController* navigation = navigationController())
    navigation->pushViewController(std::move(controller), true);
  else
    present(std::move(controller), true);
}

// Presentation

UIViewController* UIViewController::topmostParent() const {
  auto* top = const_cast<UIViewController*>(this);
  while (top->parent_)
    top = top->parent_;
  return top;
}

std::shared_ptr<UIViewController> UIViewController::presentedViewController() const {
  const auto& presentation = topmostParent()->presentation_;
  return presentation && !presentation->isEnding() ? presentation->presented() : nullptr;
}

UIViewController* UIViewController::presentingViewController() const {
  const auto presentation = topmostParent()->presentedBy_.lock();
  return presentation ? presentation->presenter() : nullptr;
}

void UIViewController::present(std::shared_ptr<UIViewController> controller, bool animated,
                               std::function<void()> completion) {
  if (!controller) return;
  UIViewController* presenter = topmostParent();
  if (presenter->presentation_ && presenter->presentation_->isEnding())
    presenter->presentation_->settle();
  if (presentedViewController()) {
    print("A screen is presented already; the new one is not shown.");
    return;
  }
  if (!presenter->isViewLoaded() || !presenter->view()->window()) {
    print("A screen that is on no window can't present another.");
    return;
  }
  if (controller->presentedBy_.lock()) return;
  const auto presentation = std::make_shared<Presentation>(*presenter, controller);
  presenter->presentation_ = presentation;
  controller->presentedBy_ = presentation;
  presentation->begin(animated, std::move(completion));
}

void UIViewController::dismiss(bool animated, std::function<void()> completion) {
  const UIViewController* top = topmostParent();
  auto presentation = top->presentation_;
  if (!presentation || presentation->isEnding()) presentation = top->presentedBy_.lock();
  if (!presentation || presentation->isEnding()) {
    if (completion) DispatchQueue::main().async(std::move(completion));
    return;
  }
  const auto self = shared_from_this(); // the presentation may be the last to hold it
  presentation->end(animated, std::move(completion));
}

// Appearance

void UIViewController::beginAppearanceTransition(bool appearing, bool animated) {
  const Appearance wanted = appearing ? Appearance::Appearing : Appearance::Disappearing;
  if (appearance_ == wanted) return;
  if (appearance_ == (appearing ? Appearance::Appeared : Appearance::Disappeared)) return;
  const auto self = shared_from_this();
  view();
  appearance_ = wanted;
  animatedAppearance_ = animated;
  if (appearing)
    viewWillAppear(animated);
  else
    viewWillDisappear(animated);
  for (const auto& child : visibleChildren())
    child->beginAppearanceTransition(appearing, animated);
}

void UIViewController::endAppearanceTransition() {
  const auto self = shared_from_this();
  if (appearance_ == Appearance::Appearing) {
    appearance_ = Appearance::Appeared;
    viewDidAppear(animatedAppearance_);
  } else if (appearance_ == Appearance::Disappearing) {
    appearance_ = Appearance::Disappeared;
    viewDidDisappear(animatedAppearance_);
  } else {
    return;
  }
  for (const auto& child : visibleChildren())
    child->endAppearanceTransition();
}

} // namespace zuvi
