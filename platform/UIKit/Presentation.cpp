#include "platform/UIKit/Presentation.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/UIKit/Transition.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zuvi {

Presentation::Presentation(UIViewController& presenter, std::shared_ptr<UIViewController> presented)
    : presenter_(&presenter), presented_(std::move(presented)) {}

bool Presentation::coversPresenter() const {
  return presented_->modalPresentationStyle == UIModalPresentationStyle::FullScreen;
}

void Presentation::settle() {
  const auto self = shared_from_this();
  if (settle_) std::exchange(settle_, nullptr)();
}

void Presentation::begin(bool animated, std::function<void()> completion) {
  const auto self = shared_from_this();
  UIWindow* window = presenter_->view()->window();
  const auto view = presented_->view();
  view->setFrame(window->bounds());
  if (UIView* focused = UIApplication::shared().firstResponder())
    focus_ = focused->weak_from_this();
  presenter_->view()->endEditing(true); // the focus is not for what lies below
  if (coversPresenter()) presenter_->beginAppearanceTransition(false, animated);
  presented_->beginAppearanceTransition(true, animated);
  window->addSubview(view);
  window->layoutIfNeeded();
  move(true, animated, [self, completion = std::move(completion)] {
    self->finishBegin();
    if (completion) completion();
  });
}

void Presentation::finishBegin() {
  const bool covers = coversPresenter();
  if (covers && presenter_) { // nobody sees it any more
    presenterView_ = presenter_->view();
    presenterView_->removeFromSuperview();
  }
  const auto keep = shared_from_this();
  presented_->endAppearanceTransition();
  if (covers && presenter_) presenter_->endAppearanceTransition();
  if (!ending_) UIApplication::shared().moveFocusInto(*presented_);
}

void Presentation::end(bool animated, std::function<void()> completion) {
  const auto self = shared_from_this();
  settle();      // on its way in still
  if (ending_) { // by a completion of that
    if (completion) DispatchQueue::main().async(std::move(completion));
    return;
  }
  ending_ = true;
  for (auto above = presented_->presentation_; above; above = above->presented_->presentation_)
    above->settle();
  presented_->beginAppearanceTransition(false, animated);
  // What it presented itself goes with it.
  auto lowest = presented_->view();
  for (auto above = presented_->presentation_; above; above = above->presented_->presentation_) {
    above->presented_->beginAppearanceTransition(false, animated);
    if (!lowest->window()) lowest = above->presented_->view();
  }
  UIWindow* window = lowest->window();
  if (coversPresenter() && presenter_) {
    if (window && window->isVisible()) presenter_->beginAppearanceTransition(true, animated);
    if (presenterView_ && window) {
      const auto& sheets = window->subviews();
      const auto at = std::find(sheets.begin(), sheets.end(), lowest);
      presenterView_->setFrame(window->bounds());
      window->insertSubview(presenterView_, static_cast<std::size_t>(at - sheets.begin()));
      window->layoutIfNeeded();
    }
    presenterView_ = nullptr;
  }
  move(false, animated, [self, completion = std::move(completion)] {
    self->finishEnd();
    if (completion) completion();
  });
}

void Presentation::finishEnd() {
  removeViews();
  const auto presented = presented_;
  if (coversPresenter() && presenter_) presenter_->endAppearanceTransition();
  presented->endAppearanceTransition();
  presented->presentedBy_.reset();
  // A new presentation may stand in the place already.
  if (presenter_ && presenter_->presentation_.get() == this) presenter_->presentation_ = nullptr;
  if (presenter_ && !presenter_->presentation_ && !UIApplication::shared().moveFocusBack(focus_))
    UIApplication::shared().moveFocusInto(*presenter_);
  presented->wasDismissed();
  if (presenter_) presenter_->presentedWasDismissed();
}

void Presentation::removeViews() {
  for (auto above = std::exchange(presented_->presentation_, nullptr); above;
       above = std::exchange(above->presented_->presentation_, nullptr)) {
    above->presented_->view()->removeFromSuperview();
    above->presented_->endAppearanceTransition();
    above->presenterView_ = nullptr;
    above->presented_->wasDismissed();
  }
  presented_->view()->removeFromSuperview();
}

void Presentation::move(bool in, bool animated, std::function<void()> done) {
  // What stands above moves along.
  std::vector<std::shared_ptr<UIView>> views{presented_->view()};
  for (auto above = presented_->presentation_; above; above = above->presented_->presentation_)
    if (above->presented_->view()->window()) views.push_back(above->presented_->view());
  const bool dissolves = presented_->modalTransitionStyle == UIModalTransitionStyle::CrossDissolve;
  const auto away = [views, dissolves] {
    for (const auto& view : views)
      if (dissolves)
        view->setAlpha(0);
      else
        view->setTransform(CGAffineTransform::translation(0, view->bounds().height));
  };
  const auto home = [views] {
    for (const auto& view : views) {
      view->setAlpha(1);
      view->setTransform({});
    }
  };
  if (in && animated) away();
  const auto self = shared_from_this();
  std::function<void()> changes = home;
  if (!in) changes = away;
  if (!animated) changes = in ? std::function<void()>(home) : [] {};
  auto settle = runTransition(animated, dissolves ? 0.25 : 0.45, changes,
                              [self, in, home, done = std::move(done)] {
                                self->settle_ = nullptr;
                                done();
                                if (!in) home(); // as it was, should it be shown again
                              });
  if (animated) settle_ = std::move(settle);
}

} // namespace zuvi
