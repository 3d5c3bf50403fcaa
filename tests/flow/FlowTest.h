#pragma once

#include "demo/core/ViewTree.h"
#include "kit/Main/Public/ZVKYCButton.h"
#include "kit/UI/ViewControllers/ZVCancelAlertViewController.h"
#include "kit/UI/ViewControllers/ZVDocumentListViewController.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVLiveCameraViewController.h"
#include "kit/UI/ViewControllers/ZVLivenessVerifyViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVUploadViewController.h"
#include "platform/Foundation/ClassName.h"
#include "platform/UIKit/UIWindow.h"
#include "tests/kit/KitTest.h"

namespace zuvi {

/// A host with the launch button on its only screen, and a person who taps through the flow.
class FlowTest : public KitTest {
protected:
  FlowTest();
  /// The frame and all screens that were ever on show must have died.
  void TearDown() override;

  /// Registers with a merchant of this JSON, of which `documents` is an object.
  void registerMerchant(const std::string& documentsJson, const std::string& language = "en");
  /// The back end that holds no data: everything succeeds.
  static test::Reply succeed(const test::Request& request);

  void launch();
  static ZVRootViewController& shell() { return *ZVKYCHelper::instance().rootVC; }
  /// The step on top, by class.
  std::string top();
  template <class Screen> std::shared_ptr<Screen> step() {
    return std::dynamic_pointer_cast<Screen>(shell().mainNC()->topViewController());
  }
  /// Waits, in real time, for a step that only the back end brings about.
  void arrive(const std::string& name);
  /// Lets a transition end.
  void settle() { time.advance(0.5); }

  /// Touches the middle of a view as a finger does, by outlet, action, or text.
  void tap(const std::string& name, bool isText = false);
  void tapBottom() { tap("bottomButton"); }
  /// Takes the whole flow away.
  void leave() {
    host->dismiss(false);
    settle();
  }
  /// From the recorder to the review.
  void record();
  /// Takes a picture with these bytes.
  void shoot(const std::string& jpeg);
  /// From the launch button to the upload of the film.
  void launchToUpload();

  std::string title() const { return shell().titleLabel.lock()->text().value_or("-"); }
  static std::string bottomTitle() { return shell().bottomButton.lock()->title().value_or("-"); }
  static int page() { return *shell().currentPage; }
  static std::string jpeg(int number) {
    return "\xff\xd8\xff\xe0 picture " + std::to_string(number);
  }

  static const std::string film;
  std::shared_ptr<UIWindow> window = make<UIWindow>();
  std::shared_ptr<UIViewController> host = make<UIViewController>();
  std::shared_ptr<ZVKYCButton> button = make<ZVKYCButton>(CGRect{40, 300, 280, 60});

private:
  void watch();
  std::vector<std::pair<std::string, std::weak_ptr<UIViewController>>> watched_;
};

} // namespace zuvi
