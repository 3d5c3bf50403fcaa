#include "kit/Main/Private/VerificationRun.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Private/Launch.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/UIKit/UIScreen.h"

#include <utility>

namespace zuvi {

namespace {

std::shared_ptr<VerificationRun> current; // null: there is no run

void callLater(VerificationCompletion completion, Verification verification) {
  if (completion)
    DispatchQueue::main().async(
        [completion = std::move(completion), verification = std::move(verification)] {
          completion(verification);
        });
}

/// The flow's first title, without its full stop.
std::string windowTitle() {
  std::string title = localized("startTitle");
  if (title.ends_with('.')) title.pop_back();
  return title;
}

} // namespace

bool VerificationRun::bringForward() {
  if (current && current->window_) current->window_->present();
  return current != nullptr;
}

void VerificationRun::start(GtkWindow* parent, ScreenWindow::Shape shape,
                            VerificationCompletion completion) {
  const auto fail = [&](const std::string& problem) {
    callLater(std::move(completion), {Verification::Result::Failed, {}, problem});
  };
  if (bringForward()) return fail("another verification is under way");
  const auto& shell = ZVKYCHelper::instance().rootVC;
  if (shell && shell->isViewLoaded() && shell->view()->window()) // started by a `ZVKYCButton`
    return fail("another verification is under way");
  if (!canLaunch()) return fail("no client id is registered");
  if (!UIScreen::main().hasSurface() && !ScreenWindow::canOpen())
    return fail("there is no display");
  current = make<VerificationRun>();
  current->completion_ = std::move(completion);
  current->open(parent, shape);
}

void VerificationRun::open(GtkWindow* parent, ScreenWindow::Shape shape) {
  if (!UIScreen::main().hasSurface()) {
    window_ = std::make_unique<ScreenWindow>(parent, windowTitle(), shape);
    window_->onCloseRequest = [this] { closeRequested(); };
    window_->onDestroy = [this] { presentedWasDismissed(); };
  }
  if (UIWindow* key = UIApplication::shared().keyWindow()) hostsKeyWindow_ = key->weak_from_this();
  surface_ = make<UIWindow>();
  surface_->setRootViewController(shared_from_this());
  surface_->makeKeyAndVisible();
  ZVKYCHelper::instance().ended = [this](const std::optional<std::string>& identity) {
    told_ = true;
    if (identity) verification_ = {Verification::Result::Verified, *identity, {}};
    if (window_) end(); // else once the flow has slid away
  };
  launch(window_ == nullptr);
}

void VerificationRun::closeRequested() {
  if (ends_) return;
  if (LiveChat::isChatPresented()) LiveChat::dismissChat();
  ZVKYCHelper::instance().rootVC->closeRequested();
}

void VerificationRun::presentedWasDismissed() {
  if (!told_ && !ends_) ZVKYCHelper::instance().cancelled(); // it went with its window
  end();
}

void VerificationRun::end() {
  if (std::exchange(ends_, true)) return;
  ZVKYCHelper::instance().ended = nullptr;
  DispatchQueue::main().async([] {
    const auto self = std::exchange(current, nullptr);
    if (LiveChat::isChatPresented()) LiveChat::dismissChat(false);
    self->surface_->setRootViewController(nullptr); // which dismisses the flow
    self->surface_ = nullptr;
    if (const auto key = self->hostsKeyWindow_.lock())
      UIApplication::shared().setKeyWindow(static_cast<UIWindow*>(key.get()));
    self->window_ = nullptr;
    if (self->completion_) self->completion_(self->verification_);
  });
}

} // namespace zuvi
