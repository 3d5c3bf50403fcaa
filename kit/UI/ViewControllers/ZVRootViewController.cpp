#include "kit/UI/ViewControllers/ZVRootViewController.h"

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/LiveChatMessage.h>
#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UIAlertController.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "kit/Helper/Palette.h"
#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVMainViewController.h"
#include "kit/UI/ViewControllers/ZVVerifiedViewController.h"
#include "platform/CoreText/TextLayout.h"
#include "platform/UIKit/UIScreen.h"

#include <algorithm>

namespace zuvi {

namespace {

constexpr const char* chatLicense = "4173052";
constexpr int pages = 4;
constexpr std::size_t mostMessages = 20;  // waiting; older ones are in the chat
constexpr double bottomBarHeight = 88;    // points above the safe area
constexpr double barGap = 16;             // points between a step and the bar
constexpr double keyboardOverlap = 50;    // points that the keyboard may cover
constexpr double spaceAfterKeyboard = 40; // points
constexpr double lowScreen = 420;         // points
constexpr double buttonSide = 44, rowMargin = 8, headerMargin = 24; // points
constexpr double dotsWidth = 64, dotsGap = 4;                       // points

std::string replacing(std::string text, const std::string& mark, const std::string& by) {
  if (const auto at = text.find(mark); at != std::string::npos) text.replace(at, mark.size(), by);
  return text;
}

} // namespace

ZVRootViewController::ZVRootViewController()
    : ZVScreen(name), showBackButton(false, [this] { showBackButtonChanged(); }),
      titleText(std::nullopt, [this] { titleTextChanged(); }),
      desc(std::nullopt, [this] { descChanged(); }),
      bottomButtonTitle(std::nullopt, [this] { bottomButtonTitleChanged(); }),
      showLiveView(false, [this] { showLiveViewChanged(); }),
      currentPage(0, [this] { currentPageChanged(); }) {}

void ZVRootViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("containerView", containerView);
  nib.outlet("backButton", backButton);
  nib.outlet("iconImageView", iconImageView);
  nib.outlet("titleLabel", titleLabel);
  nib.outlet("descriptionLabel", descriptionLabel);
  nib.outlet("pageControl", pageControl);
  nib.outlet("bottomButton", bottomButton);
  nib.outlet("bottomView", bottomView);
  nib.outlet("containerBottomSpace", containerBottomSpace);
  nib.outlet("iconWidth", iconWidth);
  nib.outlet("headerLeft", headerLeft_);
  nib.outlet("headerRight", headerRight_);
  nib.outlet("headerTop", headerTop_);
  nib.outlet("dotsCenter", dotsCenter_);
  nib.action("closeButtonTap", [this] { closeButtonTap(); });
  nib.action("backButtonTap", [this] { backButtonTap(); });
  nib.action("bottomButtonTap", [this] { bottomButtonTap(); });
  nib.action("infoButtonTap", [this] { infoButtonTap(); });
}

// Fields that steps write

void ZVRootViewController::showBackButtonChanged() {
  const auto button = backButton.lock();
  if (!button) return;
  button->setAlpha(showBackButton ? 1.0 : 0.0);
  if (!showBackButton) button->resignFirstResponder(); // no key may reach a hidden button
}

void ZVRootViewController::titleTextChanged() {
  const auto label = titleLabel.lock();
  if (!label) return;
  label->setText(*titleText);
  const std::size_t count = *titleText ? characterCount(**titleText) : 0;
  if (count == 0) return;
  label->setAttributedText(
      AttributedString{**titleText, {{count - 1, 1, paletteColor("fullStop")}}});
}

void ZVRootViewController::descChanged() {
  if (const auto label = descriptionLabel.lock()) label->setText(*desc);
}

void ZVRootViewController::bottomButtonTitleChanged() {
  const auto& title = *bottomButtonTitle;
  const double alpha = title ? 1.0 : 0.0;
  if (const auto button = bottomButton.lock()) {
    button->setTitle(title);
    button->setAlpha(alpha);
  }
  if (const auto bar = bottomView.lock()) bar->setAlpha(alpha);
  if (title) showLiveView = false;
  keepClearOfBar();
}

void ZVRootViewController::showLiveViewChanged() {
  // The first step writes before the shell is in its window; the shell will cover the screen.
  const UIEdgeInsets safe =
      view()->window() ? view()->safeAreaInsets() : UIScreen::main().safeAreaInsets();
  const double space = showLiveView ? 0 : safe.bottom + bottomBarHeight;
  if (const auto constraint = containerBottomSpace.lock()) constraint->setConstant(space);
  // A live step lies over the bar, every other step under it.
  if (showLiveView) {
    view()->bringSubviewToFront(containerView.lock());
  } else {
    view()->bringSubviewToFront(bottomView.lock());
    view()->bringSubviewToFront(bottomButton.lock());
  }
  keepClearOfBar();
  view()->layoutIfNeeded();
}

void ZVRootViewController::currentPageChanged() {
  const auto dots = pageControl.lock();
  if (!dots) return;
  dots->setAlpha(currentPage < 0 ? 0.0 : 1.0);
  if (currentPage < 0) return;
  dots->setCurrentPage(currentPage);
  dots->accessibilityLabel =
      replacing(replacing(localized("step"), "{step}", std::to_string(currentPage + 1)), "{count}",
                std::to_string(dots->numberOfPages()));
  dots->setCurrentPageIndicatorTintColor(currentPage == 0 ? ZVKYCHelper::instance().merchant->color
                                                          : paletteColor("laterPage"));
}

// Lifecycle

void ZVRootViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  AVCaptureDevice::discover(); // so that a camera screen need not wait
  if (const auto dots = pageControl.lock()) {
    dots->setNumberOfPages(pages);
    dots->setPageIndicatorTintColor(paletteColor("page"));
  }
  mainNC_ = make<UINavigationController>(make<ZVMainViewController>());
  mainNC_->setNavigationBarHidden(true, false);
  addChild(mainNC_);
  if (const auto container = containerView.lock()) container->addSubview(mainNC_->view());
  registerNotifications();
  const UIColor color = ZVKYCHelper::instance().merchant->color;
  if (const auto bar = bottomView.lock()) bar->setBackgroundColor(color);
  if (const auto button = bottomButton.lock()) {
    button->setBackgroundColor(color);
    button->setTitleColor(textColorOn(color));
  }
  configureLiveChat();
}

void ZVRootViewController::wasDismissed() {
  const auto host = hostsChatDelegate_.lock();
  if (host && LiveChat::delegate->lock().get() == this) LiveChat::delegate = host;
  // The shell is kept until the next run. Its steps and their cameras are released in a later turn,
  // when no call of theirs is running.
  DispatchQueue::main().async(
      [stack = mainNC_] { stack->setViewControllers({stack->viewControllers().front()}, false); });
}

void ZVRootViewController::presentedWasDismissed() {
  showNextMessage();
}

void ZVRootViewController::viewDidAppear(bool animated) {
  ZVScreen::viewDidAppear(animated);
  showNextMessage();
}

void ZVRootViewController::viewDidLayoutSubviews() {
  ZVScreen::viewDidLayoutSubviews();
  arrangeHeader();
  const auto container = containerView.lock();
  if (!container) return;
  mainNC_->view()->setFrame(container->bounds());
  if (cameraVC_) cameraVC_->view()->setFrame(container->bounds());
  keepClearOfBar();
}

/// After the keyboard goes, the container reaches behind the bar, where a step's views can be
/// neither seen nor touched.
void ZVRootViewController::keepClearOfBar() {
  const auto container = containerView.lock();
  const auto bar = bottomView.lock();
  if (!mainNC_ || !container || !bar) return;
  const double top = bar->frame().minY() - barGap;
  const bool isBehind = bar->alpha() > 0 && !showLiveView;
  const double covered = isBehind ? std::max(0.0, container->frame().maxY() - top) : 0;
  mainNC_->setAdditionalSafeAreaInsets({0, 0, covered, 0});
}

/// On a phone held sideways a step's title and description are in the row of the buttons.
void ZVRootViewController::arrangeHeader() {
  const CGRect all = view()->bounds();
  const UIEdgeInsets safe = view()->safeAreaInsets();
  const bool low = all.height < lowScreen && all.width > all.height;
  const double beforeButtons = -2 * buttonSide - rowMargin; // from the right edge
  const double middle = (all.width - safe.left - safe.right) / 2;
  const double last = middle + beforeButtons - dotsWidth / 2 - dotsGap;
  const double dots = low ? last : std::min(0.0, last);
  const auto set = [](const std::weak_ptr<NSLayoutConstraint>& outlet, double constant) {
    const auto constraint = outlet.lock();
    if (constraint && constraint->constant() != constant) constraint->setConstant(constant);
  };
  set(headerLeft_, low ? 2 * rowMargin + buttonSide : headerMargin);
  set(headerRight_, low ? beforeButtons - dotsWidth - 3 * dotsGap : -headerMargin);
  set(headerTop_, low ? 0 : buttonSide + rowMargin);
  set(dotsCenter_, dots);
}

// Actions

void ZVRootViewController::backButtonTap() {
  view()->endEditing(true);
  mainNC_->popViewController(true);
}

void ZVRootViewController::bottomButtonTap() {
  const auto action = bottomButtonAction; // a copy: the action may replace itself
  if (action) action();
}

void ZVRootViewController::infoButtonTap() {
  LiveChat::presentChat();
}

void ZVRootViewController::closeButtonTap() {
  if (std::dynamic_pointer_cast<ZVVerifiedViewController>(mainNC_->topViewController())) {
    dismiss(true);
    ZVKYCHelper::instance().success();
    ZVAnalyticsManager::track(MixpanelEvent::finishButtonClicked);
    return;
  }
  const auto alert = make<ZVCancelAlertViewController>();
  alert->modalPresentationStyle = UIModalPresentationStyle::OverCurrentContext;
  alert->modalTransitionStyle = UIModalTransitionStyle::CrossDissolve;
  alert->delegate = std::static_pointer_cast<ZVRootViewController>(shared_from_this());
  present(alert, true);
  ZVAnalyticsManager::track(MixpanelEvent::zuviCancelButtonClicked);
}

void ZVRootViewController::closeRequested() {
  const auto above = presentedViewController();
  if (const auto alert = std::dynamic_pointer_cast<ZVCancelAlertViewController>(above)) {
    alert->cancelButtonTap();
    return;
  }
  if (above) dismiss(false); // a message of the support
  closeButtonTap();
}

bool ZVRootViewController::accessibilityPerformEscape() {
  if (showBackButton)
    backButtonTap();
  else
    closeButtonTap();
  return true;
}

void ZVRootViewController::cancelAction() {
  dismiss(true);
  ZVKYCHelper::instance().cancelled();
}

// Keyboard

void ZVRootViewController::registerNotifications() {
  NotificationCenter& center = NotificationCenter::defaultCenter();
  observers_.push_back(center.observe(UIKeyboardWillShowNotification,
                                      [this](const auto& notice) { keyboardWillShow(notice); }));
  observers_.push_back(center.observe(UIKeyboardWillHideNotification,
                                      [this](const auto& notice) { keyboardWillHide(notice); }));
}

void ZVRootViewController::keyboardWillShow(const Notification& notification) {
  adjustingHeight(true, notification);
}

void ZVRootViewController::keyboardWillHide(const Notification& notification) {
  adjustingHeight(false, notification);
}

void ZVRootViewController::adjustingHeight(bool show, const Notification& notification) {
  const Value* frame = valueForKey(notification.userInfo, UIKeyboardFrameEndUserInfoKey);
  const Value* height =
      frame && frame->dictionary() ? valueForKey(*frame->dictionary(), "height") : nullptr;
  const Value* duration =
      valueForKey(notification.userInfo, UIKeyboardAnimationDurationUserInfoKey);
  if (!height || !height->number() || !duration || !duration->number()) return;
  if (const auto constraint = containerBottomSpace.lock())
    constraint->setConstant(show ? *height->number() - keyboardOverlap : spaceAfterKeyboard);
  UIView::animate(*duration->number(), [this] { view()->layoutIfNeeded(); });
}

// Chat

void ZVRootViewController::configureLiveChat() {
  LiveChat::licenseId = chatLicense;
  if (const auto& merchant = ZVKYCHelper::instance().merchant->displayName)
    LiveChat::setVariable("Merchant", *merchant);
  hostsChatDelegate_ = *LiveChat::delegate;
  LiveChat::delegate = std::static_pointer_cast<ZVRootViewController>(shared_from_this());
}

void ZVRootViewController::received(const LiveChatMessage& message) {
  if (LiveChat::isChatPresented()) return;
  auto& waiting = ZVKYCHelper::instance().supportMessages;
  if (waiting.size() == mostMessages) waiting.pop_front();
  waiting.push_back(message.text);
  showNextMessage();
}

/// Shows one message at a time, when nothing lies over the shell. Messages that came between two
/// runs are shown in the next run.
void ZVRootViewController::showNextMessage() {
  auto& waiting = ZVKYCHelper::instance().supportMessages;
  if (LiveChat::isChatPresented()) waiting.clear(); // it shows them all
  if (waiting.empty() || appearance() != Appearance::Appeared || presentedViewController()) return;
  const auto alert = make<UIAlertController>("Support", waiting.front());
  waiting.pop_front();
  if (isDark()) alert->userInterfaceStyle = UIUserInterfaceStyle::Dark;
  alert->addAction({"Go to Chat", UIAlertAction::Style::Default, [] {
                      ZVKYCHelper::instance().supportMessages.clear();
                      if (!LiveChat::isChatPresented()) LiveChat::presentChat();
                    }});
  alert->addAction({"Cancel", UIAlertAction::Style::Cancel, {}});
  present(alert, true);
}

void ZVRootViewController::handleURL(const URL& url) {
  UIApplication::shared().openURL(url);
}

} // namespace zuvi
