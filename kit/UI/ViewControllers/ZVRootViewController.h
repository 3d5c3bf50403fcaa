#pragma once

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/LiveChatDelegate.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UINavigationController.h>
#include "kit/UI/ViewControllers/ZVCancelAlertViewController.h"
#include "kit/UI/ViewControllers/ZVScreen.h"
#include "platform/UIKit/UIPageControl.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

class ZVKYCCameraViewController;

/// The shell of a run: title, description, page dots, back, close and info buttons and the bottom
/// bar, around the stack of steps. Each step sets them each time it is about to appear. The launch
/// button makes one shell for each run.
class ZVRootViewController final : public ZVScreen,
                                   public ZVCancelAlertDelegate,
                                   public LiveChatDelegate {
public:
  static constexpr const char* name = "ZVRootViewController";
  ZVRootViewController();

  bool isOnlyFaceScan = false; ///< the host has an identity already; not read

  std::weak_ptr<UIView> containerView;
  std::weak_ptr<UIButton> backButton;
  std::weak_ptr<UIImageView> iconImageView;
  std::weak_ptr<UILabel> titleLabel, descriptionLabel;
  std::weak_ptr<UIPageControl> pageControl;
  std::weak_ptr<UIButton> bottomButton;
  std::weak_ptr<UIView> bottomView;
  std::weak_ptr<NSLayoutConstraint> containerBottomSpace, iconWidth;

  // Fields that steps write; every write takes effect at once.
  Observed<bool> showBackButton;
  /// The last character is coloured: the full stop after a document's name.
  Observed<std::optional<std::string>> titleText;
  Observed<std::optional<std::string>> desc;
  /// Absent hides the bottom bar. A title makes room for the bar.
  Observed<std::optional<std::string>> bottomButtonTitle;
  /// Whether the step reaches the bottom edge of the screen.
  Observed<bool> showLiveView;
  /// Negative hides the dots.
  Observed<int> currentPage;
  std::function<void()> bottomButtonAction;

  const std::shared_ptr<UINavigationController>& mainNC() const { return mainNC_; }

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  void viewDidAppear(bool animated) override;
  void wasDismissed() override;
  void presentedWasDismissed() override;
  void viewDidLayoutSubviews() override;
  unsigned supportedInterfaceOrientations() const override { return 2; }
  int preferredInterfaceOrientationForPresentation() const override { return 1; }

  UIView* preferredFocusView() override { return bottomButton.lock().get(); }
  /// Goes back where the back button is shown, else does the same as the close button.
  bool accessibilityPerformEscape() override;

  /// The desktop asks to close the flow's window. Like the close button, except that a second time
  /// the person leaves.
  void closeRequested();

  void cancelAction() override;
  void received(const LiveChatMessage& message) override;
  void handleURL(const URL& url) override;

private:
  std::string announcement() const override { return {}; } // the step speaks
  void showBackButtonChanged();
  void titleTextChanged();
  void descChanged();
  void bottomButtonTitleChanged();
  void showLiveViewChanged();
  void currentPageChanged();
  void arrangeHeader();
  void keepClearOfBar();
  void closeButtonTap();
  void backButtonTap();
  void bottomButtonTap();
  void infoButtonTap();
  void configureLiveChat();
  void showNextMessage();
  void registerNotifications();
  void keyboardWillShow(const Notification& notification);
  void keyboardWillHide(const Notification& notification);
  void adjustingHeight(bool show, const Notification& notification);

  std::weak_ptr<NSLayoutConstraint> headerLeft_, headerRight_, headerTop_, dotsCenter_;
  std::shared_ptr<UINavigationController> mainNC_;
  std::shared_ptr<ZVKYCCameraViewController> cameraVC_; ///< over the container; may be null
  std::weak_ptr<LiveChatDelegate> hostsChatDelegate_;   ///< restored after the run
  std::vector<NotificationObserver> observers_;
};

} // namespace zuvi
